#include "tools/vorel-line/record_file.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <QDir>
#include <atomic>

#include "steps.h"
#include "support/file_limit.h"

/// Stands in for the system's: counts what is made safe from a loss of power.
static std::atomic<int> synced = 0;
extern "C" int fdatasync(int descriptor) {
  ++synced;
  return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

namespace tarnwell::vorel_line {
namespace {

TEST_F(Files, AFullDiskLosesWholeRecordsAndTellsAndTheFileGoesOn) {
  const std::string piece(50, 'x');
  EXPECT_EQ(Write({{0, '<', "whole"}}), "");
  Append("\1\1\1\5ab");
  EXPECT_EQ(Write({{0, '<', "whole"}}), "");
  EXPECT_EQ(Read(), (Texts{"whole", "whole"}));

  RecordFile file({Path("2"), 0, 0});
  EXPECT_EQ(file.Open(), "");
  {
    const test::FileLimit small(200);
    for (int i = 0; i < 9; ++i) file.Put(RecordOf({i * .001, '<', piece}));
    while (Size("2") < 140) usleep(1000);
    usleep(50'000);
  }
  file.Put(RecordOf({60, '<', "end"}));
  file.Close();
  EXPECT_EQ(Read("2"), (Texts{piece, piece, "records lost: 7 (File too large)", "end"}));
}

TEST_F(Files, OnlyARecordingIsGoneOnWithAndADamagedOneIsSetAside) {
  const QString name = QString::fromStdString(Path());
  Append("dear diary");
  EXPECT_EQ(Write({}), Path() + ": is there and is no recording");
  EXPECT_EQ(Size(), 10);
  ASSERT_TRUE(QFile::remove(name) && QFile::link(QStringLiteral("nowhere"), name));
  EXPECT_EQ(Write({}), Path() + ": is a link that leads nowhere");
  ASSERT_TRUE(QFile::remove(name));
  EXPECT_EQ(Write({}), "");
  EXPECT_FALSE(QFile::exists(name)) << "without a record";
  Write({{0, '<', "one"}});
  Append(QByteArray(64, '\0'));
  EXPECT_EQ(Write({{0, '<', "two"}}), "");
  EXPECT_EQ(Read(), Texts{"two"});
  EXPECT_EQ(Read(".damaged", kExitDamaged), Texts{"one"});
  // Records behind the damage, and that there was some.
  QFile whole(name);
  ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
  Append(whole.readAll().mid(static_cast<qsizetype>(Encoder::Header().size())), ".damaged");
  EXPECT_EQ(Read(".damaged", kExitDamaged), (Texts{"one", "64 bytes unreadable", "two"}));
}

TEST_F(Files, ANewFileIsBegunBySizeAndByDayAndOldOnesAreKeptAsTold) {
  constexpr double kDay = 86'400, kSixOClock = kDay * 19000.25 - kStart / 1e6;
  const struct {
    std::uint64_t largest;
    int keep;
    double step;
    const char* files;  ///< the records' letters, the newest file first
  } cases[] = {{200, 2, .001, "i gh ef - "},
               {200, 0, .001, "i gh ef cd "},
               {0, 2, kDay / 2, "i gh ef - "},
               {0, 0, kDay / 2, "abcdefghi - - - "},
               {0, 2, -kDay * 2, "i h g - "}};
  for (const auto& row : cases) {
    std::vector<Step> steps;
    for (char c = 'a'; c <= 'i'; ++c) steps.push_back({kSixOClock + row.step * (c - 'a'), '<', std::string(70, c)});
    EXPECT_EQ(Write(steps, "", {{}, row.largest, row.keep}), "");
    std::string letters;
    for (const char* ending : {"", ".1", ".2", ".3"}) {
      const QString name = QString::fromStdString(Path(ending));
      for (const std::string& text : QFile::exists(name) ? Read(ending) : Texts{"-"}) letters += text[0];
      letters += " ";
      QFile::remove(name);
    }
    EXPECT_EQ(letters, row.files);
  }
}

TEST_F(Files, ARotationThatFailsLosesNoTimeAndNoOlderFile) {
  ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral("a.rec.1/b")));
  const std::string text(50, 'x');
  EXPECT_EQ(Write({{0, '<', text}, {700, '<', text}, {1400, '<', text}}, "", {{}, 100, 1}), "");
  std::string times;
  EXPECT_EQ(kExitFine, ReadFiles({Path()}, false, [&](const Record& record) {
              times += std::to_string((record.at - kStart) / 1'000'000) + " ";
            }));
  EXPECT_EQ(times, "0 700 1400 ");
}

TEST_F(Files, AFurtherFileTellsTheFormatAndTheDeviceByItself) {
  const std::string model = Framed("CT=7316", 1), text(70, '{');
  Write(StepsOf("0-format_300,n,8,1 0>" + Framed("CT?", 0) + " 1<" + model + " 2>" + Framed("U=E", 0) + " 2<" +
                Framed("U=E", 5) + " 3<" + text),
        "", {{}, 150, 1});
  EXPECT_EQ(Read(), (Texts{"format 300,n,8,1", std::string(kKnown) + "E" + model, text})) << "where it is by now";
}

TEST_F(Files, AFileThatOthersTakeAwayIsBegunAnewAndThatIsTold) {
  const std::string format = std::string(kFormat) + "300,n,8,1", other = std::string(kFormat) + "1200,n,8,1";
  const QString path = QString::fromStdString(Path()), beside = path + QStringLiteral("2");
  const struct {
    const char* befell;
    std::function<bool()> act;
    Texts ahead = {};
  } cases[] = {{"was removed", [&] { return QFile::remove(path); }},
               {"was renamed", [&] { return QFile::rename(path, beside); }},
               {"was shortened", [&] { return QFile::resize(path, 0); }},
               {"was shortened", [&] { return QFile::resize(path, Size() - 1); }, {format}},
               {"was replaced",
                [&] {
                  QFile::remove(beside);
                  return Write({{0, '-', other}}, "2").empty() && QFile::remove(path) && QFile::rename(beside, path);
                },
                {other}}};
  for (const auto& row : cases) {
    QFile::remove(path);
    RecordFile file({Path(), 0, 0});
    EXPECT_EQ(file.Open(), "");
    const auto put = [&](const Step& step) {
      const qint64 size = Size();
      file.Put(RecordOf(step));
      while (Size() == size) usleep(1000);
    };
    put({0, '-', format});
    put({0, '<', "x"});
    ASSERT_TRUE(row.act()) << row.befell;
    file.Put(RecordOf({1, '<', "y"}));
    file.Close();
    Texts expected = row.ahead;
    expected.insert(expected.end(), {std::string(kAnew) + row.befell, format, "y"});
    EXPECT_EQ(Read(), expected) << row.befell;
  }
}

TEST_F(Files, WhatWeighsIsSafeFromALossOfPowerAtOnceAndTheRestSoon) {
  const std::string ask = Framed("A?", 1), level = Framed("VR?", 1), mute = Framed("S=X", 1);
  const auto syncs = [&](std::chrono::milliseconds every, const Texts& frames) {
    RecordFile file({Path(), 0, 0, every});
    EXPECT_EQ(file.Open(), "");
    const int before = synced;
    for (const std::string& frame : frames) {
      const bool isReply = frame.find('=') != std::string::npos && frame != mute;
      const qint64 size = Size();
      file.Put(RecordOf({0, isReply ? '<' : '>', frame}));
      while (Size() == size) usleep(100);
    }
    for (int i = 0; every < std::chrono::seconds(1) && synced == before && i < 3000; ++i) usleep(1000);
    file.Close();
    return synced - before - 1;  // at the end all is
  };
  using std::chrono::hours;
  const std::string alarm = Framed("A=P", 1), none = Framed("A=", 1);
  EXPECT_EQ(syncs(hours(1), {level, Framed("VR=1", 1), level}), 0);
  EXPECT_EQ(syncs(hours(1), {ask, none, ask, none, ask, none}), 1) << "only the first was news";
  EXPECT_EQ(syncs(hours(1), {ask, alarm, ask, alarm}), 1);
  EXPECT_EQ(syncs(hours(1), {mute}), 1);
  EXPECT_GE(syncs(std::chrono::milliseconds(1), {level}), 1);
}

}  // namespace
}  // namespace tarnwell::vorel_line

#include "tools/vorel-line/record_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <atomic>

#include "support/scripted_port.h"
#include "tools/vorel-line/record_reader.h"

/// Stands in for the system's: counts what is made safe from a loss of power.
static std::atomic<int> synced = 0;
extern "C" int fdatasync(int descriptor) {
  ++synced;
  return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

namespace tarnwell::vorel_line {
namespace {

using test::Framed;

constexpr std::int64_t kStart = 1'700'000'000'000'000;

TEST(RecordFile, AFullDiskLosesWholeRecordsAndTellsAndTheFileGoesOn) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString();
  signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const auto write = [&] {
    RecordFile file({path, 0, 0});
    EXPECT_EQ(file.Open(), "");
    file.Put({Kind::kDevice, kStart, 0, "whole", 0});
    file.Close();
  };
  write();
  QFile torn(QString::fromStdString(path));
  ASSERT_TRUE(torn.open(QIODevice::Append) && torn.write("\1\1\1\5ab") == 6);
  torn.close();
  write();
  std::vector<std::string> read;
  EXPECT_EQ(kExitFine, ReadFiles({path}, false, [&](const Record& record) { read.push_back(record.bytes); }));
  EXPECT_EQ(read, (std::vector<std::string>{"whole", "whole"}));

  RecordFile file({path + "2", 0, 0});
  EXPECT_EQ(file.Open(), "");
  const rlimit small{200, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  for (int i = 0; i < 9; ++i) file.Put({Kind::kDevice, kStart + i * 1000, 0, std::string(50, 'x'), 0});
  while (QFile(QString::fromStdString(path + "2")).size() < 140) usleep(1000);
  usleep(50'000);
  setrlimit(RLIMIT_FSIZE, &limit);
  file.Put({Kind::kDevice, kStart + 60'000'000, 0, "end", 0});
  file.Close();
  read.clear();
  EXPECT_EQ(kExitFine, ReadFiles({path + "2"}, false, [&](const Record& record) { read.push_back(record.bytes); }));
  ASSERT_EQ(read.size(), 4u);
  EXPECT_EQ(read[2], "records lost: 7 (File too large)");
  EXPECT_EQ(read[3], "end");
}

TEST(RecordFile, OnlyARecordingIsGoneOnWithAndADamagedOneIsSetAside) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString();
  const auto put = [&](const std::string& text) {
    RecordFile file({path, 0, 0});
    const std::string error = file.Open();
    file.Put({Kind::kDevice, kStart, 0, text, 0});
    return error;
  };
  QFile file(QString::fromStdString(path));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("dear diary") > 0);
  file.close();
  EXPECT_EQ(put("x"), path + ": is there and is no recording");
  EXPECT_EQ(file.size(), 10);
  ASSERT_TRUE(file.remove() && QFile::link(QStringLiteral("nowhere"), file.fileName()));
  EXPECT_EQ(put("x"), path + ": is a link that leads nowhere");
  ASSERT_TRUE(file.remove());
  EXPECT_EQ(RecordFile({path, 0, 0}).Open(), "");
  EXPECT_FALSE(file.exists()) << "without a record";
  EXPECT_EQ(put("one"), "");
  ASSERT_TRUE(file.open(QIODevice::Append) && file.write(QByteArray(64, '\0')) == 64);
  file.close();
  EXPECT_EQ(put("two"), "");
  std::string read;
  EXPECT_EQ(kExitFine, ReadFiles({path}, false, [&](const Record& record) { read += record.bytes; }));
  EXPECT_EQ(kExitDamaged, ReadFiles({path + ".damaged"}, false, [&](const Record& record) { read += record.bytes; }));
  EXPECT_EQ(read, "twoone");
  // Records behind the damage, and that there was some.
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray whole = file.readAll().mid(static_cast<qsizetype>(Encoder::Header().size()));
  file.close();
  file.setFileName(file.fileName() + QStringLiteral(".damaged"));
  ASSERT_TRUE(file.open(QIODevice::Append) && file.write(whole) == whole.size());
  file.close();
  read.clear();
  EXPECT_EQ(kExitDamaged, ReadFiles({path + ".damaged"}, false, [&](const Record& record) { read += record.bytes; }));
  EXPECT_EQ(read, "one64 bytes unreadabletwo");
}

TEST(RecordFile, ANewFileIsBegunBySizeAndByDayAndOldOnesAreKeptAsTold) {
  constexpr std::int64_t kDay = 86'400'000'000;
  const struct {
    std::uint64_t largest;
    int keep;
    std::int64_t step;
    const char* files;  ///< the records' letters, the newest file first
  } cases[] = {{200, 2, 1000, "i gh ef -"},
               {200, 0, 1000, "i gh ef cd"},
               {0, 2, kDay / 2, "i gh ef -"},
               {0, 0, kDay / 2, "abcdefghi - - -"},
               {0, 2, -kDay * 2, "i h g -"}};
  for (const auto& row : cases) {
    QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString();
    RecordFile file({path, row.largest, row.keep});
    EXPECT_EQ(file.Open(), "");
    for (char c = 'a'; c <= 'i'; ++c)
      file.Put({Kind::kDevice, kDay * 19000 + kDay / 4 + row.step * (c - 'a'), 0, std::string(70, c), 0});
    file.Close();
    const auto letters = [](const std::string& name) {
      std::string text;
      if (!QFile::exists(QString::fromStdString(name))) return std::string("-");
      EXPECT_EQ(kExitFine, ReadFiles({name}, false, [&](const Record& record) { text += record.bytes[0]; }));
      return text;
    };
    EXPECT_EQ(letters(path) + " " + letters(path + ".1") + " " + letters(path + ".2") + " " + letters(path + ".3"),
              row.files);
  }
}

TEST(RecordFile, ARotationThatFailsLosesNoTimeAndNoOlderFile) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString();
  ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("a.rec.1/b")));
  RecordFile file({path, 100, 1});
  EXPECT_EQ(file.Open(), "");
  for (int i = 0; i < 3; ++i) file.Put({Kind::kDevice, kStart + i * 700'000'000ll, 0, std::string(50, 'x'), 0});
  file.Close();
  std::string times;
  EXPECT_EQ(kExitFine, ReadFiles({path}, false, [&](const Record& record) {
              times += std::to_string((record.at - kStart) / 1'000'000) + " ";
            }));
  EXPECT_EQ(times, "0 700 1400 ");
}

TEST(RecordFile, AFurtherFileTellsTheFormatAndTheDeviceByItself) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString();
  const std::string model = Framed("CT=7316 CONTROLLER", 1), format = std::string(kFormat) + "300,n,8,1";
  RecordFile file({path, 150, 1});
  EXPECT_EQ(file.Open(), "");
  file.Put({Kind::kNote, kStart, 0, format, 0});
  file.Put({Kind::kConsole, kStart, 0, Framed("CT?", 0), 0});
  file.Put({Kind::kDevice, kStart + 1'000'000, 0, model, 0});
  file.Put({Kind::kDevice, kStart + 2'000'000, 0, std::string(70, 'x'), 0});
  file.Close();
  std::vector<std::string> read;
  EXPECT_EQ(kExitFine, ReadFiles({path}, false, [&](const Record& record) { read.push_back(record.bytes); }));
  EXPECT_EQ(read, (std::vector<std::string>{format, std::string(kKnown) + "@" + model, std::string(70, 'x')}));
}

TEST(RecordFile, AFileThatOthersTakeAwayIsBegunAnewAndThatIsTold) {
  const std::string format = std::string(kFormat) + "300,n,8,1";
  const struct {
    const char* befell;
    bool (*act)(const QString& path);
    std::vector<std::string> ahead = {};
  } cases[] = {
      {"was removed", [](const QString& path) { return QFile::remove(path); }},
      {"was renamed", [](const QString& path) { return QFile::rename(path, path + QStringLiteral("2")); }},
      {"was shortened", [](const QString& path) { return QFile::resize(path, 0); }},
      {"was shortened", [](const QString& path) { return QFile::resize(path, QFile(path).size() - 1); }, {format}},
      {"was replaced",
       [](const QString& path) {
         RecordFile other({path.toStdString() + "2", 0, 0});
         const bool opened = other.Open().empty();
         other.Put({Kind::kNote, kStart, 0, std::string(kFormat) + "1200,n,8,1", 0});
         return opened && other.Close() && QFile::remove(path) && QFile::rename(path + QStringLiteral("2"), path);
       },
       {std::string(kFormat) + "1200,n,8,1"}}};
  for (const auto& row : cases) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.rec"));
    const auto read = [&] {
      std::vector<std::string> texts;
      ReadFiles({path.toStdString()}, false, [&](const Record& record) { texts.push_back(record.bytes); });
      return texts;
    };
    RecordFile file({path.toStdString(), 0, 0});
    EXPECT_EQ(file.Open(), "");
    file.Put({Kind::kNote, kStart, 0, format, 0});
    file.Put({Kind::kDevice, kStart, 0, "x", 0});
    while (read().size() < 2) usleep(1000);
    ASSERT_TRUE(row.act(path)) << row.befell;
    file.Put({Kind::kDevice, kStart + 1'000'000, 0, "y", 0});
    file.Close();
    std::vector<std::string> expected = row.ahead;
    expected.insert(expected.end(), {std::string(kAnew) + row.befell, format, "y"});
    EXPECT_EQ(read(), expected) << row.befell;
  }
}

TEST(RecordFile, WhatWeighsIsSafeFromALossOfPowerAtOnceAndTheRestSoon) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString();
  const std::string ask = Framed("A?", 1), level = Framed("VR?", 1), mute = Framed("S=X", 1);
  const auto syncs = [&](std::chrono::milliseconds every, const std::vector<std::string>& frames) {
    RecordFile file({path, 0, 0, every});
    EXPECT_EQ(file.Open(), "");
    const int before = synced;
    for (const std::string& frame : frames) {
      const bool isReply = frame.find('=') != std::string::npos && frame != mute;
      const auto size = QFile(QString::fromStdString(path)).size();
      file.Put({isReply ? Kind::kDevice : Kind::kConsole, kStart, 0, frame, 0});
      while (QFile(QString::fromStdString(path)).size() == size) usleep(100);
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

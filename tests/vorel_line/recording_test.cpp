#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/scripted_port.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/direction.h"
#include "tools/vorel-line/events.h"
#include "tools/vorel-line/plot.h"
#include "tools/vorel-line/record_file.h"
#include "tools/vorel-line/record_reader.h"
#include "tools/vorel-line/replay.h"

namespace tarnwell::vorel_line {
namespace {

using test::Framed;

constexpr std::int64_t kStart = 1'700'000'000'000'000;

/// A session in short: seconds, ">" or "<" or "-", and the bytes.
struct Step {
  double at;
  char side;
  std::string bytes;
};

template <class Reader>
void Feed(Reader& reader, const std::vector<Step>& steps) {
  for (const auto& [at, side, bytes] : steps) {
    const Kind kind = side == '>' ? Kind::kConsole : side == '<' ? Kind::kDevice : Kind::kNote;
    reader.Take({kind, kStart + std::llround(at * 1e6), 0, bytes, 60});
  }
  reader.End();
}

TEST(Recording, EveryWholeRecordOfACutFileIsReadAndNoDamagedOne) {
  Encoder encoder;
  std::string file = Encoder::Header();
  std::vector<std::size_t> ends;
  // a long rest, a clock set back, within a record as well, bytes of every kind
  for (const std::int64_t at : {0ll, 1'000'000ll, 4'000'000'000ll, 3'000'000'000ll}) {
    file += encoder.Encode({Kind::kDevice, kStart + at, at == 0 ? -1500 : 1500, std::string("\0{}\xFF", 4), 0});
    ends.push_back(file.size());
  }
  for (std::size_t length = Encoder::Header().size(); length <= file.size(); ++length) {
    Decoder decoder;
    decoder.Feed(file.substr(0, length));
    Record record;
    std::size_t count = 0;
    Decoder::Result result = decoder.Next(record);
    for (; result == Decoder::Result::kRecord; result = decoder.Next(record)) ++count;
    EXPECT_EQ(result, Decoder::Result::kEnd) << length;
    EXPECT_EQ(count, std::upper_bound(ends.begin(), ends.end(), length) - ends.begin()) << length;
    if (count < 4) continue;
    EXPECT_TRUE(record.at == kStart + 3'000'000'000 && record.lasted == 1500 && record.bytes.size() == 4);
  }
  for (std::size_t at = 0; at < file.size(); ++at) {
    Decoder decoder;
    std::string damaged = file;
    damaged[at] = static_cast<char>(damaged[at] ^ 4);
    decoder.Feed(damaged);
    Record record;
    int count = 0;
    while (decoder.Next(record) == Decoder::Result::kRecord) ++count;
    EXPECT_LT(count, 4) << at;
  }
}

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
  ASSERT_TRUE(file.remove());
  EXPECT_EQ(put("one"), "");
  ASSERT_TRUE(file.open(QIODevice::Append) && file.write(QByteArray(64, '\0')) == 64);
  file.close();
  EXPECT_EQ(put("two"), "");
  std::string read;
  EXPECT_EQ(kExitFine, ReadFiles({path}, false, [&](const Record& record) { read += record.bytes; }));
  EXPECT_EQ(kExitDamaged, ReadFiles({path + ".damaged"}, false, [&](const Record& record) { read += record.bytes; }));
  EXPECT_EQ(read, "twoone");
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

TEST(Plot, HasCurvesAndABandForWhatStood) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString(), out = path + ".svg";
  const std::string level = Framed("VR?", 1), status = Framed("S?", 1);
  {
    RecordFile file({path, 0, 0});
    EXPECT_EQ(file.Open(), "");
    const auto put = [&](double at, Kind kind, const std::string& bytes) {
      file.Put({kind, kStart + std::llround(at * 1e6), 0, bytes, 0});
    };
    put(0, Kind::kNote, std::string(kStarted));
    EXPECT_EQ(DrawPlot({path}, out), kExitNothing);
    for (int i = 0; i < 60; ++i) {
      if (i >= 30 && i < 40 && i % 3 != 0) continue;  // it waits for an answer
      put(i, Kind::kConsole, level);
      if (i < 30 || i >= 40) put(i + 0.1, Kind::kDevice, Framed("VR=4" + std::to_string(i % 10) + ".5", 1));
      if (i >= 30 && i < 40) continue;
      put(i + 0.5, Kind::kConsole, status);
      put(i + 0.6, Kind::kDevice, Framed(i > 50 ? "S=OX" : "S=OT", 1));
    }
    file.Close();
  }
  EXPECT_EQ(DrawPlot({path}, out), kExitFine);
  QFile file(QString::fromStdString(out));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray picture = file.readAll();
  for (const char* text : {"RF level", "link lost", "RF muted", "22:13:30"})
    EXPECT_TRUE(picture.contains(text)) << text;
  EXPECT_FALSE(picture.contains("Temperature"));
  EXPECT_EQ(picture.count("stroke=\"#1b5e9c\""), 2) << "no curve over the time without an answer";
  EXPECT_EQ(DrawPlot({path}, path), kExitUnusable);
  EXPECT_EQ(DrawPlot({path}, "/dev/null.svg/a.svg"), kExitUnusable);
}

TEST(Events, ASessionAsAnOperatorsLog) {
  const std::string ask = Framed("A?", 1), status = Framed("S?", 1);
  std::vector<Step> steps{{0, '>', Framed("CT?", 1)},
                          {.02, '<', Framed("CT=60W C-BAND", 1)},
                          {1, '>', ask},
                          {1.02, '<', Framed("A=", 1)},
                          {2, '>', ask},
                          {2.02, '<', Framed("A=P", 1)},
                          {3, '>', ask},
                          {3.02, '<', Framed("A=p", 1)},
                          {4, '>', Framed("ZA", 1)},
                          {4.02, '<', Framed("A=", 1)},
                          {4.1, '>', ask},
                          {4.12, '<', Framed("A=", 1)},
                          {5, '>', status},
                          {5.01, '<', "{AS="},
                          {5.3, '<', "OT"},
                          {5.4, '<', Framed("S=OT", 1).substr(6)},
                          {6, '>', Framed("S=X", 1)},
                          {6.02, '<', Framed("S=OX", 1)}};
  // foreign, damaged, late: the third try is the last
  steps.insert(steps.end(), {{7, '>', status},
                             {7.02, '<', Framed("S=OT", 2)},
                             {7.1, '>', status},
                             {7.2, '<', "{AS=OTz}"},
                             {7.3, '>', status},
                             {9.6, '<', Framed("S=OT", 1)},
                             {10, '>', status},
                             {10.02, '<', Framed("S=OX", 1)}});
  // an answer that nobody awaited, another address, its device in a file of its own
  const std::string known = std::string(kKnown) + "E" + Framed("CT=7316 CONTROLLER", 5);
  steps.insert(steps.end(), {{11, '>', Framed("S=T", 1)},
                             {12, '-', known},
                             {12.1, '>', Framed("S=M", 5)},
                             {12.2, '<', Framed("S=M", 5)},
                             {13, '>', Framed("U=F", 5)},
                             {13.1, '<', Framed("U=F", 5)},
                             {13.2, '>', Framed("S?", 6)},
                             {13.3, '<', Framed("S=A", 6)}});
  std::string log;
  Events events([&](const Event& event) {
    const std::string address = event.address == 1 ? "" : std::to_string(event.address.value_or(-1)) + " ";
    log += address + event.type + " " + event.text + "\n";
  });
  std::string faults;
  Turns turns([&](const Turn& turn) {
    events.Take(turn);
    if (turn.fault != Fault::kNone) faults += std::string(FaultText(turn.fault)) + (turn.last ? "!" : ";");
    if (turn.what == What::kLate) faults += "late;";
  });
  Feed(turns, steps);
  EXPECT_EQ(faults, "from another address;bad check character;no answer!late;");
  EXPECT_EQ(log,
            "connected 60W C-BAND, address 1\n"
            "alarm POWER_AMP1_FAIL come\n"
            "alarm POWER_AMP1_FAIL gone, latched\n"
            "command clear alarms (ZA): no alarm\n"
            "alarm POWER_AMP1_FAIL cleared\n"
            "status online, RF on\n"
            "command RF muted (S=X): online, RF muted\n"
            "status online, RF muted\n"
            "link lost: no answer to S?\n"
            "link back\n"
            "command RF on (S=T): what became of it was not awaited\n"
            "5 command manual (S=M): manual\n"
            "5 status manual\n"
            "5 setting address 6 (U=F): address 6\n"
            "6 status automatic\n");
}

TEST(Direction, IsHeldForTheFramesBitsAndTheMarginAndForPiecesBehindOneAnother) {
  // ten bits a byte at 9600: 10.4 ms for ten bytes
  Direction direction;
  direction.Raise(1'000'000);
  EXPECT_TRUE(direction.IsRaised() && direction.Due() == 1'002'000);
  EXPECT_TRUE(!direction.MaySend(1'001'999) && direction.MaySend(1'002'000));
  direction.Sent(1'002'000, "9600,n,8,1", 10);
  EXPECT_EQ(direction.Due(), 1'000'000 + 10'000 + 10'416);
  direction.Sent(1'005'000, "9600,n,8,1", 10);
  EXPECT_EQ(direction.Due(), 1'000'000 + 10'000 + 2 * 10'416) << "behind what is still on the line";
  EXPECT_TRUE(!direction.ReleaseDue(1'030'831) && direction.ReleaseDue(1'030'832));
  direction.Release();
  direction.Raise(2'000'000);
  direction.Sent(2'040'000, "9600,n,8,1", 10);
  EXPECT_EQ(direction.Due(), 2'040'000 + 8'000 + 10'416) << "sent late, and whole all the same";
}

TEST(Turns, TellWhatTheConsoleTookACopyFor) {
  const std::string query = Framed("G?", 1), set = Framed("G=-3.5", 1), ask = Framed("U?", 1), here = Framed("U=A", 1);
  const struct {
    std::vector<Step> steps;
    const char* told;  ///< "echo " and the like with the request, a try's number where it isn't the first
  } cases[] = {
      {{{1, '>', query}, {1.05, '<', query}, {1.1, '<', set}, {2, '>', set}, {2.05, '<', set}, {2.1, '<', set}},
       "echo G? answer G? echo G=-3.5 answer G=-3.5 "},
      {{{1, '>', query},
        {1.005, '<', query},
        {1.1, '<', set},
        {3, '-', std::string(kStarted)},
        {4, '>', set},
        {4.1, '<', set}},
       "echo G? answer G? answer G=-3.5 "},
      {{{1, '>', set}, {1.005, '<', set}, {3.1, '>', ask}, {3.2, '<', here}, {4, '>', set}, {4.1, '<', set}},
       "answer U? answer G=-3.5 answer G=-3.5 "},
      {{{1, '>', set},
        {1.005, '<', set},
        {3.1, '>', ask},
        {3.105, '<', ask},
        {3.2, '<', here},
        {3.3, '>', set},
        {3.305, '<', set},
        {6, '>', query},
        {6.005, '<', query},
        {6.1, '<', set}},
       "echo U? answer U? echo G=-3.5 silence G=-3.5 echo G=-3.5 try 2 silence G=-3.5 try 2 echo G? answer G? "},
      {{{1, '>', set}, {1.005, '<', set}, {1.1, '>', set}, {1.2, '<', set}}, "answer G=-3.5 answer G=-3.5 "},
      {{{1, '>', set}, {1.005, '<', set}}, "echo G=-3.5 dropped G=-3.5 "},
  };
  for (const auto& [steps, expected] : cases) {
    std::string told;
    Turns turns([&](const Turn& turn) {
      const char* const what = turn.what == What::kEcho      ? "echo "
                               : turn.what == What::kAnswer  ? "answer "
                               : turn.what == What::kSilence ? "silence "
                               : turn.what == What::kDropped ? "dropped "
                                                             : "";
      if (*what == 0) return;
      told += what + turn.request + (turn.attempt > 1 ? " try " + std::to_string(turn.attempt) : "") + " ";
    });
    Feed(turns, steps);
    EXPECT_EQ(told, expected);
  }
}

TEST(Script, PlaysWhatCameWhenItCameAndTellsWhatWasNotRecorded) {
  Script script;
  const std::string ask = Framed("VR?", 1), set = Framed("S=X", 1), level = Framed("VR=1", 1);
  Feed(script, {{0, '>', ask},
                {.1, '<', level},
                {1, '>', set},
                {4, '>', ask},
                {4.2, '<', "{A"},
                {4.5, '<', "x}"},
                {5, '>', ask},
                {7.2, '<', level},
                {8, '>', set},
                {9, '>', set},
                {9.005, '<', set},
                {11.1, '>', Framed("U?", 1)},
                {11.2, '<', Framed("U=A", 1)}});
  const auto played = [&](const std::string& frame) {
    const auto reply = script.Next(frame);
    std::string text = reply ? reply->taken + "|" : "not recorded";
    if (!reply) return text;
    for (const Script::Piece& piece : reply->pieces) text += std::to_string(piece.after / 1000) + piece.bytes + " ";
    return text + (reply->last ? "again" : "");
  };
  EXPECT_EQ(played(ask), level + "|100" + level + " ");
  EXPECT_EQ(played(ask), "{Ax}|200{A 500x} ") << "in its pieces";
  EXPECT_EQ(played(ask), "|2200" + level + " ") << "too late then, and too late now";
  EXPECT_EQ(played(ask), "|2200" + level + " again") << "one more than the recording has";
  EXPECT_EQ(played(set), "|") << "silence is recorded too";
  EXPECT_EQ(played(set), set + "|5" + set + " ") << "confirmed by its copy, as the query behind it told";
  EXPECT_EQ(played(Framed("U?", 1)), Framed("U=A", 1) + "|100" + Framed("U=A", 1) + " ");
  EXPECT_EQ(played(set), set + "|5" + set + " again");
  EXPECT_EQ(played(Framed("VT?", 1)), "not recorded");
}

}  // namespace
}  // namespace tarnwell::vorel_line

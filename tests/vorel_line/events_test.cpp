#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <sstream>

#include "steps.h"
#include "tools/shared/csv.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/line_plot.h"
#include "tools/vorel-line/plot.h"
#include "tools/vorel-line/record_file.h"
#include "tools/vorel-line/record_reader.h"

namespace tarnwell::vorel_line {
namespace {

/// Address other than 1, type and text of each event, a line each; `timed`: the seconds ahead of it.
std::string LogOf(const std::vector<Step>& steps, bool timed = false) {
  std::string log;
  Events events([&](const Event& event) {
    if (timed) log += std::to_string((event.at - kStart) / 1'000'000) + " ";
    const std::string address = event.address == 1 || timed ? "" : std::to_string(event.address.value_or(-1)) + " ";
    log += address + event.type + " " + event.text + "\n";
  });
  Turns turns([&](const Turn& turn) { events.Take(turn); });
  Feed(turns, steps);
  events.End();
  return log;
}

/// Each lane with its bands as seconds, a hollow one in brackets.
std::string BandsOf(const std::vector<Step>& steps) {
  LinePlot plot;
  Feed(plot, steps);
  const tools::Chart chart = plot.Picture().charts.at(0);
  std::string told;
  for (int lane = 0; lane < chart.lanes.size(); ++lane) {
    told += chart.lanes[lane].toStdString() + ":";
    for (const tools::Band& band : chart.bands) {
      const auto second = [&](double at) { return std::to_string(static_cast<int>(at - chart.xSpan->first)); };
      const std::string span = second(band.from) + "-" + second(band.to);
      if (band.lane == lane) told += band.over ? " [" + span + "]" : " " + span;
    }
    told += "\n";
  }
  return told;
}

void Write(const std::string& path, const std::vector<Step>& steps) {
  RecordFile file({path, 0, 0});
  EXPECT_EQ(file.Open(), "");
  for (const Step& step : steps) file.Put(RecordOf(step));
  file.Close();
}

TEST(Events, ASessionAsAnOperatorsLog) {
  const std::string status = Framed("S?", 1);
  std::vector<Step> steps;
  Ask(steps, 0, "CT?", "CT=60W C-BAND");
  Ask(steps, 1, "A?", "A=");
  Ask(steps, 2, "A?", "A=P");
  Ask(steps, 3, "A?", "A=p");
  Ask(steps, 4, "ZA", "A=");
  Ask(steps, 4.1, "A?", "A=");
  steps.insert(steps.end(), {{5, '>', status},
                             {5.01, '<', "{AS="},
                             {5.3, '<', "OT"},
                             {5.4, '<', Framed("S=OT", 1).substr(6)},
                             {6, '>', Framed("S=X", 1)},
                             {6.02, '<', Framed("S=OX", 1)}});
  // foreign, damaged, late: the third try is the last
  steps.insert(steps.end(), {{7, '>', status},
                             {7.02, '<', Framed("S=OT", 2)},
                             {7.1, '>', status},
                             {7.2, '<', "{AS=OTz}"},
                             {7.3, '>', status},
                             {9.6, '<', Framed("S=OT", 1)}});
  Ask(steps, 10, "S?", "S=OX");
  // an answer that nobody awaited, another address, its device in a file of its own
  const std::string known = std::string(kKnown) + "E" + Framed("CT=7316 CONTROLLER", 5);
  steps.insert(steps.end(), {{11, '>', Framed("S=T", 1)}, {12, '-', known}});
  Ask(steps, 12.1, "S=M", "S=M", 5);
  Ask(steps, 13, "U=F", "U=F", 5);
  Ask(steps, 13.2, "S?", "S=A", 6);
  std::string faults;
  Turns turns([&](const Turn& turn) {
    if (turn.fault != Fault::kNone) faults += std::string(FaultText(turn.fault)) + (turn.last ? "!" : ";");
    if (turn.what == What::kLate) faults += "late;";
  });
  Feed(turns, steps);
  EXPECT_EQ(faults, "from another address;bad check character;no answer!late;");
  EXPECT_EQ(LogOf(steps),
            "connected 60W C-BAND, address 1\n"
            "alarm POWER_AMP1_FAIL come\n"
            "alarm POWER_AMP1_FAIL gone, latched\n"
            "command clear alarms (ZA): no alarm; answered 23:13:24.050\n"
            "alarm POWER_AMP1_FAIL cleared\n"
            "status online, RF On\n"
            "command RF Mute (User) (S=X): online, RF Mute (User); answered 23:13:26.020\n"
            "status online, RF Mute (User)\n"
            "link lost: no answer to S?\n"
            "link back\n"
            "command RF On (S=T): what became of it was not awaited\n"
            "5 command manual (S=M): manual; answered 23:13:32.150\n"
            "5 status manual\n"
            "5 setting address 6 (U=F): address 6; answered 23:13:33.050\n"
            "6 status automatic\n");
}

TEST(Events, ACommandStandsWhereItWasFirstSentAndALoosePlugIsOneLine) {
  const std::string mute = Framed("S=X", 1);
  std::vector<Step> steps{{1, '>', mute},
                          {2, '-', std::string(kDeviceGone)},
                          {3.1, '-', std::string(kDeviceBack)},
                          {4, '>', mute},
                          {4.5, '<', Framed("S=OX", 1)},
                          {10, '>', mute},
                          {12.5, '>', mute},
                          {15, '>', mute}};
  for (int i = 0; i < 9; ++i) {
    steps.push_back({20 + i * 1.0, '-', std::string(kDeviceGone)});
    steps.push_back({20.5 + i, '-', std::string(kDeviceBack)});
  }
  Ask(steps, 50, "G?", "G=0.0");
  EXPECT_EQ(LogOf(steps, true),
            "1 command status X (S=X): status OX; answered 23:13:24.500 in try 2\n"
            "2 recorder device gone\n"
            "3 recorder device back\n"
            "4 status status OX\n"
            "10 command status X (S=X): no valid answer in 3 tries, the last: no answer\n"
            "17 link lost: no answer to S=X\n"
            "20 recorder device gone\n"
            "20 recorder device back\n"
            "50 recorder device back, after 16 changes since 23:13:41.000\n"
            "50 link back\n");
}

/// What was asked and answered, and what is told besides "connected" and of commands.
TEST(Events, SwitchoversAndWhatAnotherHandChanged) {
  const struct {
    const char* model;
    std::vector<std::pair<const char*, const char*>> asked;
    const char* log;
  } cases[] = {
      {"CT=7316 CONTROLLER",
       {{"O?", "O=12"},
        {"O?", "O=12"},
        {"PA?", "PA=1"},
        {"PA=2", "PA=2"},
        {"O?", "O=2"},
        {"O?", "O="},
        {"PA?", "PA=?"},
        {"PB?", "PB=2"},
        {"PB?", "PB=3"},
        {"CM?", "CM=2"},
        {"CP?", "CP=N"},
        {"CM?", "CM=1"},
        {"CP?", "CP=A"}},
       "amplifiers online SSPA1, SSPA2|path A SSPA1|path A SSPA2; before SSPA1|amplifiers online SSPA2; before SSPA1, "
       "SSPA2|amplifiers online none; before SSPA2|path A not known; before SSPA2|path B SSPA2|path B SSPA3; before "
       "SSPA2|configuration 1:2|priority path none|configuration 1:1; before 1:2|priority path A; before none|"},
      {"CT=60W C-BAND",
       {{"G?", "G=0.0"},
        {"G=-3.5", "G=-3.5"},
        {"G?", "G=-3.50"},
        {"G?", "G=-10.0"},
        {"T1?", "T1=30"},
        {"T1?", "T1=D"},
        {"CP?", "CP=1"},
        {"CP?", "CP=2"},
        {"CF?", "CF=E"},
        {"CF?", "CF=D"},
        {"VT?", "VT=40"},
        {"VT?", "VT=41"}},
       "gain adjust -10.0 dB; before -3.50 dB|RF minimum disabled; before 30 dBm|thermal fan control off; before on|"},
      {"CT=60W C-BAND",
       {{"S?", "S=OT"}, {"S?", "S=OTB"}, {"S?", "S=OXB"}, {"S?", "S=OXD"}, {"S?", "S=O"}},
       "online, RF On|online, RF Mute (Amp Module Fail)|online, RF Mute (Direct I/O)|online|"}};
  for (const auto& row : cases) {
    std::vector<Step> steps;
    Ask(steps, 0, "CT?", row.model);
    for (const auto& [request, reply] : row.asked) Ask(steps, steps.back().at + 1, request, reply);
    std::string told;
    std::istringstream log(LogOf(steps));
    for (std::string type, text; log >> type && std::getline(log >> std::ws, text);) {
      if (type == "status" || type == "changed") told += text + "|";
    }
    EXPECT_EQ(told, row.log);
  }
}

TEST(Plot, BandsEndWithTheirDeviceTellLatchedAlarmsAndStandInOrderOfTime) {
  std::vector<Step> amplifier, controller;
  Ask(amplifier, 0, "CT?", "CT=60W C-BAND");
  const std::pair<const char*, const char*> asked[] = {{"A?", "A="},
                                                       {"A?", "A=P"},
                                                       {"S?", "S=OTB"},
                                                       {"A?", "A=p"},
                                                       {"A?", "A=KP"},
                                                       {"U=F", "U=F"},
                                                       {"S?", "S=OT"},
                                                       {"A?", "A="},
                                                       {"VR?", "VR=40.0"},
                                                       {"A?", "A=k"},
                                                       {"CT?", "CT=240W C-BAND"},
                                                       {"A?", "A="}};
  for (const auto& [request, reply] : asked)
    Ask(amplifier, amplifier.back().at + 10, request, reply, amplifier.size() > 12 ? 6 : 1);
  EXPECT_EQ(BandsOf(amplifier),
            "POWER_AMP1_FAIL: 20-40 [40-50] 50-80\nRF Mute: 30-70\n-10V_RAIL_HIGH: 50-80 [100-110]\n");
  Ask(controller, 0, "CT?", "CT=7316 CONTROLLER");
  for (const char* online : {"O=2", "O=23", "O=13"}) Ask(controller, controller.back().at + 10, "O?", online);
  EXPECT_EQ(BandsOf(controller), "SSPA 2 online: 10-30\nSSPA 3 online: 20-30\nSSPA 1 online: 30-30\n");
}

TEST(Plot, HasCurvesAndABandForWhatStood) {
  QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("a.rec")).toStdString(), out = path + ".svg";
  std::vector<Step> steps{{0, '-', std::string(kStarted)}};
  Write(path, steps);
  EXPECT_EQ(DrawPlot({path}, out), kExitNothing);
  steps.clear();
  for (int i = 0; i < 60; ++i) {
    // From 30 to 40 it waits for an answer.
    if (i < 30 || i >= 40) {
      Ask(steps, i, "VR?", ("VR=4" + std::to_string(i % 10) + ".5").c_str());
      Ask(steps, i + .5, "S?", i > 50 ? "S=OX" : "S=OT");
    } else if (i % 3 == 0) {
      steps.push_back({i * 1.0, '>', Framed("VR?", 1)});
    }
  }
  Write(path, steps);
  EXPECT_EQ(DrawPlot({path}, out), kExitFine);
  QFile file(QString::fromStdString(out));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray picture = file.readAll();
  for (const char* text : {"RF level", "link lost", "RF Mute", "22:13:30"}) EXPECT_TRUE(picture.contains(text)) << text;
  EXPECT_FALSE(picture.contains("Temperature"));
  EXPECT_EQ(picture.count("stroke=\"#1b5e9c\""), 2) << "no curve over the time without an answer";
  EXPECT_EQ(DrawPlot({path}, path), kExitUnusable);
  const std::string other = folder.filePath(QStringLiteral("b.svg")).toStdString();
  ASSERT_TRUE(QFile::copy(QString::fromStdString(path), QString::fromStdString(other)));
  EXPECT_EQ(DrawPlot({path}, other), kExitUnusable) << "a picture in place of another recording";
  EXPECT_EQ(DrawPlot({path}, "/dev/null.svg/a.svg"), kExitUnusable);
}

class Files : public testing::Test {
 protected:
  std::string Path(const char* name) const { return m_folder.filePath(QLatin1String(name)).toStdString(); }

  QTemporaryDir m_folder;
};

TEST_F(Files, AreReadInTheOrderOfTheirBeginWhateverAShellGives) {
  Write(Path("a.rec"), {{300, '-', "newest"}});
  Write(Path("a.rec.1"), {{200, '-', "newer"}});
  Write(Path("a.rec.2"), {{100, '-', "new"}});
  Write(Path("a.rec.10"), {{0, '-', "old"}});
  std::string read;
  EXPECT_EQ(kExitFine, ReadFiles({Path("a.rec"), Path("a.rec.1"), Path("a.rec.10"), Path("a.rec.2")}, false,
                                 [&](const Record& record) { read += record.bytes + " "; }));
  EXPECT_EQ(read, "old new newer newest ");
}

TEST_F(Files, AreWaitedForWhereTheyAreFollowedAndTellNoSpreadsheetWhatToDo) {
  const auto events = [this](const char* format) {
    return QStringList{QStringLiteral("events"), QString::fromStdString(Path("a.rec")), QLatin1String(format)};
  };
  QProcess follower;
  follower.start(QStringLiteral(VOREL_LINE), events("--follow"));
  follower.setReadChannel(QProcess::StandardError);
  ASSERT_TRUE(follower.waitForReadyRead());
  std::vector<Step> steps;
  Ask(steps, 0, "CT?", "CT==1+1");
  Write(Path("a.rec"), steps);
  follower.setReadChannel(QProcess::StandardOutput);
  EXPECT_TRUE(follower.waitForReadyRead() && follower.readAll().contains("connected"));
  follower.terminate();
  EXPECT_TRUE(follower.waitForFinished() && follower.exitCode() == 0);
  for (const char* format : {"--csv", "--json"}) {
    QProcess reader;
    reader.start(QStringLiteral(VOREL_LINE), events(format));
    EXPECT_TRUE(reader.waitForFinished());
    const QByteArray printed = reader.readAll();
    EXPECT_TRUE(printed.contains(",\"'=1+1, address 1\",") || printed.contains("\"utc\":\"2023-11-14T22:13:20.050Z\""))
        << printed.toStdString();
  }
  const std::pair<const char*, const char*> cells[] = {{"=A1", "'=A1"},       {"+1", "+1"},      {"-3.5", "-3.5"},
                                                       {"@a", "'@a"},         {"-1-1", "'-1-1"}, {"a=b", "a=b"},
                                                       {"-\"", "\"'-\"\"\""}, {"", ""}};
  for (const auto& [text, cell] : cells) EXPECT_EQ(tools::CsvCell(text), cell);
}

}  // namespace
}  // namespace tarnwell::vorel_line

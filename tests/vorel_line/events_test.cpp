#include <QProcess>

#include "steps.h"
#include "tools/shared/csv.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/line_plot.h"
#include "tools/vorel-line/plot.h"
#include "tools/vorel-line/readers.h"

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

TEST(Events, ASessionAsAnOperatorsLog) {
  std::vector<Step> steps;
  Ask(steps, 0, "CT?", "CT=60W C-BAND");
  AskAll(steps, .95, "A= A=P A=p");
  Ask(steps, 4, "ZA", "A=");
  Ask(steps, 4.1, "A?", "A=");
  // then foreign, damaged, late: the third try is the last
  for (const Step& step :
       StepsOf("5>S? 5.01<{AS= 5.3<OT" + Framed("S=OT", 1).substr(6) + " 6>S=X 6.02<S=OX 7>S? 7.02<" +
               Framed("S=OT", 2) + " 7.1>S? 7.2<{AS=OTz} 7.3>S? 9.6<S=OT"))
    steps.push_back(step);
  Ask(steps, 10, "S?", "S=OX");
  // an answer that nobody awaited, another address, its device in a file of its own
  const std::string known = std::string(kKnown) + "E" + Framed("CT=7316 CONTROLLER", 5);
  steps.insert(steps.end(), {{11, '>', Framed("S=T", 1)}, {12, '-', known}});
  Ask(steps, 12.1, "S=M", "S=M", 5);
  Ask(steps, 13, "U=F", "U=F", 5);
  Ask(steps, 13.2, "S?", "S=A", 6);
  Ask(steps, 13.4, "S?", "S=A", 5);
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
            "command RF On (S=T): no answer to it was awaited, or recorded\n"
            "5 command manual (S=M): manual; answered 23:13:32.150\n"
            "5 status manual\n"
            "5 setting address 6 (U=F): address 6; answered 23:13:33.050\n"
            "6 status automatic\n"
            "5 status status A\n");
}

TEST_F(Files, ACommandStandsWhereItWasFirstSentAndALoosePlugIsOneLine) {
  std::vector<Step> steps = StepsOf("1>S=X 2-device_gone 3.1-device_back 4>S=X 4.5<S=OX 10>S=X 12.5>S=X 15>S=X");
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
            "38 recorder device back since 23:13:48.500, after 16 changes from 23:13:41.000\n"
            "50 link back\n");
  steps = StepsOf("1>G=-3.5 1.005<G=-3.5 3.1>U? 3.2<U=A");
  EXPECT_EQ(LogOf(steps), "command gain adjust -3.5 dB (G=-3.5): gain adjust -3.5 dB; answered 23:13:21.005\n");
  Write(steps);
  testing::internal::CaptureStdout();
  PrintShow({Path()}, false, false);
  const std::string told = testing::internal::GetCapturedStdout();
  EXPECT_NE(told.find(" < {AG=-3.5*}  gain adjust -3.5 dB [5.0 ms], as what"), std::string::npos) << told;
}

/// What is told of each model's answers besides "connected" and of commands.
TEST(Events, SwitchoversAndWhatAnotherHandChanged) {
  const struct {
    const char* model;
    const char* replies;
    const char* log;
  } cases[] = {
      {"CT=7316 CONTROLLER", "O=12 O=12 PA=1 !PA=2 O=2 O= PA=? PB=2 PB=3 CM=2 CP=N CM=1 CP=A",
       "amplifiers online SSPA1, SSPA2|path A SSPA1|path A SSPA2; before SSPA1|amplifiers online SSPA2; before SSPA1, "
       "SSPA2|amplifiers online none; before SSPA2|path A not known; before SSPA2|path B SSPA2|path B SSPA3; before "
       "SSPA2|configuration 1:2|priority path none|configuration 1:1; before 1:2|priority path A; before none|"},
      {"CT=60W C-BAND", "G=0.0 !G=-3.5 G=-3.50 G=-10.0 T1=30 T1=D CP=1 CP=2 CF=E CF=D VT=40 VT=41",
       "gain adjust -10.0 dB; before -3.50 dB|RF minimum disabled; before 30 dBm|thermal fan control off; before on|"},
      {"CT=60W C-BAND", "S=OT S=OTB S=OXB S=OXD S=O",
       "online, RF On|online, RF Mute (Amp Module Fail)|online, RF Mute (Direct I/O)|online|"}};
  for (const auto& row : cases) {
    std::vector<Step> steps;
    Ask(steps, 0, "CT?", row.model);
    AskAll(steps, 1, row.replies);
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
  AskAll(amplifier, 10, "A= A=P S=OTB A=p A=KP !U=F");
  AskAll(amplifier, 10, "S=OT A= VR=40.0 A=k", 6);
  Ask(amplifier, amplifier.back().at + 10, "CT?", "CT=240W C-BAND", 6);
  AskAll(amplifier, 10, "A=", 6);
  EXPECT_EQ(BandsOf(amplifier),
            "POWER_AMP1_FAIL: 20-40 [40-50] 50-80\nRF Mute: 30-70\n-10V_RAIL_HIGH: 50-80 [100-110]\n");
  Ask(controller, 0, "CT?", "CT=7316 CONTROLLER");
  AskAll(controller, 10, "O=2 O=23 O=13");
  EXPECT_EQ(BandsOf(controller), "SSPA 2 online: 10-30\nSSPA 3 online: 20-30\nSSPA 1 online: 30-30\n");
}

TEST_F(Files, MakeAPlotWithCurvesAndABandForWhatStood) {
  const std::string out = Path(".svg");
  Write({{0, '-', std::string(kStarted)}});
  EXPECT_EQ(DrawPlot({Path()}, out), kExitNothing);
  std::vector<Step> steps;
  for (int i = 0; i < 60; ++i) {
    // From 30 to 40 it waits for an answer.
    if (i < 30 || i >= 40) {
      Ask(steps, i, "VR?", ("VR=4" + std::to_string(i % 10) + ".5").c_str());
      Ask(steps, i + .5, "S?", i > 50 ? "S=OX" : "S=OT");
    } else if (i % 3 == 0) {
      steps.push_back({i * 1.0, '>', Framed("VR?", 1)});
    }
  }
  Write(steps);
  EXPECT_EQ(DrawPlot({Path()}, out), kExitFine);
  QFile file(QString::fromStdString(out));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray picture = file.readAll();
  for (const char* text : {"RF level", "link lost", "RF Mute", ":13:30"}) EXPECT_TRUE(picture.contains(text)) << text;
  EXPECT_FALSE(picture.contains("Temperature"));
  EXPECT_EQ(picture.count("stroke=\"#1b5e9c\""), 2) << "no curve over the time without an answer";
  Write(steps, "2.svg");
  for (const std::string& taken : {Path(), Path("2.svg"), std::string("/dev/null.svg/a.svg")})
    EXPECT_EQ(DrawPlot({Path()}, taken), kExitUnusable) << taken;
}

TEST_F(Files, AreReadInTheOrderOfTheirBeginWhateverAShellGives) {
  Write({{300, '-', "newest"}});
  Write({{200, '-', "newer"}}, ".1");
  Write({{100, '-', "new"}}, ".2");
  Write({{0, '-', "old"}}, ".10");
  std::string read;
  EXPECT_EQ(kExitFine, ReadFiles({Path(), Path(".1"), Path(".10"), Path(".2")}, false,
                                 [&](const Record& record) { read += record.bytes + " "; }));
  EXPECT_EQ(read, "old new newer newest ");
}

TEST_F(Files, AreWaitedForWhereTheyAreFollowedAndTellNoSpreadsheetWhatToDo) {
  const auto start = [this](QProcess& program, const char* format) {
    program.start(QStringLiteral(VOREL_LINE),
                  {QStringLiteral("events"), QString::fromStdString(Path()), QLatin1String(format)});
  };
  QProcess follower;
  start(follower, "--follow");
  follower.setReadChannel(QProcess::StandardError);
  ASSERT_TRUE(follower.waitForReadyRead());
  std::vector<Step> steps;
  Ask(steps, 0, "CT?", "CT==1+1");
  Write(steps);
  follower.setReadChannel(QProcess::StandardOutput);
  EXPECT_TRUE(follower.waitForReadyRead() && follower.readAll().contains("connected"));
  follower.terminate();
  EXPECT_TRUE(follower.waitForFinished() && follower.exitCode() == 0);
  for (const auto& [format, text] :
       {std::pair{"--csv", ",\"'=1+1, address 1\","}, {"--json", "\"utc\":\"2023-11-14T22:13:20.050Z\""}}) {
    QProcess reader;
    start(reader, format);
    EXPECT_TRUE(reader.waitForFinished() && reader.readAll().contains(text)) << format;
  }
  const std::string show = "ulimit -f 0; " VOREL_LINE " show " + Path() + " > " + Path(".txt") + " 2> /dev/null";
  EXPECT_EQ(WEXITSTATUS(std::system(show.c_str())), kExitUnusable);
  const std::pair<const char*, const char*> cells[] = {{"=A1", "'=A1"},      {"+1", "+1"},      {"-3.5", "-3.5"},
                                                       {"@a", "'@a"},        {"-1-1", "'-1-1"}, {"a=b", "a=b"},
                                                       {"-\"", "\"'-\"\"\""}};
  for (const auto& [text, cell] : cells) EXPECT_EQ(tools::CsvCell(text), cell);
}

}  // namespace
}  // namespace tarnwell::vorel_line

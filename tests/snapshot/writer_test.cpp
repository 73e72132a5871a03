#include "writer_test.h"

#include <fstream>
#include <sstream>

#include "sim/amplifier.h"
#include "sim/controller.h"
#include "snapshot/snapshot_line.h"

namespace tarnwell::test {
namespace {

/// The bytes of a file that is given as a line a line: the code of the check character, a blank, the text.
std::string Example(const char* name) {
  std::ifstream lines(std::string(EXAMPLES "/") + name);
  std::string bytes;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t blank = line.find(' ');
    std::string text = platform::ToDevice(QString::fromStdString(line.substr(blank + 1)));
    text.resize(79, ' ');
    bytes += text + static_cast<char>(std::stoi(line)) + "\r\n";
  }
  return bytes;
}

TEST_F(WriterTest, AnAmplifiersFileByteByByte) {
  Use("c240", "", "842");
  auto& amplifier = dynamic_cast<sim::Amplifier&>(*m_device);
  amplifier.State().gain = 0.5;
  amplifier.SetLevel(43.2);
  amplifier.State().thresholds[1] = 47.0;
  for (const char letter : {'L', 'T', 'X', 'Z'}) m_device->Alarms().Set(letter, sim::AlarmBoard::State::kLatched);
  m_replies = {{"V5?", "V5=5.02"},    {"V11?", "V11=11.04"},   {"V11LC?", "V11LC=11.01"},
               {"V14?", "V14=14.10"}, {"V-10?", "V-10=-9.98"}, {"CV?", "CV=0264C-01 V6.0"}};
  m_form.txtSnapShotID.SetText(QStringLiteral("rack 2 after service"));
  EXPECT_EQ(Write(), Example("amplifier.txt"));
  EXPECT_TRUE(m_complete);
}

TEST_F(WriterTest, AControllersFileByteByByte) {
  Use("controller");
  m_shared.ConnectAddress = 4;
  m_port.SetAddress(4);
  m_device->SetAddress(4);
  auto& controller = dynamic_cast<sim::Controller&>(*m_device);
  controller.State().priority = 'A';
  m_device->Alarms().Set('X', sim::AlarmBoard::State::kActive);
  m_replies = {{"CT?", "CT=7316"}};
  m_form.txtSnapShotID.SetText(QStringLiteral("hub B weekly check"));
  m_now = QDateTime(QDate(2007, 11, 2), QTime(16, 5, 12));
  EXPECT_EQ(Write(), Example("controller.txt"));
  EXPECT_TRUE(m_complete);
}

/// " R00? R01? ..."
std::string Points(const char* tag, int first, int last) {
  std::string commands;
  for (int i = first; i <= last; ++i)
    commands += std::string(" ") + tag + (i < 10 ? "0" : "") + std::to_string(i) + "?";
  return commands;
}

struct DeviceRow {
  const char* kind;
  const char* firmware;
  const char* platform;
  const char* commands;  ///< but for the tables'
  int lines;
  int bar;
};

class EveryDevice : public WriterTest, public testing::WithParamInterface<DeviceRow> {};

TEST_P(EveryDevice, IsAskedWhatItHas) {
  const DeviceRow& row = GetParam();
  Use(row.kind, row.firmware, row.platform);
  EXPECT_EQ(Lines().size(), row.lines);
  EXPECT_EQ(Bar(), row.bar);
  std::string commands = row.commands;
  if (m_shared.SSPAType != link::kRedundancyController) {
    commands += m_shared.FirmwareClass == 1
                    ? " H-050? H-025? H+000? H+025? H+050? H+075? H+100? H+125?" + Points("R", 0, 25)
                    : Points("RT", 1, 3) + Points("H", 1, 8) + Points("R", 0, 25) + Points("P", 0, 40);
  }
  EXPECT_EQ(m_port.Commands(), commands);

  double previous = -1.0;
  std::istringstream transcript(m_port.TimedTranscript());
  for (std::string line; std::getline(transcript, line);) {
    if (line.back() != '?') continue;
    const double at = std::stod(line);
    // 0.02 s to the answer, and the pause
    EXPECT_GE(at - previous, 0.05 + 0.02) << line;
    previous = at;
  }
}

INSTANTIATE_TEST_SUITE_P(
    , EveryDevice,
    testing::Values(
        DeviceRow{"c60", "0264C-01 V6.2", "0857E",
                  "CT? U? S? VR? VR2? G? T1? T2? T3? VT? A? V5? V11? V14? V-10? CV? CH? CP? CA? CX? CS?", 56, 104},
        DeviceRow{"c120", "0264C-01 V6.0", "0857",
                  "CT? U? TX? S? VR? G? T1? T2? VT? A? V5? V11? V14? V-10? CV? CH? CP? CA? CX? CS?", 56, 104},
        DeviceRow{"c240", "0264C-01 V6.2", "0842",
                  "CT? U? TX? S? VR? G? T1? T2? VT? VT2? A? V5? V11? V11LC? V14? V-10? CV? CH? CP? CA? CX? CS? CF?", 56,
                  104},
        DeviceRow{"c240", "0264C-01 V5.9", "",
                  "CT? U? S? VR? G? T1? T2? VT? VT2? A? V5? V11? V14? V-10? CV? CA? CX? CS?", 46, 103},
        DeviceRow{"k40", "0264C-01 V6.2", "0857E",
                  "CT? U? S? VR? G? T1? T2? VT? A? V5? V11? V14? V-10? CV? CH? CP? CA? CX? CS?", 56, 104},
        DeviceRow{"unknown", "0264C-01 V6.2", "0712/0358",
                  "CT? U? TX? S? VR? G? T1? T2? VT? VT2? A? V5? V11? V14? V-10? CV? CH? CP? CA? CX? CS? CF?", 56, 104},
        DeviceRow{"controller", "", "", "CT? U? S? A? CV? CM? CP? O? PA? PB?", 16, 53}));

TEST_F(WriterTest, WhatADeviceHasNotIsToldWithoutAsking) {
  Use("k40", "0264C-01 V5.4");
  const QStringList lines = Lines();
  for (const char* line :
       {"[transceiver] NA", "[reflected rf level] NA", "[reflected rf max] NA", "[temp amp2] NA", "[9.3v rail] 9.30 V",
        "[11v lc rail] NA", "[hw platform] 0712/0358", "[pin diodes] NA", "[thermal fan control] NA",
        "[rf temp comp points (°C,dB)] NA", "[pin diode table (dB,DAC)] NA",
        "[sys temp comp points (°C,dB)] (-050, 2.5), (-025, 1.5), (+000, .5)"}) {
    EXPECT_TRUE(lines.contains(QString::fromUtf8(line))) << line << "\n" << lines.join(QLatin1Char('\n')).toStdString();
  }
}

TEST_F(WriterTest, AFailedQueryCostsItsOwnLinesAlone) {
  for (const char* kind : {"c240", "c60", "k40", "controller"}) {
    Use(kind);
    Write();
    const int bar = Bar();
    std::istringstream commands(m_port.Commands());
    for (std::string command; commands >> command;) {
      const QString changed = QString::fromStdString(Changed(command, std::nullopt));
      const QStringList lines = changed.split(QStringLiteral(" | "));
      const bool controller = m_shared.SSPAType == link::kRedundancyController;
      const int expected = command == "S?"                  ? (controller ? 2 : 6)
                           : command == "O?"                ? 3
                           : command == "A?" && !controller ? 2
                                                            : 1;
      EXPECT_EQ(lines.size(), expected) << kind << " " << command;
      for (const QString& line : lines) {
        EXPECT_EQ(line.count(QLatin1String("(#ERR, #ERR)")) + line.endsWith(QLatin1String("] #ERR")), 1)
            << line.toStdString();
      }
      EXPECT_TRUE(m_complete && Bar() == bar) << command;
    }
    EXPECT_TRUE(m_desktop.TakeMessages().isEmpty());
  }
}

TEST_F(WriterTest, ADeviceThatFallsSilentLeavesAWholeFileOfErrors) {
  Use("k80", "", "0842");
  m_replies["V11?"] = "V11=9.31";
  m_port.AnswerAlways([this, silent = false](const std::string& command) mutable -> std::optional<std::string> {
    silent = silent || command == "V11?";
    return silent ? std::nullopt : m_device->Answer(command);
  });
  const QStringList lines = Lines();
  EXPECT_EQ(lines.size(), 56);
  EXPECT_TRUE(m_complete && m_shared.CommsLost);
  EXPECT_EQ(Bar(), 104);
  const qsizetype from = lines.indexOf(QStringLiteral("[9.3v rail] #ERR"));
  ASSERT_EQ(from, 23);
  for (const QString& line : lines.mid(from)) EXPECT_TRUE(line.contains(QLatin1String("#ERR"))) << line.toStdString();
  EXPECT_EQ(lines.last(), QStringLiteral("[pin diode table (dB,DAC)] (#ERR, #ERR)"));
}

struct ReplyRow {
  const char* kind;
  const char* command;
  std::string reply;
  const char* changed;
};

TEST_F(WriterTest, WhatRepliesBecome) {
  const ReplyRow rows[] = {
      {"c240", "CT?", "CT=ABCDEFGHIJKLMNOPQ", "[sspa] ABCDEFGHIJKLMNOPQ"},
      {"c240", "CT?", "CT=ABCDEFGHIJKLMNOPQR", "[sspa] #ERR"},
      {"c240", "CT?", "CT=", "[sspa]"},
      {"c240", "CT?", "CT=60}W", "[sspa] #ERR"},
      {"c240", "CT?", "}CT=60W", "[sspa] #ERR"},
      {"c240", "CT?", "CT=A\r\nB\x1B\xB5", "[sspa] A??B?µ"},
      {"c240", "U?", "U=@", "[address] 0"},
      {"c240", "U?", "U=_ and more", "[address] 31"},
      {"c240", "U?", "U=\xFF", "[address] 191"},
      {"c240", "TX?", "TX=0", "[transceiver] GENERIC"},
      {"c240", "TX?", "TX=1 ", "[transceiver] #UNKNOWN"},
      {"c240", "S?", "S=",
       "[operating state] #UNKNOWN | [temp comp] #UNKNOWN | [sspa beeper] #UNKNOWN | [eeprom storage] #UNKNOWN | "
       "[rf output] #UNKNOWN"},
      {"c240", "S?", "S=MSZYLHCTXFRQA",
       "[operating state] STANDBY | [sspa beeper] ON | [comms mode] LLO | [rf output] RF MUTE (USER)"},
      {"c240", "S?", "S=MZLCUDBXF",
       "[operating state] MAINTENENCE | [temp comp] OFF | [sspa beeper] #UNKNOWN | [eeprom storage] OFF | "
       "[comms mode] RLO | [rf output] RF MUTE (AMP MODULE FAIL)"},
      {"c240", "S?", "S=OHLQRXDT", "[temp comp] MAX | [rf output] RF MUTE (DIRECT I/O)"},
      {"c240", "VR?", "VR=-1.50E", "[rf level] -1.50E dBm"},
      {"c240", "T1?", "T1=D ", "[rf min] D  dBm"},
      {"c240", "T2?", "T2=D", "[rf max] DISABLED"},
      {"c240", "VT?", "VT=41.5", "[temp amp1] 42°C"},
      {"c240", "VT2?", "VT2=-0.4", "[temp amp2] 0°C"},
      {"c240", "VT?", "VT=-7.5C", "[temp amp1] -8°C"},
      {"c240", "A?", "A=CBA", "[active alarms] 5V_RAIL_LOW, 5V_RAIL_HIGH, 11V_RAIL_LOW"},
      {"c240", "A?", "A=DaCVBHA",
       "[active alarms] 5V_RAIL_LOW, 5V_RAIL_HIGH, 11V_RAIL_LOW | [active alarms] 11V_RAIL_HIGH, PS_THERMAL, #UNKNOWN "
       "| [latched alarms] 5V_RAIL_LOW"},
      {"c60", "A?", "A=Hn", "[active alarms] FAN_ALARM | [latched alarms] REFLECTED_RF_LEVEL_HIGH"},
      {"c60", "VR2?", "VR2=", "[reflected rf level]  dBm"},
      {"c60", "T3?", "T3=12", "[reflected rf max] 12 dBm"},
      {"k80", "V11?", "V12=1", "[9.3v rail] #ERR"},
      {"c240", "V-10?", "V-10=-9.98", "[-10v rail] -9.98 V"},
      {"c240", "RT01?", "RT01.25=D", "[rf temp comp points (°C,dB)] (25, D), (25, 0), (D, D)"},
      {"c240", "RT01?", "RT01=D", "[rf temp comp points (°C,dB)] (D, D), (25, 0), (D, D)"},
      {"c240", "RT01?", "RT01.25", "[rf temp comp points (°C,dB)] (#ERR, #ERR), (25, 0), (D, D)"},
      {"c240", "RT01?", "RT01 25=1", "[rf temp comp points (°C,dB)] (#ERR, #ERR), (25, 0), (D, D)"},
      {"c240", "RT01?", "RT01.1=2=3", "[rf temp comp points (°C,dB)] (1, 2=3), (25, 0), (D, D)"},
      {"c240", "H08?", "H08.125=-10.25", "[sys temp comp points (°C,dB)] (D, D), (125, -10.25)"},
      {"k40", "H+025?", "H+025=0=D", "[sys temp comp points (°C,dB)] (+025, D), (+050, -.5), (+075, -1)"},
      {"k40", "H+100?", "H+100=0.5", "[sys temp comp points (°C,dB)] (+100, 0.5), (+125, D)"},
      {"k40", "H+100?", "H+100.1=2", "[sys temp comp points (°C,dB)] (#ERR, #ERR), (+125, D)"},
      {"c240", "R24?", "R24=P40.5V0", "[rf level table (dBm,V)] (40, 0), (D, D)"},
      {"c240", "R24?", "R24=PxV-1.0 ", "[rf level table (dBm,V)] (0, -1.0 ), (D, D)"},
      {"c240", "R24?", "R24=V1P2", "[rf level table (dBm,V)] (#ERR, #ERR), (D, D)"},
      {"c240", "R24?", "R24=40", "[rf level table (dBm,V)] (#ERR, #ERR), (D, D)"},
      {"c240", "R24?", "R24=P40VD", nullptr},
      {"c240", "P40?", "P40= 255", "[pin diode table (dB,DAC)] (40, 255)"},
      {"c240", "P40?", "P40=-1.5", "[pin diode table (dB,DAC)] (40, -2)"},
      {"controller", "S?", "S=MAYZ", "[comms mode] LLO"},
      {"controller", "S?", "S=Q", "[operating mode] #UNKNOWN"},
      {"controller", "A?", "A=EASWxX",
       "[active alarms] #UNKNOWN, EEPROM, SYSTEM | [active alarms] WAVEGUIDE_1, WAVEGUIDE_2"},
      {"controller", "CM?", "CM=21", "[configuration] 1:1"},
      {"controller", "CM?", "CM=3", "[configuration] #UNKNOWN"},
      {"controller", "CP?", "CP=BA", "[priority] PATH A"},
      {"controller", "CP?", "CP=?", "[priority] #UNKNOWN"},
      {"controller", "O?", "O=", "[sspa1 state] STANDBY/ALARM | [sspa3 state] STANDBY/ALARM"},
      {"controller", "PA?", "PA=?", "[path a] #UNKNOWN"},
      {"controller", "PB?", "PB=12", "[path b] SSPA2"},
  };
  std::string kind;
  for (const ReplyRow& row : rows) {
    if (row.kind != std::exchange(kind, row.kind)) Use(row.kind);
    EXPECT_EQ(Changed(row.command, row.reply), row.changed == nullptr ? "" : row.changed) << row.reply;
    EXPECT_TRUE(m_complete) << row.reply;
  }
}

TEST_F(WriterTest, ALineIsCutAndCheckedAtItsEnd) {
  for (const int length : {0, 78, 79, 80, 81}) {
    const std::string line = snapshot::FormatSnapshotLine(std::string(static_cast<std::size_t>(length), '\xB0'));
    const int sum = (std::min(length, 79) * 0xB0 + std::max(79 - length, 0) * ' ') & 0xFF;
    ASSERT_EQ(line.size(), 80U);
    EXPECT_EQ(line.back(), static_cast<char>(((sum & 63) ^ (sum >> 6)) + 32)) << length;
    EXPECT_EQ(std::count(line.begin(), line.end() - 1, '\xB0'), std::min(length, 79));
  }
  Use("c240");
  m_replies = {{"R00?", "R00=P255V123456789012"}, {"R01?", "R01=P255V12345678901"}, {"R02?", "R02=P255V1234567890"}};
  m_replies["R00?"] = "R00=P255V12345678901";
  EXPECT_EQ(Lines()[38].size(), 79) << "a table line can be longer than a line of the file";
}

TEST_F(WriterTest, ADescriptionIsWrittenInTheFilesEncoding) {
  Use("controller");
  m_form.txtSnapShotID.SetText(QString::fromUtf8("Süd 5 € Ω \U0001F4FB / \\ \t.x"));
  EXPECT_EQ(Write().substr(82, 45),
            "[file description] S\xFC"
            "d 5 \x80 ? ? / \\ ?.x       ");
}

}  // namespace
}  // namespace tarnwell::test

#include "snapshot/writer.h"

#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <sstream>

#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "sim/amplifier.h"
#include "sim/controller.h"
#include "sim/device.h"
#include "snapshot/snapshot_line.h"
#include "support/program_test.h"
#include "support/snapshot_sample.h"

namespace tarnwell::test {
namespace {

/// The writers on a simulated device at address 1 whose measurements stand still, in virtual time.
class WriterTest : public testing::Test {
 protected:
  WriterTest() {
    m_counter.SetReadTakes(VirtualCounter::kRate / 1000);
    m_timing.InitCounter();
    m_port.SetPortOpen(true);
    m_port.TakeTranscript();
    m_port.SetAddress(1);
    m_shared.ConnectAddress = 1;
    m_form.prgSaveSnapshot.setRange(0, 110);
    m_port.AnswerAlways([this](const std::string& command) -> std::optional<std::string> {
      const auto row = m_replies.find(command);
      return row != m_replies.end() ? row->second : m_device->Answer(command);
    });
  }

  /// Empty texts: what the kind has.
  void Use(const char* kind, const char* firmware = "", const char* platform = "") {
    m_device = sim::MakeDevice({sim::FindKind(kind), 1, firmware, platform, 0, 0});
    const auto [type, single, kBand] = protocol::ReadModel(m_device->Model());
    m_shared.SSPAType = type;
    m_shared.SingleModule = single;
    m_shared.KBandAmp = kBand;
    m_shared.FirmwareClass = protocol::ReadFirmwareClass(m_device->Firmware());
    const bool told = m_shared.FirmwareClass != 1;
    m_shared.HWPlatform = told ? protocol::ReadPlatform(m_device->Answer("CH?").value_or("")) : 1;
    m_replies.clear();
  }

  QString Path() const { return m_folder.filePath(QStringLiteral("snapshot")); }

  /// The file's bytes; `m_complete` says what the writer returned.
  std::string Write() { return WriteTo(Path()); }
  std::string WriteTo(const QString& path) {
    m_form.prgSaveSnapshot.setValue(0);
    m_port.TakeTranscript();
    const bool controller = m_shared.SSPAType == link::kRedundancyController;
    m_complete = controller ? m_writer.WriteControllerSnapshot(path) : m_writer.WriteSSPASnapshot(path);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }

  /// The lines in UTF-8, without check characters, padding and line ends.
  QStringList Lines() {
    QStringList lines = platform::FromDevice(Write()).split(QLatin1String("\r\n"));
    EXPECT_TRUE(lines.takeLast().isEmpty());
    for (QString& line : lines) line = line.left(79).trimmed();
    return lines;
  }

  /// The lines that a different answer to one command brings, joined by " | ". Silence: no answer.
  std::string Changed(const std::string& command, std::optional<std::string> reply) {
    const QStringList usual = Lines();
    const ReplyTable before = m_replies;
    m_replies[command] = reply.value_or("");  // in an empty one the expected text isn't found
    QStringList lines = Lines();
    m_replies = before;
    EXPECT_GE(lines.size(), m_complete ? usual.size() - 1 : 1) << command;
    for (const QString& line : usual) lines.removeOne(line);
    return lines.join(QStringLiteral(" | ")).toStdString();
  }

  int Bar() const { return m_form.prgSaveSnapshot.value(); }

  QTemporaryDir m_folder;
  VirtualCounter m_counter;
  VirtualYielder m_yielder{m_counter};
  ScriptedPort m_port{m_counter};
  FakeDesktop m_desktop;
  std::unique_ptr<sim::Device> m_device;
  ReplyTable m_replies;  ///< ahead of the device's own
  link::SSPA_Public m_shared;
  link::IntervalTiming m_timing{m_counter, m_yielder};
  link::SerialLink m_line{m_shared, m_timing, m_port};
  forms::frmSaveSnapshot m_form;
  QDateTime m_now{QDate(2007, 3, 14), QTime(9, 26, 41)};
  snapshot::Writer m_writer{m_form, m_shared, m_line, m_timing, m_desktop, [this] { return m_now; }};
  bool m_complete = false;
};

/// The file of the example, with the check characters that stand there.
std::string Example(const char* name) {
  std::string bytes;
  for (SampleLine& line : SampleLines(name)) {
    line.text.resize(79, ' ');
    bytes += line.text + line.check + "\r\n";
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

TEST_F(WriterTest, EveryDeviceIsAskedWhatItHas) {
  std::ifstream rows(EXAMPLES "/commands.txt");
  for (std::string row; std::getline(rows, row);) {
    const QStringList fields = QString::fromStdString(row).split(QLatin1Char('\t'));
    ASSERT_EQ(fields.size(), 6) << row;
    Use(fields[0].toLatin1(), fields[1].toLatin1(), fields[2].toLatin1());
    EXPECT_EQ(Lines().size(), fields[3].toInt()) << row;
    EXPECT_EQ(Bar(), fields[4].toInt()) << row;
    std::string tables;
    if (m_shared.FirmwareClass == 1) {
      tables = " H-050? H-025? H+000? H+025? H+050? H+075? H+100? H+125?" + Points("R", 0, 25);
    } else {
      tables = Points("RT", 1, 3) + Points("H", 1, 8) + Points("R", 0, 25) + Points("P", 0, 40);
    }
    const bool controller = m_shared.SSPAType == link::kRedundancyController;
    EXPECT_EQ(m_port.Commands(), fields[5].toStdString() + (controller ? "" : tables));
    EXPECT_GE(m_port.SmallestGap(), 0.02 + 0.05) << "the way to the answer, and the pause";
  }
}

TEST_F(WriterTest, WhatADeviceHasNotIsToldWithoutAsking) {
  Use("k40", "0264C-01 V5.4");
  const std::string lines = Lines().join(QLatin1Char('|')).toStdString() + '|';
  for (const char* line :
       {"[transceiver] NA", "[reflected rf level] NA", "[reflected rf max] NA", "[temp amp2] NA", "[9.3v rail] 9.30 V",
        "[11v lc rail] NA", "[hw platform] 0712/0358", "[pin diodes] NA", "[thermal fan control] NA",
        "[rf temp comp points (°C,dB)] NA", "[pin diode table (dB,DAC)] NA",
        "[sys temp comp points (°C,dB)] (-050, 2.5), (-025, 1.5), (+000, .5)"}) {
    EXPECT_NE(lines.find(line + std::string("|")), std::string::npos) << line << '\n' << lines;
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

TEST_F(WriterTest, WhatRepliesBecome) {
  std::ifstream rows(EXAMPLES "/replies.txt");
  int count = 0;
  for (std::string row; std::getline(rows, row); ++count) {
    const QStringList fields = QString::fromStdString(row).split(QLatin1Char('\t'));
    ASSERT_EQ(fields.size(), 4) << row;
    Use(fields[0].toLatin1());
    EXPECT_EQ(Changed(fields[1].toStdString(), fields[2].toStdString()), fields[3].toStdString()) << row;
    EXPECT_TRUE(m_complete) << row;
  }
  EXPECT_GT(count, 50);
  Use("c240");
  EXPECT_EQ(Changed("CT?", "CT=A\r\nB\x1B\xB5"), "[sspa] A??B?µ");
  EXPECT_EQ(Changed("U?", "U=\xFF"), "[address] 191");
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
  m_replies = {{"R00?", "R00=P255V12345678901"}, {"R01?", "R01=P255V12345678901"}, {"R02?", "R02=P255V12345678901"}};
  EXPECT_EQ(Lines()[38].size(), 79) << "a table line can be longer than a line of the file";
}

TEST_F(WriterTest, ADescriptionIsWrittenInTheFilesEncoding) {
  Use("controller");
  m_form.txtSnapShotID.SetText(QString::fromUtf8("Süd 5 € Ω \U0001F4FB / \\ \t.x"));
  EXPECT_EQ(Write().substr(82, 45),
            "[file description] S\xFC"
            "d 5 \x80 ? ? / \\ ?.x       ");
}

constexpr std::size_t kLine = 82;
const std::string kMark = "#ERROR: FILE MAY BE INCOMPLETE\r\n";

/// No file of this process grows beyond a size while it lives, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t size) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit full = {size, m_before.rlim_max};
    m_handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit m_before{};
  void (*m_handler)(int);
};

class FileTest : public WriterTest {
 protected:
  /// The one message of a file that was not completed, with the icon ahead; its details must say something.
  std::string Message() {
    EXPECT_FALSE(m_complete);
    const QStringList parts = m_desktop.TakeMessages().join(QLatin1Char('+')).split(QStringLiteral(" | "));
    EXPECT_TRUE(parts.size() == 2 && parts[1].size() > 10);
    return parts[0].toStdString();
  }
};

TEST_F(FileTest, AFileThatCannotBeCreatedIsOnlyToldOf) {
  const QString folder = m_folder.path();
  for (const auto& [kind, message] : {std::pair{"c240", "(!) Error with Save Snapshot"},
                                      std::pair{"controller", "(!) Error with Save 7316 Snapshot"}}) {
    Use(kind);
    for (const QString& path : {folder, folder + QStringLiteral("/no/folder"), QString()}) {
      WriteTo(path);
      EXPECT_EQ(Message(), message) << path.toStdString();
      EXPECT_EQ(m_port.Commands(), "") << "nothing is asked for no file";
    }
  }
  EXPECT_TRUE(QDir(folder).isEmpty());
}

TEST_F(FileTest, AFullDiskShowsAtTheLineThatFoundItFull) {
  Use("c240");
  const std::string whole = Write();
  for (const std::size_t size : {std::size_t{0}, kLine, 12 * kLine + 40, 12 * kLine + 20}) {
    {
      const FullDisk full(size);
      std::string expected = whole.substr(0, size / kLine * kLine);
      expected += kMark.substr(0, size - expected.size());
      EXPECT_EQ(Write(), expected) << size;
    }
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot");
  }
  EXPECT_EQ(m_port.Commands(), "CT? U? TX? S? VR?") << "and nothing more is asked";
}

TEST_F(FileTest, WhatNoFileMayHoldEndsIt) {
  Use("c240");
  const std::string whole = Write();
  for (const auto& [command, reply, lines] :
       {std::tuple{"P05?", "P05=abc", 46}, std::tuple{"P05?", "P05=", 46}, std::tuple{"P05?", "P05=32768", 46},
        std::tuple{"P05?", "P05=nan", 46}, std::tuple{"U?", "U=", 4}}) {
    m_replies = {{command, reply}};
    // the message is up before the file's last line is written
    m_desktop.OnMessage([&] { EXPECT_EQ(QFile(Path()).size(), static_cast<qint64>(kLine) * lines); });
    EXPECT_EQ(Write(), whole.substr(0, kLine * static_cast<std::size_t>(lines)) + kMark) << reply;
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot");
  }
  m_desktop.OnMessage({});
  Use("controller");
  m_replies = {{"U?", "U="}};
  EXPECT_EQ(Write().size(), 4 * kLine + kMark.size());
  EXPECT_EQ(Message(), "(!) Error with Save 7316 Snapshot");
}

TEST_F(FileTest, AFileThatWasRemovedMeanwhileIsTold) {
  Use("controller");
  m_port.Expect("CT?").Answer("CT=7316 RCP").Do([this] { QFile::remove(Path()); });
  Write();
  EXPECT_EQ(Message(), "(!) Error with Save 7316 Snapshot");
}

}  // namespace
}  // namespace tarnwell::test

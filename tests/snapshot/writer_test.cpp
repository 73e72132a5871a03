#include "snapshot/writer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <fstream>

#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "sim/device.h"
#include "support/file_limit.h"
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
    m_port.SetAddress(1);
    m_shared.ConnectAddress = 1;
    m_form.prgSaveSnapshot.setRange(0, 110);
    m_port.AnswerAlways([this](const std::string& command) -> std::optional<std::string> {
      if (m_silent) return std::nullopt;
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
    m_silent = false;
  }
  bool IsController() const { return m_shared.SSPAType == link::kRedundancyController; }

  QString Path() const { return m_folder.filePath(QStringLiteral("snapshot")); }
  QString New() const { return Path() + QStringLiteral(".new"); }  ///< while it is written

  /// The file's bytes; `m_complete` says what the writer returned.
  std::string Write() { return WriteTo(Path()); }
  std::string WriteTo(const QString& path) {
    m_form.prgSaveSnapshot.setValue(0);
    m_port.TakeTranscript();
    m_complete = IsController() ? m_writer.WriteControllerSnapshot(path) : m_writer.WriteSSPASnapshot(path);
    return Bytes(path);
  }
  static std::string Bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }

  /// The lines of a whole file in UTF-8, without check characters, padding and line ends.
  QStringList Lines() {
    QStringList lines = platform::FromDevice(Write()).split(QLatin1String("\r\n"));
    EXPECT_TRUE(m_complete && lines.takeLast().isEmpty());
    for (QString& line : lines) {
      EXPECT_EQ(line.size(), 80) << line.toStdString();
      line = line.left(79).trimmed();
    }
    return lines;
  }

  /// The lines that a different answer to one command brings. An empty one is none.
  QStringList Changed(const std::string& command, const std::string& reply) {
    const QStringList usual = Lines();
    const int bar = m_form.prgSaveSnapshot.value();
    m_replies[command] = reply;
    QStringList lines = Lines();
    m_replies.erase(command);
    EXPECT_EQ(m_form.prgSaveSnapshot.value(), bar) << command;
    EXPECT_GE(lines.size(), usual.size() - 1) << command;
    for (const QString& line : usual) lines.removeOne(line);
    return lines;
  }

  /// The one message of a file that was not completed, with the icon ahead; its details must say something.
  std::string Message() {
    EXPECT_FALSE(m_complete);
    const QStringList parts = m_desktop.TakeMessages().join(QLatin1Char('+')).split(QStringLiteral(" | "));
    EXPECT_TRUE(parts.size() == 2 && parts[1].size() > 10);
    return parts[0].toStdString();
  }

  QTemporaryDir m_folder;
  VirtualCounter m_counter;
  VirtualYielder m_yielder{m_counter};
  ScriptedPort m_port{m_counter};
  FakeDesktop m_desktop;
  std::unique_ptr<sim::Device> m_device;
  ReplyTable m_replies;  ///< ahead of the device's own
  bool m_silent = false;
  link::SSPA_Public m_shared;
  link::IntervalTiming m_timing{m_counter, m_yielder};
  link::SerialLink m_line{m_shared, m_timing, m_port};
  forms::frmSaveSnapshot m_form;
  QDateTime m_now{QDate(2007, 3, 14), QTime(9, 26, 41)};
  snapshot::Writer m_writer{m_form, m_shared, m_line, m_timing, m_desktop, [this] { return m_now; }};
  bool m_complete = false;
};

TEST_F(WriterTest, FilesByteByByte) {
  Use("c240", "", "842");
  m_replies = {{"V5?", "V5=5.02"},    {"V11?", "V11=11.04"},   {"V11LC?", "V11LC=11.01"},   {"A?", "A=ltxz"},
               {"V14?", "V14=14.10"}, {"V-10?", "V-10=-9.98"}, {"CV?", "CV=0264C-01 V6.0"}, {"G?", "G=0.5"},
               {"VR?", "VR=43.2"},    {"T2?", "T2=47.0"}};
  m_form.txtSnapShotID.SetText(QStringLiteral("rack 2 after service"));
  EXPECT_EQ(Write(), SampleFile("amplifier.txt"));

  Use("controller");
  m_replies = {{"CT?", "CT=7316"}, {"U?", "U=D"}, {"CP?", "CP=A"}, {"A?", "A=X"}};
  m_now = QDateTime(QDate(2007, 11, 2), QTime(16, 5, 12));
  m_form.txtSnapShotID.SetText(QStringLiteral("hub B weekly check"));
  EXPECT_EQ(Write(), SampleFile("controller.txt"));

  m_form.txtSnapShotID.SetText(QString::fromUtf8("Süd 5 € Ω \U0001F4FB / \\ \t.x"));
  EXPECT_EQ(Write().substr(82, 45), "[file description] S\xFC\x64 5 \x80 ? ? / \\ ?.x       ");
}

/// The fields of a table in a file.
std::vector<QStringList> Rows(const char* path, int fields) {
  std::ifstream file(path);
  std::vector<QStringList> rows;
  for (std::string row; std::getline(file, row);) {
    rows.push_back(QString::fromStdString(row).split(QLatin1Char('\t')));
    EXPECT_EQ(rows.back().size(), fields) << row;
  }
  return rows;
}

TEST_F(WriterTest, EveryDeviceIsAskedWhatItHasAndTheRestIsToldWithoutAsking) {
  for (const QStringList& fields : Rows(EXAMPLES "/commands.txt", 7)) {
    const std::string row = fields.join(QLatin1Char(' ')).toStdString(), commands = fields[5].toStdString();
    Use(fields[0].toLatin1(), fields[1].toLatin1(), fields[2].toLatin1());
    EXPECT_EQ(Lines().size(), fields[3].toInt()) << row;
    EXPECT_EQ(m_form.prgSaveSnapshot.value(), fields[4].toInt()) << row;
    const std::string asked = m_port.Commands(), points = asked.substr(std::min(commands.size(), asked.size()));
    EXPECT_EQ(asked.substr(0, commands.size()), commands);
    const int due = IsController() ? 0 : m_shared.FirmwareClass == 1 ? 8 + 26 : 3 + 8 + 26 + 41;
    EXPECT_EQ(std::count(points.begin(), points.end(), '?'), due) << points;
    EXPECT_GE(m_port.SmallestGap(), 0.02 + 0.05 + 0.01) << "way to the answer, pause, looks at the counter";
    m_silent = true;
    QStringList unasked = Lines().mid(3);
    unasked.removeIf([](const QString& line) { return line.contains(QLatin1String("#ERR")); });
    EXPECT_EQ(unasked.join(QStringLiteral(" | ")), fields[6]) << row;
  }
}

TEST_F(WriterTest, WhatRepliesBecome) {
  const std::vector<QStringList> rows = Rows(EXAMPLES "/replies.txt", 4);
  EXPECT_GT(rows.size(), 50U);
  for (const QStringList& row : rows) {
    Use(row[0].toLatin1());
    const QStringList lines = Changed(row[1].toStdString(), platform::ToDevice(row[2]));
    EXPECT_EQ(lines.join(QStringLiteral(" | ")), row[3]) << row.join(QLatin1Char(' ')).toStdString();
  }
  Use("c240");
  EXPECT_EQ(Changed("CT?", "CT=A\r\nB\x1B\xB5"), QStringList(QString::fromUtf8("[sspa] A??B?µ")));
  m_replies = {{"R01?", "R01=P255V12345678901"}};
  EXPECT_EQ(Changed("R00?", "R00=P255V12345678901").value(0).size(), 79) << "cut: a table line can be longer";
}

constexpr std::size_t kLine = 82;
const std::string kMark = "#ERROR: FILE MAY BE INCOMPLETE\r\n";

TEST_F(WriterTest, AFileThatCannotBeCreatedOrWasRemovedMeanwhileIsToldOf) {
  Use("c240");
  for (const std::string& path : {std::string(), std::string("/no/folder"), '/' + std::string(256, 'x')}) {
    WriteTo(m_folder.path() + QString::fromStdString(path));
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot") << path;
    EXPECT_EQ(m_port.Commands(), "") << "nothing is asked for no file";
  }
  EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
  Use("controller");
  m_port.Expect("CT?").Answer("CT=7316 RCP").Do([this] { QFile::remove(New()); });
  Write();
  EXPECT_EQ(Message(), "(!) Error with Save 7316 Snapshot");
}

TEST_F(WriterTest, AFullDiskShowsAtTheLineThatFoundItFull) {
  Use("c240");
  const std::string whole = Write();
  for (const std::size_t size : {std::size_t{0}, kLine, 12 * kLine + 40, 12 * kLine + 20}) {
    std::string expected = whole.substr(0, size / kLine * kLine);
    expected += kMark.substr(0, size - expected.size());
    QFile::remove(Path());
    {
      const FileLimit full(size);
      EXPECT_EQ(Write(), expected) << size;
    }
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot");
  }
  EXPECT_EQ(m_port.Commands(), "CT? U? TX? S? VR?") << "and nothing more is asked";
}

TEST_F(WriterTest, AnOlderFileStaysUntilTheNewOneIsWhole) {
  Use("c240");
  const std::string whole = Write();
  const QString link = m_folder.filePath(QStringLiteral("link"));
  ASSERT_TRUE(QFile::link(Path(), link) && QFile::setPermissions(Path(), QFile::ReadOwner | QFile::WriteOwner));
  for (const QString& path : {Path(), link}) {
    m_port.Expect("CT?").Answer("CT=OTHER").Do([&] { EXPECT_EQ(Bytes(Path()), whole); });
    EXPECT_EQ(WriteTo(path).substr(3 * kLine, 12), "[sspa] OTHER");
    EXPECT_EQ(QFile::permissions(Path()) & QFile::ReadOther, QFile::Permissions());
    EXPECT_TRUE(m_complete && WriteTo(path) == whole && QFileInfo(link).isSymLink());
  }
  for (const char* beside : {".new", ".new2"}) {  // what has the name already may be whole, or another's
    const QString name = Path() + QLatin1String(beside);
    m_replies = {{"U?", "U="}};
    m_complete = m_writer.WriteSSPASnapshot(Path());
    const QString told = m_desktop.TakeMessages().value(0);
    EXPECT_TRUE(!m_complete && told.endsWith(name)) << told.toStdString();
    EXPECT_EQ(Bytes(Path()), whole);
    EXPECT_EQ(Bytes(name), whole.substr(0, 4 * kLine) + kMark);
  }
}

TEST_F(WriterTest, ANewFileTakesItsNameWhenItIsWhole) {
  Use("controller");
  const QString link = m_folder.filePath(QStringLiteral("link"));
  ASSERT_TRUE(QFile::link(Path(), link));
  m_port.Expect("CT?").Answer("CT=7316").Do([this] { EXPECT_TRUE(QFile::exists(New()) && !QFile::exists(Path())); });
  EXPECT_FALSE(WriteTo(link).empty());
  EXPECT_TRUE(m_complete && QFileInfo(link).isSymLink() && !QFile::exists(New()));
  QFile::remove(Path());
  m_port.Expect("CT?").Answer("CT=7316").Do([this] { QDir().mkdir(Path()); });
  Write();
  EXPECT_TRUE(m_desktop.TakeMessages().value(0).endsWith(New())) << "the name was taken meanwhile";
  EXPECT_EQ(Bytes(New()).size(), 16 * kLine);
  const QString pair = QString::fromUcs4(U"\U0001F4E1");  // the sixtieth and the next
  EXPECT_FALSE(WriteTo(m_folder.filePath(QString(59, QLatin1Char('a')) + pair)).empty());
}

TEST_F(WriterTest, WhatNoFileMayHoldEndsIt) {
  Use("c240");
  const std::string whole = Write();
  for (const auto& [command, reply, lines] :
       {std::tuple{"P05?", "P05=", 46}, {"P05?", "P05=32768", 46}, {"P05?", "P05=nan", 46}, {"U?", "U=", 4}}) {
    m_replies = {{command, reply}};
    QFile::remove(Path());
    // the message is up before the file's last line is written
    m_desktop.OnMessage([&] { EXPECT_EQ(QFile(New()).size(), static_cast<qint64>(kLine) * lines); });
    EXPECT_EQ(Write(), whole.substr(0, kLine * static_cast<std::size_t>(lines)) + kMark) << reply;
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot");
  }
}

}  // namespace
}  // namespace tarnwell::test

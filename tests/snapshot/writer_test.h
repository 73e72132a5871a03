#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>

#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "sim/device.h"
#include "snapshot/writer.h"
#include "support/program_test.h"

namespace tarnwell::test {

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

}  // namespace tarnwell::test

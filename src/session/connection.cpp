#include "session/connection.h"

#include "alarms/alarm_table.h"
#include "console/view_rules.h"
#include "platform/text_encoding.h"
#include "protocol/readings.h"

namespace tarnwell::session {

namespace {

using console::EnableAndShow;

constexpr double kPauseBetweenQueries = 0.05;
constexpr int kBinaryMode = 1;
const QString kConnectCaption = QStringLiteral("&Connect");
const QString kDisconnectCaption = QStringLiteral("Dis&connect");

}  // namespace

void Connection::cmdConnect_Click() {
  const QString caption = m_form.cmdConnect.Caption();
  if (caption == kConnectCaption) {
    Connect();
  } else if (caption == kDisconnectCaption) {
    Disconnect();
  }
}

void Connection::Connect() {
  if (!OpenPort()) {
    m_desktop.ShowMessage({QStringLiteral("Unable to open COM%1").arg(m_port.CommPort()),
                           platform::MessageIcon::kInformation, QString::fromStdString(m_port.OpenFailure())});
    EndAttempt();
    return;
  }
  // With automatic half-duplex control RTS stays on for the whole session.
  if (!m_shared.PortRS232 && m_shared.RS485Control == 0) m_port.SetRTSEnable(true);
  m_desktop.SetBusyPointer(true);
  if (!Identify()) {
    FailConnection();
    return;
  }
  if (m_form.Unloaded()) return;  // the program was told to end while a message was up
  m_readers.ForgetDevice();
  m_timing.DelayBlocking(kPauseBetweenQueries);
  if (m_shared.SSPAType == link::kRedundancyController) {
    RunControllerSession();
  } else {
    RunAmplifierSession();
  }
}

bool Connection::OpenPort() {
  if (!m_port.PortOpen() && !m_port.SetPortOpen(true)) return false;
  return m_port.SetInputMode(kBinaryMode);
}

bool Connection::Identify() {
  std::string reply;
  if (!protocol::Send(m_line, protocol::kModelQuery, reply)) return false;
  m_desktop.SetBusyPointer(false);
  m_form.cmdConnect.SetCaption(kDisconnectCaption);
  ShowModel(std::string(protocol::AfterEcho(reply, 3)));
  return true;
}

void Connection::ShowModel(const std::string& text) {
  m_session.DeviceName = platform::FromDevice(text);
  m_form.SetTitle(console::TitleConnected(m_session.DeviceName));

  const protocol::Model model = protocol::ReadModel(text);
  m_shared.SSPAType = model.type;
  if (model.type == link::kRedundancyController) return;
  m_shared.SingleModule = model.singleModule;
  m_shared.KBandAmp = model.kBand;
  if (model.type == link::kUnknownSSPA) {
    m_desktop.ShowMessage({QStringLiteral("Unknown SSPA Type"), platform::MessageIcon::kWarning});
  }
}

void Connection::RunAmplifierSession() {
  m_form.mnuSSPASettings.SetCaption(QStringLiteral("SSPA &Settings"));
  m_form.mnuSnapshot.SetCaption(QStringLiteral("&Save Snapshot (SSPA)"));
  if (!ReadFirmware() || !ReadPlatform() || !m_readers.ReadGain()) {
    FailConnection();
    return;
  }
  console::BlankReadings(m_form);
  console::SetConsoleEnabled(m_form, m_shared, true);
  AllowAddress(false);
  ShowAmplifierPanels(true);
  EnableAndShow(!m_shared.SingleModule, {&m_form.lblMod2, &m_form.lblTempMod2});
  m_session.PollLength = m_shared.SingleModule ? 6 : 12;
  StartPolling();
  m_polls.PollSSPA();
}

bool Connection::ReadFirmware() {
  std::string reply;
  if (!protocol::Send(m_line, protocol::kFirmwareQuery, reply)) return false;
  m_shared.FirmwareClass = protocol::ReadFirmwareClass(protocol::AfterEcho(reply, 3));
  if (m_shared.FirmwareClass == 1) m_shared.HWPlatform = 1;
  return true;
}

bool Connection::ReadPlatform() {
  if (m_shared.FirmwareClass < 2) return true;
  std::string reply;
  m_timing.DelayBlocking(kPauseBetweenQueries);
  if (!protocol::Send(m_line, protocol::kPriorityOrDiodeQuery, reply)) return false;
  m_timing.DelayBlocking(kPauseBetweenQueries);
  if (!protocol::Send(m_line, protocol::kPlatformQuery, reply)) return false;
  m_shared.HWPlatform = protocol::ReadPlatform(reply);
  return true;
}

void Connection::RunControllerSession() {
  m_form.mnuSSPASettings.SetCaption(QStringLiteral("Redundancy Controller &Settings"));
  m_form.mnuSnapshot.SetCaption(QStringLiteral("&Save Snapshot (Redundancy Controller)"));
  m_readers.ReadStatus();
  console::BlankReadings(m_form);
  console::SetConsoleEnabled(m_form, m_shared, true);
  AllowAddress(false);
  // A controller that doesn't tell its configuration yet still needs a schedule.
  m_session.PollLength = m_shared.Config1to1 ? 5 : 7;
  m_timing.DelayBlocking(kPauseBetweenQueries);
  m_readers.ReadConfiguration();
  ShowAmplifierPanels(false);
  StartPolling();
  m_polls.PollController();
}

void Connection::AllowAddress(bool allowed) {
  m_form.lblAddress.setEnabled(allowed);
  m_form.txtConnectAddress.setEnabled(allowed);
  m_form.updwnConnectAddress.setEnabled(allowed);
}

void Connection::ShowAmplifierPanels(bool shown) {
  EnableAndShow(!shown, {&m_form.fra7316Status});
  EnableAndShow(shown, {&m_form.fraRF, &m_form.fraState, &m_form.fraTemp});
}

void Connection::StartPolling() {
  alarms::ResetAlarmTable(m_shared.AlarmStatus);
  m_session.PollRunning = true;
  m_form.tmrFlasher.SetEnabled(true);
}

void Connection::FailConnection() {
  const QString port = QStringLiteral("COM%1").arg(m_port.CommPort());
  const QString device = QString::fromStdString(m_port.DevicePath());
  const bool telling = !device.isEmpty() && device != port;  // Windows' device has the port's own name
  m_desktop.ShowMessage({QStringLiteral("Connection Failed"), platform::MessageIcon::kWarning,
                         telling ? QStringLiteral("%1 is %2").arg(port, device) : QString()});
  EndAttempt();
}

void Connection::EndAttempt() {
  if (m_port.PortOpen()) m_port.SetPortOpen(false);
  m_form.cmdConnect.SetCaption(kConnectCaption);
  m_form.SetTitle(console::TitleWithout());
  m_desktop.SetBusyPointer(false);
}

void Connection::Disconnect() {
  if (m_port.PortOpen()) m_port.SetPortOpen(false);
  m_port.DiscardInput();
  m_form.cmdConnect.SetCaption(kConnectCaption);
  console::SetConsoleEnabled(m_form, m_shared, false);
  m_form.SetTitle(console::TitleWithout());
  AllowAddress(true);
  m_session.PollRunning = false;
  m_form.tmrFlasher.SetEnabled(false);
  m_indicator.StandLit();
  m_readers.EndSession();
}

}  // namespace tarnwell::session

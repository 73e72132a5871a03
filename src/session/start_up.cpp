#include "session/start_up.h"

#include <QCoreApplication>
#include <QScreen>
#include <QWindow>
#include <cmath>
#include <utility>

#include "alarms/alarm_table.h"
#include "console/entry_text.h"
#include "console/session_state.h"
#include "console/view_rules.h"

namespace tarnwell::session {

namespace {

constexpr QSize kFirstWindowSize(640, 480);

/// "True" and "False" in any case, or a number that is 0 or not. False for anything else.
bool ReadBoolean(const QString& text) {
  if (text.trimmed().compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) return true;
  return console::NumberFromEntry(text).value_or(0.0) != 0.0;
}

}  // namespace

void StartUp::Form_Load() {
  m_form.fra7316Status.setEnabled(false);
  m_form.fra7316Status.setVisible(false);
  if (!m_timing.InitCounter()) {
    m_desktop.ShowMessage(
        {QStringLiteral("PC does not support high performance counters needed!"), platform::MessageIcon::kCritical});
    m_form.UnloadForm();
    return;
  }
  alarms::ResetAlarmTable(m_shared.AlarmStatus);
  console::SetConsoleEnabled(m_form, m_shared, false);
  m_shared.SettingsOpen = false;
  m_shared.CommsLost = false;
  PlaceWindow();
  QCoreApplication::setApplicationName(console::kApplicationTitle);
  m_form.SetTitle(console::TitleWithout());
  ShowFirstScreen();
  ApplyStoredProperties();
}

void StartUp::PlaceWindow() {
  const QRect screen = m_form.screen()->geometry();
  const QSize margins = (screen.size() - kFirstWindowSize) / 2;
  m_firstPlace = QRect(screen.topLeft() + QPoint(margins.width(), margins.height()), kFirstWindowSize);
  m_form.setGeometry(m_firstPlace);
}

void StartUp::Form_Activate() {
  const QRect place = std::exchange(m_firstPlace, QRect());
  const QMargins frame = m_form.windowHandle()->frameMargins();
  if (place.isValid() && !frame.isNull() && m_form.size() == place.size()) m_form.setGeometry(place - frame);
}

void StartUp::ShowFirstScreen() {
  console::BlankReadings(m_form);
  m_form.txtGainAdjust.SetText(QStringLiteral(" "));
}

void StartUp::ApplyStoredProperties() {
  ApplySettings();
  ApplyCommPort();
  ApplyHandshaking();
  ApplyAddress();
  ApplyPreferences();
}

void StartUp::ApplySettings() {
  const QString settings = m_properties.GetStoredProperty(QStringLiteral("Settings"));
  if (settings.isEmpty() || m_port.SetSettings(settings.toStdString())) return;
  WarnOfCorrupted(QStringLiteral("data format or baud rate"));
}

void StartUp::ApplyCommPort() {
  const QString text = m_properties.GetStoredProperty(QStringLiteral("CommPort"));
  if (const std::optional<int> port = console::WholeNumberFromEntry(text)) m_port.SetCommPort(*port);
}

void StartUp::ApplyHandshaking() {
  const QString text = m_properties.GetStoredProperty(QStringLiteral("Handshaking"));
  if (text.isEmpty()) return;
  const std::optional<int> handshaking = console::WholeNumberFromEntry(text);
  if (!handshaking || !m_port.SetHandshaking(*handshaking)) WarnOfCorrupted(QStringLiteral("handshaking"));
}

void StartUp::ApplyAddress() {
  forms::UpDown& spin = m_form.updwnConnectAddress;
  const QString text = m_properties.GetStoredProperty(QStringLiteral("ConnectAddress"));
  const std::optional<double> stored = console::NumberFromEntry(text);
  const bool valid = stored && *stored >= 0.0 && *stored <= link::kMaxAddress;
  if (!text.isEmpty() && !valid) WarnOfCorrupted(QStringLiteral("address"));
  const int address = valid ? static_cast<int>(std::nearbyint(*stored)) : 0;
  // Ahead of the spin: its change is none by the operator then, who isn't told if it can't be stored.
  m_shared.ConnectAddress = static_cast<std::uint8_t>(address);
  spin.SetValue(address);
  // An address that the spin starts with raises no change, which would fill the field.
  m_form.txtConnectAddress.SetText(QString::number(spin.Value()));
}

void StartUp::ApplyPreferences() {
  const QString audible = m_properties.GetStoredProperty(QStringLiteral("AudibleNotify"));
  m_shared.AudibleNotify = audible.isEmpty() || ReadBoolean(audible);
  const QString rs232 = m_properties.GetStoredProperty(QStringLiteral("RS232"));
  m_shared.PortRS232 = rs232.isEmpty() || ReadBoolean(rs232);
  const QString control = m_properties.GetStoredProperty(QStringLiteral("RS485Control"));
  m_shared.RS485Control = console::WholeNumberFromEntry(control).value_or(0);
}

void StartUp::WarnOfCorrupted(const QString& what) {
  m_desktop.ShowMessage({QStringLiteral("Corrupted Registry entry for ") + what + QStringLiteral(", using default."),
                         platform::MessageIcon::kWarning});
}

}  // namespace tarnwell::session

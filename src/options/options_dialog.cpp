#include "options/options_dialog.h"

#include <QSignalBlocker>
#include <map>

#include "console/session_state.h"
#include "forms/layout.h"
#include "forms/pages.h"
#include "platform/port_map.h"

namespace tarnwell::options {

namespace {

constexpr int kPorts = 4;
constexpr int kRtsCts = 2;
constexpr double kShareOfMainForm = 0.75;

/// Settings end in ",parity,data bits,stop bits", one character each.
constexpr int kCharactersBehindRate = 6;

/// Shows `text`. One that a hand-edited store brought is added to the list, so that cmdOK leaves it as it is.
void ShowText(forms::ComboBox& list, const QString& text) {
  if (list.findText(text) < 0) list.addItem(text);
  list.setCurrentIndex(list.findText(text));
}

QString PortName(int number) { return QStringLiteral("Com%1").arg(number); }

QString BooleanText(bool value) { return value ? QStringLiteral("True") : QStringLiteral("False"); }

}  // namespace

void OptionsDialog::Form_Load(const forms::Form& main) {
  using forms::kTwipsPerPixel, forms::Rounded;
  m_form.SetInnerSize(Rounded(kShareOfMainForm * main.width() * kTwipsPerPixel),
                      Rounded(kShareOfMainForm * main.height() * kTwipsPerPixel));
  m_form.CentreOn(main);
  m_form.SetTitle(QStringLiteral("Software Options: ") + console::kApplicationTitle);
  LoadOptions();
}

void OptionsDialog::LoadOptions() {
  m_atOpening = InForce();
  FillLists();
  ShowDataFormat();
  ShowPort();
  m_form.optFlow(m_port.Handshaking() == kRtsCts ? 1 : 0)->Select();
  m_form.opt485Control(m_shared.RS485Control == 1 ? 1 : 0)->Select();
  ShowAudible();
  (m_shared.PortRS232 ? m_form.optRS232 : m_form.optRS4xx).Select();
}

void OptionsDialog::FillLists() {
  const struct {
    forms::ComboBox& list;
    QStringList items;
  } rows[] = {
      {m_form.cboSpeed,
       {QStringLiteral("300"), QStringLiteral("1200"), QStringLiteral("2400"), QStringLiteral("9600")}},
      {m_form.cboDataBits, {QStringLiteral("7"), QStringLiteral("8")}},
      {m_form.cboParity, {QStringLiteral("None"), QStringLiteral("Even"), QStringLiteral("Odd")}},
      {m_form.cboStopBits, {QStringLiteral("1"), QStringLiteral("2")}},
  };
  for (const auto& row : rows) row.list.addItems(row.items);
}

void OptionsDialog::ShowDataFormat() {
  const QString settings = QString::fromStdString(m_port.Settings());
  ShowText(m_form.cboSpeed, settings.chopped(kCharactersBehindRate));
  const QString format = settings.right(kCharactersBehindRate);
  m_form.cboParity.setCurrentIndex(static_cast<int>(QStringLiteral("neo").indexOf(format[1])));
  ShowText(m_form.cboDataBits, format.mid(3, 1));
  ShowText(m_form.cboStopBits, format.right(1));
}

void OptionsDialog::ShowPort() {
  QStringList devices = platform::DescribePorts(kPorts);
  for (int number = 1; number <= kPorts; ++number) m_form.cboPort.addItem(PortName(number), number);
  if (m_port.CommPort() > kPorts) {
    const int number = m_port.CommPort();
    m_form.cboPort.addItem(PortName(number), number);
    devices += platform::DescribePorts(number).last();
  }
  for (int i = 0; i < devices.size(); ++i) {
    m_form.cboPort.setItemData(i, devices[i], Qt::ToolTipRole);
    devices[i].prepend(m_form.cboPort.itemText(i) + QStringLiteral(": "));
  }
  m_form.cboPort.setToolTip(devices.join(QLatin1Char('\n')));
  m_form.cboPort.setCurrentIndex(m_form.cboPort.findData(m_port.CommPort()));
}

void OptionsDialog::ShowAudible() {
  const QSignalBlocker silent(m_form.optAudibleOn);  // the operator's choice sounds, and this is none
  (m_shared.AudibleNotify ? m_form.optAudibleOn : m_form.optAudibleOff).Select();
  TellHowHeard();
}

void OptionsDialog::TellHowHeard() {
  static const std::map<platform::AlarmSound, QString> kTold = {
      {platform::AlarmSound::kDesktops, QStringLiteral("Heard as the warning sound of the desktop")},
      {platform::AlarmSound::kOwn, QStringLiteral("Heard as the console's own alarm sound")},
      {platform::AlarmSound::kSystemBeep, QStringLiteral("Heard as the system beep, where the system has one")}};
  m_form.optAudibleOn.setToolTip(kTold.at(m_desktop.HeardAs()));
}

void OptionsDialog::AllowLine(bool rs232) {
  m_form.fraFlow.setEnabled(rs232);
  m_form.fraRS485.setEnabled(!rs232);
  for (const int i : {0, 1}) {
    m_form.optFlow(i)->setEnabled(rs232);
    m_form.opt485Control(i)->setEnabled(!rs232);
  }
}

void OptionsDialog::optRS4xx_Click() {
  m_form.optFlow(0)->Select();
  AllowLine(false);
}

void OptionsDialog::tabOptions_Click() {
  forms::ShowSelectedPage(m_form.tabOptions, {&m_form.fraCommunications, &m_form.fraGeneral});
  TellHowHeard();  // once more: what was looked for when the form was loaded is known by now
}

void OptionsDialog::cmdOk_Click() {
  if (!ApplyPort() || !ApplyDataFormat() || !ApplyFlow()) return;
  TakeVariables();
  if (!StoreProperties() && InForce() != m_atOpening) {
    Refuse(QStringLiteral("The options could not be stored. They are in use until the program ends."),
           m_properties.Failure());
  }
  m_form.UnloadForm();
}

bool OptionsDialog::Refuse(const QString& message, const QString& details) {
  m_desktop.ShowMessage({message, platform::MessageIcon::kInformation, details});
  return false;
}

bool OptionsDialog::ApplyPort() {
  const int number = m_form.cboPort.currentData().toInt();
  // A session whose old port couldn't be opened again after a refusal still waits for one.
  const bool missing = m_session.PollRunning && !m_port.PortOpen();
  if (number == m_port.CommPort() && !missing) return true;
  const int oldNumber = m_port.CommPort();
  if (TryPort(number)) return true;
  RefusePort();
  m_port.SetCommPort(oldNumber);
  if (m_session.PollRunning && !m_port.SetPortOpen(true)) RefusePort();
  return false;
}

/// Opening the port is the test of it, also without a session, which needs it closed.
bool OptionsDialog::TryPort(int number) {
  if (m_port.PortOpen()) m_port.SetPortOpen(false);
  if (!m_port.SetCommPort(number) || !m_port.SetPortOpen(true)) return false;
  return m_session.PollRunning || m_port.SetPortOpen(false);
}

void OptionsDialog::RefusePort() {
  Refuse(QStringLiteral("Unable to use COM%1").arg(m_port.CommPort()), QString::fromStdString(m_port.OpenFailure()));
}

bool OptionsDialog::ApplyDataFormat() {
  const QString settings =
      QStringList{m_form.cboSpeed.currentText().trimmed(), m_form.cboParity.currentText().left(1),
                  m_form.cboDataBits.currentText().trimmed(), m_form.cboStopBits.currentText().trimmed()}
          .join(QLatin1Char(','));
  return m_port.SetSettings(settings.toStdString()) || Refuse(QStringLiteral("Unable to use data format or data rate"));
}

bool OptionsDialog::ApplyFlow() {
  return m_port.SetHandshaking(m_form.optFlow(0)->Value() ? 0 : kRtsCts) ||
         Refuse(QStringLiteral("Unable to use handshaking"));
}

void OptionsDialog::TakeVariables() {
  m_shared.AudibleNotify = m_form.optAudibleOn.Value();
  m_shared.EngineerUnits = m_form.optEngineer.Value();
  m_shared.PortRS232 = m_form.optRS232.Value();
  m_shared.RS485Control = Selected485Control;
}

OptionsDialog::Properties OptionsDialog::InForce() const {
  return {
      {"Settings", QString::fromStdString(m_port.Settings())}, {"CommPort", QString::number(m_port.CommPort())},
      {"Handshaking", QString::number(m_port.Handshaking())},  {"AudibleNotify", BooleanText(m_shared.AudibleNotify)},
      {"Engineer", BooleanText(m_shared.EngineerUnits)},       {"RS232", BooleanText(m_shared.PortRS232)},
      {"RS485Control", QString::number(m_shared.RS485Control)}};
}

bool OptionsDialog::StoreProperties() {
  bool stored = true;
  for (const auto& [key, text] : InForce()) {
    stored = m_properties.SaveStoredProperty(QString::fromLatin1(key), text) && stored;
  }
  return stored;
}

void OptionsDialog::RaiseRTS() {
  if (!m_shared.PortRS232 && m_shared.RS485Control == 0) m_port.SetRTSEnable(true);
}

}  // namespace tarnwell::options

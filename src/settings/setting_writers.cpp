#include "settings/setting_writers.h"

#include "forms/controls/answers.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"
#include "settings/spin_fields.h"

namespace tarnwell::settings {

using W = SettingWriters;
constinit const std::array<OptionWriter, 24> kOptionWriters = {{
    {&frmSettings::opt7316_11, &W::WriteConfiguration, '1'},
    {&frmSettings::opt7316_12, &W::WriteConfiguration, '2'},
    {&frmSettings::opt7316None, &W::WritePriority, 'N'},
    {&frmSettings::opt7316PathA, &W::WritePriority, 'A'},
    {&frmSettings::opt7316PathB, &W::WritePriority, 'B'},
    {&frmSettings::optTxVorel, &W::WriteTransceiver, '1'},
    {&frmSettings::optTxOther, &W::WriteTransceiver, '0'},
    {&frmSettings::optAmpShutdownOn, &W::WriteAmpShutdown, 'E'},
    {&frmSettings::optAmpShutdownOff, &W::WriteAmpShutdown, 'D'},
    {&frmSettings::optFanCtrlOn, &W::WriteFanCtrl, 'E'},
    {&frmSettings::optFanCtrlOff, &W::WriteFanCtrl, 'D'},
    {&frmSettings::optAuxHigh, &W::WriteAuxSense, 'H'},
    {&frmSettings::optAuxLow, &W::WriteAuxSense, 'L'},
    {&frmSettings::optAlarmFleeting, &W::WriteAlarmStyle, 'F'},
    {&frmSettings::optAlarmLatching, &W::WriteAlarmStyle, 'L'},
    {&frmSettings::optTempCompOn, &W::WriteStatusLetter, 'C'},
    {&frmSettings::optTempCompOff, &W::WriteStatusLetter, 'U'},
    {&frmSettings::optTempCompMax, &W::WriteStatusLetter, 'H'},
    {&frmSettings::optTempCompMin, &W::WriteStatusLetter, 'L'},
    {&frmSettings::optBeeperOn, &W::WriteStatusLetter, 'A'},
    {&frmSettings::optBeeperOff, &W::WriteStatusLetter, 'Q'},
    {&frmSettings::optModeOnline, &W::WriteStatusLetter, 'O'},
    {&frmSettings::optModeStandby, &W::WriteStatusLetter, 'S'},
    {&frmSettings::optModeMaint, &W::WriteMaintenance, 'M'},
}};

namespace {

using protocol::AfterEcho;

struct Limit {
  std::string_view tag;
  forms::TextBox& field;
  forms::UpDown& spin;
};

Limit LimitOf(frmSettings& f, std::string_view tag) {
  if (tag == "T1") return {tag, f.txtRFMin, f.updwnRFMin};
  if (tag == "T2") return {tag, f.txtRFMax, f.updwnRFMax};
  return {tag, f.txtReflectedMax, f.updwnReflectedMax};
}

}  // namespace

bool SettingWriters::SendSetting(const protocol::Request& setting, std::string& reply) {
  m_opening.timing.DelayBlocking(kPauseAroundCommand);
  return protocol::Send(m_line, setting, reply);
}

void SettingWriters::Write(const protocol::Request& setting, const std::function<void(std::string_view)>& show) {
  std::string reply;
  if (!SendSetting(setting, reply)) {
    m_opening.CloseUnanswered();
    return;
  }
  show(reply);
  m_opening.timing.DelayBlocking(kPauseAroundCommand);
}

void SettingWriters::WriteChoice(const protocol::Request& setting, std::size_t echo, std::span<const Choice> choices) {
  Write(setting, [&](std::string_view reply) { Choose(m_form, AfterEcho(reply, echo), choices); });
}

void SettingWriters::WritePriority(char letter) { WriteChoice(protocol::SetPriority(letter), 3, kSetPriorityChoices); }

void SettingWriters::WriteTransceiver(char digit) {
  WriteChoice(protocol::SetTransceiver(digit == '1'), 3, kTransceiverChoices);
}

void SettingWriters::WriteAmpShutdown(char letter) {
  WriteChoice(protocol::SetShutdown(letter == 'E'), 0, kShutdownChoices);
}

void SettingWriters::WriteFanCtrl(char letter) { WriteChoice(protocol::SetFan(letter == 'E'), 0, kFanChoices); }

void SettingWriters::WriteAuxSense(char letter) {
  WriteChoice(protocol::SetAuxSense(letter == 'H'), 0, kAuxSenseChoices);
}

void SettingWriters::WriteAlarmStyle(char letter) {
  WriteChoice(protocol::SetAlarmStyle(letter == 'L'), 0, kSetAlarmStyleChoices);
}

void SettingWriters::WriteStatusLetter(char letter) {
  Write(protocol::SetStatus(letter), [this](std::string_view reply) { ChooseByStatus(m_form, AfterEcho(reply, 2)); });
}

void SettingWriters::WriteMaintenance(char letter) {
  WriteStatusLetter(letter);
  if (!m_form.Unloaded()) m_tables.DrawPiNPoint();
}

void SettingWriters::WriteConfiguration(char digit) {
  std::string reply;
  if (!SendSetting(protocol::SetConfiguration(digit), reply)) {
    m_opening.CloseUnanswered();
    return;
  }
  Choose(m_form, AfterEcho(reply, 3), kSetConfigurationChoices);
  if (m_readBack.ReadPriority()) m_opening.timing.DelayBlocking(kPauseAroundCommand);
}

void SettingWriters::WriteThreshold(std::string_view tag) {
  const Limit limit = LimitOf(m_form, tag);
  Write(protocol::SetThreshold(limit.tag, limit.spin.Value()),
        [&limit](std::string_view reply) { SetLimit(limit.field, limit.spin, AfterEcho(reply, 3)); });
}

void SettingWriters::WriteSSPAAddress() {
  const int former = m_opening.shared.ConnectAddress;
  const int address = m_form.updwnSSPAAddress.Value();
  std::string reply;
  SendSetting(protocol::SetAddress(static_cast<std::uint8_t>(address)), reply);
  m_main.updwnConnectAddress.SetValue(address);  // its change puts the address in use and stores it
  if (SendSetting(protocol::kNewAddressQuery, reply)) {
    forms::ShowDoubtful({&m_form.txtSSPAAddress}, {});
    m_opening.timing.DelayBlocking(kPauseAroundCommand);  // the read-back may go on at once
    return;
  }

  m_desktop.ShowMessage({QStringLiteral("Address Change Failed"), platform::MessageIcon::kWarning});
  m_main.updwnConnectAddress.SetValue(former);
  m_form.updwnSSPAAddress.SetValue(former);
  m_opening.CloseUnanswered();
}

}  // namespace tarnwell::settings

#include "app/program.h"

#include "app/wires.h"

namespace tarnwell::app {

Program::Program(const Machine& machine)
    : m_machine(machine),
      m_timing(machine.counter, machine.yielder),
      m_line(m_shared, m_timing, machine.comConnect),
      m_indicator(m_main, m_shared, machine.desktop),
      m_readers(m_main, m_shared, m_line, m_timing, m_session, m_indicator, machine.timeOfDay),
      m_commands(m_main, m_line, m_timing, m_session, m_readers),
      m_address(m_main, m_shared, m_properties, machine.desktop),
      m_polls(m_main, m_shared, m_timing, m_session, m_readers),
      m_connection(m_main, m_shared, m_line, m_timing, machine.comConnect, machine.desktop, m_session, m_readers,
                   m_indicator, m_polls),
      m_opener(m_main, m_timing, m_session),
      m_startUp(m_main, m_shared, m_timing, machine.comConnect, machine.desktop, m_properties) {
  WireForm();
  WireCommands();
  WireEntries();
}

Program::~Program() { m_main.UnloadForm(); }

bool Program::Start() {
  m_main.Show();
  return !m_main.Unloaded();
}

void Program::End() {
  m_main.UnloadForm();
  platform::Ending::CloseDialogs();
}

void Program::WireForm() {
  using forms::Form, forms::Timer, forms::Menu, forms::CommandButton;
  On(m_main, &Form::Load, [this] { m_startUp.Form_Load(); });
  On(m_main, &Form::Activate, [this] { m_startUp.Form_Activate(); });
  On(m_main, &Form::Unload, [this] { m_session.PollRunning = false; });
  On(m_main, &Form::Blocked, [this] { m_readers.DoubtPolled(); });
  On(m_main.cmdConnect, &CommandButton::Click, [this] { m_connection.cmdConnect_Click(); });
  On(m_main.cmdViewAlarms, &CommandButton::Click, [this] { OpenAlarms(); });
  On(m_main.mnuSWOpt, &Menu::Click, [this] { OpenOptions(); });
  On(m_main.mnuSSPASettings, &Menu::Click, [this] { OpenSettings(); });
  On(m_main.mnuExit, &Menu::Click, [this] { m_main.UnloadForm(); });
  On(m_main.mnuSnapshot, &Menu::Click, [this] { OpenSnapshot(); });
  On(m_main.tmrFlasher, &Timer::Tick, [this] { m_indicator.FlashAlarmIndicators(); });
  On(m_main.tmrForcePollResume, &Timer::Tick, [this] { m_polls.tmrForcePollResume_Timer(); });
}

void Program::WireCommands() {
  const auto gotFocus = &forms::OptionButton::GotFocus;
  On(m_main.optOnline, gotFocus, [this] { m_commands.SendStateCommand('O'); });
  On(m_main.optStandby, gotFocus, [this] { m_commands.SendStateCommand('S'); });
  On(m_main.optRFOn, gotFocus, [this] { m_commands.SendStateCommand('T'); });
  On(m_main.optRFMute, &forms::OptionButton::Click, [this] { m_commands.SendStateCommand('X'); });
  On(m_main.opt7316Auto, gotFocus, [this] { m_commands.SendStateCommand('A'); });
  On(m_main.opt7316Manual, gotFocus, [this] { m_commands.SendStateCommand('M'); });
  On(m_main.optLLO, gotFocus, [this] { m_commands.SendCommsMode(protocol::kLocalLockout); });
  On(m_main.optREM, gotFocus, [this] { m_commands.SendCommsMode(protocol::kRemote); });
  On(m_main.opt7316PathA1, gotFocus, [this] { m_commands.SendPathCommand("A=1"); });
  On(m_main.opt7316PathA2, gotFocus, [this] { m_commands.SendPathCommand("A=2"); });
  On(m_main.opt7316PathB2, gotFocus, [this] { m_commands.SendPathCommand("B=2"); });
  On(m_main.opt7316PathB3, gotFocus, [this] { m_commands.SendPathCommand("B=3"); });
}

void Program::WireEntries() {
  using forms::KeyAscii, forms::TextBox, forms::UpDown;
  On(m_main.updwnGainAdjust, &UpDown::Change, [this] { m_commands.updwnGainAdjust_Change(); });
  On(m_main.updwnGainAdjust, &UpDown::MouseUp, [this] { m_commands.updwnGainAdjust_MouseUp(); });
  On(m_main.txtGainAdjust, &TextBox::KeyPress, [this](KeyAscii& key) { m_commands.txtGainAdjust_KeyPress(key); });
  On(m_main.txtGainAdjust, &TextBox::KeyDown, [this](int key) { m_commands.txtGainAdjust_KeyDown(key); });
  On(m_main.txtGainAdjust, &TextBox::LostFocus, [this] { m_commands.updwnGainAdjust_Change(); });

  On(m_main.updwnConnectAddress, &UpDown::Change, [this] { m_address.updwnConnectAddress_Change(); });
  On(m_main.txtConnectAddress, &TextBox::KeyPress,
     [this](KeyAscii& key) { m_address.txtConnectAddress_KeyPress(key); });
  On(m_main.txtConnectAddress, &TextBox::KeyDown, [this](int key) { m_address.txtConnectAddress_KeyDown(key); });
  On(m_main.txtConnectAddress, &TextBox::LostFocus, [this] { m_address.updwnConnectAddress_Change(); });
}

}  // namespace tarnwell::app

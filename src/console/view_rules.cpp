#include "console/view_rules.h"

#include "console/entry_text.h"

namespace tarnwell::console {

namespace {

template <typename... Controls>
void Enable(bool enabled, Controls&... controls) {
  (controls.setEnabled(enabled), ...);
}

}  // namespace

void SetConsoleEnabled(forms::frmMain& form, const link::SSPA_Public& shared, bool live) {
  const bool commands = live && !shared.RemoteLockout;
  const bool paths = commands && !shared.AutoMode;
  forms::frmMain& f = form;

  // alarms, levels, temperatures, and what the menu opens
  Enable(live, f.fraAlarms, f.lblAlarm, f.imgAlarm, f.imgOk, f.cmdViewAlarms);
  Enable(live, f.fraTemp, f.lblMod1, f.lblTempMod1, f.lblMod2, f.lblTempMod2);
  Enable(live, f.fraRF, f.lblRF, f.lblRFLevel, f.fraSSPAMute, f.lblSSPAMute);
  Enable(live, f.mnuSSPASettings, f.mnuSnapshot, f.fra7316Status);

  // an amplifier's commands
  Enable(commands, f.fraState, f.optOnline, f.optStandby, f.fraCommsMode, f.optLLO, f.optREM);
  Enable(commands, f.lblGainAdjust, f.txtGainAdjust, f.updwnGainAdjust, f.fraUserMute, f.optRFOn, f.optRFMute);

  // a controller's commands and state
  Enable(commands, f.fra7316Mode, f.opt7316Auto, f.opt7316Manual, f.fra7316SSPAStatus);
  Enable(commands, f.lbl7316SSPA1, f.lbl7316SSPA1State, f.lbl7316SSPA2, f.lbl7316SSPA2State);
  Enable(commands, f.lbl7316SSPA3, f.lbl7316SSPA3State, f.lbl7316PathAState, f.lbl7316PathBState);
  Enable(paths, f.fra7316PathASelect, f.opt7316PathA1, f.opt7316PathA2);
  Enable(paths, f.fra7316PathBSelect, f.opt7316PathB2, f.opt7316PathB3);
}

void Enable(bool enabled, std::initializer_list<QWidget*> controls) {
  for (QWidget* control : controls) control->setEnabled(enabled);
}

void EnableAndShow(bool shown, std::initializer_list<QWidget*> controls) {
  for (QWidget* control : controls) {
    control->setEnabled(shown);
    control->setVisible(shown);
  }
}

void BlankReadings(forms::frmMain& form) {
  forms::frmMain& f = form;
  for (forms::Label* label :
       {&f.lblTempMod1, &f.lblTempMod2, &f.lblRFLevel, &f.lblSSPAMute, &f.lblAlarm, &f.lbl7316SSPA1State,
        &f.lbl7316SSPA2State, &f.lbl7316SSPA3State, &f.lbl7316PathAState, &f.lbl7316PathBState}) {
    label->SetCaption(QStringLiteral(" "));
    label->SetBackground(QColor());
  }
  f.imgAlarm.setVisible(false);
  f.imgOk.setVisible(false);
}

void ShowGain(forms::frmMain& form) {
  form.txtGainAdjust.SetText(EntryFromNumber(form.updwnGainAdjust.Value() / 10.0, 1));
}

}  // namespace tarnwell::console

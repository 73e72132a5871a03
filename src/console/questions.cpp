#include "console/questions.h"

namespace tarnwell::console {

forms::Shown ShownBy(forms::frmMain& f, Question question) {
  switch (question) {
    case Question::kStatus:
      return {&f.optOnline, &f.optStandby, &f.optMaint, &f.optRFOn,     &f.optRFMute,    &f.lblSSPAMute,
              &f.optREM,    &f.optLLO,     &f.optRLO,   &f.opt7316Auto, &f.opt7316Manual};
    case Question::kRFLevel:
      return {&f.lblRFLevel};
    case Question::kAlarms:
      return {&f.lblAlarm, &f.imgAlarm, &f.imgOk};
    case Question::kTemperature1:
      return {&f.lblTempMod1};
    case Question::kTemperature2:
      return {&f.lblTempMod2};
    case Question::kConfiguration:
      return {};  // it decides what is there at all
    case Question::kSSPAStates:
      return {&f.lbl7316SSPA1State, &f.lbl7316SSPA2State, &f.lbl7316SSPA3State};
    case Question::kPathA:
      return {&f.lbl7316PathAState, &f.opt7316PathA1, &f.opt7316PathA2};
    case Question::kPathB:
      return {&f.lbl7316PathBState, &f.opt7316PathB2, &f.opt7316PathB3};
    case Question::kPriority:
      return {&f.fra7316PathASelect, &f.fra7316PathBSelect};
    case Question::kGain:
      return {&f.txtGainAdjust};
  }
  return {};
}

forms::Shown ShownByPoll(forms::frmMain& form) {
  forms::Shown all;
  for (int question = 0; question < static_cast<int>(Question::kGain); ++question) {
    const forms::Shown controls = ShownBy(form, static_cast<Question>(question));
    all.insert(all.end(), controls.begin(), controls.end());
  }
  return all;
}

forms::Shown ShownByAny(forms::frmMain& form) {
  forms::Shown all = ShownByPoll(form);
  all.push_back(&form.txtGainAdjust);
  return all;
}

}  // namespace tarnwell::console

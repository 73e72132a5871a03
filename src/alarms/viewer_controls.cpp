#include "alarms/viewer_controls.h"

namespace tarnwell::alarms {

void ShowPanelOf(forms::frmAlarms& form, bool controller) {
  form.fraAlarms.setEnabled(!controller);
  form.fraAlarms.setVisible(!controller);
  form.fra7316Alarms.setEnabled(controller);
  form.fra7316Alarms.setVisible(controller);
}

void FitToAmplifier(forms::frmAlarms& f, const link::SSPA_Public& shared) {
  const QString rail = shared.KBandAmp ? QStringLiteral("9.3V rail ") : QStringLiteral("11V rail ");
  f.lbl11L.SetCaption(rail + QStringLiteral("low"));
  f.lbl11H.SetCaption(rail + QStringLiteral("high"));
  f.lbl11V.setAccessibleName(rail.trimmed());
  f.lblPSThermal.SetCaption(shared.HWPlatform == 4 ? QStringLiteral("Fan Alarm")
                                                   : QStringLiteral("Power Supply Thermal"));

  const bool thermal = shared.HWPlatform == 2 || shared.HWPlatform == 4;
  const bool failSafe = shared.HWPlatform >= 2 && shared.HWPlatform <= 4;
  const struct {
    bool shown;
    std::vector<QWidget*> controls;
  } rows[] = {
      {shared.HWPlatform == 2, {&f.lbl11VLC, &f.lbl11LCH, &f.lbl11LCL, f.cmdAlarms(17), f.cmdAlarms(18)}},
      {link::MeasuresReflectedLevel(shared), {f.cmdAlarms(13), &f.lblReflected, &f.lblReflectedH}},
      {thermal, {&f.lblPSThermal, f.cmdAlarms(7)}},
      {failSafe, {&f.lblCEFailSafe, f.cmdAlarms(24)}},
      {!shared.SingleModule, {&f.lblTemp2, &f.lblTemp2H, f.cmdAlarms(20), &f.lblPowerAmp2, f.cmdAlarms(16)}},
  };
  for (const auto& row : rows) {
    for (QWidget* control : row.controls) control->setVisible(row.shown);
  }
}

void NameButtons(forms::frmAlarms& form) {
  for (const forms::Label* label : form.Inner().findChildren<forms::Label*>()) {
    if (label->buddy() != nullptr) label->buddy()->setAccessibleName(label->Caption());
  }
}

std::vector<QWidget*> LinkedControls(forms::frmAlarms& f) {
  return {&f.fra7316Alarms, &f.fra7316Legend, &f.fraAlarms,      &f.fraLegend,  //
          &f.lbl7316EEPROM, &f.lbl7316System, &f.lbl7316WGuide1, &f.lbl7316WGuide2, &f.lbl7316ExOk,  &f.lbl7316ExAck,
          &f.lbl7316ExAct,  &f.lbl5H,         &f.lbl5L,          &f.lbl11H,         &f.lbl11L,       &f.lbl11LCH,
          &f.lbl11LCL,      &f.lbl10L,        &f.lbl10H,         &f.lbl14L,         &f.lbl14H,       &f.lblRFL,
          &f.lblRFH,        &f.lblReflectedH, &f.lblTemp1H,      &f.lblTemp2H,      &f.lblDriverAmp, &f.lblPowerAmp1,
          &f.lblPowerAmp2,  &f.lblInternal,   &f.lblEEPROM,      &f.lblSimulated,   &f.lblAux,       &f.lblCEFailSafe,
          &f.lblPSThermal,  &f.lblExOk,       &f.lblExAck,       &f.lblExLatch,     &f.lblExAct,  //
          &f.lbl5V,         &f.lbl11V,        &f.lbl11VLC,       &f.lbl14V,         &f.lbl10V,       &f.lblTemp1,
          &f.lblTemp2,      &f.lblRF,         &f.lblReflected,  //
          &f.cmd7316ExOk,   &f.cmd7316ExAct,  &f.cmd7316ExAck,   &f.cmdExOk,        &f.cmdExAct,     &f.cmdExLatch,
          &f.cmdExAck};
}

forms::Shown AlarmButtons(forms::frmAlarms& form) {
  forms::Shown buttons;
  for (forms::frmAlarms::AlarmButtons* array : {&form.cmdAlarms, &form.cmd7316Alarms}) {
    for (int i = 0; i < array->size(); ++i) {
      if ((*array)(i) != nullptr) buttons.push_back((*array)(i));
    }
  }
  return buttons;
}

}  // namespace tarnwell::alarms

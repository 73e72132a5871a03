#include "settings/lock_groups.h"

#include <algorithm>

namespace tarnwell::settings {

std::vector<LockGroup> LockGroups(forms::frmSettings& f) {
  return {
      {&ReadFlags::ShutdownRead, {}, {&f.fraShutdown, &f.optAmpShutdownOn, &f.optAmpShutdownOff}},
      {&ReadFlags::TempCompRead,
       {&f.fraTempComp, &f.optTempCompOn, &f.optTempCompMin, &f.optTempCompMax, &f.optTempCompOff}},
      {&ReadFlags::AlarmStyleRead, {}, {&f.fraAlarmStyle, &f.optAlarmLatching, &f.optAlarmFleeting}},
      {&ReadFlags::AuxSenseRead, {}, {&f.fraAuxSense, &f.lblAuxSense, &f.optAuxHigh, &f.optAuxLow}},
      {&ReadFlags::BeeperRead, {&f.fraBeeper, &f.optBeeperOn, &f.optBeeperOff}},
      {&ReadFlags::ModeRead, {&f.fraMode, &f.optModeOnline, &f.optModeStandby}, {&f.optModeMaint}},
      {&ReadFlags::FanCtrlRead, {&f.fraFanCtrl, &f.optFanCtrlOn, &f.optFanCtrlOff}},
      {&ReadFlags::RFTableRead,
       {&f.fraRFTable, &f.lblRFLev, &f.lblRFLevel, &f.lblRFVolts, &f.txtRFVolts, &f.lblScrollRFLevel, &f.updwnRFLevel,
        &f.txtRFLevelPoint}},
      {&ReadFlags::PiNTableRead,
       {&f.fraPINTable, &f.lblPiNLev, &f.lblPiNLevel, &f.lblPiNDAC, &f.txtPiNDAC, &f.lblScrollPiNLevel,
        &f.updwnPiNLevel, &f.txtPiNLevelPoint}},
      {&ReadFlags::TCPointsRead,
       {&f.fraTCPoints, &f.lblTCComp, &f.txtTCComp, &f.lblScrollTempComp, &f.updwnTempComp, &f.txtTempCompPoint},
       {&f.lblTCTemp, &f.txtTCTemp}},
      {&ReadFlags::RFTCPointsRead,
       {&f.fraRFTCPoints, &f.lblRFTCComp, &f.txtRFTCComp, &f.lblRFTCTemp, &f.txtRFTCTemp, &f.lblScrollRFTempComp,
        &f.updwnRFTempComp, &f.txtRFTempCompPoint}},
  };
}

LockGroup LockGroupOf(forms::frmSettings& form, bool ReadFlags::*flag) {
  const std::vector<LockGroup> groups = LockGroups(form);
  return *std::find_if(groups.begin(), groups.end(), [flag](const LockGroup& group) { return group.flag == flag; });
}

void ApplyLock(const Opening& opening, const LockGroup& group) {
  const bool enabled = opening.IsUnlocked() && opening.read.*group.flag;
  for (QWidget* control : group.controls) control->setEnabled(enabled);
  for (QWidget* control : group.notInClass1) control->setEnabled(enabled && opening.shared.FirmwareClass != 1);
}

void SetRead(Opening& opening, bool ReadFlags::*flag) {
  opening.read.*flag = true;
  ApplyLock(opening, LockGroupOf(opening.form, flag));
}

}  // namespace tarnwell::settings

#pragma once

#include "forms/controls/command_button.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/option_button.h"
#include "forms/controls/tab_strip.h"
#include "forms/controls/text_box.h"
#include "forms/controls/timer.h"
#include "forms/controls/up_down.h"

namespace tarnwell::forms {

/// The settings of the connected device, on three pages under one tab strip.
class frmSettings : public Form {
 public:
  /// `mainLevel` is the RF level of the console, which the boxes of the thresholds and the address follow in their font
  /// size. It outlives the form.
  explicit frmSettings(const Label& mainLevel);

  /// The font size of the RF level on the console.
  double MainLevelPoints() const;

  CONTROL(Timer, tmrForcePollResume, *this, Off(2000));
  CONTROL(Timer, tmrStartLoad, *this, Off(100));
  CONTROL(CommandButton, cmdUnlock, *this, "Unloc&k", "", kGraphical);
  CONTROL(CommandButton, cmdExit, *this, "&Close");
  CONTROL(Frame, fraFactory, *this);
  CONTROL(Frame, fraFanCtrl, fraFactory, "&Thermal Fan Control", "", kDisabled);
  CONTROL(OptionButton, optFanCtrlOn, fraFanCtrl, "On", "Fan is thermally controlled", kDisabled);
  CONTROL(OptionButton, optFanCtrlOff, fraFanCtrl, "Off", "Fan is fixed ON", kDisabled);
  CONTROL(Frame, fraMode, fraFactory, "&Mode", "", kDisabled);
  CONTROL(OptionButton, optModeOnline, fraMode, "Online", "", kDisabled);
  CONTROL(OptionButton, optModeStandby, fraMode, "Stby", "", kDisabled);
  CONTROL(OptionButton, optModeMaint, fraMode, "Maint", "", kDisabled);
  CONTROL(Frame, fraRFTCPoints, fraFactory, "RF &Level Temperature Comp Points", "", kDisabled);
  CONTROL(TextBox, txtRFTempCompPoint, fraRFTCPoints, "", "", kDisabled | kReadOnly | kCentred);
  CONTROL(TextBox, txtRFTCTemp, fraRFTCPoints, "", "", kDisabled | UpTo(5) | kCentred);
  CONTROL(TextBox, txtRFTCComp, fraRFTCPoints, "", "", kDisabled | UpTo(6) | kCentred);
  CONTROL(UpDown, updwnRFTempComp, fraRFTCPoints, "", "", kDisabled | Range(0, 2));
  CONTROL(Label, lblScrollRFTempComp, fraRFTCPoints, "Scroll Table:", "", kDisabled | kRightAligned);
  CONTROL(Label, lblRFTCTemp, fraRFTCPoints, "Temperature (°C):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblRFTCComp, fraRFTCPoints, "Compensation (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Frame, fraRFTable, fraFactory, "&RF Level Table", "", kDisabled);
  CONTROL(TextBox, txtRFLevelPoint, fraRFTable, "", "", kDisabled | kReadOnly | kCentred);
  CONTROL(UpDown, updwnRFLevel, fraRFTable, "", "", kDisabled | Range(0, 25));
  CONTROL(CommandButton, cmdQuickCal, fraRFTable, "&QCal", "", kHidden | kDisabled);
  CONTROL(TextBox, txtRFVolts, fraRFTable, "", "", kDisabled | UpTo(5) | kCentred);
  CONTROL(Label, lblRFLevel, fraRFTable, "", "", kBoxed | kCentred);
  CONTROL(Label, lblScrollRFLevel, fraRFTable, "Scroll Table:", "", kDisabled | kRightAligned);
  CONTROL(Label, lblRFVolts, fraRFTable, "Sensor Level (V):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblRFLev, fraRFTable, "Level (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Frame, fraPINTable, fraFactory, "&PiN Diode Table", "", kDisabled);
  CONTROL(TextBox, txtPiNLevelPoint, fraPINTable, "", "", kDisabled | kReadOnly | kCentred);
  CONTROL(TextBox, txtPiNDAC, fraPINTable, "", "", kDisabled | UpTo(3) | kCentred);
  CONTROL(UpDown, updwnPiNLevel, fraPINTable, "", "", kDisabled | Range(0, 40));
  CONTROL(Label, lblPiNLevel, fraPINTable, "", "", kBoxed | kCentred);
  CONTROL(Label, lblPiNLev, fraPINTable, "Atten Level (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblPiNDAC, fraPINTable, "DAC Value (0-255):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblScrollPiNLevel, fraPINTable, "Scroll Table:", "", kDisabled | kRightAligned);
  CONTROL(Frame, fraTCPoints, fraFactory, "S&ystem Temperature Comp Points", "", kDisabled);
  CONTROL(TextBox, txtTempCompPoint, fraTCPoints, "", "", kDisabled | kReadOnly | kCentred);
  CONTROL(TextBox, txtTCComp, fraTCPoints, "", "", kDisabled | UpTo(6) | kCentred);
  CONTROL(TextBox, txtTCTemp, fraTCPoints, "", "", kDisabled | UpTo(5) | kCentred);
  CONTROL(UpDown, updwnTempComp, fraTCPoints, "", "", kDisabled | Range(0, 7));
  CONTROL(Label, lblTCComp, fraTCPoints, "Compensation (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblTCTemp, fraTCPoints, "Temperature (°C):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblScrollTempComp, fraTCPoints, "Scroll Table:", "", kDisabled | kRightAligned);
  CONTROL(Frame, fraStandard, *this);
  CONTROL(Frame, fraReflectedThreshold, fraStandard, "Reflected RF &Level Threshold", "", kDisabled);
  CONTROL(TextBox, txtReflectedMax, fraReflectedThreshold, "", "", kDisabled | UpTo(6) | kCentred | Points(12));
  CONTROL(UpDown, updwnReflectedMax, fraReflectedThreshold, "", "", kDisabled | Range(-5, 1000, 5) | kTenths);
  CONTROL(Label, lblReflectedMax, fraReflectedThreshold, "Maximum (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Frame, fra7316Config, fraStandard, "C&onfiguration");
  CONTROL(OptionButton, opt7316_11, fra7316Config, "1:1");
  CONTROL(OptionButton, opt7316_12, fra7316Config, "1:2");
  CONTROL(Frame, fra7316Priority, fraStandard, "&Priority");
  CONTROL(OptionButton, opt7316None, fra7316Priority, "None");
  CONTROL(OptionButton, opt7316PathA, fra7316Priority, "Path A");
  CONTROL(OptionButton, opt7316PathB, fra7316Priority, "Path B");
  CONTROL(Frame, fraThresholds, fraStandard, "&RF Level Thresholds", "", kDisabled);
  CONTROL(TextBox, txtRFMax, fraThresholds, "", "", kDisabled | UpTo(6) | kCentred | Points(12));
  CONTROL(TextBox, txtRFMin, fraThresholds, "", "", kDisabled | UpTo(6) | kCentred | Points(12));
  CONTROL(UpDown, updwnRFMax, fraThresholds, "", "", kDisabled | Range(-5, 1000, 5) | kTenths);
  CONTROL(UpDown, updwnRFMin, fraThresholds, "", "", kDisabled | Range(-5, 1000, 5) | kTenths);
  CONTROL(Label, lblRFMax, fraThresholds, "Maximum (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Label, lblRFMin, fraThresholds, "Minimum (dBm):", "", kDisabled | kRightAligned);
  CONTROL(Frame, fraTransceiver, fraStandard, "Conver&ter Connection", "", kDisabled);
  CONTROL(OptionButton, optTxVorel, fraTransceiver, "Vorel", "", kDisabled);
  CONTROL(OptionButton, optTxOther, fraTransceiver, "Generic", "", kDisabled);
  CONTROL(Frame, fraAddress, fraStandard, "SSPA &Address", "", kDisabled);
  CONTROL(TextBox, txtSSPAAddress, fraAddress, "", "", kDisabled | UpTo(3) | kCentred | Points(12) | kSingleStep);
  CONTROL(UpDown, updwnSSPAAddress, fraAddress, "", "", kDisabled | Range(0, 31));
  CONTROL(Label, lblSSPAAddress, fraAddress, "Address:", "", kDisabled | kRightAligned);
  CONTROL(Frame, fraAdvanced, *this);
  CONTROL(Frame, fraShutdown, fraAdvanced, "A&mplifier Shutdown", "", kDisabled);
  CONTROL(OptionButton, optAmpShutdownOn, fraShutdown, "On", "", kDisabled);
  CONTROL(OptionButton, optAmpShutdownOff, fraShutdown, "Off", "", kDisabled);
  CONTROL(Frame, fraAuxSense, fraAdvanced, "A&uxiliary Alarm Sense", "", kDisabled);
  CONTROL(OptionButton, optAuxLow, fraAuxSense, "Low", "", kDisabled);
  CONTROL(OptionButton, optAuxHigh, fraAuxSense, "High", "", kDisabled);
  CONTROL(Label, lblAuxSense, fraAuxSense, "Active:", "", kDisabled);
  CONTROL(Frame, fraAlarmStyle, fraAdvanced, "SSPA &Alarm Style", "", kDisabled);
  CONTROL(OptionButton, optAlarmFleeting, fraAlarmStyle, "Fleeting", "", kDisabled);
  CONTROL(OptionButton, optAlarmLatching, fraAlarmStyle, "Latching", "", kDisabled);
  CONTROL(Frame, fraBeeper, fraAdvanced, "SSPA &Beeper", "", kDisabled);
  CONTROL(OptionButton, optBeeperOff, fraBeeper, "Off", "", kDisabled);
  CONTROL(OptionButton, optBeeperOn, fraBeeper, "On", "", kDisabled);
  CONTROL(Frame, fraTempComp, fraAdvanced, "&Temperature Compensation", "", kDisabled);
  CONTROL(OptionButton, optTempCompMax, fraTempComp, "Max", "", kDisabled);
  CONTROL(OptionButton, optTempCompMin, fraTempComp, "Min", "", kDisabled);
  CONTROL(OptionButton, optTempCompOff, fraTempComp, "Off", "", kDisabled);
  CONTROL(OptionButton, optTempCompOn, fraTempComp, "On", "", kDisabled);
  CONTROL(TabStrip, tabSettings, *this, {"&Standard", "Ad&vanced", "&Factory"});
  CONTROL(Label, lblHWPlatform, *this, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Label, lblFirmwareVersion, *this, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Label, lblHWPlat, *this, "Hardware Platform:", "", kDisabled | kRightAligned);
  CONTROL(Label, lblFWVer, *this, "Firmware Version:", "", kDisabled | kRightAligned);

 private:
  const Label& m_mainLevel;
};

}  // namespace tarnwell::forms

#pragma once

#include "forms/controls/command_button.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/menu_entry.h"
#include "forms/controls/option_button.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/text_box.h"
#include "forms/controls/timer.h"
#include "forms/controls/up_down.h"

namespace tarnwell::forms {

/// The console: the amplifier's panels, and over them the panel of a redundancy controller. Logic shows one of the two.
class frmMain : public Form {
 public:
  frmMain();

  CONTROL(Frame, fra7316Status, *this, "Redundancy Controller Status");
  CONTROL(Frame, fra7316SSPAStatus, fra7316Status, "SSPA Status");
  CONTROL(Label, lbl7316SSPA3, fra7316SSPAStatus, "SSPA3:", "", kDisabled | kRightAligned);
  CONTROL(Label, lbl7316SSPA3State, fra7316SSPAStatus, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Label, lbl7316SSPA2, fra7316SSPAStatus, "SSPA2:", "", kDisabled | kRightAligned);
  CONTROL(Label, lbl7316SSPA2State, fra7316SSPAStatus, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Label, lbl7316SSPA1, fra7316SSPAStatus, "SSPA1:", "", kDisabled | kRightAligned);
  CONTROL(Label, lbl7316SSPA1State, fra7316SSPAStatus, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Frame, fra7316PathBSelect, fra7316Status, "Path &B SSPA Selection");
  CONTROL(OptionButton, opt7316PathB2, fra7316PathBSelect, "SSPA2");
  CONTROL(OptionButton, opt7316PathB3, fra7316PathBSelect, "SSPA3");
  CONTROL(Label, lbl7316PathBState, fra7316PathBSelect, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Frame, fra7316PathASelect, fra7316Status, "Path &A SSPA Selection");
  CONTROL(OptionButton, opt7316PathA2, fra7316PathASelect, "SSPA2");
  CONTROL(OptionButton, opt7316PathA1, fra7316PathASelect, "SSPA1");
  CONTROL(Label, lbl7316PathAState, fra7316PathASelect, "", "", kDisabled | kBoxed | kCentred);
  CONTROL(Frame, fra7316Mode, fra7316Status, "&Mode");
  CONTROL(OptionButton, opt7316Manual, fra7316Mode, "Manual");
  CONTROL(OptionButton, opt7316Auto, fra7316Mode, "Auto");
  CONTROL(Frame, fraTemp, *this, "Temperatures");
  CONTROL(Label, lblTempMod2, fraTemp, "", "", kBoxed | kCentred | Points(12));
  CONTROL(Label, lblTempMod1, fraTemp, "", "", kBoxed | kCentred | Points(12));
  CONTROL(Label, lblMod2, fraTemp, "PA Module 2:", "", kRightAligned);
  CONTROL(Label, lblMod1, fraTemp, "PA Module 1:", "", kRightAligned);
  CONTROL(Timer, tmrForcePollResume, *this, On(4000));
  CONTROL(Frame, fraCommsMode, *this, "Communications Mo&de");
  CONTROL(OptionButton, optREM, fraCommsMode, "REM", "Remote (normal)");
  CONTROL(OptionButton, optLLO, fraCommsMode, "LLO", "Local Lockout");
  CONTROL(OptionButton, optRLO, fraCommsMode, "RLO", "Remote Lockout", kDisabled);
  CONTROL(Frame, fraCommsConnect, *this, "Communications Connection");
  CONTROL(CommandButton, cmdConnect, fraCommsConnect, "&Connect");
  CONTROL(TextBox, txtConnectAddress, fraCommsConnect, "", "", UpTo(3) | kCentred | Points(12) | kSingleStep);
  CONTROL(UpDown, updwnConnectAddress, fraCommsConnect, "", "", Range(0, 31));
  CONTROL(Label, lblAddress, fraCommsConnect, "C&onnection Address:", "", kRightAligned);
  CONTROL(Timer, tmrFlasher, *this, Off(750));
  CONTROL(Frame, fraAlarms, *this, "Alarms");
  CONTROL(CommandButton, cmdViewAlarms, fraAlarms, "&View", "Detailed Alarm View");
  CONTROL(Label, lblAlarm, fraAlarms, "", "", kBoxed | kCentred | kBold | Points(12));
  CONTROL(Image, imgAlarm, fraAlarms, ":/pictures/alarm.svg", "Alarm");
  CONTROL(Image, imgOk, fraAlarms, ":/pictures/good.svg", "No alarm");
  CONTROL(Frame, fraState, *this, "Operating &State");
  CONTROL(OptionButton, optMaint, fraState, "Maintenance", "", kDisabled);
  CONTROL(OptionButton, optStandby, fraState, "Standby");
  CONTROL(OptionButton, optOnline, fraState, "Online");
  CONTROL(Frame, fraRF, *this, "&RF Output");
  CONTROL(Frame, fraSSPAMute, fraRF, "SSPA Mute State");
  CONTROL(Label, lblSSPAMute, fraSSPAMute, "", "", kBoxed | kCentred | Points(12));
  CONTROL(Frame, fraUserMute, fraRF, "&User Setting");
  CONTROL(OptionButton, optRFMute, fraUserMute, "RF Mute", "", kActsOnClick);
  CONTROL(OptionButton, optRFOn, fraUserMute, "RF On");
  CONTROL(TextBox, txtGainAdjust, fraRF, "", "", UpTo(6) | kCentred | Points(12));
  CONTROL(UpDown, updwnGainAdjust, fraRF, "", "", Range(-200, 0, 2) | kTenths);
  CONTROL(Label, lblRFLevel, fraRF, "", "", kBoxed | kCentred | Points(12));
  CONTROL(Label, lblRF, fraRF, "RF Level:", "", kRightAligned);
  CONTROL(Label, lblGainAdjust, fraRF, "Gain Adjust (dB):", "", kRightAligned);
  CONTROL(Menu, mnuFile, *this, "&File");
  CONTROL(Menu, mnuSnapshot, mnuFile, "&Save Snapshot (SSPA)");
  CONTROL(Menu, mnuExit, mnuFile, "E&xit");
  CONTROL(Menu, mnuOptions, *this, "O&ptions");
  CONTROL(Menu, mnuSSPASettings, mnuOptions, "SSPA &Settings");
  CONTROL(Menu, mnuSWOpt, mnuOptions, "Software &Options");
};

}  // namespace tarnwell::forms

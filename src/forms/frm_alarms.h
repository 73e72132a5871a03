#pragma once

#include "forms/controls/colours.h"
#include "forms/controls/command_button.h"
#include "forms/controls/control_array.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/timer.h"

namespace tarnwell::forms {

/// The alarm viewer: a button and a name for each alarm, a panel for amplifiers and one for the controller on the same
/// spot. Logic shows one of the two.
class frmAlarms : public Form {
 public:
  frmAlarms();

  using AlarmButtons = ControlArray<CommandButton, 26>;
  static constexpr Settings kAlarmButton = kGraphical | Background(kGoodColour) | kBold | Points(9.75);

  CONTROL(Frame, fra7316Alarms, *this, "&7316 Alarms");
  CONTROL(Frame, fra7316Legend, fra7316Alarms, "Legend", "", Points(9.75));
  CONTROL(CommandButton, cmd7316ExOk, fra7316Legend, "", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kGoodColour));
  CONTROL(CommandButton, cmd7316ExAct, fra7316Legend, "", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kActiveColour));
  CONTROL(CommandButton, cmd7316ExAck, fra7316Legend, "A", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kActiveColour) | kBold | Points(9.75));
  CONTROL(Label, lbl7316ExOk, fra7316Legend, "OK", "", Points(9.75));
  CONTROL(Label, lbl7316ExAct, fra7316Legend, "Active", "", Points(9.75));
  CONTROL(Label, lbl7316ExAck, fra7316Legend, "Acknowledged", "", Points(9.75));
  CONTROL(AlarmButtons, cmd7316Alarms, fra7316Alarms, {4, 18, 22, 23}, "", "Click to acknowledge", kAlarmButton);
  CONTROL(CommandButton, cmd7316ClearAlarms, fra7316Alarms, "  Clear &Alarms", "Click to clear latched larms",
          Points(9.75));
  CONTROL(Label, lbl7316WGuide2, fra7316Alarms, "Waveguide 2", "", Points(9.75));
  CONTROL(Label, lbl7316WGuide1, fra7316Alarms, "Waveguide 1", "", Points(9.75));
  CONTROL(Label, lbl7316System, fra7316Alarms, "System/Startup", "", Points(9.75));
  CONTROL(Label, lbl7316EEPROM, fra7316Alarms, "EEPROM", "", Points(9.75));
  CONTROL(Frame, fraAlarms, *this, "&SSPA Alarms", "", Points(9.75) | kInColumns);
  /// There are no elements 21 and 22. Element 20 looks different, and the constructor adds it.
  CONTROL(AlarmButtons, cmdAlarms, fraAlarms,
          {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 23, 24, 25}, "",
          "Click to acknowledge", kAlarmButton);
  CONTROL(Frame, fraLegend, fraAlarms, "Legend", "", Points(9.75));
  CONTROL(CommandButton, cmdExAck, fraLegend, "A", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kActiveColour) | kBold | Points(9.75));
  CONTROL(CommandButton, cmdExAct, fraLegend, "", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kActiveColour));
  CONTROL(CommandButton, cmdExLatch, fraLegend, "", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kLatchedColour));
  CONTROL(CommandButton, cmdExOk, fraLegend, "", "Click to acknowledge",
          kSample | kGraphical | kNoTabStop | Background(kGoodColour));
  CONTROL(Label, lblExAck, fraLegend, "Acknowledged", "", Points(9.75));
  CONTROL(Label, lblExAct, fraLegend, "Active", "", Points(9.75));
  CONTROL(Label, lblExLatch, fraLegend, "Latched", "", Points(9.75));
  CONTROL(Label, lblExOk, fraLegend, "OK", "", Points(9.75));
  CONTROL(CommandButton, cmdClear, fraAlarms, "  Clear &Alarms", "Click to clear latched larms", Points(9.75));
  CONTROL(Label, lblReflectedH, fraAlarms, "Reflected Level high", "", Points(9.75));
  CONTROL(Label, lblReflected, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lblTemp2, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lblTemp1, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lbl11V, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lbl14V, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lbl10V, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lbl11VLC, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lblRF, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lbl5V, fraAlarms, "", "", kBoxed | kCentred | Points(9.75));
  CONTROL(Label, lbl5L, fraAlarms, "5V rail low", "", Points(9.75));
  CONTROL(Label, lbl5H, fraAlarms, "5V rail high", "", Points(9.75));
  CONTROL(Label, lbl11L, fraAlarms, "11V rail low", "", Points(9.75));
  CONTROL(Label, lbl11H, fraAlarms, "11V rail high", "", Points(9.75));
  CONTROL(Label, lbl14L, fraAlarms, "14V rail low", "", Points(9.75));
  CONTROL(Label, lbl14H, fraAlarms, "14V rail high", "", Points(9.75));
  CONTROL(Label, lbl10L, fraAlarms, "-10V rail low", "", Points(9.75));
  CONTROL(Label, lbl10H, fraAlarms, "-10V rail high", "", Points(9.75));
  CONTROL(Label, lbl11LCL, fraAlarms, "11V LC rail low", "", Points(9.75));
  CONTROL(Label, lbl11LCH, fraAlarms, "11V LC rail high", "", Points(9.75));
  CONTROL(Label, lblPSThermal, fraAlarms, "Power Supply Thermal", "", Points(9.75));
  CONTROL(Label, lblInternal, fraAlarms, "Internal Processor Error", "", Points(9.75));
  CONTROL(Label, lblEEPROM, fraAlarms, "EEPROM/Configuration", "", Points(9.75));
  CONTROL(Label, lblRFL, fraAlarms, "RF Level low", "", Points(9.75));
  CONTROL(Label, lblRFH, fraAlarms, "RF Level high", "", Points(9.75));
  CONTROL(Label, lblDriverAmp, fraAlarms, "Driver Amp Fail", "", Points(9.75));
  CONTROL(Label, lblPowerAmp1, fraAlarms, "Power Amp 1 Fail", "", Points(9.75));
  CONTROL(Label, lblPowerAmp2, fraAlarms, "Power Amp 2 Fail", "", Points(9.75));
  CONTROL(Label, lblTemp1H, fraAlarms, "Over Temp Amp 1", "", Points(9.75));
  CONTROL(Label, lblTemp2H, fraAlarms, "Over Temp Amp 2", "", Points(9.75));
  CONTROL(Label, lblAux, fraAlarms, "Auxiliary", "", Points(9.75));
  CONTROL(Label, lblCEFailSafe, fraAlarms, "CE FailSafe", "", Points(9.75));
  CONTROL(Label, lblSimulated, fraAlarms, "Simulated", "", Points(9.75));
  CONTROL(Timer, tmrForcePollResume, *this, Off(2000));
  CONTROL(Timer, tmrAlarmBeeper, *this, Off(1000));
  CONTROL(Timer, tmrStartPolling, *this, Off(500));
  CONTROL(CommandButton, cmdExit, *this, "&Close", "", Points(9.75));
};

}  // namespace tarnwell::forms

#pragma once

#include "forms/controls/command_button.h"
#include "forms/controls/control_array.h"
#include "forms/controls/frame.h"
#include "forms/controls/label.h"
#include "forms/controls/option_button.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/tab_strip.h"

namespace tarnwell::forms {

/// The options of the program: line, data format and audible alarm, on two pages under one tab strip.
class frmOptions : public Form {
 public:
  frmOptions();

  using OptionPair = ControlArray<OptionButton, 2>;

  CONTROL(CommandButton, cmdCancel, *this, "&Cancel");
  CONTROL(CommandButton, cmdOK, *this, "&OK");
  CONTROL(Frame, fraGeneral, *this, "", "", kDisabled | kNoBorder);
  CONTROL(Frame, fraLevels, fraGeneral, "&Levels", "", kHidden | kDisabled);
  CONTROL(OptionButton, optUnits, fraLevels, "Units", "", kHidden | kDisabled);
  CONTROL(OptionButton, optEngineer, fraLevels, "Engineer", "", kHidden | kDisabled);
  CONTROL(Frame, fraAlarm, fraGeneral, "&Audible Alarm Notification");
  CONTROL(OptionButton, optAudibleOff, fraAlarm, "Off", "", kActsOnClick);
  CONTROL(OptionButton, optAudibleOn, fraAlarm, "On", "", kActsOnClick);
  CONTROL(Frame, fraCommunications, *this, "", "", kDisabled | kNoBorder);
  CONTROL(Frame, fraRS485, fraCommunications, "&RS485 Half Duplex Ctrl");
  CONTROL(OptionPair, opt485Control,
          {{1, fraRS485, "RTS", "", kActsOnClick}, {0, fraRS485, "None/Auto", "", kActsOnClick}});
  CONTROL(Frame, fraPort, fraCommunications, "&Port");
  CONTROL(OptionButton, optRS4xx, fraPort, "RS422/485", "", kActsOnClick);
  CONTROL(OptionButton, optRS232, fraPort, "RS232", "", kActsOnClick);
  CONTROL(ComboBox, cboPort, fraPort);
  CONTROL(Frame, fraBaud, fraCommunications, "&Data Rate");
  CONTROL(ComboBox, cboSpeed, fraBaud);
  CONTROL(Frame, fraConnection, fraCommunications, "Data Forma&t");
  CONTROL(ComboBox, cboStopBits, fraConnection);
  CONTROL(ComboBox, cboParity, fraConnection);
  CONTROL(ComboBox, cboDataBits, fraConnection);
  CONTROL(Label, lblStopBits, fraConnection, "Stop Bits:", "", kRightAligned);
  CONTROL(Label, lblParity, fraConnection, "Parity:", "", kRightAligned);
  CONTROL(Label, lblDataBits, fraConnection, "Data Bits:", "", kRightAligned);
  CONTROL(Frame, fraFlow, fraCommunications, "RS232 &Flow Control", "", kDisabled);
  CONTROL(OptionPair, optFlow, {{0, fraFlow, "None", "", kDisabled}, {1, fraFlow, "RTS/CTS", "", kDisabled}});
  CONTROL(TabStrip, tabOptions, *this, {"Co&mmunications", "&General"});
};

}  // namespace tarnwell::forms

#pragma once

#include "forms/controls/command_button.h"
#include "forms/controls/label.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/text_box.h"

namespace tarnwell::forms {

/// Asks for the description of a snapshot and shows how far its writing is.
class frmSaveSnapshot : public Form {
 public:
  frmSaveSnapshot();

  CONTROL(ProgressBar, prgSaveSnapshot, *this, "", "", Range(0, 100));
  CONTROL(TextBox, txtSnapShotID, *this, "", "", UpTo(50));
  CONTROL(CommandButton, cmdCancel, *this, "&Cancel");
  CONTROL(CommandButton, cmdOk, *this, "&OK");
  CONTROL(Label, lblFileDescription, *this, "&File Description:", "", kRightAligned | Points(9.75));
  CONTROL(Label, lblProgressBar, *this, "Progress Bar:", "", kRightAligned | Points(9.75));
};

}  // namespace tarnwell::forms

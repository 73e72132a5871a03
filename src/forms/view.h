#pragma once

#include <initializer_list>

#include "forms/controls/label.h"
#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

namespace tarnwell::forms {

struct CaptionOf {
  Label& caption;
  QWidget& field;
};

/// Makes each caption the name of its field for assistive tools, and leads the caption's access key to the field.
void PairUp(std::initializer_list<CaptionOf> pairs);

struct SpinOf {
  Label& caption;
  TextBox& field;
  UpDown& spin;
};

/// Names each spin control as its field, by its caption, and has the field tell the limits of the spin.
void NameSpins(std::initializer_list<SpinOf> spins);

/// Gives all windows of the program its icon.
void GiveIcon();

}  // namespace tarnwell::forms

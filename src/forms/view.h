#pragma once

#include <initializer_list>

#include "forms/controls/label.h"

namespace tarnwell::forms {

struct CaptionOf {
  Label& caption;
  QWidget& field;
};

/// Makes each caption the name of its field for assistive tools, and leads the caption's access key to the field.
void PairUp(std::initializer_list<CaptionOf> pairs);

/// Gives the form what all views have in common: the program's icon.
void GiveIcon(Form& form);

}  // namespace tarnwell::forms

#pragma once

#include <initializer_list>

#include "forms/controls/form.h"

namespace tarnwell::forms {

/// A caption that a control may get later, longer than the one it has.
struct LaterCaption {
  QWidget& control;
  QString text;
};

/// The largest of `points` and the sizes below it, in quarter points, at which every caption of the form fits its
/// control by width, and gives it to all controls. Captions are the texts of options, buttons, frames and of labels
/// that are no value fields, shown or not. A caption fits that is drawn at four fifths of its own width or more.
double FitCaptions(Form& form, double points, std::initializer_list<LaterCaption> later = {});

}  // namespace tarnwell::forms

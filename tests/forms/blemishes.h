#pragma once

#include <QStringList>

#include "forms/controls/form.h"

namespace tarnwell::forms {

/// What an operator would see on the form as it stands: texts cut off or drawn too narrow to read, controls that
/// reach out of their container, stand on each other or on a frame's title, captions without or away from their field.
/// A line each.
QStringList Blemishes(Form& form);

}  // namespace tarnwell::forms

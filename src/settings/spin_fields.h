#pragma once

#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

namespace tarnwell::settings {

/// Shows the limit that `spin` holds, in tenths of a dBm: "12.5", or "D" below 0.
void DrawLimit(forms::TextBox& field, const forms::UpDown& spin);

/// Shows the bus address that `spin` holds.
void DrawAddress(forms::TextBox& field, const forms::UpDown& spin);

// A spin that is given the value it has raises no Change, and its field would stay empty at the first reading: these
// draw in any case.
void SetLimit(forms::TextBox& field, forms::UpDown& spin, int tenths);
void SetAddress(forms::TextBox& field, forms::UpDown& spin, int address);

}  // namespace tarnwell::settings

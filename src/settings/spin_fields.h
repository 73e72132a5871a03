#pragma once

#include <string_view>

#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

namespace tarnwell::settings {

/// Shows the limit that `spin` holds, in tenths of a dBm: "12.5", or "D" below 0.
void DrawLimit(forms::TextBox& field, const forms::UpDown& spin);

/// Shows the bus address that `spin` holds.
void DrawAddress(forms::TextBox& field, const forms::UpDown& spin);

// A spin that is given the value it has raises no Change, and its field would stay empty at the first reading: these
// draw in any case.
/// `text` is the device's. What the spin can't hold is shown as the nearest that it can, as doubtful.
void SetLimit(forms::TextBox& field, forms::UpDown& spin, std::string_view text);
void SetAddress(forms::TextBox& field, forms::UpDown& spin, std::string_view text);

}  // namespace tarnwell::settings

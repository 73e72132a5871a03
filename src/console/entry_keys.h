#pragma once

#include <functional>
#include <string_view>

#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

namespace tarnwell::console {

inline constexpr std::string_view kDigitKeys = "0123456789";

/// One key in a field that sends nothing before Enter. Enter calls `commit` and Escape `takeBack`; both end there.
/// Else Backspace and the characters of `keys` enter the text; with a "D" among them a small one becomes a capital.
void TakeEntryKey(forms::KeyAscii& key, std::string_view keys, const std::function<void()>& commit,
                  const std::function<void()>& takeBack);

/// Up adds the increment of `spin`, Down takes it away, within its range. False: the value stands at its limit, or it
/// is another key.
bool StepByKey(forms::UpDown& spin, int key);

}  // namespace tarnwell::console

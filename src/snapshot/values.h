#pragma once

#include "snapshot/plan.h"

namespace tarnwell::snapshot {

// How the text of a reply is shown.

/// As the device sent it, and the unit.
Shown Text(std::string_view unit = {});
/// The same, or DISABLED.
Shown Limit(std::string_view unit);
/// The bus address that the first character stands for.
Shown Address();
/// Rounded to a whole number, and the unit.
Shown Rounded(std::string_view unit);
/// The meaning of the first code that the text holds anywhere.
Shown FirstHeld(std::span<const Meaning> meanings, std::string_view otherwise = alarms::kUnknownToken);
/// The meaning of the code that the text is.
Shown Exactly(std::span<const Meaning> meanings);
/// The tokens of the slots whose letter, counted from `firstLetter`, is in the text: three on a line, or NONE.
Shown ActiveAlarms();
Shown LatchedAlarms();

}  // namespace tarnwell::snapshot

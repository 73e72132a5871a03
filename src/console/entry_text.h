#pragma once

#include <QString>
#include <optional>
#include <string_view>

namespace tarnwell::console {

/// A number that a person typed, with "." or "," before its decimals, blanks around it allowed. Empty for anything
/// else, "nan" and "inf" included.
std::optional<double> NumberFromEntry(const QString& text);

/// The same, rounded to a whole number, halves to the even neighbour; empty also outside the 16-bit range.
std::optional<int> WholeNumberFromEntry(const QString& text);

/// A number as a field shows it at rest, with a zero ahead of the point: "0.5".
QString EntryFromNumber(double value, int decimals);

/// Why a field is doubtful that can't show the device's `text`.
QString OutsideOfEntry(std::string_view text);

}  // namespace tarnwell::console

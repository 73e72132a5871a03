#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::protocol {

/// The mark in place of a value: a limit or table point that is disabled.
inline constexpr char kDisabledMark = 'D';

/// What a disabled table point holds in each of its numbers.
inline constexpr int kDisabledValue = -100;

/// A number as the device takes it, of the nearest 32-bit float: up to 7 significant digits, a point, no zero ahead of
/// it, and a leading blank where a minus sign would stand: " 12.5", " .5", "-3", " 0".
std::string NumberText(double value);

/// The longest decimal number at the front of `text`, blanks skipped: sign, digits, point, digits. 0 if there is none.
/// No exponent, hexadecimal, "nan" or "inf" is read.
double LeadingNumber(std::string_view text);

/// Whether LeadingNumber finds one.
bool BeginsWithNumber(std::string_view text);

/// A text that is one number, rounded to a whole one, halves away from zero; any other text as it is.
std::string RoundedText(std::string_view text);

/// A device's text that is one number, rounded to a whole one of 16 bits, halves to the even neighbour. Nothing for any
/// other text.
std::optional<int> WholeNumber(std::string_view text);

/// Tenths as a spin control holds them: the value times 10, rounded, halves to the even neighbour, held within the
/// range of an int.
int Tenths(double value);

/// An index as two digits, such as "07".
std::string IndexText(int index);

/// A whole temperature as at least three digits with a minus sign ahead when negative: "-050", "000", "125".
std::string TemperatureText(int degrees);

enum class LeadingZero { kNone, kAlways };

/// A number for the operator with a fixed count of decimals, rounded, halves away from zero: 12.34 as "12.3"; 0.5 as
/// ".5" or "0.5" by `zero`.
std::string FixedText(double value, int decimals, LeadingZero zero);

}  // namespace tarnwell::protocol

#include "protocol/encodings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>

namespace tarnwell::protocol {

namespace {

constexpr int kSignificantDigits = 7;

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The C++ library's conversion, since it alone doesn't follow the user's locale.
std::string FixedDigits(double value, int decimals) {
  std::array<char, 400> buffer;  // a double has at most 309 digits before the point
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
  return {buffer.data(), result.ptr};
}

/// Decimals that give `magnitude`, more than 0, its significant digits.
int SignificantDecimals(double magnitude) {
  const int digitsAhead = static_cast<int>(std::floor(std::log10(magnitude))) + 1;
  return std::clamp(kSignificantDigits - digitsAhead, 0, 60);
}

void TrimDecimals(std::string& digits) {
  if (digits.find('.') == std::string::npos) return;
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
}

void DropLeadingZero(std::string& digits) {
  if (digits.substr(0, 2) == "0.") digits.erase(0, 1);
}

std::string PaddedDigits(int magnitude, std::size_t width) {
  std::string digits = std::to_string(magnitude);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

/// Takes the longest decimal number off the front of `text`, blanks ahead of it included.
std::optional<double> TakeNumber(std::string_view& text) {
  std::string_view rest = text.substr(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = !rest.empty() && rest.front() == '-';
  if (negative || (!rest.empty() && rest.front() == '+')) rest.remove_prefix(1);

  // from_chars would also take "inf" and "nan"
  const bool number = !rest.empty() && (IsDigit(rest[0]) || (rest.size() > 1 && rest[0] == '.' && IsDigit(rest[1])));
  if (!number) return std::nullopt;
  double magnitude = 0.0;
  const auto result = std::from_chars(rest.data(), rest.data() + rest.size(), magnitude, std::chars_format::fixed);
  if (result.ec != std::errc{}) return std::nullopt;
  text = rest.substr(static_cast<std::size_t>(result.ptr - rest.data()));
  return negative ? -magnitude : magnitude;
}

/// The number that `text` is as a whole, blanks aside.
std::optional<double> NumberAlone(std::string_view text) {
  const std::optional<double> value = TakeNumber(text);
  return text.find_first_not_of(' ') == std::string_view::npos ? value : std::nullopt;
}

}  // namespace

std::string NumberText(double value) {
  const double single = static_cast<float>(value);
  if (single == 0.0 || !std::isfinite(single)) return " 0";
  const double magnitude = std::abs(single);
  std::string digits = FixedDigits(magnitude, SignificantDecimals(magnitude));
  TrimDecimals(digits);
  DropLeadingZero(digits);
  return (single < 0 ? '-' : ' ') + digits;
}

double LeadingNumber(std::string_view text) { return TakeNumber(text).value_or(0.0); }

bool BeginsWithNumber(std::string_view text) { return TakeNumber(text).has_value(); }

std::string RoundedText(std::string_view text) {
  const std::optional<double> value = NumberAlone(text);
  return value ? FixedText(*value, 0, LeadingZero::kAlways) : std::string(text);
}

std::optional<int> WholeNumber(std::string_view text) {
  using Range = std::numeric_limits<std::int16_t>;
  const double whole = std::nearbyint(NumberAlone(text).value_or(std::numeric_limits<double>::max()));
  if (whole < Range::min() || whole > Range::max()) return std::nullopt;
  return static_cast<int>(whole);
}

int Tenths(double value) {
  constexpr double kLowest = std::numeric_limits<int>::min();
  constexpr double kHighest = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::nearbyint(value * 10.0), kLowest, kHighest));
}

std::string IndexText(int index) { return PaddedDigits(index, 2); }

std::string TemperatureText(int degrees) { return (degrees < 0 ? "-" : "") + PaddedDigits(std::abs(degrees), 3); }

std::string FixedText(double value, int decimals, LeadingZero zero) {
  const double scale = std::pow(10.0, decimals);
  // A decimal half, such as 1.005, may lie a little below it as a binary number.
  constexpr double kAbove = 1.0 + 4.0 * std::numeric_limits<double>::epsilon();
  const double scaled = std::round(std::abs(value) * scale * kAbove);
  std::string digits = FixedDigits(scaled / scale, decimals);
  if (zero == LeadingZero::kNone) DropLeadingZero(digits);
  return (value < 0 && scaled != 0.0 ? "-" : "") + digits;
}

}  // namespace tarnwell::protocol

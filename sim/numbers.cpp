#include "sim/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "protocol/encodings.h"

namespace tarnwell::sim {

namespace {

std::string_view WithoutLead(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  text = WithoutLead(text);
  // from_chars would also take "inf" and "nan"
  if (text.find_first_not_of("0123456789.-") != std::string_view::npos) return std::nullopt;
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<int> ParseWhole(std::string_view text) {
  text = WithoutLead(text);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string Decimals(double value, int decimals) {
  return protocol::FixedText(value, decimals, protocol::LeadingZero::kAlways);
}

std::string Shortest(double value) {
  std::string text = protocol::NumberText(value);
  if (text.front() == ' ') text.erase(0, 1);
  return text;
}

}  // namespace tarnwell::sim

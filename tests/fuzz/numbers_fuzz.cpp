#include <algorithm>
#include <cmath>
#include <cstring>

#include "fuzz.h"
#include "protocol/encodings.h"

namespace {

using namespace tarnwell;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// A sign's place, digits and at most one point, no zero that says nothing.
void RequireWireForm(std::string_view text) {
  fuzz::Require(text.size() >= 2 && (text[0] == ' ' || text[0] == '-'));
  const std::string_view digits = text.substr(1);
  const bool point = digits.find('.') != std::string_view::npos;
  fuzz::Require(digits.find_first_not_of("0123456789.") == std::string_view::npos);
  fuzz::Require(std::count(digits.begin(), digits.end(), '.') <= 1 && (digits == "0" || digits.front() != '0'));
  if (point) fuzz::Require(IsDigit(digits.back()) && digits.back() != '0');
}

/// The device must read the value that was meant, to seven digits.
void RequireSameValue(double value) {
  const double single = static_cast<float>(value);
  const std::string text = protocol::NumberText(value);
  RequireWireForm(text);
  if (!std::isfinite(single) || std::abs(single) < 1e-30) return;
  fuzz::Require(std::abs(protocol::LeadingNumber(text) - single) <= std::abs(single) * 1e-6);
}

}  // namespace

// The bytes once as a text that a device sent, once as a number of the program's own.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const double read = protocol::LeadingNumber(fuzz::Text(data, size));
  fuzz::Require(std::isfinite(read));
  RequireSameValue(read);
  const int tenths = protocol::Tenths(read);
  if (std::abs(read) < 1e8) fuzz::Require(std::abs(tenths - read * 10.0) <= 0.5001);

  double value = 0.0;
  std::memcpy(&value, data, std::min(size, sizeof value));
  RequireSameValue(value);
  return 0;
}

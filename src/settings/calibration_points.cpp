#include "settings/calibration_points.h"

#include <cmath>
#include <limits>

#include "console/entry_text.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::settings {

namespace {

constexpr std::int16_t kDisabled = protocol::kDisabledValue;
constexpr std::size_t kRFLevelEcho = 4;  // "R05="
constexpr std::size_t kPiNEcho = 4;      // "P07="
constexpr std::size_t kFixedName = 5;    // "H+025"

bool IsDisabled(std::string_view text) { return protocol::Holds(text, "D"); }

float Number(std::string_view text) { return static_cast<float>(protocol::LeadingNumber(text)); }

/// The whole text as a number of 16 bits, halves to the even neighbour.
std::optional<std::int16_t> WholeText(std::string_view text) {
  const std::optional<int> whole = protocol::WholeNumber(text);
  if (!whole) return std::nullopt;
  return static_cast<std::int16_t>(*whole);
}

}  // namespace

int FixedTemperature(int index) { return index * 25 - 50; }

bool TakeRFLevel(std::string_view reply, RFLevelPoint& point) {
  const std::string_view text = protocol::AfterEcho(reply, kRFLevelEcho);
  if (IsDisabled(text)) {
    point = {kDisabled, kDisabled};
    return true;
  }
  const std::size_t level = text.find('P');
  const std::size_t volts = text.find('V');
  if (level == std::string_view::npos || volts == std::string_view::npos || volts < level) return false;
  const std::string_view levelText = text.substr(level + 1, volts - level - 1);
  const double dbm = std::nearbyint(protocol::LeadingNumber(levelText));
  if (dbm < 0 || dbm > std::numeric_limits<std::uint8_t>::max()) return false;
  point = {Number(text.substr(volts + 1)), static_cast<std::int16_t>(dbm)};
  return protocol::BeginsWithNumber(levelText) && protocol::BeginsWithNumber(text.substr(volts + 1));
}

bool TakePiN(std::string_view reply, PiNPoint& point) {
  const std::string_view text = protocol::AfterEcho(reply, kPiNEcho);
  const std::optional<std::int16_t> value = IsDisabled(text) ? kDisabled : WholeText(text);
  point.DAC = value.value_or(point.DAC);
  return value.has_value();
}

bool TakeCompensation(std::string_view text, CompensationPoint& point) {
  if (text.starts_with('.')) return TakeSetCompensation(text.substr(1), point);
  if (!text.starts_with("=D")) return false;
  point = {kDisabled, 0};
  return true;
}

bool TakeSetCompensation(std::string_view text, CompensationPoint& point) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return false;
  const std::optional<std::int16_t> degrees = WholeText(text.substr(0, equals));
  if (!degrees) return false;
  const std::string_view value = text.substr(equals + 1);
  point = {IsDisabled(text) ? kDisabled : Number(value), *degrees};
  return IsDisabled(text) || protocol::BeginsWithNumber(value);
}

bool TakeFixedCompensation(std::string_view reply, int degrees, CompensationPoint& point) {
  point.Temp = static_cast<std::int16_t>(degrees);
  const std::string_view value = protocol::AfterEcho(reply, kFixedName);
  if (protocol::Holds(reply, "=D")) {
    point.Comp = kDisabled;
    return true;
  }
  if (!value.starts_with('=')) return false;
  point.Comp = Number(value.substr(1));
  return protocol::BeginsWithNumber(value.substr(1));
}

std::optional<float> CompensationOf(const QString& text) {
  if (text.contains(DisabledText(), Qt::CaseInsensitive)) return static_cast<float>(kDisabled);
  const std::optional<double> number = console::NumberFromEntry(text);
  if (!number) return std::nullopt;
  return static_cast<float>(*number);
}

}  // namespace tarnwell::settings

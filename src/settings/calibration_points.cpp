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

void TakeRFLevel(std::string_view reply, RFLevelPoint& point) {
  const std::string_view text = protocol::AfterEcho(reply, kRFLevelEcho);
  if (IsDisabled(text)) {
    point = {kDisabled, kDisabled};
    return;
  }
  const std::size_t level = text.find('P');
  const std::size_t volts = text.find('V');
  if (level == std::string_view::npos || volts == std::string_view::npos || volts < level) return;
  const double dbm = std::nearbyint(protocol::LeadingNumber(text.substr(level + 1, volts - level - 1)));
  if (dbm < 0 || dbm > std::numeric_limits<std::uint8_t>::max()) return;
  point = {Number(text.substr(volts + 1)), static_cast<std::int16_t>(dbm)};
}

void TakePiN(std::string_view reply, PiNPoint& point) {
  const std::string_view text = protocol::AfterEcho(reply, kPiNEcho);
  point.DAC = IsDisabled(text) ? kDisabled : WholeText(text).value_or(point.DAC);
}

void TakeCompensation(std::string_view text, CompensationPoint& point) {
  if (text.starts_with('.')) {
    TakeSetCompensation(text.substr(1), point);
  } else if (text.starts_with("=D")) {
    point = {kDisabled, 0};
  }
}

void TakeSetCompensation(std::string_view text, CompensationPoint& point) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return;
  const std::optional<std::int16_t> degrees = WholeText(text.substr(0, equals));
  if (!degrees) return;
  point = {IsDisabled(text) ? kDisabled : Number(text.substr(equals + 1)), *degrees};
}

void TakeFixedCompensation(std::string_view reply, int degrees, CompensationPoint& point) {
  point.Temp = static_cast<std::int16_t>(degrees);
  const std::string_view value = protocol::AfterEcho(reply, kFixedName);
  if (protocol::Holds(reply, "=D")) {
    point.Comp = kDisabled;
  } else if (value.starts_with('=')) {
    point.Comp = Number(value.substr(1));
  }
}

std::optional<float> CompensationOf(const QString& text) {
  if (text.contains(DisabledText(), Qt::CaseInsensitive)) return static_cast<float>(kDisabled);
  const std::optional<double> number = console::NumberFromEntry(text);
  if (!number) return std::nullopt;
  return static_cast<float>(*number);
}

}  // namespace tarnwell::settings

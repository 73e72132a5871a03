#include "snapshot/table_entries.h"

#include <cmath>

#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::snapshot {

namespace {

using protocol::AfterEcho;
using protocol::Holds;

constexpr std::string_view kDisabled = "D";
constexpr std::string_view kDisabledValue = "=D";
constexpr std::string_view kDisabledEntry = "(D, D)";

std::string Pair(std::string_view first, std::string_view second) {
  return std::string("(").append(first).append(", ").append(second).append(")");
}

/// ".-20=1.5", ".-20=D" or "=D"
std::string CompensationEntry(std::string_view text) {
  if (text.starts_with(kDisabledValue)) return std::string(kDisabledEntry);
  const std::size_t equals = text.find('=');
  if (!text.starts_with('.') || equals == std::string_view::npos) return std::string(kErrorEntry);
  const std::string_view compensation = text.substr(equals + 1);
  return Pair(text.substr(1, equals - 1), Holds(compensation, kDisabled) ? kDisabled : compensation);
}

std::string LevelText(std::string_view number) {
  return protocol::FixedText(std::nearbyint(protocol::LeadingNumber(number)), 0, protocol::LeadingZero::kAlways);
}

}  // namespace

std::optional<std::string> RFCompensationEntry(int /*index*/, std::string_view reply) {
  return CompensationEntry(AfterEcho(reply, 4));
}

std::optional<std::string> SystemCompensationEntry(int /*index*/, std::string_view reply) {
  return CompensationEntry(AfterEcho(reply, 3));
}

std::optional<std::string> FixedCompensationEntry(int /*index*/, std::string_view reply) {
  constexpr std::size_t kEquals = 5;
  const std::string_view temperature = AfterEcho(reply, 1).substr(0, kEquals - 1);
  if (Holds(reply, kDisabledValue)) return Pair(temperature, kDisabled);
  if (!AfterEcho(reply, kEquals).starts_with('=')) return std::string(kErrorEntry);
  return Pair(temperature, AfterEcho(reply, kEquals + 1));
}

std::optional<std::string> RFLevelEntry(int /*index*/, std::string_view reply) {
  const std::string_view text = AfterEcho(reply, 4);
  if (Holds(text, kDisabled)) return std::string(kDisabledEntry);
  const std::size_t level = text.find('P');
  const std::size_t volts = level != std::string_view::npos ? text.find('V', level) : level;
  if (volts == std::string_view::npos) return std::string(kErrorEntry);
  return Pair(LevelText(text.substr(level + 1, volts - level - 1)), text.substr(volts + 1));
}

std::optional<std::string> PiNEntry(int index, std::string_view reply) {
  const std::string_view text = AfterEcho(reply, 4);
  if (Holds(text, kDisabled)) return Pair(std::to_string(index), kDisabled);
  const std::optional<int> setting = protocol::WholeNumber(text);
  if (!setting) return std::nullopt;
  return Pair(std::to_string(index), std::to_string(*setting));
}

}  // namespace tarnwell::snapshot

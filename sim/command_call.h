#pragma once

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sim/amplifier.h"
#include "sim/controller.h"
#include "sim/numbers.h"
#include "sim/station.h"

namespace tarnwell::sim {

/// What a command has to print; nothing: its arguments make no sense, and nothing has changed.
using Told = std::optional<std::string>;

/// What a command's number may be.
struct Range {
  double low;
  double high;
};

/// The command being carried out.
struct Call {
  Station& station;
  double now;
  std::vector<std::string_view> words;  ///< the arguments
  Range range;                          ///< of the number among them

  Device& TheDevice() const { return station.Selected(); }
  Amplifier& TheAmplifier() const { return static_cast<Amplifier&>(TheDevice()); }
  Controller& TheController() const { return static_cast<Controller&>(TheDevice()); }
};

template <class T>
std::optional<T> Choose(std::string_view word, std::initializer_list<std::pair<std::string_view, T>> choices) {
  const auto found = std::find_if(choices.begin(), choices.end(), [&](const auto& row) { return row.first == word; });
  return found == choices.end() ? std::nullopt : std::optional(found->second);
}

/// Puts a chosen value in its place.
template <class T>
Told Put(T& place, const std::optional<T>& value) {
  if (!value) return std::nullopt;
  place = *value;
  return "";
}

inline std::optional<bool> Switch(std::string_view word) { return Choose<bool>(word, {{"on", true}, {"off", false}}); }

/// A number within the command's range.
inline std::optional<double> Within(const Call& call, std::string_view word) {
  const auto value = ParseNumber(word);
  return value && *value >= call.range.low && *value <= call.range.high ? value : std::nullopt;
}

// The commands that change the selected device; the table of commands checks that it is of the right kind.
Told SetAlarm(const Call& call);
Told Alarms(const Call& call);
Told Lockout(const Call& call);
Told Comms(const Call& call);
Told SetState(const Call& call);
Told SetModule(const Call& call);
Told Mute(const Call& call);
Told Level(const Call& call);
Told Temperature(const Call& call);
Told Gain(const Call& call);
Told Automatic(const Call& call);
Told Manual(const Call& call);
Told Configuration(const Call& call);
Told Path(const Call& call);
Told Priority(const Call& call);
Told Online(const Call& call);

// The commands for the line, the program and all devices.
Told Silence(const Call& call);
Told Talk(const Call& call);
Told SetFault(const Call& call);
Told SelectDevice(const Call& call);
Told Pull(const Call& call);
Told Plug(const Call& call);
Told Trace(const Call& call);
Told Quit(const Call& call);
Told Show(const Call& call);

}  // namespace tarnwell::sim

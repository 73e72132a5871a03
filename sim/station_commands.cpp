#include "sim/command_call.h"

namespace tarnwell::sim {

Told Silence(const Call& call) {
  const auto seconds = call.words.empty() ? std::nullopt : Within(call, call.words[0]);
  if (!call.words.empty() && !seconds) return std::nullopt;
  call.station.Silence(call.now, seconds);
  return "";
}

Told Talk(const Call& call) {
  call.station.Talk();
  return "";
}

Told SetFault(const Call& call) {
  const auto probability = Within(call, call.words[1]);
  const bool taken = probability && call.station.LineFaults().Set(call.words[0], *probability);
  return taken ? Told("") : std::nullopt;
}

Told SelectDevice(const Call& call) {
  const auto address = ParseWhole(call.words[0]);
  const bool taken =
      address && *address >= 0 && *address <= 255 && call.station.Select(static_cast<std::uint8_t>(*address));
  return taken ? Told("") : std::nullopt;
}

Told Pull(const Call& call) { return Put(call.station.Asked().plugged, std::optional(false)); }
Told Plug(const Call& call) { return Put(call.station.Asked().plugged, std::optional(true)); }
Told Trace(const Call& call) { return Put(call.station.Asked().trace, Switch(call.words[0])); }
Told Quit(const Call& call) { return Put(call.station.Asked().quit, std::optional(true)); }

Told Show(const Call& call) {
  std::string text;
  for (const auto& device : call.station.Devices()) {
    text += device.get() == &call.TheDevice() ? "* " : "  ";
    text += "address " + std::to_string(device->Address()) + ": " + device->Model() + ", " + device->Firmware() +
            ", status " + device->Status() + ", alarms " + device->Alarms().Letters() + "\n";
  }
  if (call.station.Silent()) text += "  silent\n";
  for (std::size_t i = 0; i < kFaults; ++i) {
    const double probability = call.station.LineFaults().Probability(static_cast<Fault>(i));
    if (probability > 0.0) text += "  fault " + std::string(kFaultNames[i].name) + " " + Shortest(probability) + "\n";
  }
  return text;
}

}  // namespace tarnwell::sim

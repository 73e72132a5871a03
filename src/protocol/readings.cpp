#include "protocol/readings.h"

#include <array>

#include "link/sspa_public.h"
#include "protocol/encodings.h"

namespace tarnwell::protocol {

namespace {

/// A code and what it means; tables of these are searched in order.
template <typename Meaning>
struct Code {
  std::string_view code;
  Meaning meaning;
};

template <typename Meaning, std::size_t Count>
constexpr Meaning FirstHeld(std::string_view text, const std::array<Code<Meaning>, Count>& codes, Meaning otherwise) {
  for (const Code<Meaning>& row : codes) {
    if (Holds(text, row.code)) return row.meaning;
  }
  return otherwise;
}

struct ModelRow {
  std::string_view letter;
  std::string_view power;
  Model model;
};

constexpr std::string_view kControllerModel = "7316";

constexpr std::array<ModelRow, 5> kAmplifierModels = {{{"C", "60", {1, true, false}},
                                                       {"C", "120", {2, true, false}},
                                                       {"C", "240", {3, false, false}},
                                                       {"K", "40", {4, true, true}},
                                                       {"K", "80", {5, false, true}}}};

// "857E" holds "857" too
constexpr std::array<Code<int>, 3> kPlatforms = {{{"842", 2}, {"857E", 4}, {"857", 3}}};

constexpr std::array<Code<CommsMode>, 2> kCommsModes = {{{"Y", CommsMode::kLLO}, {"Z", CommsMode::kRLO}}};

constexpr std::array<Code<OperatingState>, 3> kOperatingStates = {
    {{"O", OperatingState::kOnline}, {"S", OperatingState::kStandby}, {"M", OperatingState::kMaintenance}}};

constexpr std::array<Code<RFOutput>, 2> kMuteReasons = {
    {{"D", RFOutput::kMutedDirect}, {"B", RFOutput::kMutedModuleFailed}}};

constexpr std::array<Code<ControllerMode>, 2> kControllerModes = {
    {{"A", ControllerMode::kAutomatic}, {"M", ControllerMode::kManual}}};

constexpr std::array<Code<Configuration>, 2> kConfigurations = {
    {{"1", Configuration::k1to1}, {"2", Configuration::k1to2}}};

constexpr std::array<Code<PriorityPath>, 2> kPriorities = {{{"A", PriorityPath::kPathA}, {"B", PriorityPath::kPathB}}};

}  // namespace

Model ReadModel(std::string_view text) {
  if (Holds(text, kControllerModel)) return {link::kRedundancyController, false, false};
  for (const ModelRow& row : kAmplifierModels) {
    if (Holds(text, row.letter) && Holds(text, row.power)) return row.model;
  }
  return {link::kUnknownSSPA, false, false};
}

int ReadFirmwareClass(std::string_view text) {
  // 0264C-01 V6.0: four characters from one ahead of the point
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos || point == 0) return 1;
  const double version = LeadingNumber(text.substr(point - 1, 4));
  if (version == 6.0) return 2;
  return version > 6.0 ? 3 : 1;
}

int ReadPlatform(std::string_view text) { return FirstHeld(text, kPlatforms, 1); }

CommsMode ReadCommsMode(std::string_view status) { return FirstHeld(status, kCommsModes, CommsMode::kREM); }

OperatingState ReadOperatingState(std::string_view status) {
  return FirstHeld(status, kOperatingStates, OperatingState::kNotTold);
}

RFOutput ReadRFOutput(std::string_view status) {
  if (Holds(status, "T")) return Holds(status, "B") ? RFOutput::kOnButModuleFailed : RFOutput::kOn;
  if (!Holds(status, "X")) return RFOutput::kNotTold;
  return FirstHeld(status, kMuteReasons, RFOutput::kMutedByUser);
}

std::string_view RFOutputText(RFOutput output) {
  constexpr std::string_view kFailed = "RF Mute (Amp Module Fail)";
  // A failed module is what the operator has to know, with the output switched on as well.
  constexpr std::array<std::string_view, 6> kTexts = {"",      "RF On",         kFailed, "RF Mute (Direct I/O)",
                                                      kFailed, "RF Mute (User)"};
  return kTexts[static_cast<std::size_t>(output)];
}

bool MuteIsForced(std::string_view status) { return Holds(status, "D") || Holds(status, "B"); }

ControllerMode ReadControllerMode(std::string_view status) {
  return FirstHeld(status, kControllerModes, ControllerMode::kNotTold);
}

Configuration ReadConfigurationCode(std::string_view text) {
  return FirstHeld(text, kConfigurations, Configuration::kNotTold);
}

PriorityPath ReadPriority(std::string_view text) { return FirstHeld(text, kPriorities, PriorityPath::kNone); }

}  // namespace tarnwell::protocol

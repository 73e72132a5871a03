#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwell::protocol {

/// What a reply says. A code is found by asking whether the text holds its letter, anywhere and in a fixed order of
/// priority; nothing is compared as a field. All take the text behind the echo.

/// The text behind the first `echo` characters; empty when there is none.
constexpr std::string_view AfterEcho(std::string_view reply, std::size_t echo) {
  return reply.substr(reply.size() < echo ? reply.size() : echo);
}

constexpr bool Holds(std::string_view text, std::string_view code) { return text.find(code) != std::string_view::npos; }

struct Model {
  int type;  ///< SSPAType
  bool singleModule;
  bool kBand;
};

/// The kind of device that a model text such as "120W C-BAND" names; type 0 for an unknown one.
Model ReadModel(std::string_view text);

/// The firmware class, 1 to 3, of a text such as "0264C-01 V6.0"; 1, the class that is asked least, where the text has
/// no point behind its first character.
int ReadFirmwareClass(std::string_view text);

/// HWPlatform, 1 to 4, of a text such as "0712/0358".
int ReadPlatform(std::string_view text);

enum class CommsMode { kREM, kLLO, kRLO };
CommsMode ReadCommsMode(std::string_view status);

enum class OperatingState { kNotTold, kOnline, kStandby, kMaintenance };
OperatingState ReadOperatingState(std::string_view status);

enum class RFOutput { kNotTold, kOn, kOnButModuleFailed, kMutedDirect, kMutedModuleFailed, kMutedByUser };
RFOutput ReadRFOutput(std::string_view status);

/// "RF On", "RF Mute (User)": on the console and in what tells of its line; empty where it isn't told.
std::string_view RFOutputText(RFOutput output);

/// The operator's mute control has no say: a direct input holds the mute, or a module failed.
bool MuteIsForced(std::string_view status);

enum class ControllerMode { kNotTold, kAutomatic, kManual };
ControllerMode ReadControllerMode(std::string_view status);

enum class Configuration { kNotTold, k1to1, k1to2 };
Configuration ReadConfigurationCode(std::string_view text);

enum class PriorityPath { kNone, kPathA, kPathB };
PriorityPath ReadPriority(std::string_view text);

}  // namespace tarnwell::protocol

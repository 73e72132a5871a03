#include "protocol/encodings.h"
#include "sim/amplifier.h"
#include "sim/numbers.h"

namespace tarnwell::sim {

namespace {

constexpr double kLowestGain = -20.0;
constexpr double kHighestGain = 0.0;
constexpr double kHighestThreshold = 100.0;

bool SetGain(Amplifier& amplifier, std::string_view argument) {
  const auto gain = ParseNumber(argument);
  if (gain && *gain >= kLowestGain && *gain <= kHighestGain) amplifier.State().gain = *gain;
  return gain.has_value();
}

template <std::size_t kIndex>
std::string Threshold(Amplifier& amplifier) {
  const auto& threshold = amplifier.State().thresholds[kIndex];
  return threshold ? Decimals(*threshold, 1) : std::string(1, protocol::kDisabledMark);
}

template <std::size_t kIndex>
bool SetThreshold(Amplifier& amplifier, std::string_view argument) {
  auto& threshold = amplifier.State().thresholds[kIndex];
  if (argument == "D") {
    threshold.reset();
    return true;
  }
  const auto dbm = ParseNumber(argument);
  if (dbm && *dbm >= 0.0 && *dbm <= kHighestThreshold) threshold = dbm;
  return dbm.has_value();
}

/// A setting of two letters, answered in words.
template <bool AmplifierState::*kFlag>
bool SetFlag(Amplifier& amplifier, std::string_view argument, std::string_view yes, std::string_view no) {
  if (argument != yes && argument != no) return false;
  amplifier.State().*kFlag = argument == yes;
  return true;
}

bool SetAlarmStyle(Amplifier& amplifier, std::string_view argument) {
  if (argument != "L" && argument != "F") return false;
  amplifier.Alarms().SetLatching(argument == "L");
  return true;
}

using A = Amplifier&;
using Text = std::string;
using View = std::string_view;

constexpr auto kClass2Up = [](const Amplifier& a) { return a.FirmwareClass() >= 2; };
constexpr auto kPlatform2 = [](const Amplifier& a) { return a.Platform() == 2; };
constexpr auto kPlatform4 = [](const Amplifier& a) { return a.Platform() == 4; };
constexpr auto kTwoModules = [](const Amplifier& a) { return a.TwoModules(); };
constexpr auto kReflected = [](const Amplifier& a) { return a.HasReflectedLimit(); };
constexpr auto kTransceiver = [](const Amplifier& a) { return a.FirmwareClass() >= 2 && a.Platform() != 4; };
constexpr auto kFan = [](const Amplifier& a) { return a.FirmwareClass() == 3 && a.Platform() != 4; };

constexpr Command<Amplifier> kCommands[] = {
    {"CH", [](A a) { return a.PlatformText(); }, nullptr, kClass2Up},
    {"CP", [](A) { return Text("1"); }, nullptr, kClass2Up},
    {"G", [](A a) { return Decimals(a.State().gain, 1); }, SetGain},
    {"VR", [](A a) { return Decimals(a.Level(), 1); }},
    {"VR2", [](A a) { return Decimals(a.ReflectedLevel(), 1); }, nullptr, kPlatform4},
    {"VT", [](A a) { return Decimals(a.Temperature(0), 1); }},
    {"VT2", [](A a) { return Decimals(a.Temperature(1), 1); }, nullptr, kTwoModules},
    {"V5", [](A a) { return Decimals(a.Rail(5.0), 2); }},
    {"V11", [](A a) { return Decimals(a.Rail(a.MainRail()), 2); }},
    {"V11LC", [](A a) { return Decimals(a.Rail(a.MainRail()), 2); }, nullptr, kPlatform2},
    {"V14", [](A a) { return Decimals(a.Rail(14.0), 2); }},
    {"V-10", [](A a) { return Decimals(a.Rail(-10.0), 2); }},
    {"T1", Threshold<0>, SetThreshold<0>},
    {"T2", Threshold<1>, SetThreshold<1>},
    {"T3", Threshold<2>, SetThreshold<2>, kReflected},
    {"CS", [](A a) { return Text(a.State().shutdown ? "ON" : "OFF"); },
     [](A a, View letter) { return SetFlag<&AmplifierState::shutdown>(a, letter, "E", "D"); }},
    {"CF", [](A a) { return Text(a.State().thermalFan ? "ON" : "OFF"); },
     [](A a, View letter) { return SetFlag<&AmplifierState::thermalFan>(a, letter, "E", "D"); }, kFan},
    {"CX", [](A a) { return Text(a.State().auxHigh ? "HIGH" : "LOW"); },
     [](A a, View letter) { return SetFlag<&AmplifierState::auxHigh>(a, letter, "H", "L"); }},
    {"TX", [](A a) { return Text(a.State().vorelTransceiver ? "1" : "0"); },
     [](A a, View digit) { return SetFlag<&AmplifierState::vorelTransceiver>(a, digit, "1", "0"); }, kTransceiver},
    {"CA", [](A a) { return Text(a.Alarms().Latching() ? "LATCHED" : "FLEETING"); }, SetAlarmStyle},
};

}  // namespace

std::optional<std::string> AnswerValue(Amplifier& amplifier, const Request& request) {
  return AnswerByTable(kCommands, amplifier, request);
}

}  // namespace tarnwell::sim

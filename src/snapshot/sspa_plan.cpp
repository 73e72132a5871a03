#include <iterator>

#include "snapshot/plan.h"
#include "snapshot/table_entries.h"
#include "snapshot/values.h"

namespace tarnwell::snapshot {

namespace {

using Device = link::SSPA_Public;

constexpr Condition kClass2Up = [](const Device& d) { return d.FirmwareClass != 1; };
constexpr Condition kClass1 = [](const Device& d) { return d.FirmwareClass == 1; };
constexpr Condition kPlatform2 = [](const Device& d) { return d.HWPlatform == 2; };
constexpr Condition kTransceiver = [](const Device& d) { return d.FirmwareClass != 1 && d.HWPlatform != 4; };
constexpr Condition kThermalFan = [](const Device& d) { return d.FirmwareClass >= 3 && d.HWPlatform != 4; };
constexpr Condition kReflected = link::MeasuresReflectedLevel;
constexpr Condition kTwoModules = [](const Device& d) { return !d.SingleModule; };
constexpr Condition kKBand = [](const Device& d) { return d.KBandAmp; };
constexpr Condition kOtherBand = [](const Device& d) { return !d.KBandAmp; };

constexpr Meaning kTransceivers[] = {{"1", "VOREL"}, {"0", "GENERIC"}};
constexpr Meaning kOperatingStates[] = {{"O", "ONLINE"}, {"S", "STANDBY"}, {"M", "MAINTENENCE"}};
constexpr Meaning kCompensations[] = {{"U", "OFF"}, {"C", "ON"}, {"H", "MAX"}, {"L", "MIN"}};
constexpr Meaning kBeepers[] = {{"A", "ON"}, {"Q", "OFF"}};
constexpr Meaning kStorages[] = {{"R", "ON"}, {"F", "OFF"}};
constexpr Meaning kOutputs[] = {
    {"B", "RF MUTE (AMP MODULE FAIL)"}, {"D", "RF MUTE (DIRECT I/O)"}, {"X", "RF MUTE (USER)"}, {"T", "RF ON"}};

constexpr std::string_view kDbm = " dBm";
constexpr std::string_view kCelsius = "\260C";  // the file's own code of the degree sign
constexpr std::string_view kVolts = " V";

const Row kRows[] = {
    {"sspa", &protocol::kModelQuery, Text()},
    {"address", &protocol::kAddressQuery, Address()},
    {"transceiver", &protocol::kTransceiverQuery, Exactly(kTransceivers), kTransceiver},

    {"operating state", &protocol::kStatusQuery, FirstHeld(kOperatingStates)},
    {"temp comp", &protocol::kStatusQuery, FirstHeld(kCompensations)},
    {"sspa beeper", &protocol::kStatusQuery, FirstHeld(kBeepers)},
    {"eeprom storage", &protocol::kStatusQuery, FirstHeld(kStorages)},
    {"comms mode", &protocol::kStatusQuery, FirstHeld(kCommsModes, "REM")},
    {"rf output", &protocol::kStatusQuery, FirstHeld(kOutputs)},

    {"rf level", &protocol::kRFLevelQuery, Text(kDbm)},
    {"reflected rf level", &protocol::kReflectedLevelQuery, Text(kDbm), kReflected},
    {"gain adjust", &protocol::kGainQuery, Text(" dB")},
    {"rf min", &protocol::kRFMinimumQuery, Limit(kDbm)},
    {"rf max", &protocol::kRFMaximumQuery, Limit(kDbm)},
    {"reflected rf max", &protocol::kReflectedMaximumQuery, Limit(kDbm), kReflected},
    {"temp amp1", &protocol::kTemperature1Query, Rounded(kCelsius)},
    {"temp amp2", &protocol::kTemperature2Query, Rounded(kCelsius), kTwoModules},

    {"active alarms", &protocol::kAlarmQuery, ActiveAlarms()},
    {"latched alarms", &protocol::kAlarmQuery, LatchedAlarms()},

    {"5v rail", &protocol::kRail5VQuery, Text(kVolts)},
    {"11v rail", &protocol::kRail11VQuery, Text(kVolts), kOtherBand, ""},
    {"9.3v rail", &protocol::kRail11VQuery, Text(kVolts), kKBand, ""},
    {"11v lc rail", &protocol::kRail11VLCQuery, Text(kVolts), kPlatform2},
    {"14v rail", &protocol::kRail14VQuery, Text(kVolts)},
    {"-10v rail", &protocol::kRailMinus10VQuery, Text(kVolts)},

    {"firmware", &protocol::kFirmwareQuery, Text()},
    {"hw platform", &protocol::kPlatformQuery, Text(), kClass2Up, "0712/0358"},
    {"pin diodes", &protocol::kPriorityOrDiodeQuery, Text(), kClass2Up},
    {"alarm style", &protocol::kAlarmStyleQuery, Text()},
    {"aux alarm sense", &protocol::kAuxSenseQuery, Text()},
    {"amp shutdown", &protocol::kShutdownQuery, Text()},
    {"thermal fan control", &protocol::kFanQuery, Text(), kThermalFan},
};

protocol::Request FixedPointQuery(int index) {
  constexpr int kColdest = -50;  // degrees Celsius
  constexpr int kStep = 25;
  return protocol::FixedCompensationQuery(kColdest + kStep * index);
}

constexpr std::string_view kSystemLabel = "sys temp comp points (\260C,dB)";

constexpr Table kTables[] = {
    {"rf temp comp points (\260C,dB)", 1, 3, 3, 3, protocol::RFCompensationQuery, RFCompensationEntry, kClass2Up,
     kNotAvailable},
    {kSystemLabel, 1, 8, 3, 0, protocol::SystemCompensationQuery, SystemCompensationEntry, kClass2Up},
    {kSystemLabel, 0, 7, 3, 0, FixedPointQuery, FixedCompensationEntry, kClass1},
    {"rf level table (dBm,V)", 0, 25, 4, 0, protocol::RFLevelPointQuery, RFLevelEntry},
    {"pin diode table (dB,DAC)", 0, 40, 4, 40, protocol::PiNPointQuery, PiNEntry, kClass2Up, kNotAvailable},
};

}  // namespace

const Plan& SSPAPlan() {
  static const Plan kPlan{"Error with Save Snapshot", 1, 1, kRows, kTables};
  return kPlan;
}

}  // namespace tarnwell::snapshot

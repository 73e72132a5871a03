#include "tools/vorel-snapshot/rows.h"

#include "alarms/alarm_tokens.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr auto kHeading = Role::kHeading;
constexpr auto kReading = Role::kReading;

constexpr Field kTemperature = {"temperature",
                                "\xB0"
                                "C"};
constexpr Field kCompensation = {"compensation", "dB"};
constexpr TableShape kRFCompensation = {3, 3, kTemperature, kCompensation};
constexpr TableShape kSystemCompensation = {8, 3, kTemperature, kCompensation};
constexpr TableShape kLevels = {26, 4, {"level", "dBm"}, {"detector", "V"}};
constexpr TableShape kDiodes = {41, 4, {"attenuation", "dB"}, {"DAC", ""}, true};

// What a reply has room for, less the echo of its request.
constexpr std::size_t kLong = 17;
constexpr std::size_t kShort = 12;
constexpr std::size_t kLongestDescription = 50;

constexpr Row kSoftware = {.label = "software", .form = Form::kSoftware, .role = kHeading};
constexpr Row kDescription = {
    .label = "file description", .form = Form::kDescription, .role = kHeading, .longest = kLongestDescription};
constexpr Row kTime = {.label = "time dd/mm/yyyy hh:mm:ss", .form = Form::kTime, .role = kHeading, .name = "time"};

constexpr Row Text(std::string_view label, std::size_t longest, bool mayLack = false) {
  return {.label = label, .form = Form::kDeviceText, .mayLack = mayLack, .longest = longest};
}

constexpr Row Word(std::string_view label, std::array<std::string_view, 5> words, bool mayLack = false) {
  return {.label = label, .form = Form::kWord, .words = words, .mayLack = mayLack};
}

constexpr Row Reading(std::string_view label, std::string_view unit, bool mayLack = false) {
  return {.label = label, .form = Form::kNumber, .role = kReading, .unit = unit, .mayLack = mayLack};
}

constexpr Row Limit(std::string_view label, bool mayLack = false) {
  return {.label = label, .form = Form::kLimit, .unit = "dBm", .mayLack = mayLack};
}

constexpr Row Degrees(std::string_view label, bool mayLack = false) {
  return {.label = label,
          .form = Form::kDegrees,
          .role = kReading,
          .unit =
              "\xB0"
              "C",
          .mayLack = mayLack};
}

constexpr Row Table(std::string_view label, std::string_view name, const TableShape& shape, bool mayLack = false) {
  return {.label = label, .form = Form::kTable, .mayLack = mayLack, .table = &shape, .name = name};
}

constexpr Row kAddress = {.label = "address", .form = Form::kAddress};
constexpr Row kActiveAlarms = {.label = "active alarms", .form = Form::kAlarms};
constexpr Row kCommsMode = Word("comms mode", {"LLO", "RLO", "REM"});
constexpr Row kFirmware = Text("firmware", kLong);

constexpr Row kAmplifierRows[] = {
    kSoftware,
    kDescription,
    kTime,
    Text("sspa", kLong),
    kAddress,
    Word("transceiver", {"VOREL", "GENERIC", kUnknown}, true),
    Word("operating state", {"ONLINE", "STANDBY", "MAINTENENCE", kUnknown}),
    Word("temp comp", {"OFF", "ON", "MAX", "MIN", kUnknown}),
    Word("sspa beeper", {"ON", "OFF", kUnknown}),
    Word("eeprom storage", {"ON", "OFF", kUnknown}),
    kCommsMode,
    Word("rf output", {"RF MUTE (AMP MODULE FAIL)", "RF MUTE (DIRECT I/O)", "RF MUTE (USER)", "RF ON", kUnknown}),
    Reading("rf level", "dBm"),
    Reading("reflected rf level", "dBm", true),
    {.label = "gain adjust", .form = Form::kNumber, .unit = "dB"},
    Limit("rf min"),
    Limit("rf max"),
    Limit("reflected rf max", true),
    Degrees("temp amp1"),
    Degrees("temp amp2", true),
    kActiveAlarms,
    {.label = "latched alarms", .form = Form::kAlarms},
    Reading("5v rail", "V"),
    {.label = "11v rail", .form = Form::kNumber, .role = kReading, .unit = "V", .otherLabel = "9.3v rail"},
    Reading("11v lc rail", "V", true),
    Reading("14v rail", "V"),
    Reading("-10v rail", "V"),
    kFirmware,
    Text("hw platform", kShort),
    Text("pin diodes", kLong, true),
    Text("alarm style", kShort),
    Text("aux alarm sense", kShort),
    Text("amp shutdown", kShort),
    Text("thermal fan control", kLong, true),
    Table("rf temp comp points (\xB0"
          "C,dB)",
          "rf temp comp points", kRFCompensation, true),
    Table("sys temp comp points (\xB0"
          "C,dB)",
          "sys temp comp points", kSystemCompensation),
    Table("rf level table (dBm,V)", "rf level table", kLevels),
    Table("pin diode table (dB,DAC)", "pin diode table", kDiodes, true),
};

constexpr std::array<std::string_view, 5> kAmplifierState = {"ONLINE", "STANDBY/ALARM"};

constexpr Row kControllerRows[] = {
    kSoftware,
    kDescription,
    kTime,
    Text("redundancy controller", kLong),
    kAddress,
    Word("operating mode", {"AUTOMATIC", "MANUAL", kUnknown}),
    kCommsMode,
    kActiveAlarms,
    kFirmware,
    Word("configuration", {"1:1", "1:2", kUnknown}),
    Word("priority", {"NONE", "PATH A", "PATH B", kUnknown}),
    Word("sspa1 state", kAmplifierState),
    Word("sspa2 state", kAmplifierState),
    Word("sspa3 state", kAmplifierState),
    Word("path a", {"SSPA1", "SSPA2", kUnknown}),
    Word("path b", {"SSPA3", "SSPA2", kUnknown}),
};

}  // namespace

std::span<const Row> Rows(Kind kind) {
  return kind == Kind::kController ? std::span<const Row>(kControllerRows) : std::span<const Row>(kAmplifierRows);
}

std::span<const std::string_view> AlarmNames(Kind kind) {
  const auto tokensOf = [](int type) {
    link::SSPA_Public device;
    device.SSPAType = type;
    return alarms::TokensFor(device);
  };
  static const alarms::AlarmTokens kController = tokensOf(link::kRedundancyController);
  static const alarms::AlarmTokens kAmplifier = tokensOf(link::kFirstAmplifier);
  return kind == Kind::kController ? kController : kAmplifier;
}

}  // namespace tarnwell::vorel_snapshot

#include <algorithm>
#include <cmath>

#include "protocol/encodings.h"
#include "sim/amplifier.h"
#include "sim/numbers.h"

namespace tarnwell::sim {

namespace {

constexpr int kLowestLevel = 25;  // dBm of the first RF level point
constexpr double kMostVolts = 15.0;
constexpr double kMostCompensation = 10.0;
constexpr int kColdest = -50;
constexpr int kHottest = 125;
constexpr int kFixedStep = 25;  // degrees between the fixed temperatures
constexpr int kMostDac = 255;
constexpr std::string_view kDisabled = "D";

double DetectorVolts(double dbm) { return std::clamp(0.80 + 0.21 * (dbm - kLowestLevel), 0.0, kMostVolts); }

/// A point's request, such as R05, RT02.25 or H+025: which point, and what stands behind the name's digits.
struct PointRequest {
  int index;
  std::string_view rest;
  bool isSetting;
  std::string_view argument;
};

std::string LevelReply(const LevelPoint& point) {
  if (!point.volts) return "=D";
  return "=P" + std::to_string(point.dbm) + "V" + Decimals(*point.volts, 2);
}

std::optional<std::string> AnswerLevel(Amplifier& amplifier, const PointRequest& request) {
  LevelPoint& point = amplifier.State().tables.levels.at(static_cast<std::size_t>(request.index));
  if (!request.rest.empty()) return std::nullopt;
  if (request.isSetting) {
    const auto volts = ParseNumber(request.argument);
    if (!volts && request.argument != kDisabled) return std::nullopt;
    if (!volts || (*volts >= 0.0 && *volts <= kMostVolts)) point.volts = volts;
  }
  return LevelReply(point);
}

/// Takes the level and the detector's volts of this moment for the point.
std::string Calibrate(Amplifier& amplifier, int index) {
  LevelPoint& point = amplifier.State().tables.levels.at(static_cast<std::size_t>(index));
  const double level = std::clamp(amplifier.Level(), 0.0, 255.0);
  point = {static_cast<int>(std::lround(level)), DetectorVolts(level)};
  return LevelReply(point);
}

std::optional<std::string> AnswerDiode(Amplifier& amplifier, const PointRequest& request) {
  auto& dac = amplifier.State().tables.diodes.at(static_cast<std::size_t>(request.index));
  if (!request.rest.empty()) return std::nullopt;
  if (request.isSetting) {
    const auto value = ParseWhole(request.argument);
    if (!value && request.argument != kDisabled) return std::nullopt;
    if (!value || (*value >= 0 && *value <= kMostDac)) dac = value;
  } else if (amplifier.State().operating == 'M') {
    amplifier.State().selectedDiode = request.index;
  }
  return "=" + (dac ? std::to_string(*dac) : std::string(kDisabled));
}

std::string CompensationText(const CompensationPoint& point) {
  return "=" + (point.decibels ? Shortest(*point.decibels) : std::string(kDisabled));
}

std::string CompensationReply(const CompensationPoint& point) {
  if (!point.degrees) return "=D";
  return "." + std::to_string(*point.degrees) + CompensationText(point);
}

/// False: `argument` is no compensation. One out of range leaves the point as it is.
bool SetCompensation(CompensationPoint& point, std::optional<int> degrees, std::string_view argument) {
  const auto decibels = ParseNumber(argument);
  if (!decibels && argument != kDisabled) return false;
  const bool inRange =
      std::abs(decibels.value_or(0.0)) <= kMostCompensation && *degrees >= kColdest && *degrees <= kHottest;
  // In hundredths: more digits than that don't fit in a reply.
  if (inRange) point = {degrees, decibels ? std::optional(std::round(*decibels * 100.0) / 100.0) : std::nullopt};
  return true;
}

std::optional<std::string> AnswerCompensation(CompensationPoint& point, const PointRequest& request) {
  if (!request.isSetting) return request.rest.empty() ? std::optional(CompensationReply(point)) : std::nullopt;
  if (!request.rest.starts_with('.')) return std::nullopt;
  const auto degrees = ParseWhole(request.rest.substr(1));
  if (!degrees || !SetCompensation(point, degrees, request.argument)) return std::nullopt;
  return CompensationReply(point);
}

std::optional<std::string> AnswerRFCompensation(Amplifier& amplifier, const PointRequest& request) {
  return AnswerCompensation(amplifier.State().tables.rfCompensation.at(static_cast<std::size_t>(request.index - 1)),
                            request);
}

std::optional<std::string> AnswerSystemCompensation(Amplifier& amplifier, const PointRequest& request) {
  return AnswerCompensation(amplifier.State().tables.systemCompensation.at(static_cast<std::size_t>(request.index - 1)),
                            request);
}

/// The name of the fixed temperature's point: H-050, H+025.
std::string FixedName(int degrees) { return (degrees < 0 ? "H" : "H+") + protocol::TemperatureText(degrees); }

std::optional<std::string> AnswerFixedCompensation(Amplifier& amplifier, const Request& request) {
  for (CompensationPoint& point : amplifier.State().tables.systemCompensation) {
    const std::string name = FixedName(*point.degrees);
    if (request.name != name || request.kind == Request::Kind::kVerb) continue;
    const bool setting = request.kind == Request::Kind::kSetting;
    if (setting && !SetCompensation(point, point.degrees, request.argument)) return std::nullopt;
    return name + CompensationText(point);
  }
  return std::nullopt;
}

struct Table {
  std::string_view prefix;
  int first;
  int last;
  std::optional<std::string> (*answer)(Amplifier&, const PointRequest&);
  bool everyClass;  ///< else firmware class 2 and 3 alone
};

// RT ahead of R: the first prefix that fits is taken.
constexpr Table kTables[] = {
    {"RT", 1, 3, AnswerRFCompensation, false},
    {"R", 0, 25, AnswerLevel, true},
    {"P", 0, 40, AnswerDiode, false},
    {"H", 1, 8, AnswerSystemCompensation, false},
};

/// Two digits at the front of `text`, or -1.
int LeadingIndex(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (text.size() < 2 || !isDigit(text[0]) || !isDigit(text[1])) return -1;
  return (text[0] - '0') * 10 + (text[1] - '0');
}

std::optional<std::string> AnswerCalibration(Amplifier& amplifier, const Request& request) {
  const int index = request.name.size() == 3 ? LeadingIndex(request.name.substr(1)) : -1;
  if (request.name[0] != 'Q' || index < 0 || index > 25) return std::nullopt;
  return "R" + protocol::IndexText(index) + Calibrate(amplifier, index);
}

std::optional<std::string> AnswerRow(const Table& table, Amplifier& amplifier, const Request& request) {
  const std::string_view behind = request.name.substr(table.prefix.size());
  const int index = LeadingIndex(behind);
  if (index < table.first || index > table.last) return std::nullopt;
  const bool isSetting = request.kind == Request::Kind::kSetting;
  const auto answer = table.answer(amplifier, {index, behind.substr(2), isSetting, request.argument});
  if (!answer) return std::nullopt;
  return std::string(table.prefix) + protocol::IndexText(index) + *answer;
}

}  // namespace

std::optional<std::string> AnswerPoint(Amplifier& amplifier, const Request& request) {
  if (request.name.empty()) return std::nullopt;
  if (request.kind == Request::Kind::kVerb) return AnswerCalibration(amplifier, request);
  for (const Table& table : kTables) {
    const bool has = table.everyClass || amplifier.FirmwareClass() > 1;
    if (has && request.name.starts_with(table.prefix)) return AnswerRow(table, amplifier, request);
  }
  return amplifier.FirmwareClass() == 1 ? AnswerFixedCompensation(amplifier, request) : std::nullopt;
}

CalibrationTables FactoryTables(bool fixedTemperatures) {
  CalibrationTables tables;
  for (int i = 0; i < 26; ++i) {
    const int dbm = kLowestLevel + i;
    tables.levels[static_cast<std::size_t>(i)] = {dbm, i < 22 ? std::optional(DetectorVolts(dbm)) : std::nullopt};
  }
  for (int i = 0; i < 37; ++i) tables.diodes[static_cast<std::size_t>(i)] = 12 + 6 * i;
  tables.rfCompensation = {{{-20, 1.5}, {25, 0.0}, {}}};
  tables.systemCompensation = {{{-40, 2.5}, {-20, 1.5}, {0, 0.5}, {20, 0.0}, {40, -0.5}, {60, -1.0}, {}, {}}};
  if (!fixedTemperatures) return tables;
  for (std::size_t i = 0; i < tables.systemCompensation.size(); ++i) {
    tables.systemCompensation[i].degrees = static_cast<int>(i) * kFixedStep + kColdest;
  }
  return tables;
}

}  // namespace tarnwell::sim

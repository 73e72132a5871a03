#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace tarnwell::vorel_snapshot {

/// What a line's value looks like.
enum class Form {
  kSoftware,     ///< "Tarnwell v2.01"
  kDescription,  ///< the operator's text
  kTime,         ///< "14/03/2007 09:26:41"
  kDeviceText,   ///< as the device sent it
  kAddress,      ///< 0 to 31
  kWord,         ///< one of the row's words
  kNumber,       ///< a number, a blank and the unit
  kLimit,        ///< the same or "DISABLED"
  kDegrees,      ///< a whole number with the unit behind it
  kAlarms,       ///< tokens, three a line, on as many lines as it takes
  kTable         ///< points in brackets, on a fixed count of lines
};

constexpr bool IsNumeric(Form form) {
  return form == Form::kAddress || form == Form::kNumber || form == Form::kLimit || form == Form::kDegrees;
}

/// What a difference between two snapshots says.
enum class Role {
  kHeading,  ///< of the file, not of the device
  kReading,  ///< a measured value: it never stands still
  kState     ///< everything else
};

/// A field of a table's points.
struct Field {
  std::string_view name;
  std::string_view unit;  ///< in the file's encoding; empty: none
};

struct TableShape {
  std::size_t points;
  std::size_t perLine;
  Field first;
  Field second;
  /// The first field is the point's index, from 0.
  bool counted = false;

  constexpr std::size_t Lines() const { return (points + perLine - 1) / perLine; }
  /// Points on the line `index`, from 0; 0 behind the last.
  constexpr std::size_t PointsOf(std::size_t index) const {
    if (index * perLine >= points) return 0;
    return points - index * perLine < perLine ? points - index * perLine : perLine;
  }
};

/// One label of the file, in the order of the file.
struct Row {
  std::string_view label;  ///< without the brackets
  Form form;
  Role role = Role::kState;
  std::string_view unit = {};
  std::array<std::string_view, 5> words = {};
  bool mayLack = false;     ///< "NA" for a device without it
  std::size_t longest = 0;  ///< of a text, in characters; 0: no limit
  const TableShape* table = nullptr;
  std::string_view name = {};        ///< for the reader; empty: the label
  std::string_view otherLabel = {};  ///< of some devices
};

enum class Kind { kAmplifier, kController };

std::span<const Row> Rows(Kind kind);

/// The alarms of a kind of device by slot; the slot's other name stands in `OtherAlarm`.
std::span<const std::string_view> AlarmNames(Kind kind);

/// A slot's alarm has two names by the device's platform.
struct OtherAlarm {
  std::size_t slot;
  std::string_view name;
};
inline constexpr OtherAlarm kOtherAlarm = {7, "FAN_ALARM"};

inline constexpr std::size_t kAlarmsPerLine = 3;

inline constexpr std::string_view kNotReadMark = "#ERR";
inline constexpr std::string_view kUnknown = "#UNKNOWN";
inline constexpr std::string_view kLackingMark = "NA";
inline constexpr std::string_view kDisabledLimit = "DISABLED";
inline constexpr std::string_view kNoAlarm = "NONE";

}  // namespace tarnwell::vorel_snapshot

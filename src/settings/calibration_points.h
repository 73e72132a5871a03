#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "protocol/encodings.h"

namespace tarnwell::settings {

/// The points of an amplifier's calibration tables and what its replies say of them. A disabled point holds
/// protocol::kDisabledValue; a point that was never read holds zeros. A reply that makes no sense leaves the point as
/// it was, and is kept beside it; where a number's place holds none, it is 0, and the reply is kept too.

inline constexpr int kRFLevelPoints = 26;
inline constexpr int kPiNPoints = 41;
inline constexpr int kRFTempCompPoints = 3;
inline constexpr int kTempCompPoints = 8;

/// What the device answered for a point, where that made no sense and the point isn't known; else empty.
using SenselessReply = std::string;

struct RFLevelPoint {
  float Volts = 0;         ///< of the sensor
  std::int16_t Level = 0;  ///< dBm, 0 to 255
  SenselessReply Senseless = {};
};

struct PiNPoint {
  std::int16_t DAC = 0;    ///< drives the attenuator, 0 to 255
  std::uint8_t Level = 0;  ///< attenuation, always the index
  SenselessReply Senseless = {};
};

struct CompensationPoint {
  float Comp = 0;         ///< dB
  std::int16_t Temp = 0;  ///< degrees Celsius; 0 where a disabled point was told without one
  SenselessReply Senseless = {};
};

/// The fixed temperature, -50 to 125 degrees, of a system compensation point of firmware class 1.
int FixedTemperature(int index);

// Each tells whether the reply made sense.
/// "R05=P12V2.35", "R05=D".
bool TakeRFLevel(std::string_view reply, RFLevelPoint& point);
/// "P07=128", "P07=D": the DAC value alone.
bool TakePiN(std::string_view reply, PiNPoint& point);
/// What stands behind a point's name in the reply to a query: ".25=1.5", ".25=D", "=D".
bool TakeCompensation(std::string_view text, CompensationPoint& point);
/// What stands behind a point's name and "." in the reply to a setting: "25=1.5", "25=D".
bool TakeSetCompensation(std::string_view text, CompensationPoint& point);
/// Firmware class 1, query and setting alike: "H+025=1.5", "H-050=D".
bool TakeFixedCompensation(std::string_view reply, int degrees, CompensationPoint& point);

/// A disabled limit on its spin control, which is one step below 0, in tenths.
inline constexpr int kDisabledLimit = -5;

/// How a field shows what is disabled.
inline QString DisabledText() { return QString(QLatin1Char(protocol::kDisabledMark)); }

/// The compensation that a field's text stands for: the disabled value for a text with a "D" in either case; nothing
/// for a text that is no number.
std::optional<float> CompensationOf(const QString& text);

}  // namespace tarnwell::settings

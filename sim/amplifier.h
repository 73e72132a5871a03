#pragma once

#include <array>
#include <optional>

#include "sim/device.h"
#include "sim/dice.h"

namespace tarnwell::sim {

/// A point of the RF level table: the detector's volts at a level; disabled without them.
struct LevelPoint {
  int dbm;
  std::optional<double> volts;
};

/// A compensation point. A disabled one may still have a temperature.
struct CompensationPoint {
  std::optional<int> degrees;
  std::optional<double> decibels;
};

struct CalibrationTables {
  std::array<LevelPoint, 26> levels;
  std::array<std::optional<int>, 41> diodes;  ///< 0 to 255, by attenuation in dB
  std::array<CompensationPoint, 3> rfCompensation;
  std::array<CompensationPoint, 8> systemCompensation;
};

CalibrationTables FactoryTables(bool fixedTemperatures);

struct AmplifierState {
  char operating = 'O';  ///< 'O' online, 'S' standby, 'M' maintenance
  bool userMute = false;
  bool directMute = false;    ///< held by the direct input
  bool moduleFailed = false;  ///< mutes by itself
  bool beeper = false;
  char compensation = 'C';  ///< 'C' on, 'U' off, 'H' held at maximum, 'L' at minimum
  bool storage = true;
  double gain = 0.0;                                ///< dB, -20 to 0
  std::array<std::optional<double>, 3> thresholds;  ///< dBm: RF minimum and maximum, reflected maximum
  bool shutdown = false;
  bool auxHigh = false;
  bool thermalFan = true;
  bool vorelTransceiver = true;
  double drive = 0.0;            ///< RF level in dBm at gain 0
  std::array<double, 2> warmth;  ///< of the modules while RF is on, in degrees Celsius
  int selectedDiode = 0;         ///< attenuates in maintenance
  CalibrationTables tables;
};

/// A solid-state power amplifier.
class Amplifier final : public Device {
 public:
  explicit Amplifier(const DeviceSetup& setup);

  AmplifierState& State() { return m_state; }

  // What the amplifier is, which decides on the requests that it has.
  int FirmwareClass() const { return m_firmwareClass; }
  int Platform() const { return m_platform; }
  const std::string& PlatformText() const { return m_platformText; }
  bool TwoModules() const { return m_twoModules; }
  bool HasReflectedLimit() const { return m_platform == 4 && m_kind.hasReflected; }
  double MainRail() const { return m_kind.railVolts; }

  /// Fails the power amplifier module, or mends it, with the alarm that belongs to it.
  void SetModuleFailed(bool failed);

  bool RadiatesRF() const;
  double Level();                  ///< dBm
  double ReflectedLevel();         ///< dBm
  double Temperature(int module);  ///< 0 or 1; degrees Celsius
  double Rail(double nominal);     ///< volts

  /// Sets what Level gives at the present gain while RF is on.
  void SetLevel(double dbm) { m_state.drive = dbm - m_state.gain; }
  void SetTemperature(int module, double degrees);

  std::string Status() const override;
  bool SetStatus(std::string_view letter) override;

 protected:
  std::optional<std::string> AnswerOwn(const Request& request) override;

 private:
  double Ripple(double width);

  const Kind& m_kind;
  std::string m_platformText;
  int m_firmwareClass;
  int m_platform;
  bool m_twoModules;
  bool m_moves;
  Dice m_dice;
  AmplifierState m_state;
  std::array<double, 2> m_temperatures;
};

/// The replies of the commands with one value, and of the tables' points.
std::optional<std::string> AnswerValue(Amplifier& amplifier, const Request& request);
std::optional<std::string> AnswerPoint(Amplifier& amplifier, const Request& request);

}  // namespace tarnwell::sim

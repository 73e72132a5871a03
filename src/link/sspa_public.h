#pragma once

#include <array>
#include <cstdint>

namespace tarnwell::link {

/// What is known of one alarm. Active and Latched are never both true; Acknowledged only while one of them is.
struct AlarmSlot {
  bool Acknowledged = false;  ///< the operator's; the device never hears of it
  bool Active = false;        ///< the condition holds now
  bool Latched = false;       ///< the condition has passed and the device still holds it
};

inline constexpr int kAlarmSlots = 26;
using AlarmTable = std::array<AlarmSlot, kAlarmSlots>;

inline constexpr std::uint8_t kMaxAddress = 31;

/// Values of SSPAType.
enum SSPAKind : int { kUnknownSSPA = 0, kFirstAmplifier = 1, kLastAmplifier = 5, kRedundancyController = 6 };

/// The shared module: the variables that live for the whole run.
struct SSPA_Public {
  // The link.
  std::uint8_t ConnectAddress = 0;  ///< bus address in use, 0 to 31
  bool CommsLost = false;           ///< the last SendCommand failed all its tries
  bool PortRS232 = false;           ///< false: RS-422/485
  int RS485Control = 0;             ///< 0 none or automatic, 1 RTS raised around each frame

  // The operator's preferences.
  bool AudibleNotify = false;  ///< alarms may beep
  bool EngineerUnits = false;  ///< levels as engineering units; acted on by nothing

  // The device's identity; a controller sets SSPAType alone.
  int SSPAType = kUnknownSSPA;  ///< see SSPAKind
  bool SingleModule = false;    ///< one PA module; false means two
  bool KBandAmp = false;
  int FirmwareClass = 0;  ///< 1 below 6.0, 2 at 6.0, 3 above 6.0
  int HWPlatform = 0;     ///< 1 default 0712/0358, 2 842, 3 857, 4 857E

  // The device's state.
  bool RemoteLockout = false;  ///< the device refuses remote commands
  bool AutoMode = false;       ///< the controller chooses its paths by itself
  bool Config1to1 = false;     ///< false means 1:2

  bool SettingsOpen = false;  ///< frmSettings is open
  AlarmTable AlarmStatus = {};
};

/// True for an amplifier that measures the level reflected by its load.
constexpr bool MeasuresReflectedLevel(const SSPA_Public& device) {
  return device.HWPlatform == 4 && device.SSPAType >= 1 && device.SSPAType <= 3;
}

}  // namespace tarnwell::link

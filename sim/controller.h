#pragma once

#include <array>

#include "sim/device.h"

namespace tarnwell::sim {

/// The switch state of a controller. Amplifiers are told by their digit; '?' is a path whose switch position is not
/// known.
struct ControllerState {
  bool automatic = true;
  bool oneToOne = false;  ///< one standby for one amplifier, with path A alone; else for two
  char priority = 'N';    ///< 'N', 'A', 'B'
  char pathA = '1';       ///< '1', '2', '?'
  char pathB = '3';       ///< '3', '2', '?'
  std::array<bool, 3> online{true, false, true};
};

/// A redundancy controller. It chooses no path by itself: automatic mode only refuses the commands that manual mode
/// takes.
class Controller final : public Device {
 public:
  explicit Controller(const DeviceSetup& setup) : Device(setup) {}

  ControllerState& State() { return m_state; }

  /// Puts amplifier `digit` on a path, 'A' or 'B': it goes online, the one it takes the place of goes off. False: it
  /// can't be switched there. The amplifier that stands on the other path stays where it is, and nothing changes.
  bool SelectPath(char path, char digit);

  std::string Status() const override;
  bool SetStatus(std::string_view letter) override;

 protected:
  std::optional<std::string> AnswerOwn(const Request& request) override;
  bool AllowsClearing() const override { return !m_state.automatic; }

 private:
  void SetOnline(char digit, bool online);

  ControllerState m_state;
};

}  // namespace tarnwell::sim

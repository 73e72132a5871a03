#pragma once

#include <array>
#include <string>

namespace tarnwell::sim {

/// The 26 alarms of a device, by their letters 'A' to 'Z'.
class AlarmBoard {
 public:
  enum class State { kOff, kActive, kLatched };

  void Set(char letter, State state) { m_slots.at(Slot(letter)) = state; }
  /// The condition ends: a latching device holds the alarm, a fleeting one forgets it. Does nothing unless active.
  void Pass(char letter);
  void ClearLatched();

  void SetLatching(bool latching) { m_latching = latching; }
  bool Latching() const { return m_latching; }

  /// The letters of what is present: capital for active, small for latched.
  std::string Letters() const;

 private:
  static std::size_t Slot(char letter) { return static_cast<std::size_t>(letter - 'A'); }

  std::array<State, 26> m_slots{};
  bool m_latching = true;
};

}  // namespace tarnwell::sim

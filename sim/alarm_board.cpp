#include "sim/alarm_board.h"

#include <algorithm>

namespace tarnwell::sim {

void AlarmBoard::Pass(char letter) {
  State& state = m_slots.at(Slot(letter));
  if (state == State::kActive) state = m_latching ? State::kLatched : State::kOff;
}

void AlarmBoard::ClearLatched() { std::replace(m_slots.begin(), m_slots.end(), State::kLatched, State::kOff); }

std::string AlarmBoard::Letters() const {
  std::string letters;
  for (std::size_t i = 0; i < m_slots.size(); ++i) {
    if (m_slots[i] == State::kOff) continue;
    letters += static_cast<char>((m_slots[i] == State::kActive ? 'A' : 'a') + static_cast<int>(i));
  }
  return letters;
}

}  // namespace tarnwell::sim

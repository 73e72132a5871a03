#include "forms/controls/pressed_keys.h"

#include <algorithm>

namespace tarnwell::forms {

// Presses come in the order of their overrides.
PressedKey PressedKeys::Complete(QEvent::Type type, PressedKey told, platform::Moment now) {
  while (!m_awaited.empty() && *m_awaited.front().made < now - kLongestAsked) m_awaited.pop_front();
  const bool isPress = type == QEvent::KeyPress;
  if (told.made && !isPress) {
    m_awaited.push_back(told);
    return told;
  }
  const auto first =
      std::find_if(m_awaited.begin(), m_awaited.end(), [&](const PressedKey& each) { return each.key == told.key; });
  if (first == m_awaited.end()) return told;
  if (!told.made) told = *first;
  m_awaited.erase(m_awaited.begin(), isPress ? first + 1 : first);
  return told;
}

void PressedKeys::ForgetLast() {
  if (!m_awaited.empty()) m_awaited.pop_back();
}

}  // namespace tarnwell::forms

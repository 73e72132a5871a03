#pragma once

#include <QEvent>
#include <deque>
#include <optional>

#include "platform/input_clock.h"

namespace tarnwell::forms {

/// A key as it was pressed.
struct PressedKey {
  int key;
  std::optional<platform::Moment> made;  ///< nothing where the window system doesn't say
  bool repeats;                          ///< it is held down
};

/// Knows how a key was pressed that comes without a time stamp. While an assistive tool runs the toolkit asks it about
/// each key, and delivers a copy without one on the tool's answer, perhaps after an access key that was pressed later.
/// The key's shortcut override has come at once, with its stamp.
class PressedKeys {
 public:
  /// `told` is what an override or a press that comes to a window at `now` says itself, and is filled up.
  PressedKey Complete(QEvent::Type type, PressedKey told, platform::Moment now);

  /// The last override was an access key's: no press follows.
  void ForgetLast();

 private:
  /// A tool that takes a key for itself never gives it back. The longest hold is shorter.
  static constexpr platform::Moment kLongestAsked = 15'000;

  std::deque<PressedKey> m_awaited;  ///< those whose press hasn't come yet, the oldest first
};

}  // namespace tarnwell::forms

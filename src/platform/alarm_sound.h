#pragma once

#include <functional>
#include <memory>

namespace tarnwell::platform {

/// What an alarm is heard as.
enum class AlarmSound { kDesktops, kOwn, kSystemBeep };

/// Sounds alarms beside the calling thread: a sound server may be slow to answer, or never do.
class Sounder {
 public:
  /// Sounds an alarm, or with false only looks what it would be heard as; the system beep means that it couldn't. Runs
  /// on a thread of its own, one call at a time, and may last for ever.
  using Source = std::function<AlarmSound(bool aloud)>;

  /// Without a source `beep` is all there is. It runs on the calling thread only.
  Sounder(Source source, std::function<void()> beep);

  /// Returns at once. The beep sounds where the source fails, and where it hasn't come back since the last call.
  void Sound();

  /// As far as it is known by now; the beep also while the source hasn't come back. Looks meanwhile, for the next call.
  AlarmSound HeardAs();

 private:
  struct State;
  /// False where the source can't be asked now.
  bool Ask(bool aloud);

  std::shared_ptr<State> m_state;  ///< a source that doesn't come back outlives the sounder
};

/// The sounds of the desktop, where the program is built with a way to them.
Sounder::Source DesktopSounds();

}  // namespace tarnwell::platform

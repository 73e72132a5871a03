#include "platform/alarm_sound.h"

#include <QObject>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

namespace tarnwell::platform {

struct Sounder::State final : QObject {
  State(Source s, std::function<void()> b) : source(std::move(s)), beep(std::move(b)) {
    if (source == nullptr) heard = AlarmSound::kSystemBeep;
  }

  void Run(bool aloud) {
    heard = source(aloud);
    if (aloud && heard == AlarmSound::kSystemBeep) QMetaObject::invokeMethod(this, beep, Qt::QueuedConnection);
    busy.clear();
  }

  Source source;
  std::function<void()> beep;
  std::atomic<AlarmSound> heard = AlarmSound::kDesktops;
  std::atomic_flag busy;  ///< while a call of the source is under way
};

Sounder::Sounder(Source source, std::function<void()> beep)
    : m_state(std::make_shared<State>(std::move(source), std::move(beep))) {}

AlarmSound Sounder::HeardAs() {
  Ask(false);
  return m_state->heard;
}

// Detached, and never waited for: the end of the program would wait for the sound server.
void Sounder::Ask(bool aloud) {
  if (m_state->source != nullptr && !m_state->busy.test_and_set()) {
    try {
      std::thread([state = m_state, aloud] { state->Run(aloud); }).detach();
      return;
    } catch (const std::system_error&) {
      m_state->busy.clear();  // the system has no thread left
    }
  }
  if (aloud) m_state->beep();
}

}  // namespace tarnwell::platform

#include "platform/alarm_sound.h"

#include <QCoreApplication>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

namespace tarnwell::platform {

struct Sounder::State {
  State(Source s, std::function<void()> b) : source(std::move(s)), beep(std::move(b)) {}

  void Run(bool aloud) {
    heard = source(aloud);
    QCoreApplication* program = QCoreApplication::instance();
    if (aloud && heard == AlarmSound::kSystemBeep && program != nullptr) {
      QMetaObject::invokeMethod(program, beep, Qt::QueuedConnection);
    }
    busy.clear();
  }

  Source source;
  std::function<void()> beep;
  std::atomic<AlarmSound> heard = AlarmSound::kDesktops;
  std::atomic_flag busy;  ///< while a call of the source is under way
};

Sounder::Sounder(Source source, std::function<void()> beep)
    : m_state(std::make_shared<State>(std::move(source), std::move(beep))) {}

void Sounder::Sound() {
  if (!Ask(true)) m_state->beep();
}

AlarmSound Sounder::HeardAs() { return Ask(false) ? m_state->heard.load() : AlarmSound::kSystemBeep; }

// Detached, and never waited for: the end of the program would wait for the sound server.
bool Sounder::Ask(bool aloud) {
  if (m_state->source == nullptr || m_state->busy.test_and_set()) return false;
  try {
    std::thread([state = m_state, aloud] { state->Run(aloud); }).detach();
    return true;
  } catch (const std::system_error&) {
    m_state->busy.clear();  // the system has no thread left
    return false;
  }
}

}  // namespace tarnwell::platform

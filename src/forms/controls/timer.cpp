#include "forms/controls/timer.h"

namespace tarnwell::forms {

Timer::Timer(const char* name, Form& form, Settings settings) : QObject(&form) {
  setObjectName(QString::fromUtf8(name));
  m_timer.setInterval(settings.milliseconds);
  connect(&m_timer, &QTimer::timeout, this, &Timer::Tick);
  SetEnabled(settings.has(Settings::kOnFlag));
}

void Timer::SetEnabled(bool enabled) {
  if (enabled == Enabled()) return;
  if (enabled) {
    m_timer.start();
  } else {
    m_timer.stop();
  }
}

}  // namespace tarnwell::forms

#include "platform/yield.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace tarnwell::platform {

void EventLoopYielder::Yield(std::int64_t deadline) {
  QCoreApplication::processEvents(QEventLoop::AllEvents);

  std::int64_t rate = 0;
  std::int64_t count = 0;
  if (!m_counter.QueryFrequency(rate) || !m_counter.QueryCount(count) || count >= deadline) return;

  const std::int64_t milliseconds = ((deadline - count) * 1000 + rate - 1) / rate;
  QTimer wakeUp;
  wakeUp.setTimerType(Qt::PreciseTimer);  // a coarse one fires up to 5 % early
  wakeUp.setSingleShot(true);
  wakeUp.start(static_cast<int>(milliseconds));
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace tarnwell::platform

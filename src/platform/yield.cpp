#include "platform/yield.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>

#include "platform/posted_call.h"

namespace tarnwell::platform {

void EventLoopYielder::Yield(std::int64_t deadline) {
  QCoreApplication::processEvents(QEventLoop::AllEvents);

  std::int64_t rate = 0;
  std::int64_t count = 0;
  if (!m_counter.QueryFrequency(rate) || !m_counter.QueryCount(count) || count >= deadline) return NoteTurn();

  const std::int64_t milliseconds = ((deadline - count) * 1000 + rate - 1) / rate;
  QTimer wakeUp;
  wakeUp.setTimerType(Qt::PreciseTimer);  // a coarse one fires up to 5 % early
  wakeUp.setSingleShot(true);
  wakeUp.start(static_cast<int>(milliseconds));
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  NoteTurn();
}

int EventLoopYielder::MillisecondsToDraw() const {
  std::int64_t rate = 0;
  std::int64_t count = 0;
  if (!m_counter.QueryFrequency(rate) || !m_counter.QueryCount(count)) return 0;
  const std::int64_t left = std::max<std::int64_t>(m_nextDrawing - count, 0);
  return static_cast<int>((left * 1000 + rate - 1) / rate);
}

void EventLoopYielder::LetDraw() {
  {
    const DrawingOnly drawingOnly;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
  NoteTurn();
}

void EventLoopYielder::NoteTurn() {
  constexpr std::int64_t kMilliseconds = 200;
  std::int64_t rate = 0;
  std::int64_t count = 0;
  if (m_counter.QueryFrequency(rate) && m_counter.QueryCount(count))
    m_nextDrawing = count + rate * kMilliseconds / 1000;
}

}  // namespace tarnwell::platform

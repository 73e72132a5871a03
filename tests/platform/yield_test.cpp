#include "platform/yield.h"

#include <gtest/gtest.h>
#include <time.h>

#include <QCoreApplication>
#include <QTimer>

namespace tarnwell::platform {
namespace {

double ClockMilliseconds(clockid_t clock = CLOCK_MONOTONIC) {
  timespec time = {};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class YieldTest : public testing::Test {
 protected:
  YieldTest() { QCoreApplication::processEvents(); }

  std::int64_t After(double milliseconds) {
    std::int64_t rate = 0;
    std::int64_t count = 0;
    EXPECT_TRUE(m_counter.QueryFrequency(rate) && m_counter.QueryCount(count));
    return count + static_cast<std::int64_t>(milliseconds * static_cast<double>(rate) / 1000);
  }

  double Elapsed() const { return ClockMilliseconds() - m_start; }

  MonotonicCounter m_counter;
  EventLoopYielder m_yielder{m_counter};
  double m_start = ClockMilliseconds();
};

TEST_F(YieldTest, HandlesEverythingPendingAlsoWhenTheDeadlineHasPassed) {
  int handled = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&handled] { ++handled; });
  timer.start(0);
  QMetaObject::invokeMethod(
      &timer, [&handled] { ++handled; }, Qt::QueuedConnection);
  m_yielder.Yield(After(0));
  EXPECT_EQ(handled, 2);
  EXPECT_LT(Elapsed(), 50);
}

TEST_F(YieldTest, WaitsInTheSystemUntilTheDeadlineAndNoLonger) {
  const std::int64_t deadline = After(20);
  const double busy = ClockMilliseconds(CLOCK_THREAD_CPUTIME_ID);
  int yields = 0;
  for (; After(0) < deadline; ++yields) m_yielder.Yield(deadline);
  EXPECT_GE(Elapsed(), 20);
  EXPECT_LT(Elapsed(), 500);
  EXPECT_LE(yields, 3) << "an idle pause wakes up for its end, not over and over";
  EXPECT_LT(ClockMilliseconds(CLOCK_THREAD_CPUTIME_ID) - busy, 10);
}

TEST_F(YieldTest, TheCounterRestsUntilShortlyBeforeACountAndNeverLater) {
  const double busy = ClockMilliseconds(CLOCK_THREAD_CPUTIME_ID);
  int late = 0;
  for (int rest = 0; rest < 20; ++rest) {
    const std::int64_t end = After(5);
    m_counter.RestUntil(end);
    late += After(0) > end ? 1 : 0;
  }
  EXPECT_LT(late, 20) << "but where others have the processor";
  EXPECT_GE(Elapsed(), 20 * 3);
  EXPECT_LT(ClockMilliseconds(CLOCK_THREAD_CPUTIME_ID) - busy, 20);
  m_counter.RestUntil(After(-1000));
}

TEST_F(YieldTest, AnEventEndsTheWaitEarly) {
  QTimer click;
  click.setSingleShot(true);
  click.start(5);
  while (click.isActive()) m_yielder.Yield(After(10'000));
  EXPECT_LT(Elapsed(), 1000);
}

}  // namespace
}  // namespace tarnwell::platform

#include "link/interval_timing.h"

#include <gtest/gtest.h>

#include "support/virtual_counter.h"

namespace tarnwell::link {
namespace {

using namespace test;

class IntervalTimingTest : public testing::Test {
 protected:
  IntervalTimingTest() { EXPECT_TRUE(m_timing.InitCounter()); }

  VirtualCounter m_counter;
  VirtualYielder m_yielder{m_counter};
  IntervalTiming m_timing{m_counter, m_yielder};
};

TEST_F(IntervalTimingTest, ADeadlineIsRoundedToTheNearestCountAndReachedWhenEqual) {
  m_counter.SetReadTakes(0);
  const std::int64_t now = m_counter.Now();
  EXPECT_EQ(m_timing.MakeDeadline(0.0000026) - now, 3);
  EXPECT_EQ(m_timing.MakeDeadline(0.29) - now, 290'000) << "not a count less for a fraction cut off";

  const Deadline deadline = m_timing.MakeDeadline(0.05);
  EXPECT_EQ(m_timing.MillisecondsLeft(deadline), 50);
  m_counter.AdvanceTo(deadline - 1);
  EXPECT_FALSE(m_timing.DeadlineReached(deadline));
  EXPECT_EQ(m_timing.MillisecondsLeft(deadline - 51'000), 0);
  m_counter.AdvanceTo(deadline);
  EXPECT_TRUE(m_timing.DeadlineReached(deadline));
}

TEST_F(IntervalTimingTest, ABlockingDelayHoldsItsTimeAndMovesNoOtherDeadline) {
  const double start = m_counter.Seconds();
  const Deadline deadline = m_timing.MakeDeadline(0.01625);
  m_timing.DelayBlocking(0.002);
  EXPECT_NEAR(m_counter.Seconds() - start, 0.002, 0.0001);
  m_timing.WaitForDeadline(deadline);
  EXPECT_NEAR(m_counter.Seconds() - start, 0.01625, 0.0001);
  m_timing.WaitForDeadline(deadline);
  EXPECT_NEAR(m_counter.Seconds() - start, 0.01625, 0.0001) << "at once for a deadline that has passed";
  EXPECT_EQ(m_yielder.Yields(), 0);
}

TEST_F(IntervalTimingTest, APumpedDelayYieldsUntilItsEndAndNoLonger) {
  struct : platform::Yielder {
    std::function<void()> pass;
    void Yield(std::int64_t) override { pass(); }
  } early;
  IntervalTiming timing(m_counter, early);
  ASSERT_TRUE(timing.InitCounter());
  // the delay, what a handler takes that ends its yield, and how often it comes to that
  const std::tuple<double, double, int> cases[] = {{0.0, 0.01, 0}, {0.05, 0.0101, 5}, {0.05, 3.0, 1}};
  for (const auto& [delay, taken, wanted] : cases) {
    int yields = 0;
    early.pass = [&, seconds = taken] {
      m_counter.Advance(seconds);
      ++yields;
    };
    timing.DelayPumped(delay);
    EXPECT_EQ(yields, wanted) << taken;
  }
}

}  // namespace
}  // namespace tarnwell::link

#include "link/interval_timing.h"

#include <algorithm>
#include <cmath>

namespace tarnwell::link {

bool IntervalTiming::InitCounter() {
  std::int64_t count = 0;
  return m_counter.QueryFrequency(PerfFrequency) && m_counter.QueryCount(count);
}

Deadline IntervalTiming::MakeDeadline(double seconds) const {
  return ReadCounter() + std::llrint(static_cast<double>(PerfFrequency) * seconds);
}

bool IntervalTiming::DeadlineReached(Deadline deadline) const { return ReadCounter() >= deadline; }

int IntervalTiming::MillisecondsLeft(Deadline deadline) const {
  return static_cast<int>(std::max<Deadline>(deadline - ReadCounter(), 0) * 1000 / PerfFrequency);
}

void IntervalTiming::WaitForDeadline(Deadline deadline) const {
  m_counter.RestUntil(deadline);
  while (!DeadlineReached(deadline)) {
  }
}

void IntervalTiming::DelayBlocking(double seconds) const { WaitForDeadline(MakeDeadline(seconds)); }

void IntervalTiming::DelayPumped(double seconds) const {
  const Deadline deadline = MakeDeadline(seconds);
  while (!DeadlineReached(deadline)) m_yielder.Yield(deadline);
}

std::int64_t IntervalTiming::ReadCounter() const {
  std::int64_t count = 0;
  m_counter.QueryCount(count);
  return count;
}

}  // namespace tarnwell::link

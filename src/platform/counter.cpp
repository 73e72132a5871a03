#include "platform/counter.h"

#include <time.h>

#include <algorithm>
#include <chrono>

namespace tarnwell::platform {

using Clock = std::chrono::steady_clock;

bool MonotonicCounter::QueryFrequency(std::int64_t& rate) {
  rate = Clock::period::den / Clock::period::num;
  return true;
}

bool MonotonicCounter::QueryCount(std::int64_t& count) {
  count = Clock::now().time_since_epoch().count();
  return true;
}

// Who spins for long is who the scheduler takes the processor from when others want it; who has rested gets it at once.
void MonotonicCounter::RestUntil(std::int64_t count) {
#ifdef __linux__  // where the steady clock is this one
  constexpr std::int64_t kSecond = 1'000'000'000;
  const std::int64_t end = std::max<std::int64_t>(count - m_lead, 0);
  const timespec wakeUp = {static_cast<time_t>(end / kSecond), static_cast<long>(end % kSecond)};
  clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &wakeUp, nullptr);
#else
  (void)count;
#endif
}

}  // namespace tarnwell::platform

#pragma once

#include <time.h>

#include "platform/counter.h"

namespace tarnwell::test {

/// Milliseconds on a clock of the system: that of the wall unless told, or the processor time of this thread.
inline double Milliseconds(clockid_t clock = CLOCK_MONOTONIC) {
  timespec time = {};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}
inline double ProcessorMilliseconds() { return Milliseconds(CLOCK_THREAD_CPUTIME_ID); }

/// The real counter's count in so many milliseconds.
inline std::int64_t CountAfter(double milliseconds) {
  std::int64_t count = 0;
  platform::MonotonicCounter().QueryCount(count);
  return count + static_cast<std::int64_t>(milliseconds * 1e6);
}

}  // namespace tarnwell::test

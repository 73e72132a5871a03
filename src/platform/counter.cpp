#include "platform/counter.h"

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

}  // namespace tarnwell::platform

#pragma once

#include <cstdint>

namespace tarnwell::platform {

/// The high-resolution counter: a free-running signed 64-bit count that never goes backward.
class Counter {
 public:
  virtual ~Counter() = default;

  /// Counts per second into `rate`. False: this machine has no such counter.
  virtual bool QueryFrequency(std::int64_t& rate) = 0;

  /// The present count into `count`. False: the counter can't be read.
  virtual bool QueryCount(std::int64_t& count) = 0;
};

/// The operating system's monotonic clock, in nanoseconds.
class MonotonicCounter final : public Counter {
 public:
  bool QueryFrequency(std::int64_t& rate) override;
  bool QueryCount(std::int64_t& count) override;
};

}  // namespace tarnwell::platform

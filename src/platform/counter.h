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

  /// Rests in the operating system until shortly before `count`: returns early, so that the caller still reads the
  /// counter for the rest. Returns at once where that is near or past, and where no precise rest is to be had.
  virtual void RestUntil(std::int64_t /*count*/) {}
};

/// The operating system's monotonic clock, in nanoseconds.
class MonotonicCounter final : public Counter {
 public:
  /// By how much a rest ends early unless told, in nanoseconds.
  static constexpr std::int64_t kLead = 1'000'000;

  explicit MonotonicCounter(std::int64_t lead = kLead) : m_lead(lead) {}

  bool QueryFrequency(std::int64_t& rate) override;
  bool QueryCount(std::int64_t& count) override;
  void RestUntil(std::int64_t count) override;

 private:
  std::int64_t m_lead;
};

}  // namespace tarnwell::platform

#pragma once

#include <cstdint>

#include "platform/counter.h"
#include "platform/yield.h"

namespace tarnwell::link {

/// A moment on the counter, in counts.
using Deadline = std::int64_t;

/// All intervals of the link, on one counter. No operation but DelayPumped lets other code of the program run.
class IntervalTiming {
 public:
  IntervalTiming(platform::Counter& counter, platform::Yielder& yielder) : m_counter(counter), m_yielder(yielder) {}

  /// Reads the counter's rate. False: this machine has no usable counter, and no other operation may be called.
  bool InitCounter();

  Deadline MakeDeadline(double seconds) const;
  bool DeadlineReached(Deadline deadline) const;

  /// Whole milliseconds to the deadline, 0 when it is reached.
  int MillisecondsLeft(Deadline deadline) const;

  /// Rests and then spins until the deadline is reached.
  void WaitForDeadline(Deadline deadline) const;

  /// The same for `seconds`.
  void DelayBlocking(double seconds) const;

  /// Yields to the event loop until `seconds` have passed; handlers may make it longer. 0 returns without yielding.
  void DelayPumped(double seconds) const;

 private:
  std::int64_t ReadCounter() const;

  platform::Counter& m_counter;
  platform::Yielder& m_yielder;
  std::int64_t PerfFrequency = 0;
};

}  // namespace tarnwell::link

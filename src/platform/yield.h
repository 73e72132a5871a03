#pragma once

#include <cstdint>

#include "platform/counter.h"

namespace tarnwell::platform {

/// The way out of running code to the event loop.
class Yielder {
 public:
  virtual ~Yielder() = default;

  /// Handles everything that is pending, each handler to its end, then waits for the next event or until the counter
  /// reaches `deadline`, whichever is first. Doesn't wait when the deadline has passed. May return early.
  virtual void Yield(std::int64_t deadline) = 0;
};

/// Yields to the toolkit's event loop.
class EventLoopYielder final : public Yielder {
 public:
  explicit EventLoopYielder(Counter& counter) : m_counter(counter) {}
  void Yield(std::int64_t deadline) override;

 private:
  Counter& m_counter;
};

}  // namespace tarnwell::platform

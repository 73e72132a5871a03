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

  /// Milliseconds until a wait has to let the windows draw; 0 when that is due.
  int MillisecondsToDraw() const;

  /// Answers the window system and draws, and nothing else: no input, no tick, no handler. A desktop takes a window for
  /// dead that does neither for some seconds, and what covered it would leave its trace.
  void LetDraw();

 private:
  void NoteTurn();

  Counter& m_counter;
  std::int64_t m_nextDrawing = 0;
};

}  // namespace tarnwell::platform

#pragma once

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>

#include "platform/counter.h"
#include "platform/yield.h"

namespace tarnwell::test {

/// A counter that only the test moves. Every read takes 10 us of its time, so that a spin comes to its end.
class VirtualCounter final : public platform::Counter {
 public:
  static constexpr std::int64_t kRate = 1'000'000;  ///< counts per second
  static constexpr std::int64_t kReadTakes = 10;    ///< counts

  bool QueryFrequency(std::int64_t& rate) override {
    rate = kRate;
    return m_usable;
  }

  bool QueryCount(std::int64_t& count) override {
    m_now += m_readTakes;
    count = m_now;
    return m_usable;
  }

  /// The count without moving it.
  std::int64_t Now() const { return m_now; }
  double Seconds() const { return static_cast<double>(m_now) / kRate; }

  void Advance(double seconds) { m_now += std::llround(seconds * kRate); }
  void AdvanceTo(std::int64_t count) { m_now = std::max(m_now, count); }

  /// Counts that each read takes; 0 makes the arithmetic of deadlines exact.
  void SetReadTakes(std::int64_t counts) { m_readTakes = counts; }

  /// Makes every query fail, as on a machine without such a counter.
  void Break() { m_usable = false; }

 private:
  std::int64_t m_now = 1'000'000'000;
  std::int64_t m_readTakes = kReadTakes;
  bool m_usable = true;
};

/// A yield that costs no time: it runs what the test queued, handles the toolkit's pending events and moves the counter
/// to the deadline. Nothing else ends a poll loop, so a loop that outlives its script stops the test program.
class VirtualYielder final : public platform::Yielder {
 public:
  static constexpr int kIdleLimit = 10'000;  ///< yields in a row with nothing to run

  explicit VirtualYielder(VirtualCounter& counter) : m_counter(counter) {}

  /// Runs `action` in a yield of its own: the first call's action in the next yield, the second's in the one after.
  void OnYield(std::function<void()> action) { m_queued.push_back(std::move(action)); }

  /// The same, when `count` further yields have passed.
  void OnYieldAfter(int count, std::function<void()> action) {
    for (; count > 0; --count) OnYield([] {});
    OnYield(std::move(action));
  }

  void Yield(std::int64_t deadline) override {
    ++m_yields;
    m_idle = m_queued.empty() ? m_idle + 1 : 0;
    if (!m_queued.empty()) {
      const std::function<void()> action = std::move(m_queued.front());
      m_queued.pop_front();
      action();
    }
    QCoreApplication::processEvents();
    m_counter.AdvanceTo(deadline);
    if (m_idle >= kIdleLimit) {
      std::fputs("A loop yields without end: nothing is left in the script that could stop it.\n", stderr);
      std::abort();
    }
  }

  int Yields() const { return m_yields; }

 private:
  VirtualCounter& m_counter;
  std::deque<std::function<void()>> m_queued;
  int m_yields = 0;
  int m_idle = 0;
};

}  // namespace tarnwell::test

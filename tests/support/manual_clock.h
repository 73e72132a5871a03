#pragma once

#include "forms/controls/input_gate.h"

namespace tarnwell::test {

/// The operator's own clock: every look at it is a moment later than the one before. An input bears the moment at which
/// it was made as its time stamp, and so may be delivered long after.
class ManualClock final : public platform::InputClock {
 public:
  ManualClock() { forms::InputGate::Instance().SetClock(this); }
  ~ManualClock() override { forms::InputGate::Instance().SetClock(nullptr); }

  platform::Moment Now() override { return ++m_now; }
  std::optional<platform::Moment> Made(quint64 stamp) override {
    if (stamp == 0) return std::nullopt;
    return static_cast<platform::Moment>(stamp);
  }
  std::optional<platform::Moment> CloseAsked(const QWindow&) override { return m_closeAsked; }

  /// The thread is held for so long.
  void Pass(int milliseconds) { m_now += milliseconds; }

  /// The requests to close that are delivered from now on were made at that moment.
  void AskClose(platform::Moment made) { m_closeAsked = made; }

 private:
  platform::Moment m_now = 1000;
  std::optional<platform::Moment> m_closeAsked;
};

}  // namespace tarnwell::test

#pragma once

#include <QWindow>
#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwell::platform {

/// A moment on the program's own monotonic clock, in milliseconds.
using Moment = std::int64_t;

/// Translates the window system's time stamps, whose clock may have started at any time and runs over every 50 days.
/// The quickest delivery seen tells how far the clocks are apart, so an input comes out as made at most that much too
/// late, and never too early.
class ServerTime {
 public:
  /// When the input of this stamp, delivered at `now`, was made. After one that comes out more than a minute old the
  /// clocks are compared anew.
  Moment ToMoment(std::uint32_t stamp, Moment now);

 private:
  std::optional<std::uint32_t> m_apart;  ///< of a stamp from the moment of its delivery, the least seen
  Moment m_grownAt = 0;                  ///< when the clocks were last allowed to have drifted
};

/// Says when the operator did what the program is told only later, having had its thread for itself.
class InputClock {
 public:
  virtual ~InputClock() = default;

  virtual Moment Now() = 0;
  /// When the input of this time stamp was made; nothing where the system doesn't say.
  virtual std::optional<Moment> Made(quint64 stamp) = 0;
  /// True where a key was let go at this time stamp. With a press that bears it that is a key held down, whose repeats
  /// the X server sends so; the toolkit doesn't mark them all.
  virtual bool LetGo(quint64 stamp) const = 0;
  /// When the closing of `window` was asked for that is being delivered, told once; nothing where the system doesn't
  /// say.
  virtual std::optional<Moment> CloseAsked(const QWindow& window) = 0;
};

/// The clock of the window system that the program runs on.
std::unique_ptr<InputClock> SystemInputClock();

}  // namespace tarnwell::platform

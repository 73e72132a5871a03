#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

/// Folds what a loose plug makes: a device that is gone and back every second or so would fill the log.
class Flapping {
 public:
  /// Whether the note is one of many, and told with them by `Settled`.
  bool Folds(std::string_view note, std::int64_t at) {
    if (note != kDeviceGone && note != kDeviceBack) return false;
    const bool soon = m_last == kDeviceBack && note == kDeviceGone && at - m_at < kSettles;
    if (soon && m_count == 0) m_since = at;
    if (soon || m_count > 0) ++m_count;
    m_last = note;
    m_at = at;
    return m_count > 0;
  }

  bool IsSettled(std::int64_t now) const { return m_count > 0 && now - m_at > kSettles; }
  /// When the line of what was folded is due: not when something else happened to be recorded, a day later perhaps.
  std::int64_t SettledAt(std::int64_t now) const { return std::min(now, m_at + kSettles); }
  /// How the device stands after all that was folded, which is done with; empty where nothing was.
  std::string Settled(int offset) {
    const int count = std::exchange(m_count, 0);
    if (count == 0) return {};
    const std::string since = m_last + " since " + ClockText(m_at, offset);
    return count == 1 ? since
                      : since + ", after " + std::to_string(count) + " changes from " + ClockText(m_since, offset);
  }

 private:
  static constexpr std::int64_t kSettles = 10'000'000;  // microseconds

  std::string m_last;
  std::int64_t m_at = 0;
  std::int64_t m_since = 0;
  int m_count = 0;
};

}  // namespace tarnwell::vorel_line

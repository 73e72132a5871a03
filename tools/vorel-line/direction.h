#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "link/send_command.h"

namespace tarnwell::vorel_line {

/// When RTS is up on a half-duplex line: a lead ahead of the first bit, until the bits' time and the margin are over,
/// as the console has it. Moments are microseconds above 0; it has no port.
class Direction {
 public:
  bool IsRaised() const { return m_sendAt != 0 || m_releaseAt != 0; }
  void Raise(std::int64_t now) { m_sendAt = now + kLead; }
  bool MaySend(std::int64_t now) const { return now >= m_sendAt; }
  /// Bytes go out now, at the format of `settings`, behind those that are on the line still.
  void Sent(std::int64_t now, std::string_view settings, std::size_t bytes) {
    const auto bits = static_cast<std::int64_t>(link::TransmitTime(settings, bytes) * 1e6) - kMargin;
    m_releaseAt = std::max(m_releaseAt, now + kMargin - kLead) + bits;
    m_sendAt = 0;
  }
  bool ReleaseDue(std::int64_t now) const { return m_releaseAt != 0 && now >= m_releaseAt; }
  void Release() { m_sendAt = m_releaseAt = 0; }
  /// The next of these moments; 0: none.
  std::int64_t Due() const { return m_sendAt != 0 ? m_sendAt : m_releaseAt; }

 private:
  static constexpr auto kLead = static_cast<std::int64_t>(link::kTransmitLead * 1e6);
  static constexpr auto kMargin = static_cast<std::int64_t>(link::kTransmitMargin * 1e6);

  std::int64_t m_sendAt = 0;
  std::int64_t m_releaseAt = 0;
};

}  // namespace tarnwell::vorel_line

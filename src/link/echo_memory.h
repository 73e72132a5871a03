#pragma once

#include <cstdint>
#include <string_view>

namespace tarnwell::link {

/// What is asked where a setting's copy may be its confirmation or the line's echo: every device answers it, and no
/// setting that is tried again has its answer.
inline constexpr std::string_view kEchoQuery = "U?";
inline constexpr std::string_view kEchoQueryExpected = "U=";

/// Whether the request's own bytes would be a valid answer to it: a device confirms some settings so, and never a
/// query.
inline bool CopyMayConfirm(std::string_view request, std::string_view expected) {
  return !request.ends_with('?') && request.find(expected) != std::string_view::npos;
}

/// Seconds for which it is taken that a line stays without an echo: to change its wiring or adapter takes longer.
inline constexpr double kWithoutHolds = 5.0;

/// Whether a two-wire line gives back what is sent on it, as those requests have shown whose copy is no answer.
class EchoMemory {
 public:
  /// Whether an exact copy of a setting may be the line's echo, so that another frame or a query has to tell.
  /// `isEarly`: it is whole at the end of the transmit window, which is early for a device. Some adapters give a copy
  /// back late, and while no query is sent such a one may have come.
  bool MayBeEcho(bool isEarly, std::int64_t now) const { return isEarly || m_hearsItself || now > m_withoutUntil; }
  bool HearsItself() const { return m_hearsItself; }

  /// A query came back.
  void Heard() {
    m_hearsItself = true;
    m_without = 0;
  }

  /// A query was answered, and neither ahead of the answer nor behind it anything else came. One echo may be lost.
  /// `until`: for how long that holds, on the clock of `now`.
  void AnsweredWithout(std::int64_t until) {
    m_withoutUntil = until;
    if (++m_without >= kEnough) m_hearsItself = false;
  }

 private:
  static constexpr int kEnough = 3;

  bool m_hearsItself = false;
  int m_without = 0;
  std::int64_t m_withoutUntil = 0;
};

}  // namespace tarnwell::link

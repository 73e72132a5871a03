#pragma once

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

/// Whether a two-wire line gives back what is sent on it, as those requests have shown whose copy is no answer.
class EchoMemory {
 public:
  /// Whether an exact copy of a setting may be the line's echo, so that another frame or a query has to tell.
  /// `isEarly`: it is whole at the end of the transmit window, which is early for a device. Some adapters give a copy
  /// back late.
  bool MayBeEcho(bool isEarly) const { return isEarly || m_hearsItself; }
  bool HearsItself() const { return m_hearsItself; }

  /// A query came back.
  void Heard() {
    m_hearsItself = true;
    m_without = 0;
  }

  /// A query was answered, and neither ahead of the answer nor behind it anything else came. One echo may be lost.
  void AnsweredWithout() {
    if (++m_without >= kEnough) m_hearsItself = false;
  }

 private:
  static constexpr int kEnough = 3;

  bool m_hearsItself = false;
  int m_without = 0;
};

}  // namespace tarnwell::link

#pragma once

#include <optional>

namespace tarnwell::link {

/// Whether a two-wire line gives back what is sent on it, as its queries have shown. A copy of a request that is whole
/// when the transmit window ends comes too early for a device; but a device confirms some settings in the very bytes of
/// the request, and some adapters give the copy back late.
class EchoMemory {
 public:
  /// Whether an exact copy of the request is the line's echo. `isEarly`: it is whole at the end of the transmit window.
  bool IsEcho(bool isQuery, bool isEarly) const { return m_hearsItself.value_or(isEarly) || (isQuery && isEarly); }

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

  std::optional<bool> m_hearsItself;
  int m_without = 0;
};

}  // namespace tarnwell::link

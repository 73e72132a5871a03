#include "sim/outbox.h"

#include <algorithm>

namespace tarnwell::sim {

void Outbox::Add(double start, const std::vector<Piece>& pieces) {
  double at = m_bytes.empty() ? start : std::max(start, m_bytes.back().due);
  for (const Piece& piece : pieces) {
    at += piece.delay;
    for (const char byte : piece.bytes) {
      at += m_byteTime;
      m_bytes.push_back({at, byte});
    }
  }
}

std::string Outbox::Take(double now) {
  std::string taken;
  while (!m_bytes.empty() && m_bytes.front().due <= now) {
    taken += m_bytes.front().value;
    m_bytes.pop_front();
  }
  return taken;
}

std::optional<double> Outbox::NextDue() const {
  return m_bytes.empty() ? std::nullopt : std::optional(m_bytes.front().due);
}

}  // namespace tarnwell::sim

#include "tools/vorel-line/journal.h"

#include <algorithm>
#include <utility>

#include "link/frame_codec.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::int64_t kGap = 20'000;  // microseconds; more than a byte takes at any speed of the console's but 300
constexpr std::size_t kLongest = 512;

}  // namespace

void Journal::Take(Kind side, std::int64_t now, std::string_view bytes) {
  Flush(now);
  for (std::size_t at = 0; at < bytes.size();) {
    if (m_isOpen && m_open.kind != side) HandOn();
    if (!m_isOpen) m_open = {side, now, 0, {}, 0};
    m_isOpen = true;
    // A brace ends a frame, and with it the record.
    const std::size_t brace = std::min(bytes.find(link::kClosingBrace, at), bytes.size() - 1);
    const std::size_t count = std::min(brace + 1 - at, kLongest - m_open.bytes.size());
    m_open.bytes += bytes.substr(at, count);
    m_open.lasted = now - m_open.at;
    at += count;
    if (m_open.bytes.back() == link::kClosingBrace || m_open.bytes.size() == kLongest) HandOn();
  }
}

void Journal::Note(std::int64_t now, std::string_view text) {
  Flush(now, true);
  m_sink({Kind::kNote, now, 0, std::string(text), 0});
}

void Journal::Flush(std::int64_t now, bool all) {
  if (m_isOpen && (all || now >= *Due())) HandOn();
}

std::optional<std::int64_t> Journal::Due() const {
  return m_isOpen ? std::optional(m_open.at + m_open.lasted + kGap) : std::nullopt;
}

void Journal::HandOn() {
  m_isOpen = false;
  m_sink(std::exchange(m_open, {}));
}

}  // namespace tarnwell::vorel_line

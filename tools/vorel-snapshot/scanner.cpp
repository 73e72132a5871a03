#include "tools/vorel-snapshot/scanner.h"

#include <algorithm>

namespace tarnwell::vorel_snapshot {

namespace {

constexpr std::string_view kDigits = "0123456789";

}  // namespace

bool Scanner::Literal(std::string_view expected) {
  for (const char c : expected) {
    if (End() || m_text[m_at] != c) return false;
    ++m_at;
  }
  return true;
}

bool Scanner::Digits(std::size_t count) {
  for (; count > 0; --count, ++m_at) {
    if (!IsAt(kDigits)) return false;
  }
  return true;
}

bool Scanner::Number(bool decimals) {
  while (IsAt(" ")) ++m_at;
  if (IsAt("+-")) ++m_at;
  std::size_t digits = SkipDigits();
  if (decimals && IsAt(".")) {
    ++m_at;
    digits += SkipDigits();
  }
  return digits > 0;
}

void Scanner::GoTo(std::string_view text, std::size_t from) { m_at = std::min(m_text.find(text, from), m_text.size()); }

bool Scanner::IsAt(std::string_view anyOf) const {
  return !End() && anyOf.find(m_text[m_at]) != std::string_view::npos;
}

std::size_t Scanner::SkipDigits() {
  const std::size_t start = m_at;
  while (IsAt(kDigits)) ++m_at;
  return m_at - start;
}

}  // namespace tarnwell::vorel_snapshot

#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwell::vorel_snapshot {

/// Reads a text from its front. What doesn't fit leaves the scanner at the first wrong character and is false.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : m_text(text) {}

  bool Literal(std::string_view expected);
  /// Exactly `count` digits.
  bool Digits(std::size_t count);
  /// Blanks, a sign, digits; a point and decimals where `decimals` is set: "43.2", " .5", "+025".
  bool Number(bool decimals);
  /// Goes to the first `text` at or behind `from`, or to the end where there is none.
  void GoTo(std::string_view text, std::size_t from);
  bool End() const { return m_at == m_text.size(); }

  bool Sees(std::string_view expected) const { return m_text.substr(m_at).starts_with(expected); }
  std::size_t At() const { return m_at; }
  std::string_view Since(std::size_t start) const { return m_text.substr(start, m_at - start); }

 private:
  bool IsAt(std::string_view anyOf) const;
  std::size_t SkipDigits();

  std::string_view m_text;
  std::size_t m_at = 0;
};

}  // namespace tarnwell::vorel_snapshot

#include "tools/vorel-snapshot/conversion.h"

#include <algorithm>

#include "platform/code_page.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kBigUtf16Mark = "\xFE\xFF";

unsigned Byte(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

/// Bytes of the character that begins with `first`; 0: none does.
std::size_t Utf8Length(unsigned first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  return first >= 0xE0 && first < 0xF0 ? 3 : first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

std::optional<std::string> FromUtf8(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::size_t length = Utf8Length(Byte(text, 0));
    if (length == 0 || length > text.size()) return std::nullopt;
    char32_t character = length == 1 ? Byte(text, 0) : Byte(text, 0) & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
      if ((Byte(text, i) & 0xC0U) != 0x80) return std::nullopt;
      character = (character << 6U) | (Byte(text, i) & 0x3FU);
    }
    bytes += platform::EncodeCharacter(character);
    text.remove_prefix(length);
  }
  return bytes;
}

std::string FromUtf16(std::string_view text, std::size_t lowByte) {
  std::string bytes;
  for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
    bytes += platform::EncodeCharacter(Byte(text, at + 1 - lowByte) << 8U | Byte(text, at + lowByte));
  }
  return bytes;
}

}  // namespace

std::optional<Conversion> FindConversion(std::string_view file) {
  if (file.starts_with(kUtf16Mark)) return Conversion{"UTF-16", FromUtf16(file.substr(2), 0)};
  if (file.starts_with(kBigUtf16Mark)) return Conversion{"UTF-16", FromUtf16(file.substr(2), 1)};
  const bool marked = file.starts_with(kUtf8Mark);
  const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (!marked && std::all_of(file.begin(), file.end(), isAscii)) return std::nullopt;
  auto bytes = FromUtf8(file.substr(marked ? kUtf8Mark.size() : 0));
  return bytes ? std::optional(Conversion{"UTF-8", std::move(*bytes)}) : std::nullopt;
}

}  // namespace tarnwell::vorel_snapshot

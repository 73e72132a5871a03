#include "tools/vorel-snapshot/conversion.h"

#include <algorithm>
#include <array>

#include "platform/code_page.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kBigUtf16Mark = "\xFE\xFF";

// A mark at the front is no character of the console's encoding.
constexpr const char* kUtf8Cure = "iconv -f UTF-8 -t WINDOWS-1252 FILE >NEW";
constexpr const char* kMarkedUtf8Cure = "tail -c +4 FILE | iconv -f UTF-8 -t WINDOWS-1252 >NEW";
constexpr const char* kMarkedUtf16Cure = "iconv -f UTF-16 -t WINDOWS-1252 FILE >NEW";
constexpr std::array kUtf16Cures = {"iconv -f UTF-16LE -t WINDOWS-1252 FILE >NEW",
                                    "iconv -f UTF-16BE -t WINDOWS-1252 FILE >NEW"};

unsigned Byte(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

bool IsFollower(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

/// Bytes of the character that the text begins with; 0: none does.
std::size_t Utf8Length(std::string_view text) {
  const unsigned first = Byte(text, 0);
  std::size_t length = first < 0x80 ? 1 : 0;
  if (first >= 0xC2 && first < 0xF5) length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  const std::string_view character = text.substr(0, length);
  const bool whole = length > 0 && character.size() == length;
  return whole && std::all_of(character.begin() + 1, character.end(), IsFollower) ? length : 0;
}

char32_t Utf8Character(std::string_view bytes) {
  char32_t character = bytes.size() == 1 ? Byte(bytes, 0) : Byte(bytes, 0) & (0x7FU >> bytes.size());
  for (std::size_t i = 1; i < bytes.size(); ++i) character = (character << 6U) | (Byte(bytes, i) & 0x3FU);
  return character;
}

/// A byte that is no UTF-8 stays: it was damaged, or the file stops in a character.
std::string FromUtf8(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    bytes += length == 0 ? text.front() : platform::EncodeCharacter(Utf8Character(text.substr(0, length)));
    text.remove_prefix(std::max<std::size_t>(length, 1));
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

/// Which byte of each pair is the low one, by the zeros beside most characters; nothing where the text is no UTF-16.
std::optional<std::size_t> LowByteOfPairs(std::string_view text) {
  std::array<std::size_t, 2> zeros{};
  for (std::size_t at = 0; at < text.size(); ++at) zeros[at % 2] += text[at] == '\0' ? 1 : 0;
  const std::size_t low = zeros[0] > zeros[1] ? 1 : 0;
  return zeros[1 - low] > text.size() / 4 ? std::optional(low) : std::nullopt;
}

}  // namespace

std::optional<Conversion> FindConversion(std::string_view file) {
  if (file.starts_with(kUtf16Mark)) return Conversion{"UTF-16", kMarkedUtf16Cure, FromUtf16(file.substr(2), 0)};
  if (file.starts_with(kBigUtf16Mark)) return Conversion{"UTF-16", kMarkedUtf16Cure, FromUtf16(file.substr(2), 1)};
  if (const auto low = LowByteOfPairs(file)) return Conversion{"UTF-16", kUtf16Cures[*low], FromUtf16(file, *low)};
  const bool marked = file.starts_with(kUtf8Mark);
  std::string bytes = FromUtf8(file.substr(marked ? kUtf8Mark.size() : 0));
  if (bytes == file) return std::nullopt;
  return Conversion{"UTF-8", marked ? kMarkedUtf8Cure : kUtf8Cure, std::move(bytes)};
}

}  // namespace tarnwell::vorel_snapshot

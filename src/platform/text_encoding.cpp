#include "platform/text_encoding.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tarnwell::platform {

namespace {

/// The code page's own part, 0x80 to 0x9F; all other codes are those of Latin-1.
constexpr std::array<char16_t, 32> kUpperControlCodes = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t Decode(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpperControlCodes[byte - 0x80U] : char16_t{byte};
}

char Encode(char16_t unit) {
  const auto* found = std::find(kUpperControlCodes.begin(), kUpperControlCodes.end(), unit);
  if (found != kUpperControlCodes.end()) {
    return static_cast<char>(0x80 + std::distance(kUpperControlCodes.begin(), found));
  }
  const bool latin1 = unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF);
  return latin1 ? static_cast<char>(unit) : '?';
}

}  // namespace

QString FromDevice(std::string_view bytes) {
  QString text;
  text.reserve(static_cast<qsizetype>(bytes.size()));
  for (const char byte : bytes) text.append(QChar(Decode(static_cast<unsigned char>(byte))));
  return text;
}

std::string ToDevice(const QString& text) {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(text.size()));
  for (const QChar character : text) {
    if (!character.isLowSurrogate()) bytes.push_back(Encode(character.unicode()));
  }
  return bytes;
}

QString Printable(const QString& text) {
  QString shown = text;
  for (QChar& character : shown) {
    const bool control = character.category() == QChar::Other_Control && character != QLatin1Char('\n');
    if (control) character = QChar(QChar::ReplacementCharacter);
  }
  return shown;
}

}  // namespace tarnwell::platform

#include "platform/text_encoding.h"

#include "platform/code_page.h"

namespace tarnwell::platform {

namespace {

char16_t Decode(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpperControlCodes[byte - 0x80U] : char16_t{byte};
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
    if (!character.isLowSurrogate()) bytes.push_back(EncodeCharacter(character.unicode()));
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

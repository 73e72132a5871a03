#include "platform/text_encoding.h"

#include <gtest/gtest.h>

#include <set>

namespace tarnwell::platform {
namespace {

TEST(TextEncoding, EveryByteIsACharacterOfItsOwnAndComesBack) {
  std::set<char16_t> characters;
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    const QString text = FromDevice(byte);
    characters.insert(text.front().unicode());
    EXPECT_EQ(ToDevice(text), byte) << code;
  }
  EXPECT_EQ(characters.size(), 256U);
}

TEST(TextEncoding, FollowsTheCodePageAndMarksWhatItCannotShow) {
  EXPECT_EQ(FromDevice("\x80 \x93\xB0\x9F"), QStringLiteral("\u20AC \u201C\u00B0\u0178"));
  EXPECT_EQ(ToDevice(QStringLiteral("\u0394 \u0080 \U0001F4E1 \uFFFD!")), "? ? ? ?!")
      << "a character of two units is one character";
  EXPECT_EQ(Printable(QStringLiteral("a\r\n\tb\u001B[2J\u0085\u007F")),
            QStringLiteral("a\uFFFD\n\uFFFDb\uFFFD[2J\uFFFD\uFFFD"));
}

}  // namespace
}  // namespace tarnwell::platform

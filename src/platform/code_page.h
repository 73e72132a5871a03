#pragma once

#include <algorithm>
#include <array>
#include <iterator>

namespace tarnwell::platform {

/// The own part of code page windows-1252, 0x80 to 0x9F; all other codes are those of Latin-1.
inline constexpr std::array<char16_t, 32> kUpperControlCodes = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// The byte of a character, "?" for one outside the page.
constexpr char EncodeCharacter(char32_t character) {
  const auto* found = std::find(kUpperControlCodes.begin(), kUpperControlCodes.end(), character);
  if (found != kUpperControlCodes.end()) {
    return static_cast<char>(0x80 + std::distance(kUpperControlCodes.begin(), found));
  }
  const bool latin1 = character < 0x80 || (character >= 0xA0 && character <= 0xFF);
  return latin1 ? static_cast<char>(character) : '?';
}

}  // namespace tarnwell::platform

#pragma once

#include <string>
#include <string_view>

namespace tarnwell::snapshot {

/// Characters of a line, the check character included, the line end not.
inline constexpr std::size_t kLineLength = 80;
inline constexpr std::size_t kTextLength = kLineLength - 1;

/// The character, code 32 to 95, that stands in the last column over the text of the others.
char CheckCharacter(std::string_view text);

/// The line of a text in the file's encoding: cut to kTextLength, filled with blanks, with its check character.
std::string FormatSnapshotLine(std::string_view text);

}  // namespace tarnwell::snapshot

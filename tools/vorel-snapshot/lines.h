#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::vorel_snapshot {

/// Something in a file that the writer cannot have put there.
struct Fault {
  std::size_t line = 0;    ///< 1 for the first; 0: the file as a whole
  std::size_t column = 0;  ///< 1 for the first; 0: the line as a whole
  std::string what;        ///< in the file's encoding
};

/// One line as it stands in the file, a part of the file's bytes.
struct Line {
  std::string_view body;  ///< the check character included, the line end not
  std::string_view end;   ///< CR LF in a whole file; LF, CR, CR CR LF or nothing in a damaged one
};

std::vector<Line> SplitLines(std::string_view file);

/// The text of a line without its padding and, where the line has one, its check character.
std::string_view LineText(const Line& line);

/// Whether length and check character are right: no accident changed the text.
bool Holds(const Line& line);

/// What a line shows by itself: its end, its length, its check character, control characters.
std::vector<Fault> LineFaults(const Line& line, std::size_t number);

/// The kind of line end that all lines share, where it is a wrong one: the file was converted, not damaged bit by bit.
/// The last may have none.
std::optional<std::string_view> SharedWrongEnd(const std::vector<Line>& lines);

/// "LF", "CR LF", "no line end".
std::string EndName(std::string_view end);

/// The command that gives lines with that wrong end their own again.
std::string EndCure(std::string_view end);

}  // namespace tarnwell::vorel_snapshot

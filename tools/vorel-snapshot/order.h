#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/vorel-snapshot/lines.h"
#include "tools/vorel-snapshot/rows.h"

namespace tarnwell::vorel_snapshot {

/// What the console writes, as a line of its own, when it has to give up.
inline constexpr std::string_view kGivenUp = "#ERROR: FILE MAY BE INCOMPLETE";

/// A line that was found to be of a row.
struct Placed {
  std::size_t line;        ///< its index, from 0
  std::string_view label;  ///< as it should stand
  std::size_t valueAt;     ///< characters ahead of the value
  bool stray = false;      ///< found where it doesn't belong
};

/// The lines of each row, and what their order tells.
struct Order {
  Kind kind = Kind::kAmplifier;
  bool known = false;                     ///< at least one line has a label of a snapshot
  std::vector<std::vector<Placed>> rows;  ///< one a row of the kind
  std::vector<Fault> faults;
  std::vector<Fault> gaps;  ///< what is missing between lines that are good themselves
};

/// The indices of the lines that snapshots begin at; the first is 0. Several where files were joined: a further one is
/// known by the lines of its heading behind a snapshot's.
std::vector<std::size_t> Beginnings(const std::vector<Line>& lines);

/// Which line is of which row: by its label; by its place as well where the label is damaged.
Order PlaceLines(const std::vector<Line>& lines);

}  // namespace tarnwell::vorel_snapshot

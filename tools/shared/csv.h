#pragma once

#include <string>
#include <string_view>

namespace tarnwell::tools {

/// The text as a cell of a CSV table, in quotes where it needs them. What a spreadsheet would take for a formula gets
/// an apostrophe ahead of it: a device, and who writes a description, name texts that somebody else opens there.
std::string CsvCell(std::string_view text);

}  // namespace tarnwell::tools

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::vorel_line {

// What the commands print on standard output; each gives the exit code.
int PrintShow(const std::vector<std::string>& files, bool raw, bool follow);
/// `format` is "text", "csv" or "json", which is a line an event.
int PrintEvents(const std::vector<std::string>& files, std::string_view format, bool follow);
int PrintStats(const std::vector<std::string>& files);

}  // namespace tarnwell::vorel_line

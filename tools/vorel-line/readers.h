#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

/// Reads recordings in the order given, each record once. False where a file can't be read or is damaged; that is told
/// on standard error, and what is ahead of it was given. With `follow` the last file is read on as it grows, the one
/// that is begun in its place as well, until a signal ends it.
bool ReadFiles(const std::vector<std::string>& files, bool follow, const std::function<void(const Record&)>& sink);

// What the commands print on standard output; each gives the exit code.
int PrintShow(const std::vector<std::string>& files, bool raw, bool follow);
/// `format` is "text", "csv" or "json", which is a line an event.
int PrintEvents(const std::vector<std::string>& files, std::string_view format, bool follow);
int PrintStats(const std::vector<std::string>& files);

}  // namespace tarnwell::vorel_line

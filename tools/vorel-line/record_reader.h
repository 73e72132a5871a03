#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

/// Reads recordings in the order given, each record once. False where a file can't be read or is damaged; that is told
/// on standard error, and what is ahead of it was given. With `follow` the last file is read on as it grows, the one
/// that is begun in its place as well, until a signal ends it or nobody takes standard output any more.
bool ReadFiles(const std::vector<std::string>& files, bool follow, const std::function<void(const Record&)>& sink);

}  // namespace tarnwell::vorel_line

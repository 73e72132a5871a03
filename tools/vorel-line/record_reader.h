#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

/// Reads recordings in the order in which they were begun, each record once. Gives kExitDamaged or kExitUnusable where
/// one is damaged or can't be read; that is told on standard error. Behind damage it goes on at the next time of day,
/// and gives a note of how many bytes were unreadable. With `follow` the last file is waited for and read on as it
/// grows, the one that is begun in its place as well, until a signal ends it or nobody takes standard output any more.
Exit ReadFiles(const std::vector<std::string>& files, bool follow, const std::function<void(const Record&)>& sink);

}  // namespace tarnwell::vorel_line

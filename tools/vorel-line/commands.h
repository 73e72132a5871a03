#pragma once

#include <string>
#include <vector>

namespace tarnwell::vorel_line {

/// How the program ends.
enum Exit : int {
  kExitFine = 0,
  kExitDamaged = 1,   ///< a recording is damaged, or none; what is ahead of the damage was read
  kExitUnusable = 2,  ///< a file or port can't be opened, written or left, or the command line is wrong
  kExitNothing = 3    ///< plot: nothing to draw
};

/// Whether the arguments ask for a picture, which takes a QGuiApplication.
bool NeedsPainting(const std::vector<std::string>& arguments);

/// Carries the command line, without the program's name, and gives the exit code.
int Run(const std::vector<std::string>& arguments);

}  // namespace tarnwell::vorel_line

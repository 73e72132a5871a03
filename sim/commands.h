#pragma once

#include <string>
#include <string_view>

#include "sim/station.h"

namespace tarnwell::sim {

struct Outcome {
  bool ok;
  std::string text;     ///< what to print, or what is wrong; may be empty
  std::string command;  ///< the words that were carried out; empty for an empty line
};

/// Carries out one line of standard input. A line that is wrong changes nothing.
Outcome Execute(Station& station, double now, std::string_view line);

}  // namespace tarnwell::sim

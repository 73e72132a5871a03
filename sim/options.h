#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "sim/kinds.h"

namespace tarnwell::sim {

/// The command line of the program.
struct Options {
  std::vector<DeviceSetup> devices;
  std::string link;           ///< path of the symbolic link to the pseudo-terminal; empty: none
  std::string port;           ///< a real serial device instead of a pseudo-terminal
  int rate = 0;               ///< bits per second; 0: no pacing
  double answerTime = 0.005;  ///< seconds from a request to its reply
  bool trace = false;
  bool quiet = false;  ///< no acknowledgement of commands
  bool echo = false;   ///< the line gives back what it hears
  std::uint32_t seed = 1;
  std::vector<std::pair<std::string, double>> faults;
  bool help = false;
  bool version = false;
};

/// The options, checked, or what is wrong with them. With no device told, there is one of the first kind.
std::variant<Options, std::string> ParseOptions(const std::vector<std::string>& arguments);

/// The text of --help.
std::string OptionsHelp();

}  // namespace tarnwell::sim

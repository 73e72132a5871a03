#pragma once

#include <string>

#include "tools/vorel-line/record_file.h"

namespace tarnwell::vorel_line {

struct RecordOptions {
  std::string device;
  std::string link;
  FileRules file;
  bool rs485 = false;      ///< RTS is raised around what the console sends
  bool wait = false;       ///< for a device that isn't there at the start
  std::string dataFormat;  ///< such as "e,7,1": what a pseudo-terminal can't hold; empty: as the console sets it
};

/// Stands between console and device until a signal ends it, passes every byte on and records. Gives the exit code.
int RecordLine(const RecordOptions& options);

}  // namespace tarnwell::vorel_line

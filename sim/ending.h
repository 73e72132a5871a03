#pragma once

#include <signal.h>

#include <cstdint>

namespace tarnwell::sim {

/// Has SIGINT, SIGTERM and SIGHUP ask for the end, and keeps them back but while the mask that it gives is in force: so
/// none is missed just ahead of a wait. One that is ignored, as nohup has it, stays so. A line that breaks and a file
/// that grows too large are errors of the write, and end nothing.
sigset_t PrepareEnding();

bool EndAsked();

/// Waits that long; the end that is asked for ends the wait.
void Rest(const sigset_t& whileWaiting, std::int64_t microseconds);

}  // namespace tarnwell::sim

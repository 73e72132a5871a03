#pragma once

#include <signal.h>

namespace tarnwell::vorel_line {

/// Has SIGINT, SIGTERM and SIGHUP ask for the end, and keeps them back but while the mask that it gives is in force: so
/// none is missed just ahead of a wait. One that is ignored, as nohup has it, stays so.
sigset_t PrepareEnding();

bool EndAsked();

}  // namespace tarnwell::vorel_line

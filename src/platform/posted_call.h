#pragma once

#include <QObject>
#include <functional>

namespace tarnwell::platform {

/// Runs `call` from the event loop, while `receiver` lives: the program's way to act later. Unlike the toolkit's own
/// queued calls it never runs while only drawing is let through (DrawingOnly).
void PostCall(QObject& receiver, std::function<void()> call);

/// While it lives, no tick, posted call, input or typed text reaches the program, and no request to end. What comes is
/// handed on when the last one goes, in the order in which it came.
class DrawingOnly {
 public:
  DrawingOnly();
  ~DrawingOnly();
  DrawingOnly(const DrawingOnly&) = delete;
  DrawingOnly& operator=(const DrawingOnly&) = delete;
};

/// True while a DrawingOnly lives.
bool DrawsOnly();

}  // namespace tarnwell::platform

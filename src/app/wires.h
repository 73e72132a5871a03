#pragma once

#include <QObject>

namespace tarnwell::app {

/// One wire: `handler` is called in the event itself.
template <typename Control, typename Event, typename Handler>
void On(Control& control, Event event, Handler handler) {
  QObject::connect(&control, event, &control, handler);
}

}  // namespace tarnwell::app

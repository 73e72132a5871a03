#pragma once

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include "support/manual_clock.h"

bool qt_sendShortcutOverrideEvent(QObject* receiver, ulong timestamp, int key, Qt::KeyboardModifiers modifiers,
                                  const QString& text, bool repeats, ushort count);

namespace tarnwell::test {

/// Delivers `event` to the window as the window system does.
inline void Deliver(QWidget& window, QEvent& event) {
  QSpontaneKeyEvent::setSpontaneous(&event);
  QCoreApplication::instance()->notify(window.windowHandle(), &event);
}

inline void DeliverMouse(QWidget& control, QEvent::Type type, platform::Moment made, QPoint at) {
  const QPoint local = control.mapTo(control.window(), at);
  const bool down = type != QEvent::MouseButtonRelease;
  QMouseEvent event(type, local, control.window()->mapToGlobal(local), Qt::LeftButton,
                    down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
  event.setTimestamp(static_cast<quint64>(made));
  Deliver(*control.window(), event);
}

/// A click made at that moment, delivered now.
inline void DeliverClick(QWidget& control, platform::Moment made, QPoint at = {}) {
  if (at.isNull()) at = control.rect().center();
  DeliverMouse(control, QEvent::MouseButtonPress, made, at);
  DeliverMouse(control, QEvent::MouseButtonRelease, made, at);
}

/// A key pressed and let go at that moment in `window`, delivered now.
inline void DeliverKey(QWidget& window, Qt::Key key, platform::Moment made, Qt::KeyboardModifiers modifiers = {}) {
  QObject* receiver = window.windowHandle()->focusObject();
  const auto stamp = static_cast<quint64>(made);
  if (qt_sendShortcutOverrideEvent(receiver, stamp, key, modifiers, QString(), false, 1)) return;
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, modifiers);
    event.setTimestamp(stamp);
    Deliver(window, event);
  }
}

/// The frame's close button of `window`.
inline void DeliverClose(QWidget& window, ManualClock& clock, platform::Moment made) {
  clock.AskClose(made);
  QCloseEvent event;
  Deliver(window, event);
}

}  // namespace tarnwell::test

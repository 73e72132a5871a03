#pragma once

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include "forms/controls/input_gate.h"

bool qt_sendShortcutOverrideEvent(QObject* receiver, ulong timestamp, int key, Qt::KeyboardModifiers modifiers,
                                  const QString& text, bool repeats, ushort count);

namespace tarnwell::test {

/// The operator's own clock: every look at it is a moment later than the one before. An input bears the moment at which
/// it was made as its time stamp, and so may be delivered long after.
class ManualClock final : public platform::InputClock {
 public:
  ManualClock() { forms::InputGate::Instance().SetClock(this); }
  ~ManualClock() override { forms::InputGate::Instance().SetClock(nullptr); }

  platform::Moment Now() override { return ++m_now; }
  std::optional<platform::Moment> Made(quint64 stamp) override {
    if (stamp == 0) return std::nullopt;
    return static_cast<platform::Moment>(stamp);
  }
  bool LetGo(quint64 stamp) const override { return stamp != 0 && stamp == letGo; }
  std::optional<platform::Moment> CloseAsked(const QWindow&) override { return m_closeAsked; }

  quint64 letGo = 0;  ///< the stamp at which a key was let go

  /// The thread is held for so long.
  void Pass(int milliseconds) { m_now += milliseconds; }

  /// The requests to close that are delivered from now on were made at that moment.
  void AskClose(platform::Moment made) { m_closeAsked = made; }

 private:
  platform::Moment m_now = 1000;
  std::optional<platform::Moment> m_closeAsked;
};

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

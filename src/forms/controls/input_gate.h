#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "forms/controls/pressed_keys.h"
#include "forms/controls/stands.h"

class QKeyEvent;
class QMouseEvent;

namespace tarnwell::forms {

/// Knows a key that an open list or menu has taken already. A list closes at the shortcut override, ahead of the press,
/// which then goes to the form behind it where the window system gives that the keys: Return would press its OK.
class SpentKey {
 public:
  /// To be asked at each delivery of a key. True where an earlier delivery of this one closed a popup.
  bool ClosedAPopup(int key, std::optional<Moment> made);

 private:
  int m_key = 0;
  std::optional<Moment> m_made;
  const QWidget* m_popup = nullptr;  ///< what was open at the key's first delivery; only compared, it may be gone
};

/// Stands before all input of the program. The thread is held for seconds while a device is silent; what the operator
/// does meanwhile is delivered afterwards, to whatever stands there then. So an input acts only if, at the moment it
/// was made, its control stood in front, visible, enabled, with the caption it has now, and for a key with a focus that
/// the operator gave it or saw there; else it is lost. What passes acts in the order in which it was made: an option
/// that was arrived at acts ahead of the next press, key, access key or request to close.
///
/// It also gives Tab and Shift-Tab to the form (Form::MoveFocus), and drops the repeats of a held key that piled up
/// while a handler ran, so that nothing more is sent once the key is let go. Keys that edit a text send nothing and are
/// never dropped as repeats. Installed once on the application, by the first form.
class InputGate : public QObject {
  Q_OBJECT

 public:
  static InputGate& Instance();

  /// `control` gets another caption, or a colour that is one: what was aimed at the former one is lost.
  void CaptionChanges(QWidget& control) { m_stands.Changed(control); }

  /// Runs `act` when the event at hand is over, in the order of the calls, and ahead of the next input.
  void ActLater(std::function<void()> act);

  /// A key's action is due or its handler has ended: repeats that are pending now came meanwhile.
  void HandlerEnded();

  Moment Now() const { return m_clock->Now(); }

  /// For an act without a moment of its own, such as an assistive tool's: `control` was drawn as it stands now, and
  /// no input is lost.
  bool TakesActNow(const QWidget& control) const { return !m_dropsAll && m_stands.Stood(control, Now()); }

  /// For tests: inputs are as old as this clock says. Null: the system's clock again.
  void SetClock(platform::InputClock* clock);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend class InputPause;

  InputGate();

  void Act();
  void TakeMoment(const QObject& watched, const QEvent& event);
  void TakeKey(const QObject& watched, const QKeyEvent& key);
  bool Loses(QObject& watched, QEvent& event);
  bool LosesClose(QWindow& window, QEvent& event) const;
  bool LosesMouse(QWindow& window, const QMouseEvent& mouse);
  bool LosesKey(QWidget& receiver, QKeyEvent& key);
  bool Acts(const QWidget& control) const;
  bool Swallows(QWidget& receiver, QKeyEvent& key);

  std::unique_ptr<platform::InputClock> m_systemClock;
  platform::InputClock* m_clock;
  Stands m_stands;
  std::optional<Moment> m_made;  ///< when the input that is being delivered was made; nothing where that isn't known
  bool m_pressLost = false;      ///< the mouse button that is down was pressed in vain
  std::deque<std::function<void()>> m_due;

  PressedKeys m_pressedKeys;
  PressedKey m_key = {};   ///< that came to a window last
  bool m_repeats = false;  ///< the key that is being delivered is held down
  SpentKey m_spent;

  bool m_dropsAll = false;
  QTimer m_dropping;  ///< runs while repeats are dropped
  int m_roundsLeft = 0;
};

/// Clicks and keys that are handled while it lives are lost, and acts wait for its end. Wraps a yield behind work with
/// its buttons off: what was pressed meanwhile must not hit what can be pressed again a moment later.
class InputPause {
 public:
  InputPause() { InputGate::Instance().m_dropsAll = true; }
  ~InputPause();
  InputPause(const InputPause&) = delete;
  InputPause& operator=(const InputPause&) = delete;
};

}  // namespace tarnwell::forms

#pragma once

#include <QObject>
#include <QTimer>

class QKeyEvent;

namespace tarnwell::forms {

/// True for a key with modifiers that bring no character: a shortcut or an access key.
bool IsShortcut(const QKeyEvent& key);

/// Knows the repeats of a held key that the X server sends and the toolkit doesn't mark: a release and a press of the
/// key at the same moment, in milliseconds of the server's time.
class HeldKey {
 public:
  void Released(int key, quint64 moment);
  bool Repeats(int key, quint64 moment) const { return key == m_key && moment == m_moment; }

 private:
  int m_key = 0;
  quint64 m_moment = 0;
};

/// Stands before all key events of the program. It gives Tab and Shift-Tab to the form (Form::MoveFocus), and drops
/// the repeats of a held key that piled up while a handler ran, so that nothing more is sent once the key is let go.
/// Keys that edit a text send nothing and are never dropped. While an InputPause lives it drops everything
/// that an operator does.
/// Installed once on the application, by the first form.
class InputGate : public QObject {
  Q_OBJECT

 public:
  static InputGate& Instance();

  /// A key's action is due or its handler has ended: repeats that are pending now came meanwhile.
  void HandlerEnded();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend class InputPause;

  InputGate();

  bool Swallows(QWidget& receiver, QKeyEvent& key);

  HeldKey m_held;
  bool m_marksHeldKeys;

  bool m_dropsAll = false;
  QTimer m_dropping;  ///< runs while repeats are dropped
  int m_roundsLeft = 0;
};

/// Clicks and keys that are handled while it lives are lost. Wraps a yield behind work with its buttons off: what was
/// pressed meanwhile must not hit what can be pressed again a moment later.
class InputPause {
 public:
  InputPause() { InputGate::Instance().m_dropsAll = true; }
  ~InputPause() { InputGate::Instance().m_dropsAll = false; }
  InputPause(const InputPause&) = delete;
  InputPause& operator=(const InputPause&) = delete;
};

}  // namespace tarnwell::forms

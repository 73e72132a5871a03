#include "forms/controls/input_gate.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <algorithm>
#include <array>

#include "forms/controls/form.h"

namespace tarnwell::forms {

namespace {

bool IsTab(const QKeyEvent& key) {
  const bool plain = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
  return plain && (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab);
}

bool IsForward(const QKeyEvent& key) { return key.key() == Qt::Key_Tab && (key.modifiers() & Qt::ShiftModifier) == 0; }

/// True where `key` edits a text. Typed fast, equal keys share a millisecond, and the toolkit itself may mark the
/// second as a repeat of the first.
bool Edits(const QWidget& receiver, const QKeyEvent& key) {
  if (IsShortcut(key)) return false;
  const bool intoText = qobject_cast<const QLineEdit*>(&receiver) != nullptr;
  if (!key.text().isEmpty() && key.text().front().isPrint()) return intoText || key.key() != Qt::Key_Space;
  return intoText && (key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete);
}

/// True for what an operator does with mouse or keys.
bool IsInput(const QEvent& event) {
  constexpr std::array kOthers = {QEvent::Shortcut, QEvent::ContextMenu, QEvent::InputMethod};
  return event.isInputEvent() || std::find(kOthers.begin(), kOthers.end(), event.type()) != kOthers.end();
}

/// True for a key that closes a message box: held since before the box came, it would close it unread.
bool AnswersMessage(const QWidget& receiver, const QKeyEvent& key) {
  const bool answers = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape;
  return answers && qobject_cast<const QDialog*>(receiver.window()) != nullptr;
}

/// Delivers `key` marked as a repeat in its stead.
void DeliverAsRepeat(QWidget& receiver, QKeyEvent& key) {
  QKeyEvent repeat(key.type(), key.key(), key.modifiers(), key.nativeScanCode(), key.nativeVirtualKey(),
                   key.nativeModifiers(), key.text(), true, static_cast<quint16>(key.count()));
  repeat.setTimestamp(key.timestamp());
  QCoreApplication::sendEvent(&receiver, &repeat);
  key.accept();
}

}  // namespace

bool IsShortcut(const QKeyEvent& key) {
  // Control and Alt together are AltGr on some systems, which brings characters.
  const auto modifiers = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return modifiers != 0 && modifiers != (Qt::ControlModifier | Qt::AltModifier);
}

void HeldKey::Released(int key, quint64 moment) {
  m_key = key;
  m_moment = moment;
}

InputGate& InputGate::Instance() {
  static QPointer<InputGate> gate;
  if (gate == nullptr) {
    gate = new InputGate;
    gate->setParent(qApp);
    qApp->installEventFilter(gate);
  }
  return *gate;
}

InputGate::InputGate() : m_marksHeldKeys(QGuiApplication::platformName() == QLatin1String("xcb")) {
  m_dropping.setInterval(0);
  connect(&m_dropping, &QTimer::timeout, this, [this] {
    if (--m_roundsLeft == 0) m_dropping.stop();
  });
}

void InputGate::HandlerEnded() {
  // A round of the event loop may run its timers ahead of the keys that the window system holds: in the first round
  // and in the second, never in the third.
  m_roundsLeft = 3;
  m_dropping.start();
}

bool InputGate::eventFilter(QObject* watched, QEvent* event) {
  // Else a press that is cut by the end of a pause would count as a fresh one.
  if (event->type() == QEvent::KeyRelease) {
    const auto* key = static_cast<QKeyEvent*>(event);
    m_held.Released(key->key(), key->timestamp());
  }
  if (m_dropsAll && IsInput(*event)) return true;
  if (m_dropsAll && event->type() == QEvent::Close && event->spontaneous()) {
    event->ignore();
    return true;
  }
  if (!watched->isWidgetType()) return false;
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
      return Swallows(*static_cast<QWidget*>(watched), *static_cast<QKeyEvent*>(event));
    default:
      return false;
  }
}

bool InputGate::Swallows(QWidget& receiver, QKeyEvent& key) {
  const bool repeats = key.isAutoRepeat() || (m_marksHeldKeys && m_held.Repeats(key.key(), key.timestamp()));
  if (repeats && AnswersMessage(receiver, key)) {
    key.accept();
    return true;
  }
  auto* form = qobject_cast<Form*>(receiver.window());
  if (form == nullptr || Edits(receiver, key)) return false;
  // A held access key acts once. An override that is accepted keeps the key from the access keys.
  const bool pending = m_dropping.isActive();
  const bool dropped = repeats && (pending || (key.modifiers() & Qt::AltModifier) != 0);
  const bool moves = key.type() == QEvent::KeyPress && IsTab(key) && qobject_cast<QMenuBar*>(&receiver) == nullptr;
  if (moves && !dropped) form->MoveFocus(IsForward(key));
  if (dropped || moves) {
    key.accept();
    return true;
  }
  const bool unmarked = repeats && !key.isAutoRepeat() && key.type() == QEvent::KeyPress;
  if (unmarked) DeliverAsRepeat(receiver, key);
  return unmarked;
}

}  // namespace tarnwell::forms

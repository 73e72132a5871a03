#include "forms/controls/input_events.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>
#include <algorithm>
#include <array>

#include "forms/controls/form.h"

namespace tarnwell::forms {

bool IsShortcut(const QKeyEvent& key) {
  // Control and Alt together are AltGr on some systems, which brings characters.
  const auto modifiers = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return modifiers != 0 && modifiers != (Qt::ControlModifier | Qt::AltModifier);
}

bool IsTab(const QKeyEvent& key) {
  const bool plain = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
  return plain && (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab);
}

bool IsForward(const QKeyEvent& key) { return key.key() == Qt::Key_Tab && (key.modifiers() & Qt::ShiftModifier) == 0; }

bool Edits(const QWidget& receiver, const QKeyEvent& key) {
  if (IsShortcut(key)) return false;
  const bool intoText = qobject_cast<const QLineEdit*>(&receiver) != nullptr;
  if (!key.text().isEmpty() && key.text().front().isPrint()) return intoText || key.key() != Qt::Key_Space;
  return intoText && (key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete);
}

QWidget* WidgetOf(QWindow& window) { return window.handle() != nullptr ? QWidget::find(window.winId()) : nullptr; }

bool AsksToClose(QObject& receiver, const QEvent& event) {
  if (event.type() != QEvent::Close || !event.spontaneous() || !receiver.isWindowType()) return false;
  const auto* form = qobject_cast<Form*>(WidgetOf(static_cast<QWindow&>(receiver)));
  return form != nullptr && !form->Unloaded();
}

bool IsInput(QObject& receiver, const QEvent& event) {
  constexpr std::array kOthers = {QEvent::Shortcut, QEvent::ContextMenu, QEvent::InputMethod};
  return event.isInputEvent() || std::find(kOthers.begin(), kOthers.end(), event.type()) != kOthers.end() ||
         AsksToClose(receiver, event);
}

bool BeginsAnAct(const QEvent& event) {
  constexpr std::array kActs = {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick, QEvent::Wheel,
                                QEvent::KeyPress,         QEvent::ShortcutOverride,    QEvent::Close};
  return std::find(kActs.begin(), kActs.end(), event.type()) != kActs.end();
}

bool AnswersMessage(const QWidget& receiver, const QKeyEvent& key) {
  const bool answers = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape;
  return answers && qobject_cast<const QDialog*>(receiver.window()) != nullptr;
}

}  // namespace tarnwell::forms

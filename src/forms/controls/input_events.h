#pragma once

class QEvent;
class QKeyEvent;
class QObject;
class QWidget;
class QWindow;

namespace tarnwell::forms {

// What an event of the toolkit is in the operator's eyes.

/// True for a key with modifiers that bring no character: a shortcut or an access key.
bool IsShortcut(const QKeyEvent& key);

/// True for Tab and Shift-Tab; IsForward for the former.
bool IsTab(const QKeyEvent& key);
bool IsForward(const QKeyEvent& key);

/// True where `key` edits a text. Typed fast, equal keys share a millisecond, and the toolkit itself may mark the
/// second as a repeat of the first.
bool Edits(const QWidget& receiver, const QKeyEvent& key);

/// The form or popup that `window` shows; null for one that is not, or no longer, there.
QWidget* WidgetOf(QWindow& window);

/// True for the operator's request to close a form. What the program closes itself looks the same to the toolkit.
bool AsksToClose(QObject& receiver, const QEvent& event);

/// True for what an operator does with mouse or keys, or by the window's frame.
bool IsInput(QObject& receiver, const QEvent& event);

/// True for an input that does something by itself, and is no rest of another.
bool BeginsAnAct(const QEvent& event);

/// True for a key that closes a message box: held since before the box came, it would close it unread.
bool AnswersMessage(const QWidget& receiver, const QKeyEvent& key);

}  // namespace tarnwell::forms

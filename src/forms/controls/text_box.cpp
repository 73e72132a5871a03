#include "forms/controls/text_box.h"

#include <QInputMethodEvent>
#include <QKeyEvent>

#include "forms/controls/input_events.h"
#include "forms/controls/input_gate.h"

namespace tarnwell::forms {

namespace {

/// The characters that a key brings; empty for the shortcuts of editing and for keys without one.
QString CharactersOf(const QKeyEvent& event) {
  if (IsShortcut(event)) return {};
  switch (event.key()) {
    case Qt::Key_Backspace:
      return QString(QChar(KeyAscii::kBackspace));
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return QString(QChar(KeyAscii::kEnter));
    case Qt::Key_Escape:
      return QString(QChar(KeyAscii::kEscape));
    default:
      return !event.text().isEmpty() && event.text().front().isPrint() ? event.text() : QString();
  }
}

bool IsStep(const QKeyEvent& event) {
  const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
  return modifiers == Qt::NoModifier && (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down);
}

bool IsEnter(const QKeyEvent& event) { return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter; }

bool GoesOnToForm(char16_t character) { return character == KeyAscii::kEnter || character == KeyAscii::kEscape; }

}  // namespace

TextBox::TextBox(const char* name, Container container, const char* caption, const char* toolTip, Settings settings)
    : QLineEdit(QString::fromUtf8(caption), container.Widget()), m_singleStep(settings.has(Settings::kSingleStepFlag)) {
  setAcceptDrops(false);
  if (settings.maxLength > 0) setMaxLength(settings.maxLength);
  setReadOnly(settings.has(Settings::kReadOnlyFlag));
  if (settings.has(Settings::kRightAlignedFlag)) setAlignment(Qt::AlignRight);
  if (settings.has(Settings::kCentredFlag)) setAlignment(Qt::AlignCenter);
  InitControl(*this, name, toolTip, settings);
}

void TextBox::SetText(const QString& text) { setText(text); }

void TextBox::TakeBackTyping() {
  if (isModified()) Q_EMIT LostFocus();
}

void TextBox::Type(int start, int end, const QString& text) {
  setFocus(Qt::OtherFocusReason);
  setSelection(start, end - start);
  const QString passed = Asked(text);
  if (!passed.isEmpty() || text.isEmpty()) insert(passed);
}

void TextBox::PressEnter() {
  setFocus(Qt::OtherFocusReason);
  QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
  keyPressEvent(&enter);
}

char16_t TextBox::Asked(char16_t character) {
  KeyAscii key{character};
  Q_EMIT KeyPress(key);
  return key.character;
}

QString TextBox::Asked(const QString& typed) {
  QString passed;
  for (const QChar character : typed) {
    const char16_t answer = Asked(character.unicode());
    if (answer != KeyAscii::kSwallowed) passed.append(QChar(answer));
  }
  return passed;
}

void TextBox::keyPressEvent(QKeyEvent* event) {
  if (IsStep(*event)) {
    if (event->isAutoRepeat() && m_singleStep) return;
    Q_EMIT KeyDown(event->key());
    InputGate::Instance().HandlerEnded();
  } else if (event->isAutoRepeat() && IsEnter(*event)) {
    return;  // held, it would commit again and again
  } else if (CharactersOf(*event).isEmpty()) {
    QLineEdit::keyPressEvent(event);
  } else {
    TakeCharacters(event);
  }
}

void TextBox::TakeCharacters(QKeyEvent* event) {
  const QString typed = CharactersOf(*event);
  const QString passed = Asked(typed);
  InputGate::Instance().HandlerEnded();
  if (passed.isEmpty()) return;
  if (isReadOnly()) return;  // Escape takes back what was typed; where nothing can be it does nothing
  if (passed != typed) {
    insert(passed);
  } else if (GoesOnToForm(passed.front().unicode())) {
    event->ignore();
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

// Where an input method composes the characters, they come here and not as keys.
void TextBox::inputMethodEvent(QInputMethodEvent* event) {
  QInputMethodEvent asked(event->preeditString(), event->attributes());
  asked.setCommitString(Asked(event->commitString()), event->replacementStart(), event->replacementLength());
  QLineEdit::inputMethodEvent(&asked);
  event->setAccepted(asked.isAccepted());
}

void TextBox::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (!IsLent(event->reason())) Q_EMIT LostFocus();
}

}  // namespace tarnwell::forms

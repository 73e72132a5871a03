#pragma once

#include <QLineEdit>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// The character of a KeyPress: a handler swallows it by setting kSwallowed or replaces it with another.
struct KeyAscii {
  static constexpr char16_t kSwallowed = 0;
  static constexpr char16_t kBackspace = 8;
  static constexpr char16_t kEnter = 13;
  static constexpr char16_t kEscape = 27;
  char16_t character;
};

/// One line of typed text. A swallowed key makes no sound and has no other effect.
class TextBox : public QLineEdit {
  Q_OBJECT

 public:
  TextBox(const char* name, Container container, const char* caption = "", const char* toolTip = "",
          Settings settings = {});

  QString Text() const { return text(); }
  /// Sets the text; raises nothing.
  void SetText(const QString& text);

  /// What is half typed is given up, as where the focus leaves: raises LostFocus. Does nothing where nothing is.
  void TakeBackTyping();

  /// An assistive tool types `text` over the characters from `start` to before `end`.
  void Type(int start, int end, const QString& text);
  /// An assistive tool presses Enter here.
  void PressEnter();

 Q_SIGNALS:
  /// A character arrives: a printing one, Backspace, Enter or Escape. Not raised for the shortcuts of editing.
  void KeyPress(tarnwell::forms::KeyAscii& key);
  /// An arrow key goes down; `key` is Qt::Key_Up or Qt::Key_Down.
  void KeyDown(int key);
  /// The focus went to another control of the form, or the pointer to one that takes none; not raised when a window or
  /// menu took it for a while.
  void LostFocus();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  char16_t Asked(char16_t character);
  QString Asked(const QString& typed);
  void TakeCharacters(QKeyEvent* event);

  bool m_singleStep;
};

}  // namespace tarnwell::forms

#include "forms/controls/accessible_text.h"

#include "forms/controls/accessible_control.h"
#include "forms/controls/text_box.h"

namespace tarnwell::forms {

namespace {

// The toolkit's own interface of a line of text can't be derived from: it is private, and tells a covered one as
// showing.
class AccessibleTextBox : public AccessibleControl,
                          public QAccessibleTextInterface,
                          public QAccessibleEditableTextInterface {
 public:
  explicit AccessibleTextBox(TextBox& box) : AccessibleControl(&box, QAccessible::EditableText) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface) return static_cast<QAccessibleEditableTextInterface*>(this);
    return AccessibleControl::interface_cast(type);
  }

  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Value ? Box().Text() : AccessibleControl::text(which);
  }

  QAccessible::State state() const override {
    QAccessible::State state = AccessibleControl::state();
    state.selectableText = true;
    state.editable = !Box().isReadOnly();
    state.readOnly = Box().isReadOnly();
    return state;
  }

  QStringList actionNames() const override {
    QStringList names = AccessibleControl::actionNames();
    if (Box().isEnabled() && !Box().isReadOnly()) names << pressAction();
    return names;
  }

  void doAction(const QString& action) override {
    if (action != pressAction()) return AccessibleControl::doAction(action);
    Later([](TextBox& box) { box.PressEnter(); });
  }

  void selection(int index, int* start, int* end) const override {
    const bool is = index == 0 && Box().hasSelectedText();
    *start = is ? Box().selectionStart() : 0;
    *end = is ? Box().selectionEnd() : 0;
  }
  int selectionCount() const override { return Box().hasSelectedText() ? 1 : 0; }
  void addSelection(int start, int end) override { setSelection(0, start, end); }
  void removeSelection(int /*index*/) override { Box().deselect(); }
  void setSelection(int /*index*/, int start, int end) override { Box().setSelection(start, end - start); }

  int cursorPosition() const override { return Box().cursorPosition(); }
  void setCursorPosition(int position) override { Box().setCursorPosition(position); }
  QString text(int start, int end) const override { return Box().Text().mid(start, end - start); }
  int characterCount() const override { return static_cast<int>(Box().Text().size()); }
  QRect characterRect(int /*offset*/) const override { return rect(); }
  int offsetAtPoint(const QPoint& point) const override { return Box().cursorPositionAt(Box().mapFromGlobal(point)); }
  void scrollToSubstring(int start, int /*end*/) override { Box().setCursorPosition(start); }
  QString attributes(int /*offset*/, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }

  void deleteText(int start, int end) override { replaceText(start, end, {}); }
  void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
  void replaceText(int start, int end, const QString& text) override {
    Later([start, end, text](TextBox& box) { box.Type(start, end, text); });
  }

 private:
  TextBox& Box() const { return As<TextBox>(); }

  template <typename Act>
  void Later(Act act) {
    if (!Box().isReadOnly()) ActLater<TextBox>(Box(), act);
  }
};

}  // namespace

QAccessibleInterface* NewAccessibleTextBox(TextBox& box) { return new AccessibleTextBox(box); }

}  // namespace tarnwell::forms

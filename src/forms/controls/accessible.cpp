#include "forms/controls/accessible.h"

#include <QAccessible>
#include <QApplication>
#include <QKeySequence>
#include <QPointer>
#include <cmath>
#include <utility>

#include "forms/controls/accessible_control.h"
#include "forms/controls/accessible_text.h"
#include "forms/controls/announcement.h"
#include "forms/controls/command_button.h"
#include "forms/controls/frame.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/label.h"
#include "forms/controls/option_button.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/reading_order.h"
#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

namespace tarnwell::forms {

namespace {

/// A caption as it is read, without the marks of its access key.
QString Spoken(const QString& caption) {
  QString spoken;
  for (int i = 0; i < caption.size(); ++i) {
    if (caption[i] == QLatin1Char('&') && i + 1 < caption.size()) ++i;
    spoken += caption[i];
  }
  return spoken.trimmed();
}

class AccessibleFrame : public AccessibleControl {
 public:
  explicit AccessibleFrame(Frame& frame) : AccessibleControl(&frame, QAccessible::Grouping) {}

  // The toolkit would give a frame in a frame the outer one's title.
  QString text(QAccessible::Text which) const override {
    const auto& frame = As<Frame>();
    const bool titled = which == QAccessible::Name && frame.accessibleName().isEmpty();
    return titled ? Spoken(frame.Caption()) : AccessibleControl::text(which);
  }
};

class AccessibleButton : public AccessibleControl {
 public:
  AccessibleButton(QAbstractButton& button, QAccessible::Role role) : AccessibleControl(&button, role) {}

  QString text(QAccessible::Text which) const override {
    const auto& button = As<QAbstractButton>();
    if (which == QAccessible::Name && button.accessibleName().isEmpty()) return Spoken(button.text());
    if (which != QAccessible::Accelerator) return AccessibleControl::text(which);
    return QKeySequence::mnemonic(button.text()).toString(QKeySequence::NativeText);
  }
};

class AccessibleCommand : public AccessibleButton {
 public:
  explicit AccessibleCommand(CommandButton& button)
      : AccessibleButton(button, button.IsSample() ? QAccessible::Graphic : QAccessible::Button) {}

  // What a sample says is in its name; its tool tip is that of the buttons it explains.
  QString text(QAccessible::Text which) const override {
    const bool tip = which == QAccessible::Description || which == QAccessible::Help;
    return IsSample() && tip ? QString() : AccessibleButton::text(which);
  }

  QAccessible::State state() const override {
    QAccessible::State state = AccessibleButton::state();
    state.pressed = As<CommandButton>().isDown();
    if (IsSample()) state.focusable = false;
    return state;
  }

  QStringList actionNames() const override {
    if (IsSample() || !widget()->isEnabled()) return {};
    return AccessibleButton::actionNames() << pressAction();
  }

  void doAction(const QString& action) override {
    if (IsSample()) return;
    if (action != pressAction()) return AccessibleButton::doAction(action);
    ActLater<CommandButton>(As<CommandButton>(), [](CommandButton& button) { button.click(); });
  }

 private:
  bool IsSample() const { return As<CommandButton>().IsSample(); }
};

class AccessibleOption : public AccessibleButton {
 public:
  explicit AccessibleOption(OptionButton& option) : AccessibleButton(option, QAccessible::RadioButton) {}

  QAccessible::State state() const override {
    QAccessible::State state = AccessibleButton::state();
    state.checkable = true;
    state.checked = As<OptionButton>().Value();
    return state;
  }

  QStringList actionNames() const override {
    if (!widget()->isEnabled()) return {};
    return {pressAction(), toggleAction(), setFocusAction()};
  }

  void doAction(const QString& action) override {
    auto& option = As<OptionButton>();
    if (action == pressAction() || action == toggleAction()) {
      ActLater<OptionButton>(option, [](OptionButton& pressed) { pressed.click(); });
    } else if (action == setFocusAction() && option.GroupTabStop() == &option) {
      AccessibleButton::doAction(action);  // at any other one the focus alone would be a command
    }
  }
};

class AccessibleUpDown : public AccessibleControl, public QAccessibleValueInterface {
 public:
  explicit AccessibleUpDown(UpDown& spin) : AccessibleControl(&spin, QAccessible::SpinBox) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return AccessibleControl::interface_cast(type);
  }

  QVariant currentValue() const override { return Spin().Shown(Spin().Value()); }
  QVariant minimumValue() const override { return Spin().Shown(Spin().Minimum()); }
  QVariant maximumValue() const override { return Spin().Shown(Spin().Maximum()); }
  QVariant minimumStepSize() const override { return Spin().Shown(Spin().Increment()); }
  void setCurrentValue(const QVariant& value) override {
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (isNumber && std::isfinite(number)) Set(static_cast<int>(std::lround(number / Spin().Shown(1))));
  }

  QStringList actionNames() const override {
    return widget()->isEnabled() ? QStringList{increaseAction(), decreaseAction()} : QStringList();
  }

  void doAction(const QString& action) override {
    if (action == increaseAction()) Set(Spin().Value() + Spin().Increment());
    if (action == decreaseAction()) Set(Spin().Value() - Spin().Increment());
  }

 private:
  UpDown& Spin() const { return As<UpDown>(); }

  void Set(int value) {
    ActLater<UpDown>(Spin(), [value](UpDown& spin) { spin.Choose(value); });
  }
};

using Related = std::pair<QAccessibleInterface*, QAccessible::Relation>;

/// A value with a name of its own says the value as its description.
class AccessibleLabel : public AccessibleControl {
 public:
  explicit AccessibleLabel(Label& label) : AccessibleControl(&label, QAccessible::StaticText) {}

  QString text(QAccessible::Text which) const override {
    const auto& label = As<Label>();
    const QString shown = label.buddy() != nullptr ? Spoken(label.text()) : label.text();
    if (which == QAccessible::Name) return label.accessibleName().isEmpty() ? shown : label.accessibleName();
    if (which == QAccessible::Description && !label.accessibleName().isEmpty()) return shown;
    return AccessibleControl::text(which);
  }

  QList<Related> relations(QAccessible::Relation match) const override {
    QList<Related> relations = AccessibleControl::relations(match);
    QWidget* buddy = As<Label>().buddy();
    if (buddy != nullptr && match.testFlag(QAccessible::Labelled)) {
      relations.append({QAccessible::queryAccessibleInterface(buddy), QAccessible::Labelled});
    }
    return relations;
  }
};

class AccessibleImage : public AccessibleControl {
 public:
  explicit AccessibleImage(Image& image) : AccessibleControl(&image, QAccessible::Graphic) {}

  // The toolkit tells of each coming and going; one that flashes would be told of without end.
  bool isValid() const override { return AccessibleControl::isValid() && !As<Image>().IsChanging(); }
};

class AccessibleForm : public QAccessibleWidget {
 public:
  explicit AccessibleForm(Form& form)
      : QAccessibleWidget(
            &form, form.windowType() == Qt::Dialog || form.isModal() ? QAccessible::Dialog : QAccessible::Window),
        m_form(&form) {}

  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Name ? m_form->Title() : QAccessibleWidget::text(which);
  }

 private:
  Form* m_form;
};

class AccessibleAnnouncement : public QAccessibleWidget {
 public:
  explicit AccessibleAnnouncement(Announcement& announcement)
      : QAccessibleWidget(&announcement, QAccessible::Notification) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.invisible = false;
    return state;
  }
};

/// The toolkit tells of a control while its constructors run, and keeps what it then took it for: an object of its own
/// class, that stands in no tree.
class AccessibleBeginning : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  bool isValid() const override { return false; }
};

/// Only controls of the kit stand in a form; one of the toolkit's class has constructors to come.
bool IsBeginning(const QWidget& control) {
  QWidget* container = control.parentWidget();
  auto* form = container != nullptr ? qobject_cast<Form*>(container->window()) : nullptr;
  const bool stands = form != nullptr && (container == &form->Inner() || qobject_cast<Frame*>(container) != nullptr);
  return stands && control.metaObject()->className()[0] == 'Q';
}

QAccessibleInterface* InterfaceOf(const QString& /*key*/, QObject* object) {
  if (auto* option = qobject_cast<OptionButton*>(object)) return new AccessibleOption(*option);
  if (auto* button = qobject_cast<CommandButton*>(object)) return new AccessibleCommand(*button);
  if (auto* frame = qobject_cast<Frame*>(object)) return new AccessibleFrame(*frame);
  if (auto* label = qobject_cast<Label*>(object)) return new AccessibleLabel(*label);
  if (auto* spin = qobject_cast<UpDown*>(object)) return new AccessibleUpDown(*spin);
  if (auto* image = qobject_cast<Image*>(object)) return new AccessibleImage(*image);
  if (auto* box = qobject_cast<TextBox*>(object)) return NewAccessibleTextBox(*box);
  if (auto* form = qobject_cast<Form*>(object)) return new AccessibleForm(*form);
  if (auto* announcement = qobject_cast<Announcement*>(object)) return new AccessibleAnnouncement(*announcement);
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget != nullptr && IsBeginning(*widget)) return new AccessibleBeginning(widget);
  return nullptr;
}

/// True where a frame beside `frame` and in front of it takes all its place.
bool IsBehindAnother(const Frame& frame) {
  bool inFront = false;
  for (const QObject* sibling : frame.parentWidget()->children()) {
    const auto* other = qobject_cast<const Frame*>(sibling);
    if (inFront && other != nullptr && !other->isHidden() && other->geometry().contains(frame.geometry())) return true;
    if (sibling == &frame) inFront = true;
  }
  return false;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::removeFactory(InterfaceOf);
  QAccessible::installFactory(InterfaceOf);
}

bool TakesAssistiveAct(const QWidget& control) {
  const QWidget* modal = QApplication::activeModalWidget();
  const bool blocked = modal != nullptr && modal != control.window();
  return !blocked && TakesFocus(control) && !IsCovered(control) && InputGate::Instance().TakesActNow(control);
}

bool IsCovered(const QWidget& control) {
  for (const QWidget* part = &control; !part->isWindow(); part = part->parentWidget()) {
    const auto* frame = qobject_cast<const Frame*>(part);
    if (frame == nullptr) continue;
    const bool outOfSight = !frame->parentWidget()->rect().intersects(frame->geometry());
    if (outOfSight || IsBehindAnother(*frame)) return true;
  }
  return false;
}

}  // namespace tarnwell::forms

#pragma once

#include <QAccessibleWidget>
#include <QPointer>
#include <functional>

#include "forms/controls/accessible.h"
#include "forms/controls/input_gate.h"

namespace tarnwell::forms {

/// Runs when the tool's call is over, which mustn't wait for what a handler does, and not while the line is held.
template <typename Control>
void ActLater(Control& control, std::function<void(Control&)> act) {
  if (!TakesAssistiveAct(control)) return;
  InputGate::Instance().ActLater([control = QPointer<Control>(&control), act = std::move(act)] {
    if (control != nullptr && TakesAssistiveAct(*control)) act(*control);
  });
}

/// What stands on a covered page isn't showing; the toolkit knows only of what is hidden.
class AccessibleControl : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (IsCovered(*widget())) state.offscreen = true;
    return state;
  }

  // Where the focus goes a handler may run.
  void doAction(const QString& action) override {
    if (action != setFocusAction()) return QAccessibleWidget::doAction(action);
    ActLater<QWidget>(*widget(), [](QWidget& control) { control.setFocus(Qt::OtherFocusReason); });
  }

 protected:
  template <typename Control>
  Control& As() const {
    return static_cast<Control&>(*widget());
  }
};

}  // namespace tarnwell::forms

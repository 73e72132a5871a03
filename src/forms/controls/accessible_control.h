#pragma once

#include <QAccessibleWidget>

#include "forms/controls/accessible.h"

namespace tarnwell::forms {

/// What stands on a covered page isn't showing; the toolkit knows only of what is hidden.
class AccessibleControl : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    if (IsCovered(*widget())) state.offscreen = true;
    return state;
  }

 protected:
  template <typename Control>
  Control& As() const {
    return static_cast<Control&>(*widget());
  }
};

}  // namespace tarnwell::forms

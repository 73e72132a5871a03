#pragma once

#include <QPushButton>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// A push button. Return held on it clicks once, and a double click is one click.
class CommandButton : public QPushButton {
  Q_OBJECT

 public:
  CommandButton(const char* name, Container container, const char* caption = "", const char* toolTip = "",
                Settings settings = {});

  bool IsSample() const { return m_sample; }

  QString Caption() const { return text(); }
  void SetCaption(const QString& caption);

  /// The background of a graphical button, which shows a state. An invalid colour: the style's own.
  QColor Background() const { return m_background; }
  void SetBackground(const QColor& colour);
  /// True where the state that the background shows isn't live: it is old, or the button's frame is disabled. A button
  /// that can't be pressed shows its state all the same.
  bool ShowsDimmed() const;

 Q_SIGNALS:
  void Click();

 protected:
  bool event(QEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void LetGo();

  QColor m_background;
  bool m_sample;
};

}  // namespace tarnwell::forms

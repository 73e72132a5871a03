#pragma once

#include <QGroupBox>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// A titled border around controls. Its access key leads to the first control inside; to a group of options at the
/// selected one. Where none is selected, or that one is disabled, the frame takes the focus itself, and the next arrow
/// key arrives at an option.
class Frame : public QGroupBox {
  Q_OBJECT

 public:
  Frame(const char* name, Container container, const char* caption = "", const char* toolTip = "",
        Settings settings = {});

  QString Caption() const { return title(); }
  void SetCaption(const QString& caption);

  /// Without a border the frame shows no title either.
  void SetBorder(bool border);

  /// Its controls are read column by column.
  bool IsInColumns() const { return m_columns; }

 protected:
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintFocus(QPainter& painter, const QRect& area);

  bool m_border;
  bool m_columns;
};

}  // namespace tarnwell::forms

#pragma once

#include <QLabel>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// Plain text, never markup. A boxed label is a value field: what doesn't fit it draws narrower, up to a point, then
/// cuts, and shows the whole in its tool tip. Control characters are shown as replacement characters. A label is drawn
/// grey only when it was disabled itself: one that shows a live value may stand in a frame that is disabled.
class Label : public QLabel {
  Q_OBJECT

 public:
  Label(const char* name, Container container, const char* caption = "", const char* toolTip = "",
        Settings settings = {});

  QString Caption() const { return m_caption; }
  void SetCaption(const QString& caption);

  /// Hides the toolkit's, which leaves the picture as it is while the frame is disabled.
  void setEnabled(bool enabled);

  /// An invalid colour: the style's own.
  QColor Background() const { return m_background; }
  void SetBackground(const QColor& colour);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  bool IsBlank() const;
  QRect TextArea() const;
  int TextFlags() const;
  QString Elided() const;
  void ChooseToolTip();

  QString m_caption;
  QString m_ownToolTip;
  QColor m_background;
  bool m_boxed;
};

}  // namespace tarnwell::forms

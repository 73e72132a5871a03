#pragma once

#include <QGroupBox>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// A titled border around controls. Its access key leads to the first control inside; to a group of options at the
/// selected one, or at the first enabled one where none is selected or the selected one is disabled.
class Frame : public QGroupBox {
  Q_OBJECT

 public:
  Frame(const char* name, Container container, const char* caption = "", const char* toolTip = "",
        Settings settings = {});

  QString Caption() const { return title(); }
  void SetCaption(const QString& caption);

  /// Without a border the frame shows no title either.
  void SetBorder(bool border);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool m_border;
};

}  // namespace tarnwell::forms

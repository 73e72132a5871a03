#pragma once

#include <QComboBox>
#include <QIcon>
#include <QProgressBar>

#include "forms/controls/control.h"

namespace tarnwell::forms {

/// A list to pick from; its text can't be typed. The wheel turns it only while it has the focus.
class ComboBox : public QComboBox {
  Q_OBJECT

 public:
  ComboBox(const char* name, Container container, const char* caption = "", const char* toolTip = "",
           Settings settings = {});

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

class ProgressBar : public QProgressBar {
  Q_OBJECT

 public:
  ProgressBar(const char* name, Container container, const char* caption = "", const char* toolTip = "",
              Settings settings = {});
};

/// A picture, drawn as large as the control.
class Image : public QWidget {
  Q_OBJECT

 public:
  /// `icon` is the path of the picture in the program's resources; `description` is for assistive tools.
  Image(const char* name, Container container, const char* icon, const char* description);

  /// True while it is being shown or hidden.
  bool IsChanging() const { return m_changing; }
  void setVisible(bool visible) override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon m_icon;
  bool m_changing = false;
};

}  // namespace tarnwell::forms

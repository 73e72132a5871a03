#include "forms/controls/plain_controls.h"

#include <QPainter>
#include <QWheelEvent>

#include "forms/controls/drawing.h"

namespace tarnwell::forms {

ComboBox::ComboBox(const char* name, Container container, const char* /*caption*/, const char* toolTip,
                   Settings settings)
    : QComboBox(container.Widget()) {
  setFocusPolicy(Qt::StrongFocus);  // not by the wheel, as the toolkit's own
  InitControl(*this, name, toolTip, settings);
}

void ComboBox::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) return event->ignore();
  QComboBox::wheelEvent(event);
}

ProgressBar::ProgressBar(const char* name, Container container, const char* /*caption*/, const char* toolTip,
                         Settings settings)
    : QProgressBar(container.Widget()) {
  setTextVisible(false);
  setRange(settings.minimum, settings.maximum);
  setValue(settings.minimum);
  InitControl(*this, name, toolTip, settings);
}

Image::Image(const char* name, Container container, const char* icon, const char* description)
    : QWidget(container.Widget()), m_icon(Drawing(QString::fromUtf8(icon))) {
  InitControl(*this, name, "", {});
  setAccessibleName(QString::fromUtf8(description));
}

void Image::setVisible(bool visible) {
  m_changing = true;
  QWidget::setVisible(visible);
  m_changing = false;
}

void Image::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  m_icon.paint(&painter, rect(), Qt::AlignCenter, IsDimmed(*this) ? QIcon::Disabled : QIcon::Normal);
}

}  // namespace tarnwell::forms

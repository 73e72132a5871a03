#include <QApplication>
#include <QEvent>
#include <QFontMetricsF>
#include <QMenuBar>
#include <algorithm>

#include "forms/controls/form.h"
#include "forms/controls/form_style.h"
#include "platform/desktop.h"

// The sizes of a form: window, menu bar, inner area, and those of texts on it.

namespace tarnwell::forms {

QMenuBar& Form::MenuBar() {
  if (m_menuBar == nullptr) {
    m_menuBar = new QMenuBar(this);
    m_menuBar->setNativeMenuBar(false);
    m_menuBar->setStyle(FormStyle::Instance());
    m_menuBar->installEventFilter(this);
    ResizeWindow();
  }
  return *m_menuBar;
}

void Form::SetMenuFontSize(double points) {
  if (m_menuBar == nullptr || size() == m_menuSizedFor) return;
  const int former = m_menuBar->sizeHint().height();
  const bool sizedByInner = size() == m_innerSize + QSize(0, former);
  QFont menu = font();
  if (m_firstMenuPoints == 0.0) m_firstMenuPoints = points;
  menu.setPointSizeF(std::max(points, m_firstMenuPoints));
  m_menuBar->setFont(menu);
  QApplication::setFont(menu, "QMenu");
  platform::SetMessageFont(menu);
  if (sizedByInner) ResizeWindow();
  m_menuSizedFor = size();
  PlaceInner();
  RaiseResize();
}

Twips Form::ScaleWidth() const { return m_inner->width() * kTwipsPerPixel; }

Twips Form::ScaleHeight() const { return m_inner->height() * kTwipsPerPixel; }

void Form::SetInnerSize(Twips width, Twips height) {
  m_innerSize = QSize(width / kTwipsPerPixel, height / kTwipsPerPixel);
  ResizeWindow();
  PlaceInner();
  RaiseResize();
}

void Form::CoverForm(const Form& other) {
  const int menuBar = m_menuBar != nullptr ? m_menuBar->sizeHint().height() : 0;
  SetInnerSize(other.width() * kTwipsPerPixel, (other.height() - menuBar) * kTwipsPerPixel);
  move(other.pos());
}

// The frames of both windows count as equal: a window that was never shown doesn't know its own.
void Form::CentreOn(const Form& other) {
  const QSize margins = (other.size() - size()) / 2;
  move(other.pos() + QPoint(margins.width(), margins.height()));
}

double Form::TextWidth(const QString& text) const {
  return QFontMetricsF(m_measuringFont, this).horizontalAdvance(text) * kTwipsPerPixel;
}

double Form::TextHeight(const QString& text) const {
  const auto lines = static_cast<double>(text.count(QLatin1Char('\n')) + 1);
  return QFontMetricsF(m_measuringFont, this).height() * lines * kTwipsPerPixel;
}

bool Form::SetMeasuringFontSize(double points) {
  constexpr double kLargest = 400.0;
  if (!(points > 0.0 && points <= kLargest)) return false;
  m_measuringFont.setPointSizeF(points);
  return true;
}

void Form::ResizeWindow() {
  QSize size = m_innerSize;
  if (m_menuBar != nullptr) size.rheight() += m_menuBar->sizeHint().height();
  if (m_sizable) {
    resize(size);
  } else {
    setFixedSize(size);
  }
}

void Form::PlaceInner() {
  const int top = m_menuBar != nullptr ? m_menuBar->sizeHint().height() : 0;
  if (m_menuBar != nullptr) m_menuBar->setGeometry(0, 0, width(), top);
  m_inner->setGeometry(0, top, width(), std::max(0, height() - top));
}

void Form::RaiseResize() {
  if (isMinimized() || m_unloaded || m_raisedSize == m_inner->size()) return;
  m_raisedSize = m_inner->size();
  Q_EMIT Resize();
}

void Form::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceInner();
  RaiseResize();
}

void Form::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  // Some systems give a window its new size while it is minimised, and none when it is restored.
  if (event->type() == QEvent::WindowStateChange) RaiseResize();
}

}  // namespace tarnwell::forms

#include "forms/controls/tab_strip.h"

#include <QEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyleOptionTabWidgetFrame>
#include <algorithm>

namespace tarnwell::forms {

namespace {

constexpr int kPaneLine = 2;  ///< pixels that the edge of the pane takes

}  // namespace

TabStrip::TabStrip(const char* name, Container container, std::initializer_list<const char*> captions)
    : QWidget(container.Widget()), m_tabs(new QTabBar(this)) {
  InitControl(*this, name, "", {});
  m_tabs->setStyle(style());
  m_tabs->setDrawBase(false);
  m_tabs->setExpanding(false);
  for (const char* caption : captions) m_tabs->addTab(QString::fromUtf8(caption));
  setFocusProxy(m_tabs);
  PlaceTabs();
  connect(m_tabs, &QTabBar::currentChanged, this, &TabStrip::Click);
}

void TabStrip::SelectTab(int tab) {
  const QSignalBlocker silent(m_tabs);
  m_tabs->setCurrentIndex(tab - 1);
}

QRect TabStrip::ClientArea() const {
  return QRect(0, m_tabs->height(), width(), height() - m_tabs->height())
      .adjusted(kPaneLine, kPaneLine, -kPaneLine, -kPaneLine);
}

Twips TabStrip::ClientLeft() const { return (x() + ClientArea().x()) * kTwipsPerPixel; }

Twips TabStrip::ClientTop() const { return (y() + ClientArea().y()) * kTwipsPerPixel; }

Twips TabStrip::ClientWidth() const { return std::max(0, ClientArea().width()) * kTwipsPerPixel; }

Twips TabStrip::ClientHeight() const { return std::max(0, ClientArea().height()) * kTwipsPerPixel; }

void TabStrip::PlaceTabs() {
  const QSize size = m_tabs->sizeHint();
  m_tabs->setGeometry(0, 0, std::min(size.width(), width()), size.height());
}

void TabStrip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QStyleOptionTabWidgetFrame option;
  option.initFrom(this);
  option.rect = rect().adjusted(0, m_tabs->height() - 1, 0, 0);  // the selected tab overlaps the line by a pixel
  option.lineWidth = 1;
  option.tabBarSize = m_tabs->size();
  option.shape = m_tabs->shape();
  style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, this);
}

void TabStrip::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceTabs();
}

void TabStrip::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) PlaceTabs();
}

}  // namespace tarnwell::forms

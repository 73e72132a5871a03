#include "forms/controls/frame.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "forms/controls/reading_order.h"

namespace tarnwell::forms {

namespace {

constexpr int kTitleLeft = 8;  ///< pixels from the frame's left edge to its title
constexpr int kTitleGap = 3;   ///< pixels between the title and the line on both its sides

}  // namespace

Frame::Frame(const char* name, Container container, const char* caption, const char* toolTip, Settings settings)
    : QGroupBox(QString::fromUtf8(caption), container.Widget()), m_border(!settings.has(Settings::kNoBorderFlag)) {
  setAutoFillBackground(true);  // a frame covers what stands behind it
  InitControl(*this, name, toolTip, settings);
}

void Frame::SetCaption(const QString& caption) { setTitle(caption); }

void Frame::SetBorder(bool border) {
  m_border = border;
  update();
}

bool Frame::event(QEvent* event) {
  if (event->type() != QEvent::Shortcut) return QGroupBox::event(event);
  if (QWidget* entry = EntryPoint(*this)) entry->setFocus(Qt::ShortcutFocusReason);
  return true;
}

void Frame::paintEvent(QPaintEvent* /*event*/) {
  if (!m_border) return;
  QPainter painter(this);
  const QSize text = QFontMetricsF(font(), this).size(Qt::TextShowMnemonic, title()).toSize();
  const int room = std::max(0, width() - 2 * kTitleLeft);
  const QRect titleArea(kTitleLeft, 0, title().isEmpty() ? 0 : std::min(text.width() + 1, room), text.height());
  if (!title().isEmpty()) {
    // a letter may reach a little beyond the place that it is measured by
    constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic | Qt::TextDontClip;
    style()->drawItemText(&painter, titleArea, kFlags, palette(), isEnabled(), title(), QPalette::WindowText);
    painter.setClipRegion(QRegion(rect()) - titleArea.adjusted(-kTitleGap, 0, kTitleGap, 0));
  }
  const int lineTop = title().isEmpty() ? 0 : text.height() / 2;
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, lineTop, -1, -1));
}

}  // namespace tarnwell::forms

#include "forms/controls/frame.h"

#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "forms/controls/form_style.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/option_button.h"
#include "forms/controls/reading_order.h"

namespace tarnwell::forms {

namespace {

constexpr int kTitleLeft = 8;  ///< pixels from the frame's left edge to its title
constexpr int kTitleGap = 3;   ///< pixels between the title and the line on both its sides

}  // namespace

Frame::Frame(const char* name, Container container, const char* caption, const char* toolTip, Settings settings)
    : QGroupBox(QString::fromUtf8(caption), container.Widget()),
      m_border(!settings.has(Settings::kNoBorderFlag)),
      m_columns(settings.has(Settings::kColumnsFlag)) {
  setAutoFillBackground(true);  // a frame covers what stands behind it
  InitControl(*this, name, toolTip, settings);
}

void Frame::SetCaption(const QString& caption) {
  if (caption == title()) return;
  setTitle(caption);
  InputGate::Instance().CaptionChanges(*this);
}

void Frame::SetBorder(bool border) {
  m_border = border;
  update();
}

bool Frame::event(QEvent* event) {
  // The toolkit would show the frame's own tool tip for what stands in it.
  const bool forContent =
      event->type() == QEvent::ToolTip && childAt(static_cast<QHelpEvent*>(event)->pos()) != nullptr;
  if (forContent) return true;
  if (event->type() != QEvent::Shortcut) return QGroupBox::event(event);
  if (QWidget* entry = EntryPoint(*this)) entry->setFocus(Qt::ShortcutFocusReason);
  return true;
}

// NOLINTNEXTLINE(bugprone-parent-virtual-call): the group box would hand the focus on to the first thing inside
void Frame::focusInEvent(QFocusEvent* event) { QWidget::focusInEvent(event); }

void Frame::keyPressEvent(QKeyEvent* event) {
  const int step = hasFocus() ? StepOf(*event) : 0;
  OptionButton* option = step != 0 && !event->isAutoRepeat() ? EntryOption(*this, step > 0) : nullptr;
  if (option != nullptr) {
    option->Arrive(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  } else {
    event->setAccepted(step != 0);
  }
}

void Frame::PaintFocus(QPainter& painter, const QRect& area) {
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2.0));
  painter.drawRect(area.adjusted(1, 1, -1, -1));
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
    QPalette colours = palette();
    if (IsDimmed(*this)) colours.setCurrentColorGroup(QPalette::Disabled);
    style()->drawItemText(&painter, titleArea, kFlags, colours, isEnabled(), title(), QPalette::WindowText);
    painter.setClipRegion(QRegion(rect()) - titleArea.adjusted(-kTitleGap, 0, kTitleGap, 0));
  }
  const int lineTop = title().isEmpty() ? 0 : text.height() / 2;
  DrawBorder(painter, rect().adjusted(0, lineTop, 0, 0), LineColour(palette()));
  if (hasFocus()) PaintFocus(painter, rect().adjusted(0, lineTop, 0, 0));
}

}  // namespace tarnwell::forms

#include "forms/controls/label.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <algorithm>

#include "forms/controls/answers.h"
#include "platform/text_encoding.h"

namespace tarnwell::forms {

namespace {

Qt::Alignment AlignmentOf(const Settings& settings) {
  if (settings.has(Settings::kRightAlignedFlag)) return Qt::AlignRight | Qt::AlignVCenter;
  if (settings.has(Settings::kCentredFlag)) return Qt::AlignCenter;
  return Qt::AlignLeft | Qt::AlignVCenter;
}

}  // namespace

Label::Label(const char* name, Container container, const char* caption, const char* toolTip, Settings settings)
    : QLabel(container.Widget()),
      m_ownToolTip(QString::fromUtf8(toolTip)),
      m_boxed(settings.has(Settings::kBoxedFlag)) {
  setTextFormat(Qt::PlainText);
  setAlignment(AlignmentOf(settings));
  if (m_boxed) setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
  InitControl(*this, name, toolTip, settings);
  SetCaption(QString::fromUtf8(caption));
  if (settings.background != 0) SetBackground(QColor::fromRgb(settings.background));
}

void Label::SetCaption(const QString& caption) {
  if (m_caption == caption) return;
  m_caption = caption;
  setText(platform::Printable(caption).replace(QLatin1Char('\n'), QChar(QChar::ReplacementCharacter)));
  ChooseToolTip();
  if (accessibleName().isEmpty()) return;
  QAccessibleEvent told(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&told);
}

void Label::SetBackground(const QColor& colour) {
  if (m_background == colour) return;
  m_background = colour;
  QPalette colours;
  if (colour.isValid()) {
    colours.setColor(QPalette::Window, colour);
    colours.setColor(QPalette::WindowText, ReadableOn(colour));
    colours.setColor(QPalette::Disabled, QPalette::Window, Dimmed(colour));
    colours.setColor(QPalette::Disabled, QPalette::WindowText, WeakOn(Dimmed(colour)));
  }
  setPalette(colours);
}

void Label::setEnabled(bool enabled) {
  QLabel::setEnabled(enabled);
  update();
}

QRect Label::TextArea() const {
  if (!m_boxed) return contentsRect();
  const int inset = std::max(1, fontMetrics().horizontalAdvance(QLatin1Char('x')) / 4);
  return contentsRect().adjusted(inset, 0, -inset, 0);
}

int Label::TextFlags() const {
  const int align = static_cast<int>(alignment());
  return buddy() != nullptr ? align | Qt::TextShowMnemonic : align;
}

// The style draws a text narrower that is a little too wide; a value that would be hard to read then is cut.
QString Label::Elided() const {
  constexpr double kNarrowest = 0.75;
  return fontMetrics().elidedText(text(), Qt::ElideRight, static_cast<int>(TextArea().width() / kNarrowest));
}

// Nothing is measured for a field that is blank, as all are until a device answers: each size of a font costs.
bool Label::IsBlank() const { return text().trimmed().isEmpty(); }

void Label::ChooseToolTip() {
  if (!m_boxed) return;
  const bool whole = IsBlank() || Elided() == text();
  SetOwnToolTip(*this, whole ? m_ownToolTip : PlainToolTip(text()));
}

// text() stays whole, for assistive tools; only the picture of it is cut.
void Label::paintEvent(QPaintEvent* /*event*/) {
  const bool enabled = !IsDimmed(*this);
  QStyleOptionFrame frame;
  initStyleOption(&frame);
  frame.palette.setCurrentColorGroup(enabled ? QPalette::Active : QPalette::Disabled);
  QPainter painter(this);
  if (m_background.isValid()) painter.fillRect(rect(), frame.palette.window());
  style()->drawControl(QStyle::CE_ShapedFrame, &frame, &painter, this);
  if (m_boxed && IsDark(frame.palette)) {
    painter.setPen(LineColour(frame.palette));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
  if (IsBlank()) return;
  style()->drawItemText(&painter, TextArea(), TextFlags(), frame.palette, enabled, m_boxed ? Elided() : text(),
                        foregroundRole());
}

void Label::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  ChooseToolTip();
}

void Label::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::FontChange) ChooseToolTip();
}

}  // namespace tarnwell::forms

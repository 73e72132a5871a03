#include "forms/controls/up_down.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <algorithm>

#include "forms/controls/form_style.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/text_box.h"

namespace tarnwell::forms {

namespace {

constexpr int kFirstRepeat = 400;  ///< milliseconds that an arrow is held before it repeats
constexpr int kNextRepeat = 60;    ///< milliseconds between repeats
constexpr int kTold = 20;          ///< milliseconds in which a button that was let go is told, the thread being free

}  // namespace

UpDown::UpDown(const char* name, Container container, const char* /*caption*/, const char* toolTip, Settings settings)
    : QWidget(container.Widget()),
      m_value(std::clamp(0, settings.minimum, settings.maximum)),
      m_minimum(settings.minimum),
      m_maximum(settings.maximum),
      m_increment(settings.increment),
      m_tenths(settings.has(Settings::kTenthsFlag)) {
  InitControl(*this, name, toolTip, settings);
}

void UpDown::SetValue(int value) {
  if (value != m_value) m_pressedAt.reset();
  Hold(value);
}

void UpDown::Hold(int value) {
  const int held = std::clamp(value, m_minimum, m_maximum);
  if (held == m_value) return;
  m_value = held;
  QAccessibleValueChangeEvent told(this, Shown(held));
  QAccessible::updateAccessibility(&told);
  Q_EMIT Change();
}

void UpDown::Choose(int value) {
  Hold(value);
  TakeBackTyping();
  Q_EMIT MouseUp();
  InputGate::Instance().HandlerEnded();
}

int UpDown::DirectionAt(const QPoint& position) const {
  if (!rect().contains(position)) return 0;
  return position.y() < height() / 2 ? 1 : -1;
}

QRect UpDown::ArrowArea(int direction) const {
  const int middle = height() / 2;
  return direction > 0 ? QRect(0, 0, width(), middle) : QRect(0, middle, width(), height() - middle);
}

void UpDown::PaintArrow(QPainter& painter, int direction) {
  QStyleOptionButton option;
  option.initFrom(this);
  option.rect = ArrowArea(direction);
  const bool down = m_heldDirection == direction && m_onArrow;
  option.state |= down ? QStyle::State_Sunken : QStyle::State_Raised;
  style()->drawPrimitive(QStyle::PE_PanelButtonBevel, &option, &painter, this);
  const int side = std::max(4, std::min(option.rect.width() - 4, option.rect.height() - 4));
  FormStyle::DrawArrow(painter, option.rect, side, direction, palette().color(QPalette::ButtonText));
}

void UpDown::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  PaintArrow(painter, 1);
  PaintArrow(painter, -1);
}

void UpDown::Step() { Hold(m_value + m_heldDirection * m_increment); }

void UpDown::RepeatIn(int milliseconds) {
  m_repeat.start(milliseconds, this);
  m_repeatDue = InputGate::Instance().Now() + milliseconds;
}

void UpDown::LetGo() {
  m_repeat.stop();
  m_heldDirection = 0;
  m_pressedAt.reset();
  update();
}

void UpDown::TakeBack() {
  const int value = m_pressedAt.value_or(m_value);
  LetGo();
  Hold(value);
}

void UpDown::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  m_heldDirection = DirectionAt(event->position().toPoint());
  m_onArrow = true;
  m_pressedAt = m_value;
  RepeatIn(kFirstRepeat);
  repaint();
  Step();
  TakeBackTyping();
}

// The step has shown the new value in the spin's own field already, so that one is not drawn twice.
void UpDown::TakeBackTyping() {
  if (auto* typed = qobject_cast<TextBox*>(window()->focusWidget())) typed->TakeBackTyping();
}

void UpDown::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void UpDown::mouseMoveEvent(QMouseEvent* event) {
  m_onArrow = DirectionAt(event->position().toPoint()) == m_heldDirection;
  update();
}

void UpDown::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  const bool held = m_heldDirection != 0;
  LetGo();
  if (held) Q_EMIT MouseUp();
}

void UpDown::timerEvent(QTimerEvent* event) {
  if (event->timerId() != m_repeat.timerId()) return QWidget::timerEvent(event);
  // After a hold of the thread the button may have been let go long ago.
  if (InputGate::Instance().Now() > m_repeatDue + kTold) return RepeatIn(kTold);
  RepeatIn(kNextRepeat);
  if (m_onArrow) Step();
}

bool UpDown::event(QEvent* event) {
  const bool gone = event->type() == QEvent::Hide || (event->type() == QEvent::EnabledChange && !isEnabled());
  if (gone && FormOf(*this).Unloaded()) {
    LetGo();  // a change now would be nobody's
  } else if (gone) {
    TakeBack();
  }
  // Another window may keep the release for itself: the value must not run on.
  if (event->type() == QEvent::WindowDeactivate) m_repeat.stop();
  return QWidget::event(event);
}

}  // namespace tarnwell::forms

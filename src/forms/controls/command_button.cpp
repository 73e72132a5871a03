#include "forms/controls/command_button.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "forms/controls/answers.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/reading_order.h"

namespace tarnwell::forms {

namespace {

bool IsArrow(int key) {
  return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

}  // namespace

CommandButton::CommandButton(const char* name, Container container, const char* caption, const char* toolTip,
                             Settings settings)
    : QPushButton(QString::fromUtf8(caption), container.Widget()), m_sample(settings.has(Settings::kSampleFlag)) {
  setAutoDefault(false);
  InitControl(*this, name, toolTip, settings);
  if (settings.background != 0) SetBackground(QColor::fromRgb(settings.background));
  connect(this, &QAbstractButton::clicked, this, [this] {
    Q_EMIT Click();
    InputGate::Instance().HandlerEnded();
  });
}

void CommandButton::SetCaption(const QString& caption) {
  if (caption == text()) return;
  setText(caption);
  LetGo();
}

/// What was meant for the button as it was must not act on what it says now.
void CommandButton::LetGo() {
  setDown(false);
  InputGate::Instance().CaptionChanges(*this);
}

void CommandButton::SetBackground(const QColor& colour) {
  if (m_background == colour) return;
  m_background = colour;
  update();
  LetGo();
}

bool CommandButton::ShowsDimmed() const { return IsOld(*this) || !parentWidget()->isEnabled(); }

bool CommandButton::event(QEvent* event) {
  if (event->type() != QEvent::Shortcut) return QPushButton::event(event);
  if (!TakesFocus(*this)) return true;
  setFocus(Qt::ShortcutFocusReason);
  if (!static_cast<QShortcutEvent*>(event)->isAmbiguous()) click();
  return true;
}

// The second press of a double click must not make a second click.
void CommandButton::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }

void CommandButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!event->isAutoRepeat()) click();
  } else if (IsArrow(event->key())) {
    event->ignore();  // the toolkit would move the focus
  } else {
    QPushButton::keyPressEvent(event);
  }
}

}  // namespace tarnwell::forms

#include "forms/controls/option_button.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "forms/controls/answers.h"
#include "forms/controls/input_gate.h"
#include "forms/controls/reading_order.h"

namespace tarnwell::forms {

namespace {

void Check(OptionButton& option, bool checked) {
  if (option.isChecked() == checked) return;
  const QSignalBlocker silent(option);
  option.setChecked(checked);
}

}  // namespace

int StepOf(const QKeyEvent& event) {
  if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) return 0;
  switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
      return -1;
    case Qt::Key_Down:
    case Qt::Key_Right:
      return 1;
    default:
      return 0;
  }
}

OptionButton::OptionButton(const char* name, Container container, const char* caption, const char* toolTip,
                           Settings settings)
    : QRadioButton(QString::fromUtf8(caption), container.Widget()),
      m_actsOnClick(settings.has(Settings::kActsOnClickFlag)) {
  // No click focus: Qt would give it for the right and the middle button as well, and that would command.
  setFocusPolicy(Qt::TabFocus);
  // Select() keeps the group exclusive; Qt's own way also rewrites the focus policies of the group.
  setAutoExclusive(false);
  InitControl(*this, name, toolTip, settings);
  // Only an assistive tool changes the state with signals on: it is the operator's choice and shows through Choose.
  connect(this, &QAbstractButton::toggled, this, [this](bool checked) {
    Check(*this, !checked);
    Choose(Qt::OtherFocusReason);
  });
}

void OptionButton::Select() {
  bool otherWanted = false;
  for (OptionButton* option : Group()) {
    if (option->m_former.has_value() && option != this) otherWanted = true;
    option->m_former.reset();
  }
  if (isChecked()) return;
  ShowSelected();
  if (otherWanted) Announce();
  if (m_actsOnClick) Q_EMIT Click();
}

void OptionButton::Deselect() { Check(*this, false); }

void OptionButton::TakeBack() {
  if (!m_former) return;
  const QPointer<OptionButton> former = *std::exchange(m_former, std::nullopt);
  if (!isChecked()) return;
  if (former != nullptr) {
    former->ShowSelected();
    former->Announce();
  } else {
    Deselect();
  }
}

// The focus stays where the operator's choice was made: a screen reader would tell that option's state alone.
void OptionButton::Announce() {
  const QAccessibleInterface* group = QAccessible::queryAccessibleInterface(parentWidget());
  const QAccessibleInterface* self = QAccessible::queryAccessibleInterface(this);
  if (group == nullptr || self == nullptr) return;
  FormOf(*this).Announce(group->text(QAccessible::Name) + QStringLiteral(": ") + self->text(QAccessible::Name));
}

std::vector<OptionButton*> OptionButton::Group() const {
  std::vector<OptionButton*> group;
  for (QWidget* control : ReadingOrder(*parentWidget())) {
    auto* option = qobject_cast<OptionButton*>(control);
    if (option != nullptr && option->parentWidget() == parentWidget()) group.push_back(option);
  }
  return group;
}

OptionButton* OptionButton::GroupTabStop() {
  const std::vector<OptionButton*> group = Group();
  const auto selected = std::find_if(group.begin(), group.end(), [](auto* option) { return option->Value(); });
  return selected != group.end() && TakesFocus(**selected) && !IsOld(**selected) ? *selected : nullptr;
}

void OptionButton::RememberFormer() {
  const std::vector<OptionButton*> group = Group();
  const auto selected = std::find_if(group.begin(), group.end(), [](auto* option) { return option->Value(); });
  m_former = selected != group.end() ? *selected : nullptr;
}

void OptionButton::ShowSelected() {
  for (OptionButton* option : Group()) {
    const bool changes = option->isChecked() != (option == this);
    Check(*option, option == this);
    if (changes) option->repaint();  // now: the handler that follows may hold the thread for a second
  }
}

void OptionButton::MoveInGroup(int step) {
  std::vector<OptionButton*> group = Group();
  if (step < 0) std::reverse(group.begin(), group.end());
  const auto self = std::find(group.begin(), group.end(), this);
  std::rotate(group.begin(), self, group.end());
  const auto next = std::find_if(group.begin() + 1, group.end(), [](auto* option) { return TakesFocus(*option); });
  if (next != group.end()) (*next)->ArriveSelecting(step < 0 ? Qt::BacktabFocusReason : Qt::TabFocusReason);
}

void OptionButton::Choose(Qt::FocusReason reason) {
  if (m_actsOnClick) {
    setFocus(reason);
    NoteArrival(Arrival::kSelecting);
  } else {
    ArriveSelecting(reason);
  }
}

// The arrival is noted here and not left to focusInEvent: in a window that isn't active yet the toolkit gives the
// focus later and says it was the window's activation.
void OptionButton::ArriveSelecting(Qt::FocusReason reason) {
  Form& form = FormOf(*this);
  if (form.m_focusedControl != this || !(isChecked() || m_selectingDue)) {
    form.m_focusedControl = this;
    NoteArrival(Arrival::kSelecting);
  }
  setFocus(reason);
}

void OptionButton::focusInEvent(QFocusEvent* event) {
  QRadioButton::focusInEvent(event);
  if (IsLent(event->reason()) || FormOf(*this).m_focusedControl == this) return;
  NoteArrival(Arrival::kPlain);
}

void OptionButton::NoteArrival(Arrival arrival) {
  InputGate::Instance().HandlerEnded();
  if (arrival == Arrival::kSelecting) m_selectingDue = true;
  InputGate::Instance().ActLater([option = QPointer<OptionButton>(this), arrival] {
    if (option != nullptr) option->ActOnArrival(arrival);
  });
}

// An arrival counts although the focus has moved on since: each was the operator's, and they act in their order. It
// doesn't count on an option that has been taken away meanwhile.
void OptionButton::ActOnArrival(Arrival arrival) {
  if (arrival == Arrival::kSelecting) m_selectingDue = false;
  if (!isEnabled() || !isVisible()) return;
  if (arrival == Arrival::kSelecting) {
    RememberFormer();
    ShowSelected();
  }
  if (!m_actsOnClick) {
    Q_EMIT GotFocus();
  } else if (arrival == Arrival::kSelecting) {
    Q_EMIT Click();
  }
  InputGate::Instance().HandlerEnded();
}

bool OptionButton::event(QEvent* event) {
  if (event->type() != QEvent::Shortcut) return QRadioButton::event(event);
  if (TakesFocus(*this)) Choose(Qt::ShortcutFocusReason);
  return true;
}

// The toolkit's own click would select the option at the release, after the device may have said otherwise: none of
// its mouse and key handling runs.
void OptionButton::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  event->accept();
  if (m_actsOnClick) {
    setDown(true);
    setFocus(Qt::MouseFocusReason);
  } else {
    ArriveSelecting(Qt::MouseFocusReason);
  }
}

void OptionButton::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  event->accept();
  const bool clicked = isDown() && rect().contains(event->position().toPoint());
  setDown(false);
  if (clicked) NoteArrival(Arrival::kSelecting);
}

void OptionButton::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }

void OptionButton::mouseMoveEvent(QMouseEvent* event) { event->accept(); }

void OptionButton::keyPressEvent(QKeyEvent* event) {
  const int step = StepOf(*event);
  if (step != 0) {
    if (!event->isAutoRepeat()) MoveInGroup(step);  // held, it would command one state after the other
  } else if (event->key() == Qt::Key_Space) {
    if (!event->isAutoRepeat()) Choose(Qt::OtherFocusReason);
  } else {
    event->ignore();
  }
}

void OptionButton::keyReleaseEvent(QKeyEvent* event) { event->ignore(); }

// Reached by click() alone, which assistive tools call.
void OptionButton::nextCheckState() { Choose(Qt::OtherFocusReason); }

}  // namespace tarnwell::forms

#include <QApplication>
#include <QMenuBar>
#include <algorithm>
#include <utility>

#include "forms/controls/form.h"
#include "forms/controls/option_button.h"
#include "forms/controls/reading_order.h"
#include "platform/posted_call.h"

// Where the focus goes on a form, and where it is in the operator's eyes.

namespace tarnwell::forms {

namespace {

/// True where Tab stops at `control`: of a group of options at one alone.
bool IsTabStop(QWidget* control) {
  if (!TakesFocus(*control) || (control->focusPolicy() & Qt::TabFocus) == 0) return false;
  auto* option = qobject_cast<OptionButton*>(control);
  return option == nullptr || option->GroupTabStop() == option;
}

bool SameGroup(QWidget* a, QWidget* b) {
  return a != nullptr && qobject_cast<OptionButton*>(a) != nullptr && qobject_cast<OptionButton*>(b) != nullptr &&
         a->parentWidget() == b->parentWidget();
}

/// Where in `order` the way goes on from a group of options that has the focus itself: ahead of its first option. From
/// nowhere it starts at the end of the form.
int PlaceOfGroup(const std::vector<QWidget*>& order, const QWidget* group, bool forward) {
  const auto inside = [group](const QWidget* control) { return group != nullptr && group->isAncestorOf(control); };
  const auto first = std::find_if(order.begin(), order.end(), inside);
  const auto place = static_cast<int>(first - order.begin());
  if (first != order.end()) return forward ? place - 1 : place;
  return forward ? -1 : place;
}

}  // namespace

void Form::MoveFocus(bool forward) {
  const std::vector<QWidget*> order = ReadingOrder(*m_inner);
  const auto count = static_cast<int>(order.size());
  QWidget* from = IsFocusParked() ? m_focusLoser.data() : focusWidget();
  const auto found = std::find(order.begin(), order.end(), from);
  QWidget* current = found != order.end() ? *found : nullptr;
  int at = current != nullptr ? static_cast<int>(found - order.begin()) : PlaceOfGroup(order, from, forward);
  for (int tried = 0; tried < count; ++tried) {
    at = (at + (forward ? 1 : count - 1)) % count;
    QWidget* next = order[static_cast<std::size_t>(at)];
    if (!IsTabStop(next) || SameGroup(current, next)) continue;
    next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return;
  }
}

void Form::FocusFirst() {
  const std::vector<QWidget*> order = ReadingOrder(*m_inner);
  const auto first = std::find_if(order.begin(), order.end(), [](QWidget* control) {
    return qobject_cast<OptionButton*>(control) == nullptr && IsTabStop(control);
  });
  QWidget* target = first != order.end() ? *first : m_inner;
  if (m_firstFocus != nullptr && TakesFocus(*m_firstFocus)) target = m_firstFocus;
  target->setFocus(Qt::OtherFocusReason);
}

// The toolkit asks for this when the focused control is disabled or hidden; the Tab key goes through MoveFocus.
bool Form::focusNextPrevChild(bool /*next*/) {
  ParkFocus(focusWidget());
  return true;
}

// The operator still types at the control that went grey. Any other control would take the keys for its own, a button
// its Return and its space bar; with the focus at nothing the toolkit would give it to the first option when the window
// is activated again.
void Form::ParkFocus(QWidget* loser) {
  RememberLoser(loser);
  m_inner->setFocus(Qt::OtherFocusReason);
}

void Form::RememberLoser(QWidget* loser) {
  if (loser == nullptr || loser == m_inner || loser == m_focusLoser) return;
  if (m_focusLoser != nullptr) m_focusLoser->removeEventFilter(this);
  m_focusLoser = loser;
  loser->installEventFilter(this);
}

bool Form::IsFocusParked() const {
  const QWidget* now = focusWidget();
  return m_focusLoser != nullptr && (now == m_inner || now == nullptr || IsLeftAtMenuBar());
}

/// A menu gives the focus back when it closes, but not to what went grey meanwhile: it stays at the bar, which takes
/// each letter for a menu's.
bool Form::IsLeftAtMenuBar() const {
  return m_menuBar != nullptr && focusWidget() == m_menuBar && m_menuBar->activeAction() == nullptr;
}

bool Form::eventFilter(QObject* watched, QEvent* event) {
  const bool changes = event->type() == QEvent::EnabledChange || event->type() == QEvent::Show;
  if (changes && watched == m_focusLoser) LendFocusBack();
  const bool leftAtMenuBar = watched == m_menuBar && event->type() == QEvent::KeyPress && IsLeftAtMenuBar();
  if (leftAtMenuBar) ParkFocus(m_focusedControl);
  return leftAtMenuBar || QWidget::eventFilter(watched, event);
}

/// Lent, as after a menu: the control that gets it takes it for no arrival of the operator.
void Form::LendFocusBack() {
  if (IsFocusParked() && TakesFocus(*m_focusLoser)) m_focusLoser->setFocus(Qt::PopupFocusReason);
}

void Form::FollowFocus(QWidget* now) {
  if (now != nullptr) {
    if (now == m_menuBar) RememberLoser(m_focusedControl);
    const bool control = now->window() == this && now != m_menuBar;
    if (control) m_focusedControl = now != m_inner ? now : nullptr;
    return;
  }
  if (!isActiveWindow() || !isVisible()) return;
  // A frame that is disabled takes the focus from what stands in it and gives it to nothing. Posted, since a control
  // that is being destroyed does so too, and it must not get the focus again.
  RememberLoser(std::exchange(m_focusedControl, nullptr));
  platform::PostCall(*this, [this] {
    if (focusWidget() == nullptr) m_inner->setFocus(Qt::OtherFocusReason);
  });
}

}  // namespace tarnwell::forms

#include "forms/controls/stands.h"

#include <QEvent>
#include <QFocusEvent>
#include <QMenu>

#include "forms/controls/control.h"

namespace tarnwell::forms {

namespace {

/// True for the reasons that only an input of the operator gives, the one that is being delivered.
bool IsByHand(Qt::FocusReason reason) {
  return reason == Qt::MouseFocusReason || reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason || reason == Qt::MenuBarFocusReason;
}

}  // namespace

void Stands::SetClock(platform::InputClock& clock) {
  m_clock = &clock;
  for (Entry& entry : m_entries) entry = {};
}

Stands::Entry& Stands::EntryOf(QWidget& control) {
  const auto found = m_entries.find(&control);
  if (found != m_entries.end()) return *found;
  QObject::connect(&control, &QObject::destroyed, [this, gone = &control] {
    m_entries.remove(gone);
    m_focused.remove(gone);
  });
  return m_entries[&control];
}

void Stands::Await(QWidget& control, Seen& seen) {
  seen.pending = true;
  control.update();  // what changes nothing that is drawn would wait for ever
}

void Stands::Changed(QWidget& control) {
  if (control.isVisible()) Await(control, EntryOf(control).look);
}

void Stands::Drawn(Entry& entry) {
  for (Seen* seen : {&entry.look, &entry.focus}) {
    if (seen->pending) *seen = {false, m_clock->Now()};
  }
}

// Some controls are covered by their own parts and never drawn themselves.
void Stands::DrawnAll(const QWidget& window) {
  for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
    if (entry.key()->window() == &window) Drawn(*entry);
  }
}

void Stands::Follow(QObject& receiver, const QEvent& event, std::optional<Moment> actMade) {
  if (receiver.isWindowType()) return FollowWindow(static_cast<QWindow&>(receiver), event);
  if (!receiver.isWidgetType()) return;
  auto& control = static_cast<QWidget&>(receiver);
  switch (event.type()) {
    case QEvent::Move:
    case QEvent::Resize:
      if (!control.isWindow()) Changed(control);
      break;
    case QEvent::Show:
    case QEvent::EnabledChange:
    case QEvent::ZOrderChange:
      Changed(control);
      break;
    case QEvent::ActionChanged:
      if (qobject_cast<QMenu*>(&control) != nullptr) Changed(control);
      break;
    case QEvent::Paint:
      if (const auto entry = m_entries.find(&control); entry != m_entries.end()) Drawn(*entry);
      break;
    case QEvent::UpdateRequest:  // the toolkit sends it to the window's widget, not to the window
      if (control.isWindow() && IsExposed(control)) DrawnAll(control);
      break;
    case QEvent::FocusIn:
      FocusCame(control, static_cast<const QFocusEvent&>(event).reason(), actMade);
      break;
    default:
      break;
  }
}

void Stands::FollowWindow(QWindow& window, const QEvent& event) {
  const bool comesToFront = event.type() == QEvent::WindowUnblocked;
  const bool isDrawn = window.isExposed() && (event.type() == QEvent::UpdateRequest || event.type() == QEvent::Expose ||
                                              event.type() == QEvent::Paint);
  if (window.handle() == nullptr || (!comesToFront && !isDrawn)) return;
  QWidget* widget = QWidget::find(window.winId());
  if (widget == nullptr) return;
  if (comesToFront) Changed(*widget);
  if (isDrawn) DrawnAll(*widget);
}

void Stands::FocusCame(QWidget& control, Qt::FocusReason reason, std::optional<Moment> actMade) {
  QPointer<QWidget>& last = m_focused[control.window()];
  const bool lentBack = IsLent(reason) && last == &control;
  last = &control;
  if (lentBack) return;
  Seen& focus = EntryOf(control).focus;
  if (!IsByHand(reason)) {
    Await(control, focus);
  } else {
    focus = {false, actMade.value_or(kAlways)};
  }
}

bool Stands::IsExposed(const QWidget& window) { return window.testAttribute(Qt::WA_Mapped); }

bool Stands::Stood(const QWidget& control, Moment made) const {
  if (!control.isVisible()) return false;
  for (const QWidget* part = &control; part != nullptr; part = part->isWindow() ? nullptr : part->parentWidget()) {
    const auto entry = m_entries.find(part);
    if (entry != m_entries.end() && !entry->look.By(made)) return false;
  }
  return true;
}

bool Stands::HadFocus(const QWidget& control, Moment made) const {
  const auto entry = m_entries.find(&control);
  return entry == m_entries.end() || entry->focus.By(made);
}

}  // namespace tarnwell::forms

#include "forms/controls/input_gate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include "forms/controls/form.h"
#include "forms/controls/input_events.h"
#include "platform/desktop.h"
#include "platform/posted_call.h"

namespace tarnwell::forms {

namespace {

/// Delivers `key` marked as a repeat in its stead.
void DeliverAsRepeat(QWidget& receiver, QKeyEvent& key) {
  QKeyEvent repeat(key.type(), key.key(), key.modifiers(), key.nativeScanCode(), key.nativeVirtualKey(),
                   key.nativeModifiers(), key.text(), true, static_cast<quint16>(key.count()));
  repeat.setTimestamp(key.timestamp());
  QCoreApplication::sendEvent(&receiver, &repeat);
  key.accept();
}

/// What a key to `receiver` is typed at: a list that proposes texts comes up while one is typed, and takes the keys for
/// its field.
QWidget& AimOfKey(QWidget& receiver) {
  const bool proposes = receiver.windowType() == Qt::Popup && receiver.focusProxy() != nullptr;
  return proposes ? *receiver.focusProxy() : receiver;
}

}  // namespace

bool SpentKey::ClosedAPopup(int key, std::optional<Moment> made) {
  const QWidget* popup = QApplication::activePopupWidget();
  if (key != m_key || made != m_made) {
    m_key = key;
    m_made = made;
    m_popup = popup;
  }
  return m_popup != nullptr && m_popup != popup;
}

InputGate& InputGate::Instance() {
  static QPointer<InputGate> gate;
  if (gate == nullptr) {
    gate = new InputGate;
    gate->setParent(qApp);
    qApp->installEventFilter(gate);
  }
  return *gate;
}

InputGate::InputGate() : m_systemClock(platform::SystemInputClock()), m_clock(m_systemClock.get()), m_stands(*m_clock) {
  m_dropping.setInterval(0);
  connect(&m_dropping, &QTimer::timeout, this, [this] {
    if (--m_roundsLeft == 0) m_dropping.stop();
  });
}

void InputGate::SetClock(platform::InputClock* clock) {
  m_clock = clock != nullptr ? clock : m_systemClock.get();
  m_stands.SetClock(*m_clock);
}

void InputGate::ActLater(std::function<void()> act) {
  m_due.push_back(std::move(act));
  platform::PostCall(*this, [this] { Act(); });
}

void InputGate::Act() {
  if (m_dropsAll) return;  // no input would reach what an act opens now; ~InputPause goes on
  if (platform::OnlyClosesAreTaken()) {
    // No input would reach a form or a box that an act opens now.
    if (!m_due.empty()) platform::PostCall(*this, [this] { Act(); });
    return;
  }
  while (!m_due.empty()) {
    const std::function<void()> act = std::move(m_due.front());
    m_due.pop_front();
    act();
  }
}

InputPause::~InputPause() {
  InputGate& gate = InputGate::Instance();
  gate.m_dropsAll = false;
  if (!gate.m_due.empty()) platform::PostCall(gate, [&gate] { gate.Act(); });
}

void InputGate::HandlerEnded() {
  // A round of the event loop may run its timers ahead of the keys that the window system holds: in the first round
  // and in the second, never in the third.
  m_roundsLeft = 3;
  m_dropping.start();
}

bool InputGate::eventFilter(QObject* watched, QEvent* event) {
  m_stands.Follow(*watched, *event, m_made);
  if (platform::DrawsOnly() && event->isInputEvent()) return false;  // it is kept, and comes anew
  if (event->type() == QEvent::KeyRelease) m_spent = {};
  if (!IsInput(*watched, *event)) return false;
  if (m_dropsAll) {
    event->setAccepted(event->type() != QEvent::Close);
    return true;
  }
  const QPointer<QObject> receiver = watched;
  if (BeginsAnAct(*event)) Act();
  if (receiver == nullptr) return true;
  TakeMoment(*watched, *event);
  const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (key && m_spent.ClosedAPopup(static_cast<QKeyEvent*>(event)->key(), m_made)) {
    event->accept();
    return true;
  }
  if (Loses(*watched, *event)) return true;
  return key && watched->isWidgetType() && Swallows(static_cast<QWidget&>(*watched), static_cast<QKeyEvent&>(*event));
}

void InputGate::TakeMoment(const QObject& watched, const QEvent& event) {
  if (event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride) {
    TakeKey(watched, static_cast<const QKeyEvent&>(event));
  } else if (event.isInputEvent()) {
    m_made = m_clock->Made(static_cast<const QInputEvent&>(event).timestamp());
  } else if (event.type() == QEvent::Close) {
    m_made = m_clock->CloseAsked(static_cast<const QWindow&>(watched));
  }
  // An access key has no stamp of its own: its key has just been here, and comes no more.
  if (event.type() == QEvent::Shortcut) m_pressedKeys.ForgetLast();
}

// A key goes from the window on to a control.
void InputGate::TakeKey(const QObject& watched, const QKeyEvent& key) {
  const PressedKey told = {key.key(), m_clock->Made(key.timestamp()),
                           key.isAutoRepeat() || m_clock->LetGo(key.timestamp())};
  if (watched.isWindowType()) m_key = m_pressedKeys.Complete(key.type(), told, m_clock->Now());
  const bool itself = told.made || told.key != m_key.key;
  m_made = itself ? told.made : m_key.made;
  m_repeats = told.repeats || (!itself && m_key.repeats);
}

bool InputGate::Acts(const QWidget& control) const { return !m_made || m_stands.Stood(control, *m_made); }

bool InputGate::Loses(QObject& watched, QEvent& event) {
  if (watched.isWindowType()) {
    auto& window = static_cast<QWindow&>(watched);
    if (event.type() == QEvent::Close) return LosesClose(window, event);
    const auto* mouse = dynamic_cast<const QMouseEvent*>(&event);
    return mouse != nullptr && LosesMouse(window, *mouse);
  }
  if (!watched.isWidgetType()) return false;
  auto& control = static_cast<QWidget&>(watched);
  switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
      return LosesKey(control, static_cast<QKeyEvent&>(event));
    case QEvent::Shortcut:
    case QEvent::Wheel:
      return !Acts(control);
    case QEvent::MouseButtonRelease:
      // A menu acts where the button is let go.
      return qobject_cast<QMenu*>(&control) != nullptr && !Acts(control);
    default:
      return false;
  }
}

// A window that isn't exposed can't have been seen as it is now; nor can it be drawn, so its close would be lost for
// ever.
bool InputGate::LosesClose(QWindow& window, QEvent& event) const {
  const QWidget& form = *WidgetOf(window);
  const bool lost = Stands::IsExposed(form) && !Acts(form);
  event.setAccepted(!lost);
  return lost;
}

// Judged ahead of the toolkit, which gives the focus to what is pressed before it hands the press on.
bool InputGate::LosesMouse(QWindow& window, const QMouseEvent& mouse) {
  const bool press = mouse.type() == QEvent::MouseButtonPress || mouse.type() == QEvent::MouseButtonDblClick;
  if (press) {
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* base = popup != nullptr ? popup : WidgetOf(window);
    const QPoint at = base != nullptr ? base->mapFromGlobal(mouse.globalPosition().toPoint()) : QPoint();
    QWidget* part = base != nullptr ? base->childAt(at) : nullptr;
    QWidget* target = part != nullptr ? part : base;
    m_pressLost = target != nullptr && !Acts(*target);
    return m_pressLost;
  }
  const bool lost = m_pressLost;
  if (mouse.type() == QEvent::MouseButtonRelease && mouse.buttons() == Qt::NoButton) m_pressLost = false;
  return lost;
}

bool InputGate::LosesKey(QWidget& receiver, QKeyEvent& key) {
  const QWidget& aim = AimOfKey(receiver);
  // An access key needs no focus; where it leads to is judged with its Shortcut.
  const bool lost = key.type() == QEvent::ShortcutOverride ? !Acts(*aim.window())
                                                           : m_made && !(Acts(aim) && m_stands.HadFocus(aim, *m_made));
  if (lost) key.accept();
  return lost;
}

bool InputGate::Swallows(QWidget& receiver, QKeyEvent& key) {
  if (m_repeats && AnswersMessage(receiver, key)) {
    key.accept();
    return true;
  }
  auto* form = qobject_cast<Form*>(receiver.window());
  if (form == nullptr || Edits(receiver, key)) return false;
  // A held access key acts once. An override that is accepted keeps the key from the access keys.
  const bool pending = m_dropping.isActive();
  const bool dropped = m_repeats && (pending || (key.modifiers() & Qt::AltModifier) != 0);
  const bool moves = key.type() == QEvent::KeyPress && IsTab(key) && qobject_cast<QMenuBar*>(&receiver) == nullptr;
  if (moves && !dropped) form->MoveFocus(IsForward(key));
  if (dropped || moves) {
    key.accept();
    return true;
  }
  const bool unmarked = m_repeats && !key.isAutoRepeat() && key.type() == QEvent::KeyPress;
  if (unmarked) DeliverAsRepeat(receiver, key);
  return unmarked;
}

}  // namespace tarnwell::forms

#include "platform/posted_call.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimerEvent>
#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace tarnwell::platform {

namespace {

class PostedCall final : public QEvent {
 public:
  explicit PostedCall(std::function<void()> call) : QEvent(Kind()), run(std::move(call)) {}

  static Type Kind() {
    static const int kind = registerEventType();
    return static_cast<Type>(kind);
  }

  std::function<void()> run;
};

struct KeptEvent {
  QPointer<QObject> receiver;
  std::unique_ptr<QEvent> event;
};

/// Stands before all events of the program: runs the posted calls, or keeps what isn't drawing.
class EventKeeper final : public QObject {
 public:
  static EventKeeper& Instance() {
    static QPointer<EventKeeper> keeper;
    if (keeper == nullptr) {
      keeper = new EventKeeper;
      keeper->setParent(qApp);
      qApp->installEventFilter(keeper);
    }
    return *keeper;
  }

  bool Keeps() const { return m_depth > 0; }

  void BeginKeeping() { ++m_depth; }

  void EndKeeping() {
    if (--m_depth > 0) return;
    for (KeptEvent& kept : std::exchange(m_kept, {})) {
      if (kept.receiver != nullptr) QCoreApplication::postEvent(kept.receiver, kept.event.release());
    }
  }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (Keeps()) return Keep(*receiver, *event);
    if (event->type() != PostedCall::Kind()) return false;
    static_cast<PostedCall*>(event)->run();
    return true;
  }

 private:
  /// True where `event` is kept, and not for now.
  bool Keep(QObject& receiver, QEvent& event) {
    if (event.type() == PostedCall::Kind()) {
      Add(receiver, std::make_unique<PostedCall>(std::move(static_cast<PostedCall&>(event).run)));
      return true;
    }
    switch (event.type()) {
      case QEvent::Timer:
        if (receiver.isWindowType()) return false;  // it times the drawing
        AddTick(receiver, static_cast<QTimerEvent&>(event).timerId());
        return true;
      case QEvent::SockAct:
        return true;  // comes again for as long as there is something to read
      case QEvent::Quit:
      case QEvent::InputMethod:
        Add(receiver, std::unique_ptr<QEvent>(event.clone()));
        return true;
      default:
        // The window system's own inputs wait in its queue; the toolkit posts those that an assistive tool gave back.
        if (!event.isInputEvent()) return false;
        Add(receiver, std::unique_ptr<QEvent>(event.clone()));
        return true;
    }
  }

  void Add(QObject& receiver, std::unique_ptr<QEvent> event) { m_kept.push_back({&receiver, std::move(event)}); }

  /// A timer that is due several times ticks once.
  void AddTick(QObject& receiver, int timer) {
    const auto same = [&](const KeptEvent& kept) {
      return kept.receiver == &receiver && kept.event->type() == QEvent::Timer &&
             static_cast<QTimerEvent&>(*kept.event).timerId() == timer;
    };
    if (std::none_of(m_kept.begin(), m_kept.end(), same)) Add(receiver, std::make_unique<QTimerEvent>(timer));
  }

  int m_depth = 0;
  std::vector<KeptEvent> m_kept;
};

}  // namespace

void PostCall(QObject& receiver, std::function<void()> call) {
  EventKeeper::Instance();
  QCoreApplication::postEvent(&receiver, new PostedCall(std::move(call)));
}

bool DrawsOnly() { return EventKeeper::Instance().Keeps(); }

DrawingOnly::DrawingOnly() { EventKeeper::Instance().BeginKeeping(); }

DrawingOnly::~DrawingOnly() { EventKeeper::Instance().EndKeeping(); }

}  // namespace tarnwell::platform

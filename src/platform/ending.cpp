#include "platform/ending.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QSocketNotifier>
#include <atomic>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#endif

namespace tarnwell::platform {

namespace {

std::atomic<bool> asked = false;

#ifdef Q_OS_UNIX

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> wakeUp = {-1, -1};  ///< a pipe: what a signal handler writes wakes the event loop

void TakeSignal(int /*signal*/) {
  asked = true;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(wakeUp[1], &byte, 1);  // full, it wakes the loop as well
}

/// One that is ignored, as nohup and a shell's background jobs have it, stays so.
void Handle(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kSignals) {
    struct sigaction present = {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

#endif

}  // namespace

bool EndAsked() { return asked; }

Ending::Ending() {
  asked = false;
  qApp->installEventFilter(this);
#ifdef Q_OS_UNIX
  if (pipe2(wakeUp.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  m_signals = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, this);
  connect(m_signals, &QSocketNotifier::activated, this, [this] {
    char bytes[16];
    while (read(wakeUp[0], bytes, sizeof bytes) > 0) continue;
    Take();
  });
  Handle(TakeSignal);
#endif
}

Ending::~Ending() {
#ifdef Q_OS_UNIX
  if (m_signals != nullptr) {
    Handle(SIG_DFL);
    delete m_signals;
    for (const int end : wakeUp) close(end);
  }
#endif
  asked = false;
}

/// The session's end comes as Quit. The request to save ahead of it ends nothing: another program may still cancel it.
bool Ending::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::Quit) Take();
  return false;
}

void Ending::Take() {
  asked = true;
  Q_EMIT Asked();
}

void Ending::CloseDialogs() {
  while (QWidget* popup = QApplication::activePopupWidget()) {
    if (!popup->close()) break;
  }
  while (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
    dialog->reject();
    if (dialog->isVisible()) break;
  }
}

}  // namespace tarnwell::platform

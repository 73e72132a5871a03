#include "sim/ending.h"

#include <poll.h>

#include <initializer_list>

namespace tarnwell::sim {

namespace {

volatile sig_atomic_t endAsked = 0;

}  // namespace

sigset_t PrepareEnding() {
  sigset_t whileWaiting;
  sigset_t ending;
  sigemptyset(&ending);
  struct sigaction action {};
  action.sa_handler = [](int) { endAsked = 1; };
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction present {};
    sigaction(number, nullptr, &present);
    if (present.sa_handler == SIG_IGN) continue;
    sigaddset(&ending, number);
    sigaction(number, &action, nullptr);
  }
  sigprocmask(SIG_BLOCK, &ending, &whileWaiting);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigdelset(&whileWaiting, number);
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  return whileWaiting;
}

void Rest(const sigset_t& whileWaiting, std::int64_t microseconds) {
  const timespec wait{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
  ppoll(nullptr, 0, &wait, &whileWaiting);
}

bool EndAsked() { return endAsked != 0; }

}  // namespace tarnwell::sim

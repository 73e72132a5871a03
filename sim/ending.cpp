#include "sim/ending.h"

#include <poll.h>

#include <algorithm>
#include <iterator>

namespace tarnwell::sim {

namespace {

constexpr int kEndings[] = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t endAsked = 0;

}  // namespace

sigset_t PrepareEnding() {
  sigset_t whileWaiting;
  sigset_t ending;
  sigemptyset(&ending);
  struct sigaction action {};
  action.sa_handler = [](int) { endAsked = 1; };
  for (const int number : kEndings) {
    struct sigaction present {};
    sigaction(number, nullptr, &present);
    if (present.sa_handler == SIG_IGN) continue;
    sigaddset(&ending, number);
    sigaction(number, &action, nullptr);
  }
  sigprocmask(SIG_BLOCK, &ending, &whileWaiting);
  for (const int number : kEndings) sigdelset(&whileWaiting, number);
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  return whileWaiting;
}

void Rest(const sigset_t& whileWaiting, std::int64_t microseconds) {
  const timespec wait{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
  ppoll(nullptr, 0, &wait, &whileWaiting);
}

// A wait whose descriptors are always ready returns without letting a signal in.
bool EndAsked() {
  sigset_t pending;
  sigpending(&pending);
  const auto isPending = [&pending](int number) { return sigismember(&pending, number) == 1; };
  return endAsked != 0 || std::any_of(std::begin(kEndings), std::end(kEndings), isPending);
}

}  // namespace tarnwell::sim

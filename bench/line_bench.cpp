#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "sim/pty.h"

// What `vorel-line record` adds to a byte's way: the time from a write on one side to the read on the other, with the
// recorder between two pseudo-terminals and without it, both ways in turn.

namespace {

using namespace tarnwell;

constexpr int kBytes = 3000;
constexpr useconds_t kBetween = 2000;  // microseconds, so that the recorder sleeps ahead of each byte

std::int64_t Now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

/// Microseconds that one byte takes; ends the program where it doesn't come.
double Travel(int from, int to) {
  const std::int64_t started = Now();
  char byte = 'x';
  if (write(from, &byte, 1) != 1) std::abort();
  pollfd polled{to, POLLIN, 0};
  if (poll(&polled, 1, 1000) != 1 || read(to, &byte, 1) != 1) std::abort();
  return static_cast<double>(Now() - started) / 1e3;
}

void Print(const char* name, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  std::printf("| %-40s | %8.1f | %8.1f | %8.1f |\n", name, times[times.size() / 2], times[times.size() * 99 / 100],
              times.back());
}

void Measure(const char* name, int console, int device) {
  std::vector<double> there, back;
  for (int i = 0; i < kBytes; ++i) {
    usleep(kBetween);
    there.push_back(Travel(console, device));
    usleep(kBetween);
    back.push_back(Travel(device, console));
  }
  Print((std::string(name) + ", to the device").c_str(), there);
  Print((std::string(name) + ", to the console").c_str(), back);
}

int OpenEnd(const std::string& path) { return open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK); }

}  // namespace

int main() {
  const QTemporaryDir folder;
  const std::string base = folder.path().toStdString();
  std::printf("| %-40s | %8s | %8s | %8s |\n|---|---|---|---|\n", "Microseconds", "Median", "99 %", "Largest");

  const auto direct = sim::MakePty("");
  if (!direct->Open().empty()) return 1;
  const int end = OpenEnd(direct->Path());
  Measure("a pseudo-terminal alone", end, direct->Descriptor());

  const auto device = sim::MakePty(base + "/device");
  if (!device->Open().empty()) return 1;
  const std::string link = base + "/console", file = base + "/line.rec";
  const pid_t recorder = fork();
  if (recorder == 0) {
    execl(VOREL_LINE, "vorel-line", "record", device->Path().c_str(), "--link", link.c_str(), "-o", file.c_str(),
          nullptr);
    _exit(1);
  }
  while (access(link.c_str(), F_OK) != 0) usleep(1000);
  const int console = OpenEnd(link);
  Measure("through vorel-line", console, device->Descriptor());
  kill(recorder, SIGTERM);
  waitpid(recorder, nullptr, 0);
  return 0;
}

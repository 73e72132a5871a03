#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <deque>
#include <limits>
#include <thread>
#include <vector>

#include "link/frame_codec.h"
#include "link/send_command.h"
#include "platform/qt_serial_port.h"
#include "platform/yield.h"

// The real port and the real transaction over a pseudo-terminal: what the console adds to the time that a device takes,
// and by how much the transmit window and the pauses overshoot, on an idle machine and beside busy processes, with
// waits that rest and with such that spin, in turn. The device is a thread that notes when it answers, on the same
// clock, so that its own time can be taken out.
//
// bench_link [LEAD...]: other leads than the console's own, in microseconds.

namespace {

using namespace tarnwell;

constexpr int kTransactions = 500;
constexpr int kRounds = 10;

std::int64_t Now() {
  platform::MonotonicCounter counter;
  std::int64_t count = 0;
  counter.QueryCount(count);
  return count;
}

/// The far end of a pseudo-terminal.
class Device {
 public:
  Device() : m_master(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0) std::abort();
    m_slave = open(ptsname(m_master), O_RDWR | O_NOCTTY);  // kept, so that the line stays up between two openings
    termios raw{};
    tcgetattr(m_slave, &raw);
    cfmakeraw(&raw);
    tcsetattr(m_slave, TCSANOW, &raw);
    m_thread = std::thread([this] { Serve(); });
  }
  ~Device() {
    m_stop = true;
    m_thread.join();
    close(m_slave);
    close(m_master);
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  QString Path() const { return QString::fromLocal8Bit(ptsname(m_master)); }
  /// When the last answer was handed to the operating system.
  std::int64_t AnsweredAt() const { return m_answeredAt; }
  /// The answer waits so long after the request: until the console has closed its transmit window.
  void SetDelay(std::int64_t nanoseconds) { m_delay = nanoseconds; }

 private:
  void Serve() {
    const std::string answer = link::BuildRequestFrame("S=OTUAY", 1);
    pollfd input = {m_master, POLLIN, 0};
    char bytes[64];
    while (!m_stop) {
      if (poll(&input, 1, 100) <= 0) continue;
      const ssize_t count = read(m_master, bytes, sizeof bytes);
      if (count <= 0 || bytes[count - 1] != link::kClosingBrace) continue;
      std::this_thread::sleep_for(std::chrono::nanoseconds(m_delay));
      m_answeredAt = Now();
      if (write(m_master, answer.data(), answer.size()) < 0) std::abort();
    }
  }

  int m_master;
  int m_slave;
  std::atomic<bool> m_stop = false;
  std::atomic<std::int64_t> m_answeredAt = 0;
  std::atomic<std::int64_t> m_delay = 0;
  std::thread m_thread;
};

/// The real port, with the moments noted at which RTS is raised and dropped: the transmit window as the line sees it.
class WatchedPort final : public platform::SerialPort {
 public:
  std::int64_t raisedAt = 0;
  std::int64_t droppedAt = 0;

  int CommPort() const override { return m_port.CommPort(); }
  bool SetCommPort(int number) override { return m_port.SetCommPort(number); }
  std::string Settings() const override { return m_port.Settings(); }
  bool SetSettings(std::string_view settings) override { return m_port.SetSettings(settings); }
  int Handshaking() const override { return m_port.Handshaking(); }
  bool SetHandshaking(int handshaking) override { return m_port.SetHandshaking(handshaking); }
  bool PortOpen() const override { return m_port.PortOpen(); }
  bool SetPortOpen(bool open) override { return m_port.SetPortOpen(open); }
  bool SetInputMode(int mode) override { return m_port.SetInputMode(mode); }
  std::string OpenFailure() const override { return m_port.OpenFailure(); }
  void SetRTSEnable(bool on) override {
    if (!on) droppedAt = Now();
    m_port.SetRTSEnable(on);
    if (on) raisedAt = Now();
  }
  bool CTSHolding() const override { return m_port.CTSHolding(); }
  int InBufferCount() override { return m_port.InBufferCount(); }
  void AwaitInput(int milliseconds) override { m_port.AwaitInput(milliseconds); }
  void DiscardInput() override { m_port.DiscardInput(); }
  int OutBufferCount() override { return m_port.OutBufferCount(); }
  void DiscardOutput() override { m_port.DiscardOutput(); }
  void Output(std::string_view bytes) override { m_port.Output(bytes); }
  std::uint8_t Input() override { return m_port.Input(); }
  bool DevicePresent() override { return m_port.DevicePresent(); }

 private:
  platform::MonotonicCounter m_counter;
  platform::EventLoopYielder m_drawing{m_counter};
  platform::QtSerialPort m_port{&m_drawing};  // lets the windows draw in long waits, as the console's does
};

class NoYield final : public platform::Yielder {
 public:
  void Yield(std::int64_t) override { std::abort(); }
};

/// Microseconds by which something took longer than it should.
using Excess = std::vector<double>;

void Print(const std::string& what, Excess microseconds) {
  std::sort(microseconds.begin(), microseconds.end());
  const auto at = [&](double part) { return microseconds[static_cast<std::size_t>(part * (microseconds.size() - 1))]; };
  std::printf("| %-74s | %8.1f | %8.1f | %8.1f |\n", what.c_str(), at(0.5), at(0.99), at(1.0));
}

/// Processes that do nothing but take the processor.
class BusyProcesses {
 public:
  explicit BusyProcesses(int count) {
    for (; count > 0; --count) {
      const pid_t child = fork();
      if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (volatile unsigned turns = 0;;) turns = turns + 1;
      }
      m_children.push_back(child);
    }
  }
  ~BusyProcesses() {
    for (const pid_t child : m_children) kill(child, SIGKILL);
    for (const pid_t child : m_children) waitpid(child, nullptr, 0);
  }
  BusyProcesses(const BusyProcesses&) = delete;
  BusyProcesses& operator=(const BusyProcesses&) = delete;

 private:
  std::vector<pid_t> m_children;
};

/// The console's waits with one lead, and what was measured with them.
class Waits {
 public:
  Waits(std::string name, std::int64_t lead, link::SSPA_Public& shared, WatchedPort& port, const Device& device)
      : m_name(std::move(name)), m_counter(lead), m_line(shared, m_timing, port), m_port(port), m_device(device) {
    if (!m_timing.InitCounter()) std::abort();
  }

  void Round() {
    const double window = link::TransmitTime(m_port.Settings(), 6);
    std::string reply;
    for (int i = 0; i < kTransactions / kRounds; ++i) {
      if (!m_line.SendCommand("S?", reply, 3, 20, "S=")) std::fprintf(stderr, "link_bench: no answer\n");
      m_pickUp.push_back(static_cast<double>(Now() - m_device.AnsweredAt()) / 1e3);
      m_window.push_back(static_cast<double>(m_port.droppedAt - m_port.raisedAt) / 1e3 - window * 1e6);
      Delay(0.002, m_lead);
      if (i % 5 == 0) Delay(0.05, m_pause);
    }
  }

  void Report(const std::string& load) const {
    for (const auto& [what, excess] : {std::pair{"from the answer to SendCommand's return", &m_pickUp},
                                       {"transmit window above the computed one", &m_window},
                                       {"2 ms, too long by", &m_lead},
                                       {"0.05 s, too long by", &m_pause}}) {
      Print(load + ", " + m_name + ": " + what, *excess);
    }
  }

 private:
  void Delay(double seconds, Excess& excess) {
    const std::int64_t start = Now();
    m_timing.DelayBlocking(seconds);
    excess.push_back(static_cast<double>(Now() - start) / 1e3 - seconds * 1e6);
  }

  std::string m_name;
  platform::MonotonicCounter m_counter;
  NoYield m_yielder;
  link::IntervalTiming m_timing{m_counter, m_yielder};
  link::SerialLink m_line;
  WatchedPort& m_port;
  const Device& m_device;
  Excess m_pickUp, m_window, m_lead, m_pause;
};

}  // namespace

int main(int argc, char** argv) {
  QTemporaryDir configuration;
  qputenv("XDG_CONFIG_HOME", configuration.path().toLocal8Bit());
  QCoreApplication application(argc, argv);
  Device device;
  QDir(configuration.path()).mkpath(QStringLiteral("tarnwell/ports"));
  QFile::link(device.Path(), configuration.filePath(QStringLiteral("tarnwell/ports/com1")));

  link::SSPA_Public shared;
  shared.ConnectAddress = 1;
  shared.PortRS232 = false;
  shared.RS485Control = 1;
  WatchedPort port;
  if (!port.SetPortOpen(true)) {
    std::fprintf(stderr, "link_bench: %s\n", port.OpenFailure().c_str());
    return 1;
  }
  // Twice the transmit window, so that the answer finds the console waiting for it, as on a real line.
  device.SetDelay(static_cast<std::int64_t>(2e9 * link::TransmitTime(port.Settings(), 6)));

  std::printf("| %-74s | %8s | %8s | %8s |\n|---|---|---|---|\n", "microseconds", "median", "99 %", "largest");
  const int cores = static_cast<int>(std::thread::hardware_concurrency());
  for (const auto& [load, busy] :
       {std::pair{"idle", 0}, {"one busy process a core", cores}, {"four busy processes", 4}}) {
    const BusyProcesses others(busy);
    std::deque<Waits> waits;
    waits.emplace_back("spinning", std::numeric_limits<std::int64_t>::max(), shared, port, device);
    if (argc == 1) waits.emplace_back("resting", platform::MonotonicCounter::kLead, shared, port, device);
    for (int i = 1; i < argc; ++i) waits.emplace_back(argv[i], std::atoll(argv[i]) * 1000, shared, port, device);
    for (int round = 0; round < kRounds; ++round) {
      for (Waits& each : waits) each.Round();
    }
    for (const Waits& each : waits) each.Report(load);
  }
}

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
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
#include <thread>
#include <vector>

#include "link/frame_codec.h"
#include "link/send_command.h"
#include "platform/qt_serial_port.h"

// The real port and the real transaction over a pseudo-terminal: what the console adds to the time that a device takes,
// and by how much the transmit window overshoots. The device is a thread that answers at once and notes when, on the
// same clock, so that its own time can be taken out.

namespace {

using namespace tarnwell;

constexpr int kTransactions = 2000;

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
  void DiscardInput() override { m_port.DiscardInput(); }
  int OutBufferCount() override { return m_port.OutBufferCount(); }
  void DiscardOutput() override { m_port.DiscardOutput(); }
  void Output(std::string_view bytes) override { m_port.Output(bytes); }
  std::uint8_t Input() override { return m_port.Input(); }
  bool DevicePresent() override { return m_port.DevicePresent(); }

 private:
  platform::QtSerialPort m_port;
};

void Print(const char* what, std::vector<double> microseconds) {
  std::sort(microseconds.begin(), microseconds.end());
  const auto at = [&](double part) { return microseconds[static_cast<std::size_t>(part * (microseconds.size() - 1))]; };
  std::printf("| %-58s | %8.1f | %8.1f | %8.1f |\n", what, at(0.5), at(0.99), at(1.0));
}

class NoYield final : public platform::Yielder {
 public:
  void Yield(std::int64_t) override { std::abort(); }
};

}  // namespace

int main(int argc, char** argv) {
  QTemporaryDir configuration;
  qputenv("XDG_CONFIG_HOME", configuration.path().toLocal8Bit());
  QCoreApplication application(argc, argv);
  Device device;
  QDir(configuration.path()).mkpath(QStringLiteral("tarnwell/ports"));
  QFile::link(device.Path(), configuration.filePath(QStringLiteral("tarnwell/ports/com1")));

  platform::MonotonicCounter counter;
  NoYield yielder;
  link::IntervalTiming timing(counter, yielder);
  link::SSPA_Public shared;
  shared.ConnectAddress = 1;
  shared.PortRS232 = false;
  shared.RS485Control = 1;
  WatchedPort port;
  link::SerialLink line(shared, timing, port);
  if (!timing.InitCounter() || !port.SetPortOpen(true)) {
    std::fprintf(stderr, "link_bench: %s\n", port.OpenFailure().c_str());
    return 1;
  }

  // Twice the transmit window, so that the answer finds the console waiting for it, as on a real line.
  const double window = link::TransmitTime(port.Settings(), 6);
  device.SetDelay(static_cast<std::int64_t>(2 * window * 1e9));
  std::vector<double> overshoot;
  std::vector<double> pickUp;
  std::string reply;
  for (int i = 0; i < kTransactions; ++i) {
    if (!line.SendCommand("S?", reply, 1, 20, "S=")) {
      std::fprintf(stderr, "link_bench: transaction %d failed\n", i);
      return 1;
    }
    pickUp.push_back(static_cast<double>(Now() - device.AnsweredAt()) / 1e3);
    overshoot.push_back(static_cast<double>(port.droppedAt - port.raisedAt) / 1e3 - window * 1e6);
  }
  std::printf("| %-58s | %8s | %8s | %8s |\n", "microseconds, of 2,000 transactions", "median", "99 %", "largest");
  std::printf("|---|---|---|---|\n");
  Print("from the device's answer to SendCommand's return", pickUp);
  Print("transmit window above the computed one (RTS up too long)", overshoot);
}

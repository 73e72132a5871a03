#include "tools/vorel-line/recorder.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "link/send_command.h"
#include "sim/ending.h"
#include "sim/pty.h"
#include "tools/vorel-line/device.h"
#include "tools/vorel-line/journal.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::int64_t kReopenEvery = 250'000;  // microseconds
constexpr std::int64_t kLead = 2'000;           // from RTS to the first bit, as the console has it
constexpr std::int64_t kClockMayDiffer = 1'000'000;
constexpr std::size_t kMostWaiting = 4096;  // bytes for a side that takes none
constexpr short kGone = POLLHUP | POLLERR | POLLNVAL;

template <class Clock>
std::int64_t Microseconds() {
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

/// The time of day that doesn't jump within a transaction: it follows the system's by steps of a second and more.
class Clock {
 public:
  std::int64_t Now() {
    const std::int64_t steady = Microseconds<std::chrono::steady_clock>();
    const std::int64_t day = Microseconds<std::chrono::system_clock>();
    if (std::abs(steady + m_ahead - day) > kClockMayDiffer) m_ahead = day - steady;
    return steady + m_ahead;
  }

 private:
  std::int64_t m_ahead = 0;
};

/// Bytes for a side that may not take them at once.
class Outlet {
 public:
  /// False: the side is gone.
  bool Send(int descriptor, std::string_view bytes) {
    m_waiting += bytes.substr(0, kMostWaiting - std::min(m_waiting.size(), kMostWaiting));
    if (m_waiting.empty()) return true;
    const ssize_t written = ::write(descriptor, m_waiting.data(), m_waiting.size());
    if (written > 0) m_waiting.erase(0, static_cast<std::size_t>(written));
    return written >= 0 || errno == EAGAIN || errno == EINTR;
  }
  void Clear() { m_waiting.clear(); }
  short Wish() const { return m_waiting.empty() ? POLLIN : static_cast<short>(POLLIN | POLLOUT); }

 private:
  std::string m_waiting;
};

class Recorder {
 public:
  Recorder(const RecordOptions& options, RecordFile& file, sim::Line& console)
      : m_rs485(options.rs485),
        m_console(console),
        m_device(options.device, options.dataFormat),
        m_journal([&file](Record record) { file.Put(std::move(record)); }) {}

  /// What is wrong with the device, or nothing.
  std::string Open() {
    std::string error = m_device.Open(ConsoleFormat());
    if (error.empty()) Drive(false);
    return error;
  }

  void Run(const sigset_t& whileWaiting) {
    m_journal.Note(m_clock.Now(), kStarted);
    m_journal.Note(m_clock.Now(), "format " + m_device.Settings());
    while (!sim::EndAsked()) {
      Wait(whileWaiting);
      const std::int64_t now = m_clock.Now();
      KeepDevice(now);
      // The device's bytes first: its answer was there before the next question.
      if (m_polled[1].revents != 0) FromDevice(now);
      if (m_polled[0].revents != 0) FromConsole(now);
      Transmit(now);
      m_journal.Flush(now);
    }
    Drive(false);
    m_journal.Note(m_clock.Now(), kEnded);
  }

 private:
  termios ConsoleFormat() const {
    termios format{};
    tcgetattr(m_console.Descriptor(), &format);
    return format;
  }

  void Wait(const sigset_t& whileWaiting) {
    m_polled[0] = {m_console.Descriptor(), m_toConsole.Wish(), 0};
    m_polled[1] = {m_device.Descriptor(), m_sendAt == 0 ? m_toDevice.Wish() : short{POLLIN}, 0};
    std::int64_t due = m_journal.Due().value_or(0);
    for (const std::int64_t other : {m_reopenAt, m_sendAt, m_releaseAt}) {
      if (other != 0 && (due == 0 || other < due)) due = other;
    }
    const std::int64_t left = std::max<std::int64_t>(due - m_clock.Now(), 0);
    const timespec wait{left / 1'000'000, left % 1'000'000 * 1000};
    if (ppoll(m_polled.data(), m_polled.size(), due != 0 ? &wait : nullptr, &whileWaiting) < 0) {
      for (pollfd& polled : m_polled) polled.revents = 0;
    }
  }

  void FromDevice(std::int64_t now) {
    std::array<char, 1024> buffer;
    const ssize_t count = ::read(m_device.Descriptor(), buffer.data(), buffer.size());
    if (count > 0) {
      const std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
      m_toConsole.Send(m_console.Descriptor(), bytes);
      m_journal.Take(Kind::kDevice, now, bytes);
      return;
    }
    const bool ended = count == 0 || (errno != EAGAIN && errno != EINTR) || (m_polled[1].revents & kGone) != 0;
    if (ended || (m_sendAt == 0 && !m_toDevice.Send(m_device.Descriptor(), {}))) LoseDevice(now);
  }

  void FromConsole(std::int64_t now) {
    std::array<char, 1024> buffer;
    const ssize_t count = ::read(m_console.Descriptor(), buffer.data(), buffer.size());
    if (count <= 0) {
      m_toConsole.Send(m_console.Descriptor(), {});
      return;
    }
    // The console sets the format ahead of its first byte.
    if (m_device.Follow(ConsoleFormat())) m_journal.Note(now, "format " + m_device.Settings());
    const std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
    if (m_device.Descriptor() >= 0) Forward(now, bytes);
    m_journal.Take(Kind::kConsole, now, bytes);
  }

  void Forward(std::int64_t now, std::string_view bytes) {
    if (!m_rs485) {
      if (!m_toDevice.Send(m_device.Descriptor(), bytes)) LoseDevice(now);
      return;
    }
    if (m_releaseAt == 0) {
      Drive(true);
      m_raisedAt = now;
      m_sendAt = now + kLead;
    }
    m_frame += bytes;
    m_sent += bytes.size();
    // What comes in pieces, as over a network, begins anew with each.
    m_releaseAt = std::max(m_raisedAt + Window(m_sent), now + Window(bytes.size()));
  }

  std::int64_t Window(std::size_t bytes) const {
    return static_cast<std::int64_t>(link::TransmitTime(m_device.Settings(), bytes) * 1e6);
  }

  /// The two moments of a half-duplex line: the first bit behind RTS, and the end of the window.
  void Transmit(std::int64_t now) {
    if (now >= m_sendAt) m_sendAt = 0;
    if (m_sendAt == 0 && !m_frame.empty()) {
      if (!m_toDevice.Send(m_device.Descriptor(), m_frame)) LoseDevice(now);
      m_frame.clear();
    }
    if (m_releaseAt != 0 && now >= m_releaseAt) {
      Drive(false);
      m_releaseAt = 0;
      m_sent = 0;
    }
  }

  /// Without RS-485 RTS stays as the driver raised it.
  void Drive(bool on) const {
    if (m_rs485) m_device.SetRts(on);
  }

  void LoseDevice(std::int64_t now) {
    m_device.Close();
    m_polled[1].revents = 0;
    m_toDevice.Clear();
    m_frame.clear();
    m_sendAt = m_releaseAt = 0;
    m_sent = 0;
    m_reopenAt = now + kReopenEvery;
    m_journal.Note(now, kDeviceGone);
    std::fputs("vorel-line: the device is gone; waiting for it\n", stderr);
  }

  void KeepDevice(std::int64_t now) {
    if (m_reopenAt == 0 || now < m_reopenAt) return;
    m_reopenAt = now + kReopenEvery;
    if (!Open().empty()) return;
    m_reopenAt = 0;
    m_journal.Note(now, kDeviceBack);
    std::fputs("vorel-line: the device is back\n", stderr);
  }

  bool m_rs485;
  sim::Line& m_console;
  DevicePort m_device;
  Journal m_journal;
  Clock m_clock;
  Outlet m_toConsole;
  Outlet m_toDevice;
  std::array<pollfd, 2> m_polled{};
  // Moments; 0: none is due.
  std::int64_t m_reopenAt = 0;
  std::int64_t m_sendAt = 0;
  std::int64_t m_releaseAt = 0;
  std::int64_t m_raisedAt = 0;
  std::size_t m_sent = 0;
  std::string m_frame;
};

int Fail(const std::string& error) {
  std::fprintf(stderr, "vorel-line: %s\n", error.c_str());
  return 2;
}

}  // namespace

int RecordLine(const RecordOptions& options) {
  const sigset_t whileWaiting = sim::PrepareEnding();
  RecordFile file(options.file);
  std::string error = file.Open();
  if (!error.empty()) return Fail(error);
  const auto console = sim::MakePty(options.link);
  error = console->Open();
  if (!error.empty()) return Fail(error);
  Recorder recorder(options, file, *console);
  error = recorder.Open();
  if (!error.empty()) return Fail(error);
  std::printf("%s\n", console->Path().c_str());
  std::fflush(stdout);
  recorder.Run(whileWaiting);
  console->Close();
  file.Close();
  return EXIT_SUCCESS;
}

}  // namespace tarnwell::vorel_line

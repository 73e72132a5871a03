#include "tools/vorel-line/recorder.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "sim/ending.h"
#include "sim/pty.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/device.h"
#include "tools/vorel-line/direction.h"
#include "tools/vorel-line/journal.h"
#include "tools/vorel-line/plain_text.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::int64_t kReopenEvery = 250'000;  // microseconds
constexpr std::int64_t kClockMayDiffer = 1'000'000;
constexpr std::size_t kMostWaiting = 4096;  // bytes for a side that takes none
constexpr std::int64_t kStale = 1'000'000;  // microseconds
constexpr short kGone = POLLHUP | POLLERR | POLLNVAL;

template <class Clock>
std::int64_t Microseconds() {
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

std::int64_t Now() { return Microseconds<std::chrono::steady_clock>(); }

/// The time of day of a moment of the steady clock. It doesn't jump within a record, and follows the system's by steps
/// of a second and more.
class TimeOfDay {
 public:
  std::int64_t Of(std::int64_t moment) {
    const std::int64_t ahead = Microseconds<std::chrono::system_clock>() - Now();
    if (std::abs(ahead - m_ahead) > kClockMayDiffer) m_ahead = ahead;
    return moment + m_ahead;
  }

 private:
  std::int64_t m_ahead = 0;
};

/// Bytes for a side that may not take them at once.
class Outlet {
 public:
  /// False: the side is gone. What it doesn't take waits; what is beyond kMostWaiting is dropped.
  bool Send(int descriptor, std::int64_t now, std::string_view bytes) {
    if (m_waiting.empty()) m_since = now;
    m_waiting += bytes.substr(0, kMostWaiting - std::min(m_waiting.size(), kMostWaiting));
    if (m_waiting.empty()) return true;
    const ssize_t written = ::write(descriptor, m_waiting.data(), m_waiting.size());
    if (written > 0) {
      m_waiting.erase(0, static_cast<std::size_t>(written));
      m_since = now;
    }
    return written >= 0 || errno == EAGAIN || errno == EINTR;
  }
  void Clear() { m_waiting.clear(); }
  /// What a console that wasn't there didn't take is nothing for the next one.
  void ClearStale(std::int64_t now) {
    if (now - m_since > kStale) Clear();
  }
  bool IsEmpty() const { return m_waiting.empty(); }
  short Wish() const { return m_waiting.empty() ? short{0} : short{POLLOUT}; }

 private:
  std::string m_waiting;
  std::int64_t m_since = 0;  // when it took something last
};

class Recorder {
 public:
  Recorder(const RecordOptions& options, RecordFile& file)
      : m_rs485(options.rs485),
        m_console(sim::MakePty(options.link, sim::OldLink::kPutBack)),
        m_device(options.device, options.dataFormat),
        m_journal([this, &file](Record record) {
          record.at = m_timeOfDay.Of(record.at);
          file.Put(std::move(record));
        }) {}
  ~Recorder() { m_console->Close(); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  bool DeviceIsAbsent() const { return m_device.IsAbsent(); }

  /// What is wrong with the device, or nothing.
  std::string OpenDevice() {
    std::string error = m_device.Open(ConsoleFormat());
    if (error.empty()) error = RefuseOwnSide();
    if (error.empty()) Drive(false);
    return error;
  }

  /// Behind the device: a link that leads nowhere would be taken for it.
  std::string OpenConsole() {
    std::string error = m_console->Open();
    if (!error.empty()) return error;
    m_device.Follow(ConsoleFormat());
    std::printf("%s\n", m_console->Path().c_str());
    std::fflush(stdout);
    return {};
  }

  void Run(const sigset_t& whileWaiting) {
    m_journal.Note(Now(), kStarted);
    m_device.Descriptor() < 0 ? AwaitDevice(Now()) : NoteFormat(m_device.Settings());
    while (!sim::EndAsked()) {
      Wait(whileWaiting);
      const std::int64_t now = Now();
      KeepDevice(now);
      // The device's bytes first: its answer was there before the next question.
      if (m_polled[1].revents != 0) FromDevice(now);
      if (m_polled[0].revents != 0) FromConsole(now);
      Transmit(now);
      m_journal.Flush(now);
    }
    Drive(false);
    m_journal.Note(Now(), kEnded);
    m_console->Close();
    m_device.Close();
  }

 private:
  /// Before there is a console's side, as the console sets it by itself.
  LineFormat ConsoleFormat() const { return FormatOf(m_console->Descriptor()).value_or(UsualFormat()); }

  std::string RefuseOwnSide() {
    struct stat device {};
    struct stat own {};
    const bool same = fstat(m_device.Descriptor(), &device) == 0 && stat(m_console->Path().c_str(), &own) == 0 &&
                      device.st_rdev == own.st_rdev;
    if (!same) return {};
    m_device.Close();
    return "the device is the console's side";
  }

  void Wait(const sigset_t& whileWaiting) {
    // A side that sends more than the other takes is left to wait, as on a port whose buffer is full.
    const short fromConsole = m_toDevice.IsEmpty() && m_frame.empty() ? POLLIN : 0;
    m_polled[0] = {m_console->Descriptor(), static_cast<short>(fromConsole | m_toConsole.Wish()), 0};
    m_polled[1] = {m_device.Descriptor(), static_cast<short>(POLLIN | m_toDevice.Wish()), 0};
    std::int64_t due = m_journal.Due().value_or(0);
    for (const std::int64_t other : {m_reopenAt, m_direction.Due()}) {
      if (other != 0 && (due == 0 || other < due)) due = other;
    }
    const std::int64_t left = std::max<std::int64_t>(due - Now(), 0);
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
      m_toConsole.Send(m_console->Descriptor(), now, bytes);
      m_journal.Take(Kind::kDevice, now, bytes);
      return;
    }
    const bool ended = count == 0 || (errno != EAGAIN && errno != EINTR) || (m_polled[1].revents & kGone) != 0;
    if (ended || !m_toDevice.Send(m_device.Descriptor(), now, {})) LoseDevice(now);
  }

  void FromConsole(std::int64_t now) {
    if ((m_polled[0].revents & POLLIN) != 0) m_toConsole.ClearStale(now);
    m_toConsole.Send(m_console->Descriptor(), now, {});
    if ((m_polled[0].revents & POLLIN) == 0) return;
    std::array<char, 1024> buffer;
    const ssize_t count = ::read(m_console->Descriptor(), buffer.data(), buffer.size());
    if (count <= 0) return;
    m_console->LiftClaim();
    // The console sets the format ahead of its first byte.
    if (const auto format = m_device.Follow(ConsoleFormat())) NoteFormat(*format);
    const std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
    m_journal.Take(Kind::kConsole, now, bytes);
    if (m_device.Descriptor() < 0) return;
    m_frame += bytes;
    if (!m_rs485 || m_direction.IsRaised()) return;
    Drive(true);
    m_direction.Raise(now);
  }

  /// What the console sent goes out at once, or behind RTS.
  void Transmit(std::int64_t now) {
    if (!m_frame.empty() && m_direction.MaySend(now)) {
      if (m_rs485) m_direction.Sent(now, m_device.Settings(), m_frame.size());
      if (!m_toDevice.Send(m_device.Descriptor(), now, m_frame)) LoseDevice(now);
      m_frame.clear();
    }
    if (!m_direction.ReleaseDue(now)) return;
    Drive(false);
    m_direction.Release();
  }

  /// Without RS-485 RTS stays as the driver raised it.
  void Drive(bool on) const {
    if (m_rs485) m_device.SetRts(on);
  }

  void NoteFormat(const std::string& text) {
    const std::string note = std::string(kFormat) + text;
    m_journal.Note(Now(), note);
    if (FormatOfNote(note).empty()) Complain(note);
  }

  void LoseDevice(std::int64_t now) {
    m_device.Close();
    m_polled[1].revents = 0;
    m_toDevice.Clear();
    m_frame.clear();
    m_direction.Release();
    Complain("the device is gone; waiting for it");
    AwaitDevice(now);
  }

  void AwaitDevice(std::int64_t now) {
    m_reopenAt = now + kReopenEvery;
    m_journal.Note(now, kDeviceGone);
  }

  void KeepDevice(std::int64_t now) {
    if (m_reopenAt == 0 || now < m_reopenAt) return;
    m_reopenAt = now + kReopenEvery;
    if (!OpenDevice().empty()) return;
    m_reopenAt = 0;
    m_journal.Note(now, kDeviceBack);
    NoteFormat(m_device.Settings());
    Complain("the device is back");
  }

  bool m_rs485;
  std::unique_ptr<sim::Line> m_console;
  DevicePort m_device;
  TimeOfDay m_timeOfDay;
  Journal m_journal;
  Outlet m_toConsole;
  Outlet m_toDevice;
  std::string m_frame;  // from the console, not sent yet
  Direction m_direction;
  std::int64_t m_reopenAt = 0;  // 0: the device is there
  std::array<pollfd, 2> m_polled{};
};

}  // namespace

int RecordLine(const RecordOptions& options) {
  const sigset_t whileWaiting = sim::PrepareEnding();
  RecordFile file(options.file);
  Recorder recorder(options, file);
  std::string error = recorder.OpenDevice();
  if (options.wait && recorder.DeviceIsAbsent()) Complain(std::exchange(error, {}) + "; waiting for it");
  if (error.empty()) error = file.Open();
  if (error.empty()) error = recorder.OpenConsole();
  if (!error.empty()) return Complain(error), kExitUnusable;
  recorder.Run(whileWaiting);
  if (file.Close()) return kExitFine;
  // The thread that has the file can't be told to leave the disk.
  Complain(options.file.path + ": the disk doesn't answer; the last records are lost");
  std::_Exit(kExitUnusable);
}

}  // namespace tarnwell::vorel_line

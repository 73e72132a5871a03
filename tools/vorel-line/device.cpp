#include "tools/vorel-line/device.h"

#include <asm/termbits.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tarnwell::vorel_line {

namespace {

// The kernel's own settings of a terminal: those of the C library know named speeds alone, and a console may set any.
using Terminal = termios2;

constexpr tcflag_t kDataFlags = CSIZE | CSTOPB | PARENB | PARODD;
constexpr tcflag_t kSpeedFlags = CBAUD | CIBAUD;
constexpr tcflag_t kFormatFlags = kDataFlags | kSpeedFlags | CRTSCTS;

LineFormat FormatIn(const Terminal& terminal) { return {terminal.c_cflag & kFormatFlags, terminal.c_ospeed}; }

/// `flags` with parity, data bits and stop bits of a text such as "e,7,1".
tcflag_t WithData(tcflag_t flags, std::string_view text) {
  flags &= ~kDataFlags;
  if (text[0] != 'n') flags |= PARENB;
  if (text[0] == 'o') flags |= PARODD;
  flags |= text[2] == '7' ? CS7 : CS8;
  if (text[4] == '2') flags |= CSTOPB;
  return flags;
}

/// Bytes as they come: nothing is echoed, mapped or taken for a signal.
void MakeRaw(Terminal& terminal) {
  terminal.c_iflag = 0;
  terminal.c_oflag = 0;
  terminal.c_lflag = 0;
  terminal.c_cc[VMIN] = 1;
  terminal.c_cc[VTIME] = 0;
}

}  // namespace

LineFormat UsualFormat() { return {B9600 | CS8, 9600}; }

std::optional<LineFormat> FormatOf(int terminal) {
  Terminal settings{};
  return ioctl(terminal, TCGETS2, &settings) == 0 ? std::optional(FormatIn(settings)) : std::nullopt;
}

std::string FormatText(const LineFormat& format) {
  const char parity = (format.flags & PARENB) == 0 ? 'n' : (format.flags & PARODD) != 0 ? 'o' : 'e';
  const char bits = (format.flags & CSIZE) == CS7 ? '7' : '8';
  return std::to_string(format.speed) + ',' + parity + ',' + bits + ((format.flags & CSTOPB) != 0 ? ",2" : ",1");
}

std::string DataFormatOf(std::string_view text) {
  std::string format(text);
  if (format.size() != 5) return {};
  if (format[0] == '7' || format[0] == '8') std::swap(format[0], format[2]);
  const auto isOneOf = [&format](std::size_t at, std::string_view letters) {
    return letters.find(format[at]) != std::string_view::npos;
  };
  const bool isFormat =
      isOneOf(0, "neo") && isOneOf(2, "78") && isOneOf(4, "12") && format[1] == ',' && format[3] == ',';
  return isFormat ? format : std::string();
}

std::string DevicePort::Open(const LineFormat& console) {
  m_descriptor = ::open(m_path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (m_descriptor >= 0 && FormatOf(m_descriptor)) {
    Apply(console);  // what the port refuses is told by Settings()
    ioctl(m_descriptor, TIOCEXCL);
    return {};
  }
  m_isAbsent = errno == ENOENT || errno == ENODEV || errno == ENXIO || errno == EIO;
  const std::string reason = std::strerror(errno);
  Close();
  return m_path + ": " + reason;
}

void DevicePort::Close() {
  if (m_descriptor < 0) return;
  // What can't be sent would hold up the close.
  ioctl(m_descriptor, TCFLSH, TCIOFLUSH);
  ioctl(m_descriptor, TIOCNXCL);
  ::close(std::exchange(m_descriptor, -1));
}

std::optional<std::string> DevicePort::Follow(const LineFormat& console) {
  if (m_descriptor < 0 || console == m_followed) return std::nullopt;
  if (Apply(console)) return Settings();
  return FormatText(console) + " refused: " + std::strerror(errno);
}

bool DevicePort::Apply(const LineFormat& console) {
  m_followed = console;
  Terminal settings{};
  if (ioctl(m_descriptor, TCGETS2, &settings) != 0) return false;
  MakeRaw(settings);
  const tcflag_t flags = m_dataFormat.empty() ? console.flags : WithData(console.flags, m_dataFormat);
  settings.c_cflag = (settings.c_cflag & ~kFormatFlags) | flags | CLOCAL | CREAD;
  settings.c_ispeed = settings.c_ospeed = console.speed;
  return ioctl(m_descriptor, TCSETS2, &settings) == 0;
}

void DevicePort::SetRts(bool on) const {
  const int line = TIOCM_RTS;
  if (m_descriptor >= 0) ioctl(m_descriptor, on ? TIOCMBIS : TIOCMBIC, &line);
}

std::string DevicePort::Settings() const {
  const std::optional<LineFormat> format = FormatOf(m_descriptor);
  return format ? FormatText(*format) : std::string();
}

}  // namespace tarnwell::vorel_line

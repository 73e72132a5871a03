#include "tools/vorel-line/device.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace tarnwell::vorel_line {

namespace {

constexpr tcflag_t kFormatFlags = CSIZE | CSTOPB | PARENB | PARODD | CRTSCTS;

constexpr std::pair<speed_t, int> kSpeeds[] = {{B300, 300},     {B1200, 1200},   {B2400, 2400},
                                               {B4800, 4800},   {B9600, 9600},   {B19200, 19200},
                                               {B38400, 38400}, {B57600, 57600}, {B115200, 115200}};

bool SameFormat(const termios& one, const termios& other) {
  return (one.c_cflag & kFormatFlags) == (other.c_cflag & kFormatFlags) && cfgetospeed(&one) == cfgetospeed(&other);
}

}  // namespace

bool IsDataFormat(std::string_view text) {
  return text.size() == 5 && (text[0] == '7' || text[0] == '8') && text[1] == ',' && text[3] == ',' &&
         std::string_view("noe").find(text[2]) != std::string_view::npos && (text[4] == '1' || text[4] == '2');
}

std::string DevicePort::Open(const termios& console) {
  m_descriptor = ::open(m_path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (m_descriptor >= 0 && Apply(console)) {
    ioctl(m_descriptor, TIOCEXCL);
    return {};
  }
  const std::string reason = std::strerror(errno);
  Close();
  return m_path + ": " + reason;
}

void DevicePort::Close() {
  if (m_descriptor < 0) return;
  // What can't be sent would hold up the close.
  tcflush(m_descriptor, TCIOFLUSH);
  ioctl(m_descriptor, TIOCNXCL);
  ::close(std::exchange(m_descriptor, -1));
}

bool DevicePort::Follow(const termios& console) {
  if (m_descriptor < 0 || SameFormat(console, m_followed)) return false;
  Apply(console);
  return true;
}

bool DevicePort::Apply(const termios& console) {
  m_followed = console;
  termios wanted{};
  if (tcgetattr(m_descriptor, &wanted) != 0) return false;
  cfmakeraw(&wanted);
  wanted.c_cflag = (wanted.c_cflag & ~kFormatFlags) | (console.c_cflag & kFormatFlags) | CLOCAL | CREAD;
  FixFormat(wanted);
  return cfsetspeed(&wanted, cfgetospeed(&console)) == 0 && tcsetattr(m_descriptor, TCSANOW, &wanted) == 0;
}

void DevicePort::FixFormat(termios& wanted) const {
  if (m_dataFormat.empty()) return;
  wanted.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB | PARODD);
  wanted.c_cflag |= m_dataFormat[0] == '7' ? CS7 : CS8;
  if (m_dataFormat[2] != 'n') wanted.c_cflag |= PARENB;
  if (m_dataFormat[2] == 'o') wanted.c_cflag |= PARODD;
  if (m_dataFormat[4] == '2') wanted.c_cflag |= CSTOPB;
}

void DevicePort::SetRts(bool on) const {
  const int line = TIOCM_RTS;
  if (m_descriptor >= 0) ioctl(m_descriptor, on ? TIOCMBIS : TIOCMBIC, &line);
}

std::string DevicePort::Settings() const {
  termios set = m_followed;
  if (m_descriptor >= 0) tcgetattr(m_descriptor, &set);
  std::string text;
  for (const auto& [speed, number] : kSpeeds) {
    if (speed == cfgetospeed(&set)) text = std::to_string(number);
  }
  const char parity = (set.c_cflag & PARENB) == 0 ? 'n' : (set.c_cflag & PARODD) != 0 ? 'o' : 'e';
  const char bits = (set.c_cflag & CSIZE) == CS7 ? '7' : '8';
  return text + ',' + parity + ',' + bits + ((set.c_cflag & CSTOPB) != 0 ? ",2" : ",1");
}

}  // namespace tarnwell::vorel_line

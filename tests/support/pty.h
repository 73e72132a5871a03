#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace tarnwell::test {

/// The next `count` bytes of a line, or what came of them with no longer pause than so many milliseconds.
inline std::string ReadLine(int descriptor, std::size_t count, int patience = 1000) {
  std::string bytes;
  pollfd line = {descriptor, POLLIN, 0};
  while (bytes.size() < count && poll(&line, 1, patience) > 0) {
    char piece[256];
    const ssize_t got = read(descriptor, piece, std::min(count - bytes.size(), sizeof piece));
    if (got <= 0) break;
    bytes.append(piece, static_cast<std::size_t>(got));
  }
  return bytes;
}

/// The far end of a real line: a pseudo-terminal whose near end has a path to open. Its end is pulling the adapter.
class Pty {
 public:
  Pty() {
    grantpt(m_master);
    unlockpt(m_master);
    m_path = ptsname(m_master);
  }
  ~Pty() { close(m_master); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  const std::string& Path() const { return m_path; }
  int Descriptor() const { return m_master; }

  /// What the near end has set the line to.
  termios Format() const {
    termios format = {};
    tcgetattr(m_master, &format);
    return format;
  }

  void SetFormat(const termios& format) { tcsetattr(m_master, TCSANOW, &format); }

  /// Bytes that the line took; fewer than given when it is full.
  std::size_t Write(std::string_view bytes) {
    const ssize_t written = write(m_master, bytes.data(), bytes.size());
    return written < 0 ? 0 : static_cast<std::size_t>(written);
  }

  std::string Read(std::size_t count) { return ReadLine(m_master, count); }

 private:
  int m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
  std::string m_path;
};

}  // namespace tarnwell::test

#include "sim/pty.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tarnwell::sim {

namespace {

/// A file descriptor that is closed with its owner.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  bool Take(int value) {
    Close();
    m_value = value;
    return value >= 0;
  }
  void Close() {
    if (m_value >= 0) ::close(m_value);
    m_value = -1;
  }
  int Value() const { return m_value; }

 private:
  int m_value = -1;
};

constexpr const char* kPtyFolder = "/dev/pts/";

std::string SystemError(const std::string& what) { return what + ": " + std::strerror(errno); }

bool MakeRaw(int descriptor, speed_t speed) {
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) return false;
  cfmakeraw(&settings);
  settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS);
  settings.c_cflag |= CLOCAL | CREAD;
  return cfsetspeed(&settings, speed) == 0 && tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

struct flock WholeLock() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

/// Whether a program of this kind holds the pseudo-terminal.
bool IsServed(const std::string& path) {
  FileDescriptor terminal;
  if (!terminal.Take(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))) return errno == EBUSY;
  struct flock other = WholeLock();
  return fcntl(terminal.Value(), F_GETLK, &other) == 0 && other.l_type != F_UNLCK;
}

class Pty final : public Line {
 public:
  Pty(const std::string& link, OldLink oldLink) : m_link(link), m_oldLink(oldLink) {}
  ~Pty() override { Close(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  std::string Open() override {
    const bool opened = m_master.Take(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) &&
                        grantpt(m_master.Value()) == 0 && unlockpt(m_master.Value()) == 0;
    if (!opened) return Fail(SystemError("no pseudo-terminal"));
    m_path = ptsname(m_master.Value());
    // Held open here: else the line would hang up each time that the console closes it.
    const bool held = m_slave.Take(::open(m_path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!held || !MakeRaw(m_slave.Value(), B9600)) return Fail(SystemError(m_path));
    // Whoever finds a link to it can tell it from another one that got its number later.
    struct flock own = WholeLock();
    fcntl(m_slave.Value(), F_SETLK, &own);
    const std::string error = MakeLink();
    return error.empty() ? error : Fail(error);
  }

  void Close() override {
    if (m_master.Value() >= 0) RemoveLink();
    m_slave.Close();
    m_master.Close();
  }

  int Descriptor() const override { return m_master.Value(); }
  const std::string& Path() const override { return m_path; }
  void LiftClaim() const override { ioctl(m_slave.Value(), TIOCNXCL); }

 private:
  std::string Fail(const std::string& error) {
    Close();
    return error;
  }

  std::string MakeLink() {
    if (m_link.empty()) return {};
    std::error_code error;
    // A fresh account has no folder for a console's ports. Where it can't be made, the making of the link tells why.
    if (const auto folder = std::filesystem::path(m_link).parent_path(); !folder.empty())
      std::filesystem::create_directories(folder, error);
    if (m_oldLink == OldLink::kPutBack) m_oldTarget = std::filesystem::read_symlink(m_link, error);
    if (m_oldTarget.string().starts_with(kPtyFolder)) {
      if (m_oldTarget != m_path && IsServed(m_oldTarget)) return m_link + ": leads to a line that is in use";
      m_oldTarget.clear();  // left by a program that was killed
    }
    if (std::filesystem::is_symlink(m_link, error)) std::filesystem::remove(m_link, error);
    std::filesystem::create_symlink(m_path, m_link, error);
    return error ? m_link + ": " + error.message() : std::string();
  }

  /// Leaves a link alone that another program has put there meanwhile.
  void RemoveLink() const {
    std::error_code error;
    if (m_link.empty() || std::filesystem::read_symlink(m_link, error) != m_path) return;
    std::filesystem::remove(m_link, error);
    if (!m_oldTarget.empty()) std::filesystem::create_symlink(m_oldTarget, m_link, error);
  }

  std::string m_link;
  OldLink m_oldLink;
  std::filesystem::path m_oldTarget;
  std::string m_path;
  FileDescriptor m_master;
  FileDescriptor m_slave;
};

constexpr std::pair<int, speed_t> kSpeeds[] = {{0, B9600},      {300, B300},      {1200, B1200},   {2400, B2400},
                                               {4800, B4800},   {9600, B9600},    {19200, B19200}, {38400, B38400},
                                               {57600, B57600}, {115200, B115200}};

class Port final : public Line {
 public:
  Port(const std::string& path, int bitsPerSecond) : m_path(path), m_bitsPerSecond(bitsPerSecond) {}

  std::string Open() override {
    if (!m_device.Take(::open(m_path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))) return SystemError(m_path);
    for (const auto& [bitsPerSecond, speed] : kSpeeds) {
      if (bitsPerSecond != m_bitsPerSecond) continue;
      return MakeRaw(m_device.Value(), speed) ? std::string() : SystemError(m_path);
    }
    return m_path + ": no such speed: " + std::to_string(m_bitsPerSecond);
  }

  void Close() override { m_device.Close(); }
  int Descriptor() const override { return m_device.Value(); }
  const std::string& Path() const override { return m_path; }

 private:
  std::string m_path;
  int m_bitsPerSecond;
  FileDescriptor m_device;
};

}  // namespace

std::unique_ptr<Line> MakePty(const std::string& link, OldLink oldLink) { return std::make_unique<Pty>(link, oldLink); }

std::unique_ptr<Line> MakePort(const std::string& path, int bitsPerSecond) {
  return std::make_unique<Port>(path, bitsPerSecond);
}

}  // namespace tarnwell::sim

#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <csignal>

namespace tarnwell::test {

/// While it lives no file of this process grows beyond that size, as on a full disk.
class FileLimit {
 public:
  explicit FileLimit(rlim_t size) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{std::min(size, m_before.rlim_max), m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileLimit() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FileLimit(const FileLimit&) = delete;
  FileLimit& operator=(const FileLimit&) = delete;

 private:
  rlimit m_before{};
  void (*m_handler)(int);  ///< a program that is started later would inherit that the signal is ignored
};

}  // namespace tarnwell::test

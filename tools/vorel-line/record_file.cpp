#include "tools/vorel-line/record_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

namespace tarnwell::vorel_line {

namespace {

constexpr std::size_t kLongestQueue = 100'000;  // records: hours of polling

int LocalDay(std::int64_t at) {
  const auto seconds = static_cast<std::time_t>(at / 1'000'000);
  std::tm local{};
  localtime_r(&seconds, &local);
  return local.tm_year * 366 + local.tm_yday;
}

std::string Failure(const std::string& path) { return path + ": " + std::strerror(errno); }

}  // namespace

RecordFile::RecordFile(FileRules rules) : m_rules(std::move(rules)) {}

RecordFile::~RecordFile() { Close(); }

std::string RecordFile::Open() {
  std::string error = OpenPath();
  if (error.empty()) m_thread = std::thread([this] { Work(); });
  return error;
}

// What is cut off is a record that a crash left unfinished; a file that isn't a recording is left alone.
std::string RecordFile::OpenPath() {
  m_descriptor = ::open(m_rules.path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (m_descriptor < 0) return Failure(m_rules.path);
  Decoder decoder;
  Record record;
  std::array<char, 65536> buffer;
  for (ssize_t count = 0; (count = ::read(m_descriptor, buffer.data(), buffer.size())) > 0;) {
    decoder.Feed({buffer.data(), static_cast<std::size_t>(count)});
    Decoder::Result result = Decoder::Result::kRecord;
    while (result == Decoder::Result::kRecord) {
      result = decoder.Next(record);
      if (result == Decoder::Result::kRecord) m_day = LocalDay(record.at);
    }
    if (result == Decoder::Result::kDamaged) {
      ::close(std::exchange(m_descriptor, -1));
      return m_rules.path + ": is there and is no whole recording";
    }
  }
  m_size = decoder.WholeBytes();
  m_encoder.Restart();
  if (ftruncate(m_descriptor, static_cast<off_t>(m_size)) != 0) return Failure(m_rules.path);
  return m_size != 0 || Append(Encoder::Header()) ? std::string() : Failure(m_rules.path);
}

void RecordFile::Put(Record record) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_queue.size() < kLongestQueue) {
      m_queue.push_back(std::move(record));
    } else {
      ++m_overflown;
    }
  }
  m_wake.notify_one();
}

void RecordFile::Close() {
  if (!m_thread.joinable()) return;
  {
    const std::lock_guard lock(m_mutex);
    m_ending = true;
  }
  m_wake.notify_one();
  m_thread.join();
  if (m_descriptor >= 0) ::close(std::exchange(m_descriptor, -1));
}

void RecordFile::Work() {
  for (;;) {
    std::deque<Record> records;
    {
      std::unique_lock lock(m_mutex);
      m_wake.wait(lock, [this] { return m_ending || !m_queue.empty(); });
      if (m_queue.empty()) return;
      records.swap(m_queue);
      m_lost += std::exchange(m_overflown, 0);
    }
    for (const Record& record : records) Write(record);
  }
}

void RecordFile::Write(const Record& record) {
  std::string bytes = Encode(record);
  if (NewFileDue(record, bytes.size())) {
    Rotate();
    bytes = Encode(record);
  }
  m_day = LocalDay(record.at);
  if (Append(bytes)) {
    m_lost = 0;
    return;
  }
  if (m_lost++ == 0) {
    m_reason = std::strerror(errno);
    std::fprintf(stderr, "vorel-line: %s: %s; the line goes on unrecorded\n", m_rules.path.c_str(), m_reason.c_str());
  }
}

std::string RecordFile::Encode(const Record& record) {
  std::string bytes;
  if (m_lost != 0) {
    m_encoder.Restart();
    const std::string note = "records lost: " + std::to_string(m_lost) + " (" + m_reason + ")";
    bytes = m_encoder.Encode({Kind::kNote, record.at, 0, note});
  }
  return bytes + m_encoder.Encode(record);
}

bool RecordFile::Append(const std::string& bytes) {
  if (m_descriptor < 0) return false;
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(m_descriptor, bytes.data() + written, bytes.size() - written);
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  if (written == bytes.size()) {
    m_size += written;
    return true;
  }
  const int reason = errno;
  // A part of a record would spoil the file for all that follow it.
  if (written > 0 && ftruncate(m_descriptor, static_cast<off_t>(m_size)) != 0) {
    ::close(std::exchange(m_descriptor, -1));
  }
  errno = reason;
  return false;
}

bool RecordFile::NewFileDue(const Record& record, std::size_t more) const {
  if (m_descriptor < 0 || m_size <= Encoder::Header().size()) return false;
  const bool full = m_rules.largest != 0 && m_size + more > m_rules.largest;
  return full || (m_rules.keep > 0 && m_day != LocalDay(record.at));
}

void RecordFile::Rotate() {
  ::close(std::exchange(m_descriptor, -1));
  const auto old = [this](int number) { return m_rules.path + "." + std::to_string(number); };
  int last = 1;
  while (::access(old(last).c_str(), F_OK) == 0 && (m_rules.keep == 0 || last < m_rules.keep)) ++last;
  for (; last > 1; --last) std::rename(old(last - 1).c_str(), old(last).c_str());
  std::rename(m_rules.path.c_str(), old(1).c_str());
  OpenPath();
}

}  // namespace tarnwell::vorel_line

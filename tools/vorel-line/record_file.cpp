#include "tools/vorel-line/record_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

#include "protocol/vocabulary.h"
#include "sim/ending.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/requests.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::size_t kLongestQueue = 100'000;     // records: hours of polling
constexpr std::uint64_t kRetryRotation = 100'000;  // bytes behind a failure
constexpr auto kCloseWithin = std::chrono::seconds(5);
const protocol::Request* const kIdentity[] = {&protocol::kModelQuery, &protocol::kPlatformQuery};
constexpr const char* kTooSlow = "the disk is too slow";

int LocalDay(std::int64_t at) {
  const auto seconds = static_cast<std::time_t>(at / 1'000'000);
  std::tm local{};
  localtime_r(&seconds, &local);
  return local.tm_year * 366 + local.tm_yday;
}

bool Exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

/// Whether the descriptor is of a regular file, and this program the only one that writes to it.
std::string RefuseOthers(int descriptor) {
  struct stat file {};
  if (fstat(descriptor, &file) != 0) return std::strerror(errno);
  if (!S_ISREG(file.st_mode)) return "is no regular file";
  return flock(descriptor, LOCK_EX | LOCK_NB) == 0 ? std::string() : "another recorder writes to it";
}

}  // namespace

RecordFile::RecordFile(FileRules rules)
    : m_rules(std::move(rules)), m_turns([this](const Turn& turn) { Learn(turn); }) {}

RecordFile::~RecordFile() { Close(); }

std::string RecordFile::Open() {
  const std::string error = OpenPath();
  if (!error.empty()) return m_rules.path + ": " + error;
  m_goesOn = true;
  m_weighty = false;
  m_thread = std::thread([this] { Work(); });
  return {};
}

std::string RecordFile::OpenPath() {
  // Without waiting: the other end of a pipe may never come.
  constexpr int kFlags = O_RDWR | O_APPEND | O_CLOEXEC | O_NONBLOCK;
  m_descriptor = ::open(m_rules.path.c_str(), kFlags);
  m_made = m_descriptor < 0 && errno == ENOENT;
  // A link that leads nowhere isn't followed: a file that nobody expects would be made there.
  if (m_made) m_descriptor = ::open(m_rules.path.c_str(), kFlags | O_CREAT | O_EXCL, 0644);
  if (m_descriptor < 0) return m_made && errno == EEXIST ? "is a link that leads nowhere" : std::strerror(errno);
  std::string error = RefuseOthers(m_descriptor);
  if (error.empty()) error = FindEnd();
  if (!error.empty()) ::close(std::exchange(m_descriptor, -1));
  return error;
}

// What is cut off is a record that a crash left unfinished. A recording that is damaged ahead of its end, as a loss of
// power leaves it, is set aside whole, and a file that isn't a recording is left alone.
std::string RecordFile::FindEnd() {
  Decoder decoder;
  Record record;
  std::array<char, 65536> buffer;
  ssize_t count = 0;
  while ((count = ::read(m_descriptor, buffer.data(), buffer.size())) > 0) {
    decoder.Feed({buffer.data(), static_cast<std::size_t>(count)});
    Decoder::Result result = Decoder::Result::kRecord;
    while ((result = decoder.Next(record)) == Decoder::Result::kRecord) {
      if (!m_goesOn) Learn(record);
    }
    if (sim::EndAsked()) return "ended while it was read";
    if (result == Decoder::Result::kDamaged)
      return decoder.WholeBytes() == 0 ? "is there and is no recording" : SetAside();
  }
  if (count < 0) return std::strerror(errno);
  return Begin(decoder.WholeBytes());
}

std::string RecordFile::Begin(std::uint64_t size) {
  m_size = size;
  m_encoder.Restart();
  return ftruncate(m_descriptor, static_cast<off_t>(size)) == 0 ? std::string() : std::strerror(errno);
}

std::string RecordFile::SetAside() {
  const std::string aside = m_rules.path + ".damaged";
  for (int number = 1;; ++number) {
    const std::string name = number == 1 ? aside : aside + std::to_string(number);
    if (Exists(name)) continue;
    if (std::rename(m_rules.path.c_str(), name.c_str()) != 0) return "is damaged, and can't be set aside";
    Complain(m_rules.path + ": is damaged, and goes on anew; the old one is " + name);
    ::close(std::exchange(m_descriptor, -1));
    return OpenPath();
  }
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

bool RecordFile::Close() {
  if (!m_thread.joinable()) return true;
  {
    const std::lock_guard lock(m_mutex);
    m_ending = true;
  }
  m_wake.notify_one();
  std::unique_lock lock(m_mutex);
  if (!m_idle.wait_for(lock, kCloseWithin, [this] { return m_finished; })) return false;
  lock.unlock();
  m_thread.join();
  if (m_descriptor < 0) return true;
  if (m_made && m_size == 0 && WhatBefell().empty()) ::unlink(m_rules.path.c_str());
  ::close(std::exchange(m_descriptor, -1));
  return true;
}

void RecordFile::Work() {
  for (;;) {
    std::deque<Record> records;
    std::uint64_t overflown = 0;
    {
      std::unique_lock lock(m_mutex);
      const auto isWoken = [this] { return m_ending || !m_queue.empty(); };
      if (m_syncAt) {
        m_wake.wait_until(lock, *m_syncAt, isWoken);
      } else {
        m_wake.wait(lock, isWoken);
      }
      if (m_queue.empty() && m_ending) break;
      records.swap(m_queue);
      overflown = std::exchange(m_overflown, 0);
    }
    for (const Record& record : records) Write(record);
    // They came behind these.
    if (overflown != 0) Lose(overflown, kTooSlow);
    SyncWhereDue();
  }
  Sync();
  const std::lock_guard lock(m_mutex);
  m_finished = true;
  m_idle.notify_one();
}

// A clock that is set back a little begins no new day, and one that was far ahead once doesn't stop them.
bool RecordFile::IsOtherDay(int day) const { return day > m_day || day < m_day - 1; }

void RecordFile::SyncWhereDue() {
  const bool isDue = m_syncAt && (m_weighty || std::chrono::steady_clock::now() >= *m_syncAt);
  m_weighty = false;
  if (isDue) Sync();
}

void RecordFile::Sync() {
  m_syncAt.reset();
  if (m_descriptor < 0) return;
  const bool failed = ::fdatasync(m_descriptor) != 0;
  if (failed && !m_syncFailed) Complain(m_rules.path + ": " + std::strerror(errno) + "; the last records may be lost");
  m_syncFailed = failed;
}

std::string RecordFile::WhatBefell() const {
  struct stat own {};
  struct stat named {};
  if (m_descriptor < 0 || fstat(m_descriptor, &own) != 0) return {};
  if (::stat(m_rules.path.c_str(), &named) != 0) {
    const bool isGone = errno == ENOENT || errno == ENOTDIR;
    return !isGone ? "" : own.st_nlink == 0 ? "was removed" : std::string(kRenamed);
  }
  if (own.st_dev != named.st_dev || own.st_ino != named.st_ino) return "was replaced";
  return own.st_size < static_cast<off_t>(m_size) ? "was shortened" : "";
}

void RecordFile::FollowName() {
  const std::string befell = WhatBefell();
  if (befell.empty()) return;
  m_befell = befell;
  Complain(m_rules.path + ": " + befell + " while it was written; the recording is begun anew");
  Sync();
  ::close(std::exchange(m_descriptor, -1));
  m_size = 0;
}

void RecordFile::Write(const Record& record) {
  FollowName();
  if (m_descriptor < 0) m_reason = OpenPath();
  const Encoder before = m_encoder;
  std::string bytes = Encode(record);
  if (NewFileDue(record, bytes.size())) {
    m_encoder = before;
    Rotate();
    bytes = Encode(record);
  }
  Learn(record);
  if (!Append(bytes)) return Lose(1, m_descriptor < 0 ? m_reason : std::strerror(errno));
  m_lost = 0;
  m_befell.clear();
}

void RecordFile::Learn(const Record& record) {
  if (const int day = LocalDay(record.at); IsOtherDay(day)) m_day = day;
  if (record.kind == Kind::kNote && !FormatOfNote(record.bytes).empty()) m_format = record.bytes;
  m_turns.Take(record);
}

void RecordFile::Learn(const Turn& turn) {
  m_weighty |= !turn.request.empty() && KindOf(turn.request) != RequestKind::kQuery;
  if (const auto move = m_addresses.Take(turn)) {
    const auto& [from, to] = *move;
    for (const protocol::Request* identity : kIdentity) {
      const auto found = m_known.find(from + identity->text);
      if (found == m_known.end()) continue;
      m_known[to + identity->text] = std::string(kKnown) + to + found->second.substr(kKnown.size() + 1);
      m_known.erase(found);
    }
  }
  if (turn.what != What::kAnswer || turn.fault != Fault::kNone) return;
  if (turn.request == protocol::kAlarmQuery.text)
    m_weighty |= std::exchange(m_alarms[turn.address], turn.bytes) != turn.bytes;
  for (const protocol::Request* identity : kIdentity) {
    if (turn.request != identity->text) continue;
    m_known[turn.address + identity->text] = std::string(kKnown) + turn.address + turn.bytes;
  }
}

void RecordFile::Lose(std::uint64_t count, const std::string& reason) {
  m_reason = reason;
  if (m_lost == 0) Complain(m_rules.path + ": " + m_reason + "; the line goes on unrecorded");
  m_lost += count;
}

std::string RecordFile::Encode(const Record& record) {
  const bool begins = m_size == 0 || !m_befell.empty();
  if (m_lost != 0 || begins) m_encoder.Restart();
  std::string bytes = m_size == 0 ? Encoder::Header() : std::string();
  const auto note = [&](const std::string& text) { bytes += m_encoder.Encode({Kind::kNote, record.at, 0, text, 0}); };
  if (m_lost != 0) note(std::string(kLost) + std::to_string(m_lost) + " (" + m_reason + ")");
  if (!m_befell.empty()) note(std::string(kAnew) + m_befell);
  if (!begins) return bytes + m_encoder.Encode(record);
  if (!m_format.empty()) note(m_format);
  for (const auto& [of, text] : m_known) note(text);
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
    if (!m_syncAt) m_syncAt = std::chrono::steady_clock::now() + m_rules.syncEvery;
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
  if (m_descriptor < 0 || m_size < std::max<std::uint64_t>(m_rotateFrom, 1)) return false;
  const bool full = m_rules.largest != 0 && m_size + more > m_rules.largest;
  return full || (m_rules.keep > 0 && IsOtherDay(LocalDay(record.at)));
}

void RecordFile::Rotate() {
  const auto old = [this](int number) { return m_rules.path + "." + std::to_string(number); };
  int last = 1;
  while (Exists(old(last)) && (m_rules.keep == 0 || last < m_rules.keep)) ++last;
  // From the oldest on, and no further than it goes: the next one would take the place of one that stayed.
  for (int number = last; number > 0; --number) {
    const std::string from = number > 1 ? old(number - 1) : m_rules.path;
    if (std::rename(from.c_str(), old(number).c_str()) == 0) continue;
    Complain(old(number) + ": " + std::strerror(errno) + "; no new file is begun");
    m_rotateFrom = m_size + kRetryRotation;
    return;
  }
  m_rotateFrom = 0;
  Sync();
  for (int more = m_rules.keep + 1; m_rules.keep > 0 && ::unlink(old(more).c_str()) == 0;) ++more;
  ::close(std::exchange(m_descriptor, -1));
  m_size = 0;
  m_reason = OpenPath();
}

}  // namespace tarnwell::vorel_line

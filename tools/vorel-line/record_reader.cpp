#include "tools/vorel-line/record_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "sim/ending.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/record_order.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::int64_t kLookEvery = 100'000;  // microseconds

using Sink = std::function<void(const Record&)>;

class Reader {
 public:
  Reader(std::string path, const Sink& sink) : m_path(std::move(path)), m_sink(sink) {}
  ~Reader() { Close(); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  Exit ReadAll() {
    if (!Open()) return kExitUnusable;
    const Found found = ReadOn();
    if (found == Found::kNothing) Complain("holds no record");
    return found == Found::kFailure ? kExitUnusable : found == Found::kDamage ? ComplainOfDamage() : kExitFine;
  }

  Exit Follow(const sigset_t& whileWaiting) {
    if (!IsThere(whileWaiting)) return kExitFine;
    if (!Open()) return kExitUnusable;
    if (!S_ISREG(Status().st_mode)) return Complain("is no file that could be followed");
    bool replaced = false;
    while (std::fflush(stdout) == 0 && !sim::EndAsked()) {
      const Found found = ReadOn();
      if (found == Found::kFailure) return kExitUnusable;
      const bool isBegunAnew = Status().st_size < static_cast<off_t>(m_decoder.WholeBytes());
      if (isBegunAnew && !Open()) return kExitUnusable;
      if (isBegunAnew) continue;
      if (found == Found::kDamage && !GoBack()) return ComplainOfDamage();
      if (found != Found::kNothing || (Status().st_size < m_offset && GoBack())) continue;
      if (replaced && !Open()) return kExitUnusable;
      // What was written ahead of the change of files is read first.
      replaced = !replaced && IsReplaced();
      if (!replaced) sim::Rest(whileWaiting, kLookEvery);
    }
    return kExitFine;
  }

 private:
  enum class Found { kNothing, kBytes, kDamage, kFailure };

  /// Waits until it is; false where a signal came first.
  bool IsThere(const sigset_t& whileWaiting) const {
    for (bool told = false; !sim::EndAsked(); sim::Rest(whileWaiting, kLookEvery)) {
      if (::access(m_path.c_str(), F_OK) == 0 || errno != ENOENT) return true;
      if (!std::exchange(told, true)) Complain("isn't there yet, and is waited for");
    }
    return false;
  }
  bool Open() {
    Close();
    m_descriptor = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    m_decoder = {};
    m_offset = 0;
    if (m_descriptor < 0) Complain(std::strerror(errno));
    return m_descriptor >= 0;
  }
  void Close() {
    if (m_descriptor >= 0) ::close(std::exchange(m_descriptor, -1));
  }

  /// All that is there by now.
  Found ReadOn() {
    std::array<char, 65536> buffer;
    Found found = Found::kNothing;
    ssize_t count = 0;
    while ((count = ::read(m_descriptor, buffer.data(), buffer.size())) > 0) {
      found = Found::kBytes;
      m_offset += count;
      m_decoder.Feed({buffer.data(), static_cast<std::size_t>(count)});
      Record record;
      Decoder::Result result = Decoder::Result::kRecord;
      while ((result = m_decoder.Next(record)) == Decoder::Result::kRecord) m_sink(record);
      if (result == Decoder::Result::kDamaged) return Found::kDamage;
    }
    if (count < 0) Complain(std::strerror(errno));
    return count < 0 ? Found::kFailure : found;
  }

  /// A recorder cuts off what another one left unfinished. False where this has been tried for this place.
  bool GoBack() {
    const auto whole = static_cast<off_t>(m_decoder.WholeBytes());
    if (std::exchange(m_wentBackTo, whole) == whole) return false;
    m_decoder.DropPart();
    m_offset = ::lseek(m_descriptor, whole, SEEK_SET);
    return m_offset == whole;
  }

  struct stat Status() const {
    struct stat status {};
    fstat(m_descriptor, &status);
    return status;
  }

  /// Whether another file stands under the name by now: the recorder began a new one.
  bool IsReplaced() const {
    struct stat named {};
    return ::stat(m_path.c_str(), &named) == 0 && Status().st_ino != named.st_ino;
  }

  Exit Complain(const std::string& what) const {
    vorel_line::Complain(m_path + ": " + what);
    return kExitUnusable;
  }
  Exit ComplainOfDamage() const {
    const std::uint64_t at = m_decoder.WholeBytes();
    Complain(at == 0 ? "is no recording" : "damaged behind byte " + std::to_string(at));
    return kExitDamaged;
  }

  std::string m_path;
  const Sink& m_sink;
  int m_descriptor = -1;
  off_t m_offset = 0;
  off_t m_wentBackTo = -1;
  Decoder m_decoder;
};

}  // namespace

Exit ReadFiles(const std::vector<std::string>& given, bool follow, const Sink& sink) {
  const std::vector<std::string> files = InOrderOfTime(given);
  Exit worst = kExitFine;
  for (std::size_t i = 0; i + (follow ? 1 : 0) < files.size(); ++i) {
    worst = std::max(worst, Reader(files[i], sink).ReadAll());
  }
  if (!follow || files.empty()) return worst;
  const sigset_t whileWaiting = sim::PrepareEnding();
  return std::max(worst, Reader(files.back(), sink).Follow(whileWaiting));
}

}  // namespace tarnwell::vorel_line

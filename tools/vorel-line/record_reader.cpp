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
    Found found = ReadOn();
    while (found == Found::kDamage && PassOver()) found = ReadOn();
    if (found == Found::kNothing && m_offset == 0) Complain("holds no record");
    return found == Found::kFailure ? kExitUnusable : TellDamage();
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
      if (found == Found::kDamage && !GoBack() && !PassOver()) return TellDamage();
      if (found != Found::kNothing || (Status().st_size < m_offset && GoBack())) continue;
      if (replaced && !Open()) return kExitUnusable;
      // What was written ahead of the change of files is read first.
      replaced = !replaced && IsReplaced();
      if (!replaced) sim::Rest(whileWaiting, kLookEvery);
    }
    return TellDamage();
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
    TellDamage();
    Close();
    m_descriptor = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    m_decoder = {};
    m_offset = 0;
    m_told = 0;
    m_places = 0;
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
    for (;;) {
      Record record;
      Decoder::Result result = Decoder::Result::kRecord;
      while ((result = m_decoder.Next(record)) == Decoder::Result::kRecord) HandOn(record);
      if (result == Decoder::Result::kDamaged) return Found::kDamage;
      const ssize_t count = ::read(m_descriptor, buffer.data(), buffer.size());
      if (count < 0) Complain(std::strerror(errno));
      if (count <= 0) return count < 0 ? Found::kFailure : found;
      found = Found::kBytes;
      m_offset += count;
      m_decoder.Feed({buffer.data(), static_cast<std::size_t>(count)});
    }
  }

  void HandOn(const Record& record) {
    const std::uint64_t unreadable = m_decoder.Unreadable();
    const std::uint64_t more = unreadable - std::exchange(m_told, unreadable);
    if (more != 0) m_sink({Kind::kNote, record.at, 0, std::to_string(more) + std::string(kUnreadable), record.offset});
    m_sink(record);
  }

  /// Goes on behind damage. False: the file is no recording.
  bool PassOver() {
    if (m_places++ == 0) m_firstPlace = m_decoder.WholeBytes();
    if (m_firstPlace == 0) return false;
    m_decoder.PassOver();
    return true;
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
  /// What couldn't be read of the file that is open.
  Exit TellDamage() {
    if (m_places == 0) return m_worst;
    const std::string where =
        m_places == 1 ? "damaged" : "damaged at " + std::to_string(m_places) + " places, the first";
    const std::string bytes = std::to_string(m_decoder.Unreadable()) + std::string(kUnreadable);
    Complain(m_firstPlace == 0 ? "is no recording"
                               : where + " behind byte " + std::to_string(m_firstPlace) + ": " + bytes);
    return m_worst = kExitDamaged;
  }

  std::string m_path;
  const Sink& m_sink;
  int m_descriptor = -1;
  off_t m_offset = 0;
  off_t m_wentBackTo = -1;
  Decoder m_decoder;
  // What is told of damage.
  int m_places = 0;
  std::uint64_t m_firstPlace = 0;  // 0: at the very begin
  std::uint64_t m_told = 0;        // bytes
  Exit m_worst = kExitFine;
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

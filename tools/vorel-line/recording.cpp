#include "tools/vorel-line/recording.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>

namespace tarnwell::vorel_line {

namespace {

constexpr std::string_view kHeader = "vorel-line recording 1\n";
static_assert(kHeader.starts_with(kRecordingHead));
constexpr std::int64_t kStep = 100;                // microseconds
constexpr std::int64_t kClockEvery = 600'000'000;  // microseconds
constexpr std::size_t kClockBytes = 10;
// Kind, since and lasted, which are 0, and size of a time of day: by them it is found behind damage.
constexpr std::string_view kClockHead("\4\0\0\12", 4);
constexpr std::size_t kClockEnd = kClockHead.size() + kClockBytes;  // its check stands here
constexpr int kMostOffset = 24 * 60;
constexpr std::size_t kCompactAt = 1 << 20;

void PutNumber(std::string& bytes, std::uint64_t value) {
  for (; value >= 0x80; value >>= 7) bytes += static_cast<char>(value | 0x80);
  bytes += static_cast<char>(value);
}

constexpr auto kChecks = [] {
  std::array<std::uint8_t, 256> checks{};
  for (unsigned byte = 0; byte < checks.size(); ++byte) {
    unsigned crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x80) != 0 ? (crc << 1) ^ 0x131 : crc << 1;
    checks[byte] = static_cast<std::uint8_t>(crc);
  }
  return checks;
}();

char Check(std::string_view bytes) {
  std::uint8_t crc = 0xFF;
  for (const char byte : bytes) crc = kChecks[crc ^ static_cast<std::uint8_t>(byte)];
  return static_cast<char>(crc);
}

int LocalOffset(std::int64_t at) {
  const auto seconds = static_cast<std::time_t>(at / 1'000'000);
  std::tm local{};
  localtime_r(&seconds, &local);
  return static_cast<int>(local.tm_gmtoff / 60);
}

std::string Whole(Kind kind, std::uint64_t since, std::uint64_t lasted, std::string_view text) {
  std::string bytes(1, static_cast<char>(kind));
  PutNumber(bytes, since);
  PutNumber(bytes, lasted);
  PutNumber(bytes, text.size());
  bytes += text;
  return bytes + Check(bytes);
}

void PutFixed(std::string& bytes, std::uint64_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
}

std::int64_t Fixed(std::string_view bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return static_cast<std::int64_t>(value);
}

/// Takes numbers from the front of a text. What goes beyond its end, or is no number, is told by Short or Wrong.
class Scan {
 public:
  explicit Scan(std::string_view data) : m_data(data) {}

  std::uint64_t Number() {
    std::uint64_t value = 0;
    for (int shift = 0;; shift += 7) {
      if (m_at >= m_data.size()) return m_short = true, 0;
      const auto byte = static_cast<unsigned char>(m_data[m_at++]);
      value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
      if (byte < 0x80) return value;
      if (shift > 42) return m_wrong = true, 0;
    }
  }
  std::string_view Bytes(std::size_t count) {
    if (m_data.size() - m_at < count) return m_short = true, std::string_view();
    return m_data.substr((m_at += count) - count, count);
  }
  std::size_t At() const { return m_at; }
  bool Short() const { return m_short; }
  bool Wrong() const { return m_wrong; }

 private:
  std::string_view m_data;
  std::size_t m_at = 0;
  bool m_short = false;
  bool m_wrong = false;
};

}  // namespace

std::string Encoder::Header() { return std::string(kHeader); }

std::string Encoder::Encode(const Record& record) {
  const std::int64_t at = record.at / kStep * kStep;
  std::string bytes;
  const int offset = LocalOffset(at);
  const bool clockDue = !m_clockAt || at < m_last || at - *m_clockAt > kClockEvery || offset != m_offset;
  if (clockDue) {
    std::string clock;
    PutFixed(clock, static_cast<std::uint64_t>(at), 8);
    PutFixed(clock, static_cast<std::uint64_t>(offset), 2);
    bytes = Whole(Kind::kClock, 0, 0, clock);
    m_clockAt = m_last = at;
    m_offset = offset;
  }
  const auto since = static_cast<std::uint64_t>((at - m_last) / kStep);
  m_last = at;
  return bytes + Whole(record.kind, since, static_cast<std::uint64_t>(std::max<std::int64_t>(record.lasted, 0) / kStep),
                       record.bytes);
}

void Decoder::Feed(std::string_view bytes) {
  if (m_at > kCompactAt) {
    m_data.erase(0, m_at);
    m_at = 0;
  }
  m_data += bytes;
  m_fed += bytes.size();
}

void Decoder::DropPart() {
  m_data.clear();
  m_at = 0;
  m_fed = m_taken;
  m_passing = false;
}

Decoder::Result Decoder::TakeHeader() {
  const std::string_view data(m_data);
  if (data.substr(0, kHeader.size()) != kHeader.substr(0, data.size())) return Result::kDamaged;
  if (data.size() < kHeader.size()) return Result::kEnd;
  m_at = kHeader.size();
  m_taken = kHeader.size();
  m_headerRead = true;
  return Result::kRecord;
}

/// Goes on to the next time of day, if that has been fed. Texts may hold its head by chance, so offset and check
/// decide.
bool Decoder::FindClock() {
  const std::string_view data = m_data;
  std::size_t at = m_at;
  for (; (at = data.find(kClockHead, at)) != std::string_view::npos && data.size() - at > kClockEnd; ++at) {
    const auto offset = static_cast<std::int16_t>(Fixed(data.substr(at + kClockEnd - 2, 2)));
    if (std::abs(offset) > kMostOffset || data[at + kClockEnd] != Check(data.substr(at, kClockEnd))) continue;
    const std::uint64_t found = m_fed - (data.size() - at);
    m_unreadable += found - m_taken;
    m_taken = found;
    m_at = at;
    m_passing = false;
    return true;
  }
  m_at = std::max(m_at, data.size() - std::min(data.size(), kClockEnd));  // a part of one may stand at the end
  return false;
}

Decoder::Result Decoder::Next(Record& record) {
  if (!m_headerRead) {
    const Result header = TakeHeader();
    if (header != Result::kRecord) return header;
  }
  if (m_passing && !FindClock()) return Result::kEnd;
  for (;;) {
    const std::string_view data = std::string_view(m_data).substr(m_at);
    if (data.empty()) return Result::kEnd;
    Scan scan(data);
    const auto kind = static_cast<Kind>(scan.Bytes(1)[0]);
    const std::uint64_t since = scan.Number();
    const std::uint64_t lasted = scan.Number();
    const std::uint64_t size = scan.Number();
    if (kind < Kind::kConsole || kind > Kind::kClock || scan.Wrong()) return Result::kDamaged;
    if (scan.Short()) return Result::kEnd;
    if (size > kLongestRecord) return Result::kDamaged;
    const std::string_view text = scan.Bytes(size);
    const std::size_t end = scan.At();
    const std::string_view check = scan.Bytes(1);
    if (scan.Short()) return Result::kEnd;
    if (check[0] != Check(data.substr(0, end))) return Result::kDamaged;
    const bool isClock = kind == Kind::kClock;
    if (isClock ? text.size() != kClockBytes : !m_clockRead) return Result::kDamaged;
    m_at += end + 1;
    m_taken += end + 1;
    if (isClock) {
      m_last = Fixed(text.substr(0, 8));
      m_offset = static_cast<std::int16_t>(Fixed(text.substr(8)));
      m_clockRead = true;
      continue;
    }
    // Sums of what a damaged file tells may leave the range; they wrap, and are told as they are.
    m_last = static_cast<std::int64_t>(static_cast<std::uint64_t>(m_last) + since * kStep);
    record = {kind, m_last, static_cast<std::int64_t>(lasted * kStep), std::string(text), m_offset};
    return Result::kRecord;
  }
}

}  // namespace tarnwell::vorel_line

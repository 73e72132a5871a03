#include "tools/vorel-line/turns.h"

#include <algorithm>
#include <array>
#include <utility>

#include "link/frame_codec.h"
#include "link/send_command.h"
#include "tools/vorel-line/words.h"

namespace tarnwell::vorel_line {

namespace {

constexpr auto kReplyWindow = static_cast<std::int64_t>(link::kReplyWindow * 1e6);  // microseconds
constexpr std::int64_t kRetryWithin = 2'500'000;
constexpr std::size_t kLongestGathered = 255;

bool IsQuery(std::string_view request) { return request.ends_with('?'); }

}  // namespace

std::string_view FaultText(Fault fault) {
  constexpr std::array<std::string_view, kFaults> kTexts = {
      "", "no answer", "cut short", "bad check character", "from another address", "not what was asked", "too long"};
  return kTexts[static_cast<std::size_t>(fault)];
}

void Turns::Take(const Record& record) {
  m_offset = record.offset;
  if (m_open && record.at > m_askedUntil + kReplyWindow) CloseOpen();
  switch (record.kind) {
    case Kind::kConsole:
      return TakeConsole(record);
    case Kind::kDevice:
      return TakeDevice(record);
    case Kind::kNote:
    case Kind::kClock:
      // Where the port refused one its old one stays.
      if (record.bytes.starts_with(kFormat) && record.bytes.find(' ', kFormat.size()) == std::string::npos) {
        m_settings = record.bytes.substr(kFormat.size());
      }
      m_sink({What::kNote, record.at, record.offset, record.bytes, {}});
  }
}

void Turns::TakeConsole(const Record& record) {
  for (const char byte : record.bytes) {
    if (byte == link::kOpeningBrace && !m_fromConsole.empty()) {
      m_sink({What::kNoise, record.at, record.offset, std::exchange(m_fromConsole, {}), {}});
    }
    m_fromConsole += byte;
    if (byte != link::kClosingBrace) continue;
    const std::string frame = std::exchange(m_fromConsole, {});
    if (link::CheckReplyFrame(frame, 0, {})) {
      Ask(record, frame);
    } else {
      m_sink({What::kNoise, record.at, record.offset, frame, {}});
    }
  }
  if (m_fromConsole.size() > kLongestGathered) {
    m_sink({What::kNoise, record.at, record.offset, std::exchange(m_fromConsole, {}), {}});
  }
}

void Turns::Ask(const Record& record, std::string_view frame) {
  if (m_open) CloseOpen();
  const bool again = m_failed && frame == m_frame && m_attempt < TriesFor(m_request) &&
                     record.at - m_askedAt < kRetryWithin + kReplyWindow;
  m_attempt = again ? m_attempt + 1 : 1;
  m_frame = frame;
  m_request = link::ReplyPayload(frame);
  m_askedAt = record.at;
  // The console waits for its transmit window, and counts from there.
  m_askedUntil = record.at + static_cast<std::int64_t>(1e6 * link::TransmitTime(m_settings, frame.size()));
  m_failed = false;
  m_open = true;
  m_echoed = false;
  m_gathered.clear();
  Tell(What::kAsked, record.at, m_frame);
}

void Turns::TakeDevice(const Record& record) {
  for (std::size_t at = 0; at < record.bytes.size();) {
    const std::size_t brace = record.bytes.find(link::kClosingBrace, at);
    const std::size_t end = brace == std::string::npos ? record.bytes.size() : brace + 1;
    Answer(record, std::string_view(record.bytes).substr(at, end - at));
    at = end;
  }
}

void Turns::Answer(const Record& record, std::string_view bytes) {
  if (!m_open) return Tell(What::kLate, record.at, std::string(bytes));
  if (m_gathered.empty()) m_gatheredAt = record.at;
  m_gathered += bytes;
  m_gatheredUntil = record.at + record.lasted;
  if (IsEcho()) {
    m_echoed = true;
    if (IsQuery(m_request)) m_hearsItself = true;
    return Tell(What::kEcho, m_gatheredAt, std::exchange(m_gathered, {}));
  }
  const std::size_t most = MostReply(m_request) + link::kFrameOverhead;
  if (m_gathered.back() == link::kClosingBrace || m_gathered.size() >= most) CloseOpen();
}

bool Turns::IsEcho() const { return !m_echoed && m_gathered == m_frame && (IsQuery(m_request) || m_hearsItself); }

Fault Turns::Judge() const {
  if (m_gathered.empty()) return Fault::kSilent;
  if (m_gathered.size() > MostReply(m_request) + link::kFrameOverhead) return Fault::kLong;
  if (m_gathered.back() != link::kClosingBrace) {
    return m_gathered.size() == MostReply(m_request) + link::kFrameOverhead ? Fault::kLong : Fault::kCut;
  }
  if (!link::CheckReplyFrame(m_gathered, 0, {})) return Fault::kCheck;
  const auto address = static_cast<std::uint8_t>(m_frame[1] - link::AddressByte(0));
  if (!link::CheckReplyFrame(m_gathered, address, {})) return Fault::kAddress;
  return link::CheckReplyFrame(m_gathered, address, ExpectedFor(m_request)) ? Fault::kNone : Fault::kOther;
}

void Turns::CloseOpen(bool asEnd) {
  m_open = false;
  const Fault fault = Judge();
  if (asEnd && fault == Fault::kSilent) return;
  m_failed = fault != Fault::kNone;
  const bool silent = fault == Fault::kSilent;
  Tell(silent ? What::kSilence : What::kAnswer, silent ? m_askedUntil + kReplyWindow : m_gatheredAt,
       std::exchange(m_gathered, {}), fault);
}

void Turns::End() {
  if (m_open) CloseOpen(true);
}

void Turns::Tell(What what, std::int64_t at, std::string bytes, Fault fault) {
  const bool last = fault != Fault::kNone && m_attempt >= TriesFor(m_request);
  m_sink({what, at, m_offset, std::move(bytes), m_request, m_frame.size() > 1 ? m_frame[1] : '@', m_attempt, last,
          fault, std::max<std::int64_t>(at - m_askedAt, 0)});
}

}  // namespace tarnwell::vorel_line

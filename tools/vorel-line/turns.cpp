#include "tools/vorel-line/turns.h"

#include <algorithm>
#include <array>
#include <utility>

#include "link/frame_codec.h"
#include "link/send_command.h"
#include "tools/vorel-line/requests.h"

namespace tarnwell::vorel_line {

namespace {

constexpr auto kReplyWindow = static_cast<std::int64_t>(link::kReplyWindow * 1e6);  // microseconds
constexpr auto kWithoutHolds = static_cast<std::int64_t>(link::kWithoutHolds * 1e6);
constexpr std::int64_t kRetryWithin = 2'500'000;
constexpr std::int64_t kStray = 1'000'000;  // bytes of a request that isn't whole by then never will be
constexpr std::size_t kLongestGathered = 255;

}  // namespace

std::string_view FaultText(Fault fault) {
  constexpr std::array<std::string_view, kFaults> kTexts = {"",
                                                            "no answer",
                                                            "cut short",
                                                            "no whole frame",
                                                            "bad check character",
                                                            "from another address",
                                                            "not what was asked",
                                                            "too long"};
  return kTexts[static_cast<std::size_t>(fault)];
}

void Turns::Take(const Record& record) {
  m_offset = record.offset;
  m_now = record.at;
  if (m_open && record.kind == Kind::kNote && IsGap(record.bytes)) DropOpen();
  if (m_open && record.at > m_asking.until + kReplyWindow) CloseOpen(record.at);
  if (record.at - m_fromConsoleAt > kStray) TellNoise();
  switch (record.kind) {
    case Kind::kConsole:
      return TakeConsole(record);
    case Kind::kDevice:
      return TakeDevice(record);
    case Kind::kNote:
    case Kind::kClock:
      if (const std::string_view format = FormatOfNote(record.bytes); !format.empty()) m_settings = format;
      TakeNote(record);
  }
}

void Turns::TakeNote(const Record& record) {
  const bool begins = record.bytes == kStarted;
  const bool ends = begins || record.bytes == kEnded;
  // Nothing more comes for what was asked, but silence.
  if (m_open && (ends || (record.bytes == kDeviceGone && !m_gathered.empty()))) CloseOpen(record.at);
  // The console can't ask a device that is away.
  if (record.bytes == kDeviceGone && !WentUnasked(record.at)) m_asking.asked = true;
  if (ends && m_asking.copyAt) TellCopy(!begins && WentUnasked(record.at), record.at);
  if (begins) m_echoes = {};
  const bool isKnown = record.bytes.starts_with(kKnown) && record.bytes.size() > kKnown.size();
  m_sink({What::kNote, record.at, record.offset, record.bytes, {}, isKnown ? record.bytes[kKnown.size()] : '@'});
}

void Turns::TellNoise() {
  if (!m_fromConsole.empty()) m_sink({What::kNoise, m_fromConsoleAt, m_offset, std::exchange(m_fromConsole, {}), {}});
}

void Turns::TakeConsole(const Record& record) {
  for (const char byte : record.bytes) {
    if (byte == link::kOpeningBrace) TellNoise();
    if (m_fromConsole.empty()) m_fromConsoleAt = record.at;
    m_fromConsole += byte;
    if (byte != link::kClosingBrace) continue;
    if (!link::CheckReplyFrame(m_fromConsole, 0, {})) {
      TellNoise();
      continue;
    }
    Ask(record, m_fromConsole);
    m_fromConsole.clear();
  }
  if (m_fromConsole.size() > kLongestGathered) TellNoise();
}

void Turns::Ask(const Record& record, std::string_view frame) {
  if (m_open) CloseOpen(record.at);
  if (m_asking.copyAt) SettleCopy(record, frame);
  const bool again = m_asking.failed && frame == m_asking.frame && m_asking.attempt < TriesFor(m_asking.request) &&
                     record.at - m_asking.at < kRetryWithin + (m_asking.copied ? 2 : 1) * kReplyWindow;
  const int attempt = again ? m_asking.attempt + 1 : 1;
  const std::int64_t firstAt = again ? m_asking.firstAt : record.at;
  const bool asked = again && m_asking.asked;
  // The console waits for its transmit window, and counts from there.
  const auto window = static_cast<std::int64_t>(1e6 * link::TransmitTime(m_settings, frame.size()));
  m_asking = {std::string(frame),
              std::string(link::ReplyPayload(frame)),
              record.at,
              firstAt,
              record.at + window,
              attempt,
              asked,
              {},
              {},
              {},
              {}};
  m_open = true;
  m_gathered.clear();
  Tell(What::kAsked, record.at, m_asking.frame);
}

void Turns::SettleCopy(const Record& next, std::string_view frame) {
  if (!m_asking.asked && frame.substr(2, frame.size() - link::kFrameOverhead) == link::kEchoQuery &&
      frame[1] == m_asking.frame[1]) {
    m_asking.asked = true;
    m_asked = std::exchange(m_asking, {});
    return;
  }
  // A console that took the copy for an echo would ask, or where it can't ask any more still wait.
  TellCopy(MayAsk() || (!m_asking.asked && next.at < m_asking.until + kReplyWindow), next.at);
}

bool Turns::MayAsk() const { return !m_asking.asked && TriesFor(m_asking.request) > 1; }

bool Turns::WentUnasked(std::int64_t now) const {
  return MayAsk() && (m_asking.isLate || now > m_asking.until + kRetryWithin);
}

void Turns::TellCopy(bool confirmed, std::int64_t now) {
  Tell(confirmed ? What::kAnswer : What::kEcho, *std::exchange(m_asking.copyAt, std::nullopt), m_asking.frame);
  m_asking.failed = !confirmed;
  if (!confirmed) TellNothing(now);
}

void Turns::TellNothing(std::int64_t now) {
  const std::int64_t windowEnd = m_asking.until + kReplyWindow;
  if (now < windowEnd) return Tell(What::kDropped, now, {});
  Tell(What::kSilence, windowEnd, {}, Fault::kSilent);
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
  if (IsCopy()) {
    m_asking.copied = true;
    m_gathered.clear();
    if (CopyMayConfirm()) {
      m_asking.copyAt = m_gatheredAt;
      m_asking.isLate = m_gatheredUntil > m_asking.until && !m_echoes.HearsItself();
      return;
    }
    m_echoes.Heard();
    return Tell(What::kEcho, m_gatheredAt, m_asking.frame);
  }
  const std::size_t most = MostReply(m_asking.request) + link::kFrameOverhead;
  if (m_gathered.back() == link::kClosingBrace || m_gathered.size() >= most) CloseOpen(m_gatheredUntil);
}

bool Turns::CopyMayConfirm() const { return link::CopyMayConfirm(m_asking.request, ExpectedFor(m_asking.request)); }

bool Turns::IsCopy() const {
  return !m_asking.copied && m_gathered == m_asking.frame &&
         (!CopyMayConfirm() || m_echoes.MayBeEcho(m_gatheredUntil <= m_asking.until, m_now));
}

Fault Turns::Judge() const {
  if (m_gathered.empty()) return Fault::kSilent;
  if (m_gathered.size() > MostReply(m_asking.request) + link::kFrameOverhead) return Fault::kLong;
  if (m_gathered.back() != link::kClosingBrace) {
    return m_gathered.size() == MostReply(m_asking.request) + link::kFrameOverhead ? Fault::kLong : Fault::kCut;
  }
  const bool isFrame = m_gathered.find(link::kOpeningBrace) == 0 && m_gathered.rfind(link::kOpeningBrace) == 0;
  if (!isFrame) return Fault::kFrame;
  if (!link::CheckReplyFrame(m_gathered, 0, {})) return Fault::kCheck;
  const auto address = static_cast<std::uint8_t>(m_asking.frame[1] - link::AddressByte(0));
  if (!link::CheckReplyFrame(m_gathered, address, {})) return Fault::kAddress;
  return link::CheckReplyFrame(m_gathered, address, ExpectedFor(m_asking.request)) ? Fault::kNone : Fault::kOther;
}

void Turns::CloseOpen(std::int64_t now) {
  m_open = false;
  if (m_gathered.empty() && m_asking.copyAt) return;
  if (m_gathered.empty()) {
    m_asking.failed = true;
    TellNothing(now);
  } else {
    CloseAnswered();
  }
  if (!m_asked) return;
  const bool withoutEcho = !m_asking.failed && !m_asking.copied;
  m_asking = *std::exchange(m_asked, std::nullopt);
  TellCopy(withoutEcho, now);
}

void Turns::CloseAnswered() {
  if (m_asking.copyAt) Tell(What::kEcho, *std::exchange(m_asking.copyAt, std::nullopt), m_asking.frame);
  const Fault fault = Judge();
  m_asking.failed = fault != Fault::kNone;
  if (fault == Fault::kNone && !m_asking.copied && !CopyMayConfirm()) m_echoes.AnsweredWithout(m_now + kWithoutHolds);
  Tell(What::kAnswer, m_gatheredAt, std::exchange(m_gathered, {}), fault);
}

/// What came for it stood where nothing could be read: that is no silence.
void Turns::DropOpen() {
  m_gathered.clear();
  CloseOpen(m_asking.at);
}

void Turns::End() {
  TellNoise();
  if (m_open) CloseOpen(m_now);
  if (m_asking.copyAt) TellCopy(WentUnasked(m_now), m_now);
}

void Turns::Tell(What what, std::int64_t at, std::string bytes, Fault fault) {
  const bool last = fault != Fault::kNone && m_asking.attempt >= TriesFor(m_asking.request);
  m_sink({what, at, m_offset, std::move(bytes), m_asking.request, m_asking.frame.size() > 1 ? m_asking.frame[1] : '@',
          m_asking.attempt, last, fault, std::max<std::int64_t>(at - m_asking.at, 0), m_asking.firstAt});
}

}  // namespace tarnwell::vorel_line

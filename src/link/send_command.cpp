#include "link/send_command.h"

#include <array>
#include <utility>

#include "link/frame_codec.h"

namespace tarnwell::link {

namespace {

constexpr int kHandshakingRtsCts = 2;
constexpr double kClearToSendWait = 0.1;
constexpr std::uint8_t kEchoQueryReply = 20;
constexpr double kQuickReply = 0.05;

double Speed(std::string_view settings) {
  constexpr std::array<std::pair<std::string_view, double>, 3> kSlowSpeeds = {
      {{"300", 300.0}, {"120", 1200.0}, {"240", 2400.0}}};
  for (const auto& [digits, speed] : kSlowSpeeds) {
    if (settings.substr(0, digits.size()) == digits) return speed;
  }
  return 9600.0;
}

double BitsPerCharacter(std::string_view settings) {
  double bits = 12.0;
  for (const std::string_view saving : {",n", ",1", ",7"}) {
    if (settings.find(saving) != std::string_view::npos) bits -= 1.0;
  }
  return bits;
}

}  // namespace

double TransmitTime(std::string_view settings, std::size_t frameBytes) {
  return BitsPerCharacter(settings) * static_cast<double>(frameBytes) / Speed(settings) + kTransmitMargin;
}

bool SerialLink::SendCommand(std::string_view command, std::string& reply, std::uint8_t tries, std::uint8_t maxReply,
                             std::string_view expected) {
  const std::string frame = BuildRequestFrame(command, m_shared.ConnectAddress);
  Request request{frame, expected, maxReply, CopyMayConfirm(command, expected)};
  // Of a request with one try the outcome isn't used, and a new address makes the device deaf to this one.
  request.mayAsk = tries > 1;
  m_shared.CommsLost = !Exchange(request, tries, reply);
  return !m_shared.CommsLost;
}

bool SerialLink::Exchange(Request& request, int tries, std::string& reply) {
  for (int attempt = 0; attempt < tries; ++attempt) {
    const Outcome outcome = Try(request, reply);
    if (outcome == Outcome::kAnswered || outcome == Outcome::kEchoedAndAnswered) return true;
    EndFailedTry();
    if (outcome != Outcome::kCopyAlone || !std::exchange(request.mayAsk, false)) continue;
    if (AnswersWithoutEcho()) {
      reply = ReplyPayload(request.frame);
      return true;
    }
    EndFailedTry();
  }
  return false;
}

bool SerialLink::AnswersWithoutEcho() {
  const std::string frame = BuildRequestFrame(kEchoQuery, m_shared.ConnectAddress);
  std::string reply;
  return Try({frame, kEchoQueryExpected, kEchoQueryReply, false}, reply) == Outcome::kAnswered;
}

SerialLink::Outcome SerialLink::Try(const Request& request, std::string& reply) {
  if (!PassGates()) return Outcome::kFailed;
  Transmit(request.frame);
  reply.clear();
  const Gathered gathered = Gather(request);
  if (!request.copyMayConfirm && gathered.copied) m_echoes.Heard();
  const std::string& received = gathered.bytes;
  if (gathered.copied && received.empty() && request.copyMayConfirm) return Outcome::kCopyAlone;
  if (!CheckReplyFrame(received, m_shared.ConnectAddress, request.expected)) return Outcome::kFailed;
  reply = ReplyPayload(received);
  const int more = gathered.early - static_cast<int>(received.size());
  if (gathered.copied || more > 0) return Outcome::kEchoedAndAnswered;
  if (!request.copyMayConfirm && !m_shared.PortRS232) {
    m_echoes.AnsweredWithout(m_timing.MakeDeadline(kWithoutHolds));
    m_deviceIsQuick = more == 0;
  }
  return Outcome::kAnswered;
}

bool SerialLink::PassGates() {
  if (!m_port.DevicePresent()) return false;
  const bool waitsForCts = m_shared.PortRS232 && m_port.Handshaking() == kHandshakingRtsCts;
  if (waitsForCts && !m_port.CTSHolding()) {
    AwaitClearToSend();
    return false;
  }
  if (m_port.OutBufferCount() != 0) return false;
  // What lay unread can't be taken for the reply.
  if (m_port.InBufferCount() != 0) m_port.DiscardInput();
  return true;
}

// Waits as for an answer, so that the windows are drawn meanwhile. Bytes that come don't end it.
void SerialLink::AwaitClearToSend() {
  const Deadline end = m_timing.MakeDeadline(kClearToSendWait);
  while (!m_timing.DeadlineReached(end)) m_port.AwaitInput(m_timing.MillisecondsLeft(end));
}

void SerialLink::Transmit(std::string_view frame) {
  const bool drivesRts = !m_shared.PortRS232 && m_shared.RS485Control == 1;
  if (drivesRts) m_port.SetRTSEnable(true);
  const Deadline sent = m_timing.MakeDeadline(TransmitTime(m_port.Settings(), frame.size()));
  m_timing.DelayBlocking(kTransmitLead);
  m_port.Output(frame);
  m_timing.WaitForDeadline(sent);
  if (drivesRts) m_port.SetRTSEnable(false);
}

SerialLink::Gathered SerialLink::Gather(const Request& request) {
  Deadline windowEnd = m_timing.MakeDeadline(kReplyWindow);
  const int early = m_shared.PortRS232 ? 0 : m_port.InBufferCount();
  const bool isEarly = early >= static_cast<int>(request.frame.size());
  const bool dropsCopy =
      !m_shared.PortRS232 && (!request.copyMayConfirm || m_echoes.MayBeEcho(isEarly, m_timing.MakeDeadline(0)));
  const std::size_t limit = request.maxReply + kFrameOverhead;
  std::string received;
  bool copied = false;
  while (!m_timing.DeadlineReached(windowEnd)) {
    if (m_port.InBufferCount() <= 0) {
      m_port.AwaitInput(m_timing.MillisecondsLeft(windowEnd));
      continue;
    }
    received += static_cast<char>(m_port.Input());
    if (dropsCopy && !copied && received == request.frame) {
      copied = true;
      received.clear();
      if (EndsSoon(request, isEarly)) windowEnd = m_timing.MakeDeadline(kQuickReply);
      continue;
    }
    if (received.size() == limit || received.back() == kClosingBrace) break;
  }
  return {received, copied, early};
}

bool SerialLink::EndsSoon(const Request& request, bool isEarly) const {
  return request.copyMayConfirm && (m_deviceIsQuick || !isEarly) && !m_echoes.HearsItself();
}

void SerialLink::EndFailedTry() {
  m_port.DiscardInput();
  m_port.DiscardOutput();
  m_timing.DelayBlocking(kRetryPause);
}

}  // namespace tarnwell::link

#include "link/send_command.h"

#include <array>
#include <utility>

#include "link/frame_codec.h"

namespace tarnwell::link {

namespace {

constexpr int kHandshakingRtsCts = 2;
constexpr double kClearToSendWait = 0.1;
constexpr char kQueryMark = '?';

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
  for (int attempt = 0; attempt < tries; ++attempt) {
    if (Try(frame, reply, maxReply, expected)) {
      m_shared.CommsLost = false;
      return true;
    }
    EndFailedTry();
  }
  m_shared.CommsLost = true;
  return false;
}

bool SerialLink::Try(std::string_view frame, std::string& reply, std::uint8_t maxReply, std::string_view expected) {
  if (!PassGates()) return false;
  Transmit(frame);
  reply.clear();
  const bool isQuery = frame[frame.size() - kFrameOverhead + 1] == kQueryMark;
  const Gathered gathered = Gather(maxReply + kFrameOverhead, frame, isQuery);
  if (isQuery && gathered.echoed) m_echoes.Heard();
  const std::string& received = gathered.bytes;
  if (!CheckReplyFrame(received, m_shared.ConnectAddress, expected)) return false;
  if (isQuery && !gathered.echoed && !gathered.hasMore) m_echoes.AnsweredWithout();
  reply = ReplyPayload(received);
  return true;
}

bool SerialLink::PassGates() {
  if (!m_port.DevicePresent()) return false;
  const bool waitsForCts = m_shared.PortRS232 && m_port.Handshaking() == kHandshakingRtsCts;
  if (waitsForCts && !m_port.CTSHolding()) {
    m_timing.DelayBlocking(kClearToSendWait);
    return false;
  }
  if (m_port.OutBufferCount() != 0) return false;
  // What lay unread can't be taken for the reply.
  if (m_port.InBufferCount() != 0) m_port.DiscardInput();
  return true;
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

SerialLink::Gathered SerialLink::Gather(std::size_t limit, std::string_view frame, bool isQuery) {
  const Deadline windowEnd = m_timing.MakeDeadline(kReplyWindow);
  const int early = m_shared.PortRS232 ? 0 : m_port.InBufferCount();
  const bool isEarly = early >= static_cast<int>(frame.size());
  const bool echoDue = !m_shared.PortRS232 && m_echoes.IsEcho(isQuery, isEarly);
  std::string received;
  bool echoed = false;
  while (!m_timing.DeadlineReached(windowEnd)) {
    if (m_port.InBufferCount() <= 0) {
      m_port.AwaitInput(m_timing.MillisecondsLeft(windowEnd));
      continue;
    }
    received += static_cast<char>(m_port.Input());
    if (echoDue && !echoed && received == frame) {
      echoed = true;
      received.clear();
      continue;
    }
    if (received.size() == limit || received.back() == kClosingBrace) break;
  }
  return {received, echoed, early > static_cast<int>(received.size())};
}

void SerialLink::EndFailedTry() {
  m_port.DiscardInput();
  m_port.DiscardOutput();
  m_timing.DelayBlocking(kRetryPause);
}

}  // namespace tarnwell::link

#include "sim/frame_server.h"

#include "link/frame_codec.h"

namespace tarnwell::sim {

namespace {

// Longer than any request; what goes on beyond it without an end is noise.
constexpr std::size_t kLongestFrame = 64;

}  // namespace

std::vector<Exchange> FrameServer::Receive(std::string_view bytes) {
  std::vector<Exchange> exchanges;
  for (const char byte : bytes) {
    // A brace always opens a frame anew: the rest of a request that was cut off must not spoil the next one.
    if (byte == link::kOpeningBrace) m_pending.clear();
    m_pending += byte;
    if (byte == link::kClosingBrace) {
      Serve(m_pending, exchanges);
      m_pending.clear();
    }
    if (m_pending.size() > kLongestFrame) m_pending.clear();
  }
  return exchanges;
}

void FrameServer::Serve(std::string_view frame, std::vector<Exchange>& exchanges) {
  if (!link::CheckReplyFrame(frame, 0, {})) return;
  const std::string_view command = link::ReplyPayload(frame);
  for (Device* device : m_devices) {
    const std::uint8_t address = device->Address();
    if (frame[1] != link::AddressByte(0) && frame[1] != link::AddressByte(address)) continue;
    const auto reply = m_silent ? std::nullopt : device->Answer(command);
    exchanges.push_back({frame[1], std::string(command), reply,
                         // The address may be another one by now: the answer to its setting comes from the old one.
                         reply ? link::BuildRequestFrame(*reply, address) : std::string()});
  }
}

}  // namespace tarnwell::sim

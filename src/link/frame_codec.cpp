#include "link/frame_codec.h"

#include <numeric>

namespace tarnwell::link {

char ChecksumCharacter(std::string_view bytes) {
  const auto add = [](std::uint8_t sum, char byte) {
    return static_cast<std::uint8_t>(sum + static_cast<unsigned char>(byte));
  };
  const std::uint8_t sum = std::accumulate(bytes.begin(), bytes.end(), std::uint8_t{0}, add);
  const int folded = (sum & 0x3F) ^ (sum >> 6);
  return static_cast<char>(folded + 0x20);
}

std::string BuildRequestFrame(std::string_view command, std::uint8_t connectAddress) {
  std::string frame;
  frame.reserve(command.size() + kFrameOverhead);
  frame += kOpeningBrace;
  frame += AddressByte(connectAddress);
  frame += command;
  frame += ChecksumCharacter(std::string_view(frame).substr(1));
  frame += kClosingBrace;
  return frame;
}

bool CheckReplyFrame(std::string_view received, std::uint8_t connectAddress, std::string_view expected) {
  // {AS=OTU}: brace, address, text, checksum, brace
  if (received.size() < kFrameOverhead) return false;
  if (received.front() != kOpeningBrace || received.back() != kClosingBrace) return false;

  const std::size_t checksumAt = received.size() - 2;
  if (ChecksumCharacter(received.substr(1, checksumAt - 1)) != received[checksumAt]) return false;
  if (connectAddress != 0 && received[1] != AddressByte(connectAddress)) return false;

  return received.find(expected) != std::string_view::npos;
}

std::string_view ReplyPayload(std::string_view frame) { return frame.substr(2, frame.size() - kFrameOverhead); }

}  // namespace tarnwell::link

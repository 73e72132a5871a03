#include "fuzz.h"
#include "link/frame_codec.h"

// The first byte is the console's address, the rest what came from the line. What the check lets through must be the
// frame that an honest device would have built; what it does not must not be.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwell;
  if (size < 2) return 0;
  const std::uint8_t address = data[0] & 0x1F;
  const std::string_view received = fuzz::Text(data + 1, size - 1);

  const bool valid = link::CheckReplyFrame(received, address, "=");
  if (received.size() < link::kFrameOverhead) {
    fuzz::Require(!valid);
    return 0;
  }
  const std::uint8_t sender = address != 0 ? address : static_cast<std::uint8_t>(received[1] - 0x40);
  const std::string_view text = received.substr(2, received.size() - link::kFrameOverhead);
  const bool honest = link::BuildRequestFrame(text, sender) == received && received.find('=') != std::string_view::npos;
  fuzz::Require(valid == honest);
  if (valid) fuzz::Require(link::ReplyPayload(received) == text);
  return 0;
}

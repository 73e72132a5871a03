#include <algorithm>
#include <cmath>
#include <string>

#include "fuzz.h"
#include "link/send_command.h"
#include "protocol/encodings.h"
#include "support/plain_port.h"

namespace {

using namespace tarnwell;

/// Every look at it lets a millisecond pass, so that a reply window ends by itself.
class RunningCounter final : public platform::Counter {
 public:
  bool QueryFrequency(std::int64_t& rate) override {
    rate = 1000;
    return true;
  }
  bool QueryCount(std::int64_t& count) override {
    count = ++m_count;
    return true;
  }

 private:
  std::int64_t m_count = 0;
};

class NoYield final : public platform::Yielder {
 public:
  void Yield(std::int64_t) override { std::abort(); }  // a transaction never lets other code run
};

/// A line that answers each request with the next stretch of noise, up to the next line feed.
class NoisyPort final : public test::PlainPort {
 public:
  explicit NoisyPort(std::string_view noise) : m_noise(noise) {}

  int InBufferCount() override { return static_cast<int>(m_input.size()); }
  void DiscardInput() override { m_input = {}; }
  void Output(std::string_view) override {
    const std::size_t end = std::min(m_noise.find('\n'), m_noise.size());
    m_input = m_noise.substr(0, end);
    m_noise.remove_prefix(std::min(end + 1, m_noise.size()));
  }
  std::uint8_t Input() override {
    fuzz::Require(!m_input.empty());
    const auto byte = static_cast<std::uint8_t>(m_input.front());
    m_input.remove_prefix(1);
    return byte;
  }

 private:
  std::string_view m_noise;
  std::string_view m_input;
};

/// What a device sends for a number is one, and goes back as the same, to the seven digits of a single.
void RequireNumber(std::string_view text) {
  const double read = protocol::LeadingNumber(text), single = static_cast<float>(read);
  fuzz::Require(std::isfinite(read) &&
                (std::abs(read) >= 1e8 || std::abs(protocol::Tenths(read) - read * 10) <= 0.5001));
  if (!std::isfinite(single) || std::abs(single) < 1e-30) return;
  const double back = protocol::LeadingNumber(protocol::NumberText(read));
  fuzz::Require(std::abs(back - single) <= std::abs(single) * 1e-6);
}

}  // namespace

// The first byte is the console's address, the second the reply limit, the rest what the line brings.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  RequireNumber(fuzz::Text(data, size));
  if (size < 2) return 0;
  link::SSPA_Public shared;
  shared.ConnectAddress = data[0] & 0x1F;
  const std::uint8_t maxReply = std::min<std::uint8_t>(data[1], 251);

  RunningCounter counter;
  NoYield yielder;
  link::IntervalTiming timing(counter, yielder);
  fuzz::Require(timing.InitCounter());
  NoisyPort port(fuzz::Text(data + 2, size - 2));
  link::SerialLink line(shared, timing, port);

  std::string reply;
  const bool answered = line.SendCommand("S?", reply, 3, maxReply, "S=");
  fuzz::Require(shared.CommsLost != answered);
  if (answered) fuzz::Require(reply.size() <= maxReply && reply.find('}') == std::string::npos);
  if (!answered) fuzz::Require(port.InBufferCount() == 0);
  return 0;
}

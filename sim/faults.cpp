#include "sim/faults.h"

#include <algorithm>

#include "link/frame_codec.h"
#include "link/sspa_public.h"

namespace tarnwell::sim {

namespace {

constexpr std::size_t kOversize = 60;  // characters; the largest reply has 35

}  // namespace

const std::array<FaultName, kFaults> kFaultNames{{
    {"drop", "the reply never comes"},
    {"address", "it comes from another address, with a good checksum"},
    {"oversized", "its text is longer than any reply may be"},
    {"corrupt", "one bit of one byte is turned"},
    {"unclosed", "the closing brace is missing"},
    {"noise", "stray bytes come ahead of it"},
    {"delay", "it comes 0.2 to 3 s late"},
    {"split", "it comes in two to four pieces, up to 0.3 s apart"},
}};

bool Faults::Set(std::string_view name, double probability) {
  if (!(probability >= 0.0 && probability <= 1.0)) return false;
  if (name == "all") {
    m_probabilities.fill(probability);
    return true;
  }
  const auto row =
      std::find_if(kFaultNames.begin(), kFaultNames.end(), [&](const FaultName& fault) { return fault.name == name; });
  if (row == kFaultNames.end()) return false;
  m_probabilities[static_cast<std::size_t>(row - kFaultNames.begin())] = probability;
  return true;
}

std::vector<Piece> Faults::Apply(std::string frame) {
  if (Strikes(Fault::kDrop)) return {};
  Spoil(frame);
  if (Strikes(Fault::kNoise)) frame.insert(0, Noise());
  const double delay = Strikes(Fault::kDelay) ? m_dice.Between(0.2, 3.0) : 0.0;
  if (Strikes(Fault::kSplit)) return Split(frame, delay);
  return {{delay, std::move(frame)}};
}

bool Faults::Strikes(Fault fault) { return m_dice.Chance(Probability(fault)); }

void Faults::Spoil(std::string& frame) {
  std::string text(link::ReplyPayload(frame));
  auto address = static_cast<std::uint8_t>(frame[1] - link::AddressByte(0));
  if (Strikes(Fault::kAddress)) address = static_cast<std::uint8_t>((address + 1) % (link::kMaxAddress + 1));
  if (Strikes(Fault::kOversized)) text.append(kOversize, '0');
  frame = link::BuildRequestFrame(text, address);
  if (Strikes(Fault::kCorrupt)) {
    char& byte = frame[static_cast<std::size_t>(m_dice.Below(static_cast<int>(frame.size())))];
    byte = static_cast<char>(byte ^ (1 << m_dice.Below(8)));
  }
  if (Strikes(Fault::kUnclosed)) frame.pop_back();
}

std::string Faults::Noise() {
  std::string noise(static_cast<std::size_t>(1 + m_dice.Below(6)), '\0');
  for (char& byte : noise) byte = static_cast<char>(m_dice.Below(256));
  return noise;
}

std::vector<Piece> Faults::Split(const std::string& bytes, double delay) {
  std::vector<Piece> pieces;
  const std::size_t length = bytes.size() / static_cast<std::size_t>(2 + m_dice.Below(3)) + 1;
  for (std::size_t start = 0; start < bytes.size(); start += length) {
    pieces.push_back({pieces.empty() ? delay : m_dice.Between(0.001, 0.3), bytes.substr(start, length)});
  }
  return pieces;
}

}  // namespace tarnwell::sim

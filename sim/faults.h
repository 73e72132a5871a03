#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/dice.h"

namespace tarnwell::sim {

enum class Fault { kDrop, kAddress, kOversized, kCorrupt, kUnclosed, kNoise, kDelay, kSplit };
inline constexpr std::size_t kFaults = 8;

struct FaultName {
  std::string_view name;
  std::string_view help;
};
/// In the order of the enumeration.
extern const std::array<FaultName, kFaults> kFaultNames;

/// A part of a reply: how long it waits behind the part before it, in seconds, and its bytes.
struct Piece {
  double delay;
  std::string bytes;
};

/// What goes wrong with replies on the way, each fault with a probability of its own. The same seed and the same
/// replies give the same faults.
class Faults {
 public:
  explicit Faults(std::uint32_t seed) : m_dice(seed) {}

  /// By the fault's name, or "all". False: no such name, or the probability isn't from 0 to 1.
  bool Set(std::string_view name, double probability);
  double Probability(Fault fault) const { return m_probabilities[static_cast<std::size_t>(fault)]; }

  /// The reply frame as it arrives: nothing at all, or pieces in order.
  std::vector<Piece> Apply(std::string frame);

 private:
  bool Strikes(Fault fault);
  void Spoil(std::string& frame);
  std::string Noise();
  std::vector<Piece> Split(const std::string& bytes, double delay);

  Dice m_dice;
  std::array<double, kFaults> m_probabilities{};
};

}  // namespace tarnwell::sim

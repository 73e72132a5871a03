#pragma once

#include <cstdint>
#include <random>

namespace tarnwell::sim {

/// Random numbers that are the same for the same seed on every system.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : m_engine(seed) {}

  /// From `low` up to, and without, `high`.
  double Between(double low, double high);
  /// From 0 to `count` - 1; `count` at least 1.
  int Below(int count);
  bool Chance(double probability) { return Between(0.0, 1.0) < probability; }

 private:
  std::mt19937 m_engine;
};

}  // namespace tarnwell::sim

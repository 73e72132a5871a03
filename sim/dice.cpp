#include "sim/dice.h"

namespace tarnwell::sim {

// The library's distributions differ from system to system; the engine doesn't.
double Dice::Between(double low, double high) {
  constexpr double kSpan = 4294967296.0;
  return low + (high - low) * (static_cast<double>(m_engine()) / kSpan);
}

int Dice::Below(int count) { return static_cast<int>(Between(0.0, count)); }

}  // namespace tarnwell::sim

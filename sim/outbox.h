#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "sim/faults.h"

namespace tarnwell::sim {

/// The bytes on their way out, each with the moment, in seconds, at which it has been sent. The line is one after the
/// other: a late reply holds up the next.
class Outbox {
 public:
  /// `bitsPerSecond`: the line's speed, at ten bits a byte; 0 for a line that takes no time.
  explicit Outbox(int bitsPerSecond) : m_byteTime(bitsPerSecond == 0 ? 0.0 : 10.0 / bitsPerSecond) {}

  /// What `bytes` bytes take on the line, in seconds.
  double LineTime(std::size_t bytes) const { return static_cast<double>(bytes) * m_byteTime; }

  /// Queues `pieces`, the first no earlier than `start`.
  void Add(double start, const std::vector<Piece>& pieces);

  /// Takes out what has been sent by `now`.
  std::string Take(double now);

  /// When the next byte will have been sent; nothing when none is left.
  std::optional<double> NextDue() const;

  void Clear() { m_bytes.clear(); }

 private:
  struct Byte {
    double due;
    char value;
  };

  double m_byteTime;
  std::deque<Byte> m_bytes;
};

}  // namespace tarnwell::sim

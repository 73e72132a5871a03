#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace tarnwell::fuzz {

/// Ends the run, and so reports the input, when `holds` is false.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
  return size == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(data), size);
}

}  // namespace tarnwell::fuzz

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::vorel_snapshot {

/// A file that another program stored in another encoding.
struct Conversion {
  const char* encoding;  ///< that it is in
  const char* cure;      ///< the command that takes it back
  std::string bytes;     ///< in that of the console
};

/// Nothing where the bytes are the same in the console's encoding. A byte that is no UTF-8 is kept as it is.
std::optional<Conversion> FindConversion(std::string_view file);

}  // namespace tarnwell::vorel_snapshot

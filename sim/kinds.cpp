#include "sim/kinds.h"

#include <algorithm>
#include <array>

namespace tarnwell::sim {

namespace {

constexpr std::array<Kind, 7> kKinds{{
    // name, model, firmware, platform, modules, level, rail, reflected
    {"c60", "60W C-BAND", "0264C-01 V6.2", "0857E", 1, 47.8, 11.0, true},
    {"c120", "120W C-BAND", "0264C-01 V6.0", "0857", 1, 50.8, 11.0, true},
    {"c240", "240W C-BAND", "0264C-01 V6.2", "0842", 2, 53.8, 11.0, true},
    {"k40", "40W K-BAND", "0264C-01 V5.4", "0712/0358", 1, 46.0, 9.3, false},
    {"k80", "80W K-BAND", "0264C-01 V6.2", "0842", 2, 49.0, 9.3, false},
    {"unknown", "55W X-BAND", "0264C-01 V6.2", "0712/0358", 2, 47.4, 11.0, false},
    {"controller", "7316 CONTROLLER", "0264C-01 V6.0", "", 0, 0.0, 0.0, false},
}};

}  // namespace

std::span<const Kind> Kinds() { return kKinds; }

const Kind* FindKind(std::string_view name) {
  const auto found = std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& kind) { return kind.name == name; });
  return found == kKinds.end() ? nullptr : &*found;
}

}  // namespace tarnwell::sim

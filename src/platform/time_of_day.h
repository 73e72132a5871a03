#pragma once

#include <QDateTime>
#include <functional>

namespace tarnwell::platform {

/// Where the time of day comes from: the machine's clock, or a test's.
using TimeOfDay = std::function<QDateTime()>;

}  // namespace tarnwell::platform

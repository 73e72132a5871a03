#pragma once

#include <QString>
#include <functional>

#include "link/sspa_public.h"

namespace tarnwell::alarms {

/// What changed between two replies, in words for those who don't see it: "Alarm active: 11V rail low. Alarm gone:
/// Auxiliary" where `nameOf` gives a slot its name; a slot with an empty name is left out. Empty where nothing changed.
QString AlarmNews(const link::AlarmTable& former, const link::AlarmTable& now,
                  const std::function<QString(int)>& nameOf);

/// The same where the alarms have no names: "Alarm", "Alarm latched", "Alarm gone" or "No alarm", the gravest alone.
QString AlarmNews(const link::AlarmTable& former, const link::AlarmTable& now);

}  // namespace tarnwell::alarms

#include "alarms/alarm_table.h"

namespace tarnwell::alarms {

void ResetAlarmTable(link::AlarmTable& table) { table = {}; }

AlarmSummary GetAlarmSummary(const link::AlarmTable& table) {
  AlarmSummary summary;
  for (const link::AlarmSlot& slot : table) {
    if (!slot.Active && !slot.Latched) continue;
    (slot.Acknowledged ? summary.AckedPresent : summary.UnackedPresent) = true;
  }
  return summary;
}

DecodedAlarms DecodeAlarmReply(std::string_view letters, link::AlarmTable& table) {
  DecodedAlarms found;
  for (int i = 0; i < link::kAlarmSlots; ++i) {
    link::AlarmSlot& slot = table[static_cast<std::size_t>(i)];
    slot.Latched = letters.find(static_cast<char>('a' + i)) != std::string_view::npos;
    slot.Active = !slot.Latched && letters.find(static_cast<char>('A' + i)) != std::string_view::npos;
    if (!slot.Latched && !slot.Active) slot.Acknowledged = false;
    found.anyLatched |= slot.Latched;
    found.anyActive |= slot.Active;
  }
  return found;
}

}  // namespace tarnwell::alarms

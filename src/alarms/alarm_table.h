#pragma once

#include <string_view>

#include "link/sspa_public.h"

namespace tarnwell::alarms {

/// Clears all three fields of all slots, the operator's acknowledgements with them.
void ResetAlarmTable(link::AlarmTable& table);

struct AlarmSummary {
  bool AckedPresent = false;    ///< an active or latched alarm is acknowledged
  bool UnackedPresent = false;  ///< an active or latched alarm isn't
};
AlarmSummary GetAlarmSummary(const link::AlarmTable& table);

struct DecodedAlarms {
  bool anyActive = false;
  bool anyLatched = false;
};

/// Brings the table up to date with the letters of an alarm reply, the text behind "A=": for slot i the small letter
/// "a" + i means latched, else the capital "A" + i active, anywhere in the text. A slot with neither letter loses its
/// acknowledgement.
DecodedAlarms DecodeAlarmReply(std::string_view letters, link::AlarmTable& table);

}  // namespace tarnwell::alarms

#pragma once

#include "alarms/alarm_table.h"
#include "forms/frm_main.h"
#include "platform/desktop.h"

namespace tarnwell::alarms {

/// The console's alarm indicator: lblAlarm says what the device last reported, imgAlarm and imgOk whether the operator
/// has acknowledged it.
class AlarmIndicator {
 public:
  AlarmIndicator(forms::frmMain& form, const link::SSPA_Public& shared, platform::Desktop& desktop)
      : m_form(form), m_shared(shared), m_desktop(desktop) {}

  /// Sets lblAlarm from one decoded reply.
  void ShowReply(const DecodedAlarms& found);

  /// One tick of tmrFlasher.
  void FlashAlarmIndicators();

  /// For a tmrFlasher that was stopped: a sign that flashes stays lit.
  void StandLit();

 private:
  void ShowFlash(bool lit);

  forms::frmMain& m_form;
  const link::SSPA_Public& m_shared;
  platform::Desktop& m_desktop;
};

}  // namespace tarnwell::alarms

#include "alarms/indicator.h"

#include "forms/controls/colours.h"

namespace tarnwell::alarms {

void AlarmIndicator::ShowReply(const DecodedAlarms& found) {
  forms::Label& lblAlarm = m_form.lblAlarm;
  if (found.anyActive || found.anyLatched) {
    lblAlarm.SetBackground(found.anyActive ? forms::kActiveColour : forms::kLatchedColour);
    lblAlarm.SetCaption(QStringLiteral("ALARM"));
    return;
  }
  forms::SetBold(lblAlarm, false);
  lblAlarm.SetBackground(forms::kGoodColour);
  lblAlarm.SetCaption(QStringLiteral("OK"));
}

void AlarmIndicator::FlashAlarmIndicators() {
  const AlarmSummary summary = GetAlarmSummary(m_shared.AlarmStatus);
  if (summary.UnackedPresent) {
    ShowFlash(m_form.imgAlarm.isHidden());  // not isVisible: a minimised console flashes too
    if (m_shared.AudibleNotify) m_desktop.Beep();
  } else {
    m_form.imgAlarm.setVisible(summary.AckedPresent);
    m_form.imgOk.setVisible(!summary.AckedPresent);
  }
}

void AlarmIndicator::StandLit() {
  const AlarmSummary summary = GetAlarmSummary(m_shared.AlarmStatus);
  const bool present = summary.UnackedPresent || summary.AckedPresent;
  if (present && m_form.imgAlarm.isHidden()) ShowFlash(true);
}

void AlarmIndicator::ShowFlash(bool lit) {
  m_form.imgAlarm.setVisible(lit);
  m_form.imgOk.setVisible(false);
  forms::SetBold(m_form.lblAlarm, lit);
}

}  // namespace tarnwell::alarms

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
    ToggleAlarmPicture();
    m_form.imgOk.setVisible(false);
    if (m_shared.AudibleNotify) m_desktop.Beep();
  } else {
    m_form.imgAlarm.setVisible(summary.AckedPresent);
    m_form.imgOk.setVisible(!summary.AckedPresent);
  }
}

void AlarmIndicator::ToggleAlarmPicture() {
  const bool shows = m_form.imgAlarm.isHidden();  // not isVisible: a minimised console flashes too
  m_form.imgAlarm.setVisible(shows);
  forms::SetBold(m_form.lblAlarm, shows);
}

}  // namespace tarnwell::alarms

#pragma once

#include "forms/controls/answers.h"
#include "forms/frm_alarms.h"
#include "link/interval_timing.h"
#include "link/send_command.h"
#include "platform/desktop.h"
#include "platform/time_of_day.h"
#include "protocol/vocabulary.h"

namespace tarnwell::alarms {

/// The detailed alarm view: its poll loop, the only sender on the line while the form is open, and what the operator
/// acknowledges and clears in it. Acknowledging is the console's own affair; the device never hears of it.
class AlarmViewer {
 public:
  /// `onLost` is called when the link is lost: what other forms show is old then.
  AlarmViewer(forms::frmAlarms& form, link::SSPA_Public& shared, link::SerialLink& line,
              const link::IntervalTiming& timing, platform::Desktop& desktop, platform::TimeOfDay timeOfDay,
              std::function<void()> onLost)
      : m_form(form),
        m_shared(shared),
        m_line(line),
        m_timing(timing),
        m_desktop(desktop),
        m_timeOfDay(std::move(timeOfDay)),
        m_onLost(std::move(onLost)) {}

  /// Before the form opens: tells the operator of a controller that nothing can be cleared in automatic mode.
  void TellOfAutomaticMode();

  /// `main` is the form that it opens over.
  void Form_Load(const forms::Form& main);
  void Form_Unload();
  void cmdAlarms_Click(int index);
  void cmdClear_Click();
  void cmdExit_Click() { StopPolling = true; }
  /// Polls until the form is closed, and unloads it.
  void tmrStartPolling_Timer();
  void tmrAlarmBeeper_Timer() { SoundAlarmBeep(); }
  void tmrForcePollResume_Timer();

 private:
  struct Measurement;

  void FitToDevice();
  void EnableAlarmControls(bool enable);
  void ShowAlarmTable();
  void ReadAlarmTable();
  void ShowMeasurement(const Measurement& measurement);
  void PollAlarms();
  void PollStep(int step);
  void CheckLink();
  bool Ask(const protocol::Request& request, const forms::Shown& shown, std::string& reply);
  void SoundAlarmBeep();
  bool IsController() const { return m_shared.SSPAType == link::kRedundancyController; }
  QString TitleOf(const QString& state) const;
  QString TitleConnected() const;

  forms::frmAlarms& m_form;
  link::SSPA_Public& m_shared;
  link::SerialLink& m_line;
  const link::IntervalTiming& m_timing;
  platform::Desktop& m_desktop;
  platform::TimeOfDay m_timeOfDay;
  std::function<void()> m_onLost;

  QString DeviceName;  ///< the device's model text, as it was at load
  bool StopPolling = false;
  bool PollHeartbeat = false;  ///< the loop has ended a step since the watchdog's last tick
};

}  // namespace tarnwell::alarms

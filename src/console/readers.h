#pragma once

#include <string>

#include "alarms/indicator.h"
#include "console/questions.h"
#include "console/session_state.h"
#include "forms/frm_main.h"
#include "link/send_command.h"
#include "platform/time_of_day.h"
#include "protocol/vocabulary.h"

namespace tarnwell::console {

/// The readers of the main form. Each sends one query, and on a valid reply sets shared variables and what the console
/// shows. Without one what it would set stays, drawn as old. Selecting an option here sends nothing, optRFMute
/// excepted.
class Readers {
 public:
  Readers(forms::frmMain& form, link::SSPA_Public& shared, link::SerialLink& line, const link::IntervalTiming& timing,
          SessionState& session, alarms::AlarmIndicator& indicator, platform::TimeOfDay timeOfDay)
      : m_form(form),
        m_shared(shared),
        m_line(line),
        m_timing(timing),
        m_session(session),
        m_indicator(indicator),
        m_timeOfDay(std::move(timeOfDay)) {}

  /// Another device is about to be asked: nothing of the former one's is shown as its own.
  void ForgetDevice();
  /// What `question` shows was just told by the device.
  void Confirm(Question question) { forms::ShowAnswered(ShownBy(m_form, question), m_timeOfDay().time()); }
  /// The gain as the device told it, which then isn't asked for again: its tool tip says of when it is. One that the
  /// spin can't hold is shown as the nearest that it can, as doubtful.
  void TakeGain(std::string_view text);
  /// What was read stays, and its tool tip no longer speaks of a session.
  void EndSession();
  /// What `question` shows isn't known to be so any more, and is drawn as old until it is answered.
  void Doubt(Question question) { forms::ShowUnanswered(ShownBy(m_form, question)); }
  void DoubtAll();
  /// What the poll shows while it stands still: nothing is asked, and each answer afterwards confirms its own.
  void DoubtPolled();

  void ReadStatus();
  void ReadConfiguration();
  void ReadPathPriority();
  void ReadSSPAStates();
  /// 5 reads path A, anything else path B.
  void ReadPathSelection(int which);
  /// Selects the option of the amplifier that the path's label names. Where it names none the one that is selected is
  /// doubtful.
  void SelectShownPath(int which);
  void ReadAlarms();
  /// 6 reads module 1, 12 module 2; anything else reads nothing.
  void ReadTemperature(int which);
  void ReadRFLevel();
  /// False: the device didn't answer, and the gain stays in doubt.
  bool ReadGain();

 private:
  bool Ask(Question question, const protocol::Request& request, std::size_t echo, std::string& text);

  void ShowCommsMode(std::string_view status);
  void ShowOperatingState(std::string_view status);
  void ShowRFOutput(std::string_view status);
  void AllowUserMute(std::string_view status);
  void ShowControllerMode(std::string_view status);
  void ShowPath(int which, std::string_view text);
  void ChangeTo1to1();
  void ChangeTo1to2();

  forms::frmMain& m_form;
  link::SSPA_Public& m_shared;
  link::SerialLink& m_line;
  const link::IntervalTiming& m_timing;
  SessionState& m_session;
  alarms::AlarmIndicator& m_indicator;
  platform::TimeOfDay m_timeOfDay;
  QString m_gainAsOf;  ///< the time at which the gain was answered, in words
};

}  // namespace tarnwell::console

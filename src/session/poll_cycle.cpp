#include "session/poll_cycle.h"

#include <QApplication>
#include <algorithm>

#include "alarms/alarm_table.h"
#include "console/view_rules.h"

namespace tarnwell::session {

namespace {

using console::Readers;

constexpr double kPauseBetweenSteps = 0.05;

}  // namespace

void PollCycle::PollSSPA() {
  constexpr Reader kLevel = [](Readers& r) { r.ReadRFLevel(); };
  constexpr Reader kStatus = [](Readers& r) { r.ReadStatus(); };
  constexpr Reader kAlarms = [](Readers& r) { r.ReadAlarms(); };
  constexpr Reader kModule1 = [](Readers& r) { r.ReadTemperature(6); };
  constexpr Reader kModule2 = [](Readers& r) { r.ReadTemperature(12); };
  Poll(std::array{kLevel, kStatus, kLevel, kAlarms, kLevel, kModule1,  //
                  kLevel, kStatus, kLevel, kAlarms, kLevel, kModule2});
}

void PollCycle::PollController() {
  constexpr Reader kAlarms = [](Readers& r) { r.ReadAlarms(); };
  constexpr Reader kStatus = [](Readers& r) { r.ReadStatus(); };
  constexpr Reader kConfiguration = [](Readers& r) { r.ReadConfiguration(); };
  constexpr Reader kStates = [](Readers& r) { r.ReadSSPAStates(); };
  constexpr Reader kPathA = [](Readers& r) { r.ReadPathSelection(5); };
  constexpr Reader kPathB = [](Readers& r) { r.ReadPathSelection(6); };
  constexpr Reader kPriority = [](Readers& r) { r.ReadPathPriority(); };
  Poll(std::array{kAlarms, kStatus, kConfiguration, kStates, kPathA, kPathB, kPriority});
}

template <std::size_t Steps>
void PollCycle::Poll(const std::array<Reader, Steps>& schedule) {
  alarms::ResetAlarmTable(m_shared.AlarmStatus);
  std::size_t step = 0;
  m_timing.DelayBlocking(kPauseBetweenSteps);
  do {
    schedule[step](m_readers);
    ++step;
    // A reader may have changed the length; no schedule is longer than its table.
    if (step >= std::min(static_cast<std::size_t>(m_session.PollLength), Steps)) step = 0;
    if (step == 0) m_gainAsked = false;
    WatchLink();
    m_session.PollHeartbeat = true;
    m_timing.DelayPumped(kPauseBetweenSteps);
  } while (m_session.PollRunning);
}

void PollCycle::WatchLink() {
  const QString title = m_form.Title();
  if (m_shared.CommsLost && title.contains(console::kConnectedTo)) {
    m_form.SetTitle(console::TitleLost(m_session.DeviceName));
    m_form.Announce(m_form.Title());
    console::SetConsoleEnabled(m_form, m_shared, false);
  } else if (!m_shared.CommsLost && title.contains(console::kLostConnectionTo)) {
    m_form.SetTitle(console::TitleConnected(m_session.DeviceName));
    m_form.Announce(m_form.Title());
    // A controller has no gain: asking for it would cost the operator six seconds.
    if (m_shared.SSPAType != link::kRedundancyController) ReadGain();
    console::SetConsoleEnabled(m_form, m_shared, true);
  } else if (!m_shared.CommsLost && m_session.GainInDoubt && !m_gainAsked) {
    ReadGain();
  }
}

/// Once a round outside of the schedule: a device that answers all but this would cost six seconds each time.
void PollCycle::ReadGain() {
  m_gainAsked = true;
  m_readers.ReadGain();
}

void PollCycle::tmrForcePollResume_Timer() {
  if (!m_session.PollRunning) return;
  // Behind a message box or a modal form the windows stay as they are.
  const bool stalled = !m_session.PollHeartbeat && QApplication::activeModalWidget() == nullptr;
  if (stalled) m_form.HideAndShow();
  m_session.PollHeartbeat = false;
}

}  // namespace tarnwell::session

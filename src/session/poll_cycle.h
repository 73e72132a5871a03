#pragma once

#include <array>

#include "console/readers.h"

namespace tarnwell::session {

/// The two poll loops, their watch over the link, and the watchdog that gets a stalled loop going again.
class PollCycle {
 public:
  PollCycle(forms::frmMain& form, link::SSPA_Public& shared, const link::IntervalTiming& timing,
            console::SessionState& session, console::Readers& readers)
      : m_form(form), m_shared(shared), m_timing(timing), m_session(session), m_readers(readers) {}

  /// Each returns only when PollRunning is false, and runs at least one step.
  void PollSSPA();
  void PollController();

  /// One tick of the main form's watchdog.
  void tmrForcePollResume_Timer();

 private:
  using Reader = void (*)(console::Readers&);

  template <std::size_t Steps>
  void Poll(const std::array<Reader, Steps>& schedule);
  void WatchLink();
  void ReadGain();

  forms::frmMain& m_form;
  link::SSPA_Public& m_shared;
  const link::IntervalTiming& m_timing;
  console::SessionState& m_session;
  console::Readers& m_readers;
  bool m_gainAsked = false;  ///< in this round of the schedule
};

}  // namespace tarnwell::session

#pragma once

#include "console/session_state.h"
#include "forms/frm_main.h"
#include "link/interval_timing.h"

namespace tarnwell::session {

/// Opens another form over the main form, whose poll, flasher and watchdog stand still until that form is gone.
class FormOpener {
 public:
  /// Pauses in seconds: the device's, between the poll's last reply and the form's first command, and the other way.
  struct Pauses {
    double before = 0;
    double after = 0;
  };

  FormOpener(forms::frmMain& form, const link::IntervalTiming& timing, const console::SessionState& session)
      : m_form(form), m_timing(timing), m_session(session) {}

  /// Returns when `form` has been unloaded, by itself or because the main form was; at once when the main form is gone.
  void ShowModal(forms::Form& form, const Pauses& pauses);

 private:
  forms::frmMain& m_form;
  const link::IntervalTiming& m_timing;
  const console::SessionState& m_session;
};

}  // namespace tarnwell::session

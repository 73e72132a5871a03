#include "session/form_opener.h"

namespace tarnwell::session {

void FormOpener::ShowModal(forms::Form& form, const Pauses& pauses) {
  if (m_form.Unloaded()) return;  // the program was told to end behind a message
  // The focus that comes back when the form closes must not land on an option and command the device.
  m_form.cmdConnect.setFocus(Qt::OtherFocusReason);
  m_form.tmrFlasher.SetEnabled(false);
  m_form.tmrForcePollResume.SetEnabled(false);
  m_timing.DelayBlocking(pauses.before);
  QObject::connect(&m_form, &forms::Form::Unload, &form, [&form] { form.UnloadForm(); });
  form.ShowModal();
  if (m_form.Unloaded()) return;
  m_timing.DelayBlocking(pauses.after);
  m_form.tmrFlasher.SetEnabled(m_session.PollRunning);
  m_form.tmrForcePollResume.SetEnabled(true);
}

}  // namespace tarnwell::session

#include "app/program.h"
#include "app/wires.h"
#include "snapshot/dialog.h"

namespace tarnwell::app {

void Program::OpenSnapshot() {
  using forms::CommandButton, forms::Form;
  constexpr double kPauseAfter = 0.05;

  forms::frmSaveSnapshot form;
  snapshot::Writer writer(form, m_shared, m_line, m_timing, m_machine.desktop, m_machine.timeOfDay);
  snapshot::Dialog dialog(form, m_main, m_shared, writer, m_timing, m_machine.desktop);
  On(form, &Form::Load, [&] { dialog.Form_Load(); });
  On(form, &Form::Activate, [&] { dialog.Form_Activate(); });
  On(form.txtSnapShotID, &forms::TextBox::KeyPress, [&](forms::KeyAscii& key) { dialog.txtSnapShotID_KeyPress(key); });
  On(form.cmdOk, &CommandButton::Click, [&] { dialog.cmdOk_Click(); });
  On(form.cmdCancel, &CommandButton::Click, [&] { dialog.cmdCancel_Click(); });
  m_opener.ShowModal(form, {.after = kPauseAfter});
}

}  // namespace tarnwell::app

#include "app/program.h"
#include "app/wires.h"
#include "options/options_dialog.h"

namespace tarnwell::app {

void Program::OpenOptions() {
  using forms::CommandButton, forms::OptionButton;
  forms::frmOptions form;
  options::OptionsDialog dialog(form, m_shared, m_machine.comConnect, m_session, m_properties, m_machine.desktop);
  On(form, &forms::Form::Load, [&] { dialog.Form_Load(m_main); });
  On(form.cmdOK, &CommandButton::Click, [&] { dialog.cmdOk_Click(); });
  On(form.cmdCancel, &CommandButton::Click, [&] { dialog.cmdCancel_Click(); });
  On(form.optRS232, &OptionButton::Click, [&] { dialog.optRS232_Click(); });
  On(form.optRS4xx, &OptionButton::Click, [&] { dialog.optRS4xx_Click(); });
  On(*form.opt485Control(0), &OptionButton::Click, [&] { dialog.opt485Control_Click(0); });
  On(*form.opt485Control(1), &OptionButton::Click, [&] { dialog.opt485Control_Click(1); });
  On(form.optAudibleOn, &OptionButton::Click, [&] { dialog.optAudibleOn_Click(); });
  On(form.tabOptions, &forms::TabStrip::Click, [&] { dialog.tabOptions_Click(); });

  m_opener.ShowModal(form, {});
  dialog.RaiseRTS();
}

}  // namespace tarnwell::app

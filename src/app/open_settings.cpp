#include "app/program.h"
#include "app/wires.h"
#include "settings/field_entry.h"
#include "settings/setting_writers.h"
#include "settings/settings_form.h"

namespace tarnwell::app {

void Program::OpenSettings() {
  using forms::CommandButton, forms::Form, forms::TabStrip, forms::Timer;
  forms::frmSettings form(m_main.lblRFLevel);
  settings::Opening opening{form, m_main, m_shared, m_timing};
  settings::CalibrationTables tables(opening, m_line);
  settings::ReadBack readBack(opening, m_line, tables);
  settings::SettingsForm logic(opening, m_line, m_machine.desktop, readBack);
  settings::SettingWriters writers(opening, m_main, m_line, m_machine.desktop, readBack, tables);
  settings::FieldEntry entry(
      form, tables,
      {[&writers](std::string_view tag) { writers.WriteThreshold(tag); }, [&writers] { writers.WriteSSPAAddress(); }});

  On(form, &Form::Load, [&logic] { logic.Form_Load(); });
  On(form, &Form::Unload, [&logic] { logic.Form_Unload(); });
  On(form.tmrStartLoad, &Timer::Tick, [&logic] { logic.tmrStartLoad_Timer(); });
  On(form.tmrForcePollResume, &Timer::Tick, [&logic] { logic.tmrForcePollResume_Timer(); });
  On(form.tabSettings, &TabStrip::Click, [&logic] { logic.tabSettings_Click(); });
  On(form.cmdUnlock, &CommandButton::Click, [&logic] { logic.cmdUnlock_Click(); });
  On(form.cmdExit, &CommandButton::Click, [&form] { form.UnloadForm(); });
  On(form.cmdQuickCal, &CommandButton::Click, [&tables] { tables.cmdQuickCal_Click(); });
  for (const settings::OptionWriter& row : settings::kOptionWriters) {
    On(form.*row.option, &forms::OptionButton::GotFocus, [&writers, &row] { (writers.*row.write)(row.argument); });
  }
  entry.Connect();

  m_opener.ShowModal(form, {settings::kPauseAroundCommand, settings::kPauseAroundCommand});
}

}  // namespace tarnwell::app

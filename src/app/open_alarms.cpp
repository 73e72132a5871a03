#include "alarms/viewer.h"
#include "app/program.h"
#include "app/wires.h"

namespace tarnwell::app {

namespace {

void WireButtons(forms::frmAlarms::AlarmButtons& buttons, alarms::AlarmViewer& viewer) {
  for (int i = 0; i < buttons.size(); ++i) {
    if (buttons(i) != nullptr)
      On(*buttons(i), &forms::CommandButton::Click, [&viewer, i] { viewer.cmdAlarms_Click(i); });
  }
}

}  // namespace

void Program::OpenAlarms() {
  using forms::Form, forms::Timer, forms::CommandButton;
  forms::frmAlarms form;
  alarms::AlarmViewer viewer(form, m_shared, m_line, m_timing, m_machine.desktop, m_machine.timeOfDay,
                             [this] { m_readers.DoubtAll(); });
  On(form, &Form::Load, [&] { viewer.Form_Load(m_main); });
  On(form, &Form::Unload, [&] { viewer.Form_Unload(); });
  WireButtons(form.cmdAlarms, viewer);
  WireButtons(form.cmd7316Alarms, viewer);
  On(form.cmdClear, &CommandButton::Click, [&] { viewer.cmdClear_Click(); });
  On(form.cmd7316ClearAlarms, &CommandButton::Click, [&] { viewer.cmdClear_Click(); });
  On(form.cmdExit, &CommandButton::Click, [&] { viewer.cmdExit_Click(); });
  On(form.tmrStartPolling, &Timer::Tick, [&] { viewer.tmrStartPolling_Timer(); });
  On(form.tmrAlarmBeeper, &Timer::Tick, [&] { viewer.tmrAlarmBeeper_Timer(); });
  On(form.tmrForcePollResume, &Timer::Tick, [&] { viewer.tmrForcePollResume_Timer(); });

  viewer.TellOfAutomaticMode();
  m_opener.ShowModal(form, {.before = 0.05, .after = 0.05});
}

}  // namespace tarnwell::app

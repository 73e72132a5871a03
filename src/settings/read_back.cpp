#include "settings/read_back.h"

#include "console/view_rules.h"
#include "protocol/readings.h"
#include "settings/lock_groups.h"
#include "settings/read_rows.h"
#include "settings/reply_rules.h"

namespace tarnwell::settings {

using console::Enable;
using protocol::AfterEcho;

void ReadBack::ReadAllSettings() {
  m_form.tmrForcePollResume.SetEnabled(true);
  if (!m_opening.Pause() || !AskAll(kCommonReads)) return;
  if (m_opening.IsController() ? ReadController() : ReadAmplifier()) m_form.tmrForcePollResume.SetEnabled(false);
}

void ReadBack::Ask(const ScalarRead& row) {
  const bool concerned = row.concerns(m_opening.shared);
  if (row.otherwise != nullptr && (!concerned || row.hiddenUntilRead)) row.otherwise(m_opening);
  std::string reply;
  if (concerned && protocol::Send(m_line, row.request, reply)) row.show(m_opening, AfterEcho(reply, row.echo));
}

bool ReadBack::AskAll(std::span<const ScalarRead> rows) {
  for (const ScalarRead& row : rows) {
    Ask(row);
    if (!m_opening.ReadPause()) return false;
  }
  return true;
}

bool ReadBack::ReadController() {
  std::string reply;
  if (protocol::Send(m_line, protocol::kConfigurationQuery, reply)) {
    Choose(m_form, AfterEcho(reply, 2), kConfigurationChoices);
  }
  if (!m_opening.ReadPause() || !ReadPriority()) return false;
  Enable(m_opening.TakesCommands(), {&m_form.fra7316Config, &m_form.opt7316_12, &m_form.opt7316_11});
  return true;
}

bool ReadBack::ReadPriority() {
  const bool shown = m_form.opt7316_12.Value();
  const bool enabled = shown && m_opening.TakesCommands();
  m_form.fra7316Priority.setEnabled(enabled);
  m_form.fra7316Priority.setVisible(shown);
  std::string reply;
  if (shown && protocol::Send(m_line, protocol::kPriorityOrDiodeQuery, reply)) {
    Choose(m_form, AfterEcho(reply, 2), kPriorityChoices);
  }
  if (shown && !m_opening.ReadPause()) return false;
  // A write in the pause may have put the group away.
  Enable(m_form.fra7316Priority.isEnabledTo(m_form.fra7316Priority.parentWidget()),
         {&m_form.opt7316None, &m_form.opt7316PathA, &m_form.opt7316PathB});
  return true;
}

bool ReadBack::ReadAmplifier() {
  if (!AskAll(kAmplifierReads)) return false;
  for (const TableRead& table : kTableReads) {
    if (!ReadTable(table)) return false;
  }
  return true;
}

bool ReadBack::ReadTable(const TableRead& table) {
  if (!table.concerns(m_opening.shared)) {
    for (QWidget* control : LockGroupOf(m_form, table.flag).controls) control->setVisible(false);
    return true;
  }
  for (int index = 0; index < table.points; ++index) {
    (m_tables.*table.read)(index);
    if (!m_opening.ReadPause()) return false;
  }
  SetRead(m_opening, table.flag);
  (m_form.*table.spin).SetValue(0);
  (m_tables.*table.draw)();
  return true;
}

}  // namespace tarnwell::settings

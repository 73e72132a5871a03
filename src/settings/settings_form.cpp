#include "settings/settings_form.h"

#include <QApplication>
#include <array>

#include "console/view_rules.h"
#include "forms/pages.h"
#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"
#include "settings/lock_groups.h"

namespace tarnwell::settings {

namespace {

using console::EnableAndShow;

const QString kSSPA = QStringLiteral("SSPA");
const QString kController = QStringLiteral("Redundancy Controller");

void ShowLocked(forms::frmSettings& form, bool locked) {
  form.cmdUnlock.SetCaption(locked ? QStringLiteral("Unloc&k") : QStringLiteral("Loc&k"));
}

}  // namespace

void SettingsForm::Form_Load() {
  m_opening.shared.SettingsOpen = true;
  ShowLocked(m_form, m_opening.Locked);
  m_desktop.SetBusyPointer(true);
  for (forms::Frame* page : {&m_form.fraAdvanced, &m_form.fraStandard, &m_form.fraFactory}) page->SetBorder(false);
  m_form.CoverForm(m_opening.main);
  if (m_opening.shared.RemoteLockout) TellLockout(m_opening.IsController() ? kController : kSSPA);
  if (m_form.Unloaded()) {  // the program was told to end while the message was up, which puts the pointer back
    m_desktop.SetBusyPointer(false);
    return;
  }
  ReadModel();
  ShowGroupsOfKind();
  m_form.tmrStartLoad.SetEnabled(true);
}

void SettingsForm::TellLockout(const QString& device) {
  m_desktop.ShowMessage(
      {QStringLiteral("View settings only, %1 in RLO mode.").arg(device), platform::MessageIcon::kInformation});
}

void SettingsForm::ReadModel() {
  std::string reply;
  if (!protocol::Send(m_line, protocol::kModelQuery, reply)) return;
  const QString kind = m_opening.IsController() ? kController : kSSPA;
  m_form.SetTitle(m_opening.Caption() + QStringLiteral(": Connected to ") +
                  platform::FromDevice(protocol::AfterEcho(reply, 3)));
  m_form.fraAddress.SetCaption(kind + QStringLiteral(" &Address"));
  m_desktop.SetBusyPointer(false);
}

void SettingsForm::ShowGroupsOfKind() {
  forms::frmSettings& f = m_form;
  const bool controller = m_opening.IsController();
  EnableAndShow(controller, {&f.fra7316Config, &f.fra7316Priority});
  EnableAndShow(!controller,
                {&f.lblHWPlat, &f.lblHWPlatform, &f.fraAlarmStyle, &f.fraAuxSense, &f.fraBeeper, &f.fraFanCtrl,
                 &f.fraMode, &f.fraPINTable, &f.fraRFTable, &f.fraRFTCPoints, &f.fraShutdown, &f.fraTCPoints,
                 &f.fraTempComp, &f.fraThresholds, &f.fraReflectedThreshold, &f.fraTransceiver});
  // Free before they are read, a click or an access key would change what nobody has seen yet.
  for (QWidget* option :
       std::array<QWidget*, 5>{&f.opt7316_11, &f.opt7316_12, &f.opt7316None, &f.opt7316PathA, &f.opt7316PathB}) {
    option->setEnabled(false);
  }
}

void SettingsForm::Form_Unload() {
  m_form.tmrStartLoad.SetEnabled(false);
  m_form.tmrForcePollResume.SetEnabled(false);
  m_opening.shared.SettingsOpen = false;
  m_desktop.SetBusyPointer(false);
}

void SettingsForm::tmrStartLoad_Timer() {
  m_form.tmrStartLoad.SetEnabled(false);
  m_readBack.ReadAllSettings();
}

void SettingsForm::tabSettings_Click() {
  ShowSelectedPage(m_form.tabSettings, {&m_form.fraStandard, &m_form.fraAdvanced, &m_form.fraFactory});
  const bool standard = m_form.tabSettings.SelectedTab() == 1;
  if (standard || !m_opening.IsController()) EnableAndShow(!standard, {&m_form.cmdUnlock});
}

void SettingsForm::cmdUnlock_Click() {
  m_opening.Locked = !m_opening.Locked;
  ShowLocked(m_form, m_opening.Locked);
  if (!m_opening.Locked && m_opening.shared.RemoteLockout) TellLockout(kSSPA);
  for (const LockGroup& group : LockGroups(m_form)) ApplyLock(m_opening, group);
}

void SettingsForm::tmrForcePollResume_Timer() {
  // Behind a message box the windows stay as they are.
  if (!m_opening.ReadActivity && QApplication::activeModalWidget() == &m_form) m_form.HideAndShow();
  m_opening.ReadActivity = false;
}

}  // namespace tarnwell::settings

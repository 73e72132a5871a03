#pragma once

#include "platform/desktop.h"
#include "settings/read_back.h"

namespace tarnwell::settings {

/// What the settings form does by itself: opening, closing, its tabs, its lock, and the watch over the read-back.
class SettingsForm {
 public:
  /// `main` is the form that this one opens over.
  SettingsForm(Opening& opening, const forms::Form& main, link::SerialLink& line, platform::Desktop& desktop,
               ReadBack& readBack)
      : m_opening(opening),
        m_form(opening.form),
        m_main(main),
        m_line(line),
        m_desktop(desktop),
        m_readBack(readBack) {}

  void Form_Load();
  void Form_Unload();
  void tmrStartLoad_Timer();
  void tabSettings_Click();
  void cmdUnlock_Click();
  void tmrForcePollResume_Timer();

 private:
  bool IsController() const { return m_opening.shared.SSPAType == link::kRedundancyController; }
  void TellLockout(const QString& device);
  void ReadModel();
  void ShowGroupsOfKind();

  Opening& m_opening;
  forms::frmSettings& m_form;
  const forms::Form& m_main;
  link::SerialLink& m_line;
  platform::Desktop& m_desktop;
  ReadBack& m_readBack;
};

}  // namespace tarnwell::settings

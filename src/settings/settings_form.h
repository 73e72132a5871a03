#pragma once

#include "platform/desktop.h"
#include "settings/read_back.h"

namespace tarnwell::settings {

/// What the settings form does by itself: opening, closing, its tabs, its lock, and the watch over the read-back.
class SettingsForm {
 public:
  SettingsForm(Opening& opening, link::SerialLink& line, platform::Desktop& desktop, ReadBack& readBack)
      : m_opening(opening), m_form(opening.form), m_line(line), m_desktop(desktop), m_readBack(readBack) {}

  void Form_Load();
  void Form_Unload();
  void tmrStartLoad_Timer();
  void tabSettings_Click();
  void cmdUnlock_Click();
  void tmrForcePollResume_Timer();

 private:
  void TellLockout(const QString& device);
  void ReadModel();
  void ShowGroupsOfKind();

  Opening& m_opening;
  forms::frmSettings& m_form;
  link::SerialLink& m_line;
  platform::Desktop& m_desktop;
  ReadBack& m_readBack;
};

}  // namespace tarnwell::settings

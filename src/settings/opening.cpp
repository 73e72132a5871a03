#include "settings/opening.h"

namespace tarnwell::settings {

QString Opening::Caption() const {
  return IsController() ? QStringLiteral("Redundancy Controller Settings") : QStringLiteral("SSPA Settings");
}

void Opening::CloseUnanswered() {
  if (form.Unloaded()) return;
  form.UnloadForm();
  main.AnnounceOnReturn(Caption() + QStringLiteral(" closed: no answer"));
}

bool Opening::ReadPause() {
  ReadActivity = true;
  return Pause();
}

bool Opening::Pause() {
  timing.DelayPumped(kPauseAroundCommand);
  if (shared.CommsLost) CloseUnanswered();
  return shared.SettingsOpen;
}

}  // namespace tarnwell::settings

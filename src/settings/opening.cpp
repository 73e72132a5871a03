#include "settings/opening.h"

namespace tarnwell::settings {

bool Opening::ReadPause() {
  ReadActivity = true;
  return Pause();
}

bool Opening::Pause() {
  timing.DelayPumped(kPauseAroundCommand);
  if (shared.CommsLost) form.UnloadForm();
  return shared.SettingsOpen;
}

}  // namespace tarnwell::settings

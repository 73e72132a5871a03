#pragma once

#include <initializer_list>

#include "forms/frm_main.h"
#include "link/sspa_public.h"

namespace tarnwell::console {

/// Enables and disables the controls of the console. `live`: connected with a working link. Remote lockout takes the
/// commands away, the controller's automatic mode the path selection. Has no memory: it may be called at any time.
void SetConsoleEnabled(forms::frmMain& form, const link::SSPA_Public& shared, bool live);

/// Enables or disables the controls.
void Enable(bool enabled, std::initializer_list<QWidget*> controls);

/// Enables and shows the controls, or disables and hides them.
void EnableAndShow(bool shown, std::initializer_list<QWidget*> controls);

/// Takes every reading off the screen, the alarm pictures with them: what another device said, or nothing yet.
void BlankReadings(forms::frmMain& form);

/// Shows in txtGainAdjust the gain that its spin control holds: "-3.4".
void ShowGain(forms::frmMain& form);

}  // namespace tarnwell::console

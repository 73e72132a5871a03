#pragma once

#include <vector>

#include "forms/controls/answers.h"
#include "forms/frm_alarms.h"
#include "link/sspa_public.h"

namespace tarnwell::alarms {

/// Shows and enables the panel of the device's kind and puts the other one away.
void ShowPanelOf(forms::frmAlarms& form, bool controller);

/// Names and shows what an amplifier of this identity has. `shared` is not a controller's.
void FitToAmplifier(forms::frmAlarms& form, const link::SSPA_Public& shared);

/// Names each alarm button as its label does, also while it shows its "A".
void NameButtons(forms::frmAlarms& form);

/// What is greyed while the link is lost. The alarm buttons follow their frames; the buttons that clear have rules of
/// their own; the form can always be closed.
std::vector<QWidget*> LinkedControls(forms::frmAlarms& form);

/// The buttons that show the alarms' states.
forms::Shown AlarmButtons(forms::frmAlarms& form);

}  // namespace tarnwell::alarms

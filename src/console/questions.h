#pragma once

#include "forms/controls/answers.h"
#include "forms/frm_main.h"

namespace tarnwell::console {

/// What the main form asks of a device, again and again or once.
enum class Question {
  kStatus,
  kRFLevel,
  kAlarms,
  kTemperature1,
  kTemperature2,
  kConfiguration,
  kSSPAStates,
  kPathA,
  kPathB,
  kPriority,
  kGain,
};

/// The controls of the main form that show what `question` is answered.
forms::Shown ShownBy(forms::frmMain& form, Question question);

/// The controls that the poll asks for again and again: all but the gain's, which says itself of when it is.
forms::Shown ShownByPoll(forms::frmMain& form);

/// All of them.
forms::Shown ShownByAny(forms::frmMain& form);

}  // namespace tarnwell::console

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
inline constexpr Question kLastQuestion = Question::kGain;

/// The controls of the main form that show what `question` is answered.
forms::Shown ShownBy(forms::frmMain& form, Question question);

/// All of them.
forms::Shown ShownByAny(forms::frmMain& form);

}  // namespace tarnwell::console

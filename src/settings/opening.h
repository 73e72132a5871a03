#pragma once

#include "forms/frm_settings.h"
#include "link/interval_timing.h"
#include "link/sspa_public.h"

namespace tarnwell::settings {

/// The pause in seconds around every transaction of the form.
inline constexpr double kPauseAroundCommand = 0.05;

/// What the read-back has reached. A group that wasn't read stays disabled, unlocked or not.
struct ReadFlags {
  bool ShutdownRead = false;
  bool TempCompRead = false;
  bool AlarmStyleRead = false;
  bool AuxSenseRead = false;
  bool BeeperRead = false;
  bool ModeRead = false;
  bool FanCtrlRead = false;
  bool RFTableRead = false;
  bool PiNTableRead = false;
  bool TCPointsRead = false;
  bool RFTCPointsRead = false;
};

/// One opening of the settings form: what its parts share.
struct Opening {
  forms::frmSettings& form;
  forms::Form& main;  ///< the form that it opens over
  link::SSPA_Public& shared;
  const link::IntervalTiming& timing;

  bool Locked = true;         ///< the operator hasn't pressed cmdUnlock
  bool ReadActivity = false;  ///< a pause has come since the watchdog's last tick
  ReadFlags read = {};

  bool IsController() const { return shared.SSPAType == link::kRedundancyController; }
  /// "SSPA Settings": what the form is called by its title, which tells the device behind that.
  QString Caption() const;

  /// Gate R: the device takes commands.
  bool TakesCommands() const { return !shared.RemoteLockout; }
  /// Gate L: and the operator has unlocked the form.
  bool IsUnlocked() const { return TakesCommands() && !Locked; }

  /// Closes the form for want of an answer, and says so to who can't see it go. Nothing where it is closed already.
  void CloseUnanswered();

  /// The pause behind a transaction, in which the operator's events run. A lost link closes the form. False: the form
  /// was closed meanwhile, and whoever asked ends at once and touches no control.
  bool ReadPause();
  /// The same without a sign of life for the watchdog.
  bool Pause();
};

}  // namespace tarnwell::settings

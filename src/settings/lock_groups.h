#pragma once

#include <vector>

#include "settings/opening.h"

namespace tarnwell::settings {

/// Controls that come alive together: when their flag is set, the device takes commands and the form is unlocked.
struct LockGroup {
  bool ReadFlags::*flag;
  std::vector<QWidget*> controls;
  std::vector<QWidget*> notInClass1 = {};  ///< stay disabled with firmware class 1
};

/// The groups of the Advanced and the Factory tab.
std::vector<LockGroup> LockGroups(forms::frmSettings& form);

/// The group of a flag.
LockGroup LockGroupOf(forms::frmSettings& form, bool ReadFlags::*flag);

/// Enables or disables the group by what holds at this moment.
void ApplyLock(const Opening& opening, const LockGroup& group);

/// Notes that the group's value has come, and applies the lock.
void SetRead(Opening& opening, bool ReadFlags::*flag);

}  // namespace tarnwell::settings

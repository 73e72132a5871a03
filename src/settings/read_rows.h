#pragma once

#include <array>

#include "protocol/vocabulary.h"
#include "settings/calibration_tables.h"
#include "settings/opening.h"

namespace tarnwell::settings {

/// One read: whom it concerns, what is asked, where the value begins in the reply, and what comes of it.
struct ScalarRead {
  bool (*concerns)(const link::SSPA_Public&);
  const protocol::Request& request;
  std::size_t echo;
  void (*show)(Opening&, std::string_view text);
  void (*otherwise)(Opening&) = nullptr;  ///< where it doesn't concern the device
  bool hiddenUntilRead = false;           ///< `otherwise` comes ahead of the read as well
};

/// One calibration table, read point by point; the lock group of its flag comes alive behind the last one.
struct TableRead {
  bool (*concerns)(const link::SSPA_Public&);
  int points;
  void (CalibrationTables::*read)(int index);
  void (CalibrationTables::*draw)();
  forms::UpDown forms::frmSettings::*spin;
  bool ReadFlags::*flag;
};

// All in the order in which the device is asked.
extern const std::array<ScalarRead, 2> kCommonReads;
extern const std::array<ScalarRead, 10> kAmplifierReads;
extern const std::array<TableRead, 4> kTableReads;

}  // namespace tarnwell::settings

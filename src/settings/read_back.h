#pragma once

#include <span>

#include "link/send_command.h"
#include "settings/calibration_tables.h"
#include "settings/opening.h"

namespace tarnwell::settings {

struct ScalarRead;
struct TableRead;

/// Asks the device for all that the form shows, once an opening, and brings each group alive as its value comes.
class ReadBack {
 public:
  ReadBack(Opening& opening, link::SerialLink& line, CalibrationTables& tables)
      : m_opening(opening), m_form(opening.form), m_line(line), m_tables(tables) {}

  /// Returns when all is read, or at the next pause once the form is closed or the device doesn't answer. The
  /// operator's events run in its pauses.
  void ReadAllSettings();

  /// Shows the priority group and reads it where opt7316_12 is selected, else hides it. False: the form was closed.
  bool ReadPriority();

 private:
  void Ask(const ScalarRead& row);
  bool AskAll(std::span<const ScalarRead> rows);
  bool ReadController();
  bool ReadAmplifier();
  bool ReadTable(const TableRead& table);

  Opening& m_opening;
  forms::frmSettings& m_form;
  link::SerialLink& m_line;
  CalibrationTables& m_tables;
};

}  // namespace tarnwell::settings

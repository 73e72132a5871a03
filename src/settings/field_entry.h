#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "forms/frm_settings.h"
#include "settings/calibration_tables.h"

namespace tarnwell::settings {

/// Send what the spin controls hold: a limit by its tag "T1", "T2" or "T3", and the bus address.
struct SpinWriters {
  std::function<void(std::string_view tag)> WriteThreshold;
  std::function<void()> WriteSSPAAddress;
};

/// The entry fields of the form and the position fields of its tables. The operator types freely; nothing goes to the
/// device before Enter, an arrow key or the release of a spin control, and whatever else ends the typing shows the
/// stored value again.
class FieldEntry {
 public:
  FieldEntry(forms::frmSettings& form, CalibrationTables& tables, const SpinWriters& writers);

  /// Wires the fields and their spin controls to their rules, for as long as this object lives.
  void Connect();

 private:
  /// One field and its rule.
  struct Field {
    forms::TextBox& box;
    std::string_view keys;                 ///< that enter the text; none: nothing is typed there
    forms::UpDown* spin;                   ///< that the arrow keys step; null: they move the caret
    std::function<void()> draw;            ///< shows the stored value
    std::function<bool()> commit = {};     ///< sends what was typed; false: it can't be converted
    std::function<void()> writeSpin = {};  ///< sends what the spin control holds; none: it selects a table's point
  };
  using TableAction = void (CalibrationTables::*)();
  using ToText = std::optional<QString> (*)(const QString&);
  using ToSpin = std::optional<int> (*)(const QString&);
  using DrawSpin = void (*)(forms::TextBox&, const forms::UpDown&);

  Field SpinField(forms::TextBox& box, std::string_view keys, forms::UpDown& spin, ToSpin convert, DrawSpin draw,
                  std::function<void()> write);
  Field Limit(forms::TextBox& box, forms::UpDown& spin, std::string_view tag);
  Field Address();
  Field TableField(forms::TextBox& box, std::string_view keys, ToText convert, TableAction draw, TableAction write);
  Field Volts();
  Field Position(forms::TextBox& box, forms::UpDown& spin, TableAction draw);
  void ConnectTyping(const Field& field);
  void ConnectSpin(const Field& field);
  static void Step(const Field& field, int key);

  forms::frmSettings& m_form;
  CalibrationTables& m_tables;
  SpinWriters m_writers;
  std::vector<Field> m_fields;
  QObject m_wires;  ///< the wires end with it, ahead of the fields
};

}  // namespace tarnwell::settings

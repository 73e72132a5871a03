#pragma once

#include <array>
#include <functional>

#include "forms/frm_main.h"
#include "platform/desktop.h"
#include "settings/read_back.h"
#include "settings/reply_rules.h"

namespace tarnwell::settings {

/// What the operator changes on the form but for the tables. Each writer is one command, sent at once; the device's
/// reply sets what the form shows, whatever was asked. Without an answer the form closes, and nothing that is seen says
/// why. Only WriteConfiguration lets other code run.
class SettingWriters {
 public:
  SettingWriters(Opening& opening, forms::frmMain& main, link::SerialLink& line, platform::Desktop& desktop,
                 ReadBack& readBack, CalibrationTables& tables)
      : m_opening(opening),
        m_form(opening.form),
        m_main(main),
        m_line(line),
        m_desktop(desktop),
        m_readBack(readBack),
        m_tables(tables) {}

  void WriteConfiguration(char digit);  ///< '1' for 1:1, '2' for 1:2, which also brings the priority group
  void WritePriority(char letter);      ///< 'N', 'A', 'B'
  void WriteTransceiver(char digit);    ///< '1' Vorel, '0' other
  void WriteAmpShutdown(char letter);   ///< 'E' on, 'D' off; so WriteFanCtrl
  void WriteFanCtrl(char letter);
  void WriteAuxSense(char letter);      ///< 'H', 'L'
  void WriteAlarmStyle(char letter);    ///< 'F' fleeting, 'L' latching
  void WriteStatusLetter(char letter);  ///< temperature compensation, beeper, mode
  void WriteMaintenance(char letter);   ///< the mode in which the PiN point in view is in force

  /// `tag` is "T1", "T2" or "T3"; sends what its spin control holds.
  void WriteThreshold(std::string_view tag);

  /// Moves the device, and the console with it, to the address that updwnSSPAAddress holds. A device that doesn't
  /// answer there: the operator is told, and the console goes back.
  void WriteSSPAAddress();

 private:
  bool SendSetting(const protocol::Request& setting, std::string& reply);
  void Write(const protocol::Request& setting, const std::function<void(std::string_view reply)>& show);
  void WriteChoice(const protocol::Request& setting, std::size_t echo, std::span<const Choice> choices);

  Opening& m_opening;
  forms::frmSettings& m_form;
  forms::frmMain& m_main;
  link::SerialLink& m_line;
  platform::Desktop& m_desktop;
  ReadBack& m_readBack;
  CalibrationTables& m_tables;
};

/// An option, and what arriving at it writes.
struct OptionWriter {
  forms::OptionButton forms::frmSettings::*option;
  void (SettingWriters::*write)(char);
  char argument;
};

/// One row for each option of the form.
extern const std::array<OptionWriter, 24> kOptionWriters;

}  // namespace tarnwell::settings

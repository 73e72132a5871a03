#pragma once

#include <optional>

#include "forms/frm_settings.h"
#include "sim/station.h"
#include "support/program_test.h"

namespace tarnwell::test {

/// The program in a session with a simulated device that stands still, and its settings form.
class SettingsTest : public ProgramTest {
 protected:
  /// Puts a device of that kind on the line; empty texts stand for what the kind has. A row of m_replies goes before
  /// its own answer.
  void Attach(const char* kind, const char* firmware = "", const char* platform = "");

  /// A command to the simulator.
  void Tell(const char* command);

  /// Opens the settings form in a session, does `atStart` when it has been loaded, has it read, does `atEnd`, closes
  /// it, and ends the session. With no `atEnd` the form must have closed by itself. Actions that were queued for the
  /// yield run in the pauses of the read-back.
  void OpenSettings(
      const std::function<void()>& atEnd, const std::function<void()>& atStart = [] {});

  /// The form that is open.
  forms::frmSettings& Form() { return dynamic_cast<forms::frmSettings&>(Front()); }
  bool IsOpen() { return Shared().SettingsOpen; }

  // What the operator does, and what follows from it.
  void Press(const char* name);
  void KeyTo(QWidget& control, Qt::Key key);
  void SelectTab(int tab);

  /// The commands sent since the last Take.
  std::string TakeCommands();
  /// "R00?..R25?" stands for all the points between.
  static std::string WithAllPoints(const std::string& commands);

  /// The groups on the page that is in front: "Beeper: On *Off; Address: 1". A star marks what is selected, "(...)"
  /// what can't be changed.
  std::string Page();

  std::optional<sim::Station> m_station;
  std::function<void(const std::string& command)> m_onCommand;  ///< comes ahead of each answer
  bool m_silent = false;      ///< the device hears nothing, until the console has polled it once more
  std::string m_linkAfter;    ///< what the main form said after one poll and after two: "lost up "
  std::string m_sentAtClose;  ///< all that was sent when the form had closed, but for what was taken
};

}  // namespace tarnwell::test

#pragma once

#include "console/readers.h"

namespace tarnwell::console {

/// What the operator sends from the main form. Each writer sends one command and reads back, so that the console shows
/// what the device says. Without an answer what the console shows is old. None lets other code run.
class Commands {
 public:
  Commands(forms::frmMain& form, link::SerialLink& line, const link::IntervalTiming& timing, SessionState& session,
           Readers& readers)
      : m_form(form), m_line(line), m_timing(timing), m_session(session), m_readers(readers) {}

  /// Operating state "O", "S"; RF on "T", mute "X"; a controller's mode "A", "M".
  void SendStateCommand(char code);
  void SendCommsMode(const protocol::Request& mode);
  /// `setting` is "A=1", "A=2", "B=2" or "B=3".
  void SendPathCommand(std::string_view setting);

  /// Sends the gain that txtGainAdjust holds, as typed. A text that is no number sends nothing.
  void WriteGain();

  void txtGainAdjust_KeyPress(forms::KeyAscii& key);
  void txtGainAdjust_KeyDown(int key);
  /// Shows the spin's value in the field. Also takes a half-typed entry back.
  void updwnGainAdjust_Change();
  void updwnGainAdjust_MouseUp();

 private:
  template <typename ReadBack>
  bool SendAndReadBack(const protocol::Request& request, ReadBack readBack);
  void SendStatus(const protocol::Request& request);
  void EnterGain();

  forms::frmMain& m_form;
  link::SerialLink& m_line;
  const link::IntervalTiming& m_timing;
  SessionState& m_session;
  Readers& m_readers;
};

}  // namespace tarnwell::console

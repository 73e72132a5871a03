#pragma once

#include "console/readers.h"
#include "platform/serial_port.h"
#include "session/poll_cycle.h"

namespace tarnwell::session {

/// cmdConnect: opens the port, identifies the device, shapes the console for it and polls it. A session lives inside
/// that click; the next press, handled while the poll yields, ends it.
class Connection {
 public:
  Connection(forms::frmMain& form, link::SSPA_Public& shared, link::SerialLink& line,
             const link::IntervalTiming& timing, platform::SerialPort& comConnect, platform::Desktop& desktop,
             console::SessionState& session, console::Readers& readers, alarms::AlarmIndicator& indicator,
             PollCycle& polls)
      : m_form(form),
        m_shared(shared),
        m_line(line),
        m_timing(timing),
        m_port(comConnect),
        m_desktop(desktop),
        m_session(session),
        m_readers(readers),
        m_indicator(indicator),
        m_polls(polls) {}

  void cmdConnect_Click();

 private:
  void Connect();
  bool OpenPort();
  bool Identify();
  void ShowModel(const std::string& text);
  bool ReadFirmware();
  bool ReadPlatform();
  void RunAmplifierSession();
  void RunControllerSession();
  void AllowAddress(bool allowed);
  void ShowAmplifierPanels(bool shown);
  void StartPolling();
  void FailConnection();
  void EndAttempt();
  void Disconnect();

  forms::frmMain& m_form;
  link::SSPA_Public& m_shared;
  link::SerialLink& m_line;
  const link::IntervalTiming& m_timing;
  platform::SerialPort& m_port;
  platform::Desktop& m_desktop;
  console::SessionState& m_session;
  console::Readers& m_readers;
  alarms::AlarmIndicator& m_indicator;
  PollCycle& m_polls;
};

}  // namespace tarnwell::session

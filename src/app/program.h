#pragma once

#include "alarms/indicator.h"
#include "console/commands.h"
#include "console/readers.h"
#include "forms/frm_main.h"
#include "link/interval_timing.h"
#include "link/send_command.h"
#include "platform/time_of_day.h"
#include "session/connect_address.h"
#include "session/connection.h"
#include "session/form_opener.h"
#include "session/poll_cycle.h"
#include "session/start_up.h"
#include "session/stored_properties.h"
#include "snapshot/writer.h"

namespace tarnwell::app {

/// What the program stands on: the real machine, or a test's.
struct Machine {
  platform::Counter& counter;
  platform::Yielder& yielder;
  platform::SerialPort& comConnect;
  platform::Desktop& desktop;
  platform::TimeOfDay timeOfDay = [] { return QDateTime::currentDateTime(); };
};

/// The whole program: the shared module, the main form, its logic, and the wires between them.
class Program {
 public:
  explicit Program(const Machine& machine);
  /// Unloads the main form where that hasn't happened: a window can't be shown without its controls.
  ~Program();

  /// Loads the main form and shows it. False: the machine can't run the program, and the operator was told.
  bool Start();

  /// Ends the program as by its window, whatever is open.
  void End();

  forms::frmMain& MainForm() { return m_main; }
  link::SSPA_Public& Shared() { return m_shared; }

 private:
  void WireForm();
  void WireCommands();
  void WireEntries();
  void OpenAlarms();
  void OpenOptions();
  void OpenSettings();

  void OpenSnapshot();

  Machine m_machine;
  link::SSPA_Public m_shared;
  link::IntervalTiming m_timing;
  link::SerialLink m_line;
  console::SessionState m_session;
  session::StoredProperties m_properties;
  forms::frmMain m_main;
  alarms::AlarmIndicator m_indicator;
  console::Readers m_readers;
  console::Commands m_commands;
  session::ConnectAddressEntry m_address;
  session::PollCycle m_polls;
  session::Connection m_connection;
  session::FormOpener m_opener;
  session::StartUp m_startUp;
};

}  // namespace tarnwell::app

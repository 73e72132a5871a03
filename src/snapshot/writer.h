#pragma once

#include "forms/frm_save_snapshot.h"
#include "link/send_command.h"
#include "platform/desktop.h"
#include "platform/time_of_day.h"
#include "snapshot/plan.h"
#include "snapshot/snapshot_file.h"

namespace tarnwell::snapshot {

/// Writes everything that can be read from the connected device to a file, one query after the other, without letting
/// other code run. A query that fails costs its own lines alone. A program that is told to end
/// stops between two queries. Moves the form's progress bar.
class Writer {
 public:
  Writer(forms::frmSaveSnapshot& form, const link::SSPA_Public& shared, link::SerialLink& line,
         const link::IntervalTiming& timing, platform::Desktop& desktop, platform::TimeOfDay timeOfDay)
      : m_form(form),
        m_shared(shared),
        m_line(line),
        m_timing(timing),
        m_desktop(desktop),
        m_timeOfDay(std::move(timeOfDay)) {}

  /// Replace the file of that path, an older one only by a whole one. False: an error stopped the writing, and the
  /// operator was told.
  bool WriteSSPASnapshot(const QString& path) { return Write(SSPAPlan(), path); }
  bool WriteControllerSnapshot(const QString& path) { return Write(ControllerPlan(), path); }

 private:
  struct Job;

  bool Write(const Plan& plan, const QString& path);
  bool WriteAll(Job& job);
  bool WriteHead(Job& job);
  bool WriteRows(Job& job);
  bool WriteShared(Job& job, std::span<const Row> rows);
  bool WriteValues(Job& job, const Row& row, const std::string* text);
  bool WriteTable(Job& job, const Table& table);
  bool WritePoints(Job& job, const Table& table, int first, int last);

  bool Ask(const protocol::Request& request, std::string& reply);
  void Advance(int steps);

  forms::frmSaveSnapshot& m_form;
  const link::SSPA_Public& m_shared;
  link::SerialLink& m_line;
  const link::IntervalTiming& m_timing;
  platform::Desktop& m_desktop;
  platform::TimeOfDay m_timeOfDay;
};

}  // namespace tarnwell::snapshot

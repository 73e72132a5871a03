#include "snapshot/writer.h"

#include <algorithm>

#include "console/session_state.h"
#include "platform/text_encoding.h"
#include "protocol/readings.h"
#include "snapshot/table_entries.h"

namespace tarnwell::snapshot {

namespace {

constexpr double kPauseBeforeQuery = 0.05;

std::string Labelled(std::string_view label, std::string_view value) {
  return std::string("[").append(label).append("] ").append(value);
}

QString Unreadable(const std::string& reply) {
  return QStringLiteral("The device answered what no file can hold: ") + platform::FromDevice(reply);
}

}  // namespace

/// One file on its way.
struct Writer::Job {
  const Plan& plan;
  SnapshotFile file;
  alarms::AlarmTokens SnapshotAlarmNames;
  QString failure = {};  ///< why the writing stopped

  bool WriteLine(std::string_view label, std::string_view value) {
    return Told(file.WriteLine(Labelled(label, value)));
  }
  bool Finish() { return Told(file.Finish()); }

  bool Told(bool done) {
    if (!done) failure = file.Failure();
    return done;
  }
};

bool Writer::Write(const Plan& plan, const QString& path) {
  Advance(plan.stepsAhead);
  Job job{plan, SnapshotFile(path), alarms::TokensFor(m_shared)};
  if (WriteAll(job)) return true;
  m_desktop.ShowMessage({QString::fromUtf8(plan.failure.data(), static_cast<qsizetype>(plan.failure.size())),
                         platform::MessageIcon::kWarning, job.failure + job.file.Kept()});
  job.file.FinishIncomplete();
  return false;
}

bool Writer::WriteAll(Job& job) {
  if (!job.file.Open()) {
    job.failure = job.file.Failure();
    return false;
  }
  const auto& tables = job.plan.tables;
  return WriteHead(job) && WriteRows(job) &&
         std::all_of(tables.begin(), tables.end(), [&](const Table& table) { return WriteTable(job, table); }) &&
         job.Finish();
}

bool Writer::WriteHead(Job& job) {
  const QString now = m_timeOfDay().toString(QStringLiteral("dd/MM/yyyy hh:mm:ss"));
  return job.WriteLine("software", console::kApplicationTitle.toStdString()) &&
         job.WriteLine("file description", platform::ToDevice(m_form.txtSnapShotID.Text())) &&
         job.WriteLine("time dd/mm/yyyy hh:mm:ss", now.toStdString());
}

bool Writer::WriteRows(Job& job) {
  std::vector<Row> rows;
  std::copy_if(job.plan.rows.begin(), job.plan.rows.end(), std::back_inserter(rows),
               [this](const Row& row) { return row.asked(m_shared) || !row.unasked.empty(); });
  for (auto first = rows.begin(); first != rows.end();) {
    const auto end = std::find_if(first, rows.end(), [first](const Row& row) { return row.request != first->request; });
    if (!WriteShared(job, {first, end})) return false;
    first = end;
  }
  return true;
}

bool Writer::WriteShared(Job& job, std::span<const Row> rows) {
  if (m_desktop.EndAsked()) return false;
  const Row& first = rows.front();
  bool written = true;
  if (first.asked(m_shared)) {
    const protocol::Request request = first.request->ForSnapshot();
    std::string text;
    const bool answered = Ask(request, text);
    // behind the echo, whose place alone counts
    text.erase(0, request.expected.size());
    for (const Row& row : rows) written = written && WriteValues(job, row, answered ? &text : nullptr);
  } else {
    for (const Row& row : rows) written = written && job.WriteLine(row.label, row.unasked);
  }
  if (written) Advance(job.plan.stepsPerRequest);
  return written;
}

bool Writer::WriteValues(Job& job, const Row& row, const std::string* text) {
  if (text == nullptr) return job.WriteLine(row.label, kReadError);
  const Values values = row.shown.values(row.shown, *text, job.SnapshotAlarmNames);
  if (!values) {
    job.failure = Unreadable(row.request->expected + *text);
    return false;
  }
  return std::all_of(values->begin(), values->end(),
                     [&](const std::string& value) { return job.WriteLine(row.label, value); });
}

bool Writer::WriteTable(Job& job, const Table& table) {
  if (!table.asked(m_shared)) {
    if (table.unasked.empty()) return true;
    const bool written = job.WriteLine(table.label, table.unasked);
    Advance(table.unaskedSteps);
    return written;
  }
  for (int first = table.first; first <= table.last; first += table.pointsPerLine) {
    if (!WritePoints(job, table, first, std::min(first + table.pointsPerLine - 1, table.last))) return false;
  }
  return true;
}

bool Writer::WritePoints(Job& job, const Table& table, int first, int last) {
  std::string entries;
  for (int index = first; index <= last; ++index) {
    if (m_desktop.EndAsked()) return false;
    std::string reply;
    const bool answered = Ask(table.query(index).ForSnapshot(), reply);
    const std::optional<std::string> entry = answered ? table.entry(index, reply) : std::string(kErrorEntry);
    if (!entry) {
      job.failure = Unreadable(reply);
      return false;
    }
    if (!entries.empty()) entries += ", ";
    entries += *entry;
    Advance(1);
  }
  return job.WriteLine(table.label, entries);
}

bool Writer::Ask(const protocol::Request& request, std::string& reply) {
  m_timing.DelayBlocking(kPauseBeforeQuery);
  return protocol::Send(m_line, request, reply);
}

void Writer::Advance(int steps) {
  m_form.prgSaveSnapshot.setValue(m_form.prgSaveSnapshot.value() + steps);
  // The whole form, at once: while the line is busy nothing else would draw what another window had covered.
  m_form.repaint();
}

}  // namespace tarnwell::snapshot

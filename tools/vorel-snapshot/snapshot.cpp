#include "tools/vorel-snapshot/snapshot.h"

#include <algorithm>

#include "snapshot/snapshot_line.h"
#include "tools/vorel-snapshot/order.h"

namespace tarnwell::vorel_snapshot {

namespace {

std::string Count(std::size_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

class Reader {
 public:
  explicit Reader(std::string_view file) : m_lines(SplitLines(file)), m_damaged(m_lines.size()) {}

  Snapshot All() {
    m_snapshot.lines = m_lines.size();
    if (m_lines.empty()) return Useless("the file is empty");
    Order order = PlaceLines(m_lines);
    if (!order.known) return Useless("no line of a snapshot is in it");
    m_snapshot.kind = order.kind;
    TellLines();
    for (Fault& fault : order.faults) Tell(std::move(fault));
    m_snapshot.faults.insert(m_snapshot.faults.end(), order.gaps.begin(), order.gaps.end());
    for (std::size_t row = 0; row < order.rows.size(); ++row) {
      if (!order.rows[row].empty()) ReadRow(Rows(order.kind)[row], order.rows[row]);
    }
    const auto byLine = [](const Fault& a, const Fault& b) { return a.line < b.line; };
    std::stable_sort(m_snapshot.faults.begin(), m_snapshot.faults.end(), byLine);
    return std::move(m_snapshot);
  }

 private:
  Snapshot Useless(std::string why) {
    m_snapshot.faults = {{0, 0, std::move(why)}};
    return std::move(m_snapshot);
  }

  void Tell(Fault fault) {
    if (fault.line > 0 && fault.line <= m_damaged.size()) m_damaged[fault.line - 1] = true;
    m_snapshot.faults.push_back(std::move(fault));
  }

  void TellLines() {
    const auto wrongEnd = SharedWrongEnd(m_lines);
    if (wrongEnd) Tell({0, 0, "all lines end in " + EndName(*wrongEnd) + " rather than CR LF: a converted file"});
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      if (m_lines[i].body == kGivenUp) {
        Tell({i + 1, 0, "the console gave up here: " + std::string(kGivenUp)});
        continue;
      }
      const Line line = {m_lines[i].body, wrongEnd ? std::string_view("\r\n") : m_lines[i].end};
      for (Fault& fault : LineFaults(line, i + 1)) Tell(std::move(fault));
    }
  }

  /// What stands behind the label.
  std::string_view Behind(const Placed& placed) const {
    const std::string_view text = LineText(m_lines[placed.line]);
    return text.substr(placed.valueAt);
  }

  void TellMismatch(const Placed& placed, const std::optional<Mismatch>& mismatch) {
    if (mismatch) Tell({placed.line + 1, placed.valueAt + mismatch->offset + 1, mismatch->what});
  }

  void ReadRow(const Row& row, const std::vector<Placed>& lines) {
    Entry entry{.row = &row, .name = std::string(row.name.empty() ? lines.front().label : row.name)};
    const std::string_view first = Behind(lines.front());
    const bool list = row.form == Form::kAlarms && first != kNoAlarm && first != kNotReadMark;
    const bool table = row.form == Form::kTable && !(row.mayLack && first == kLackingMark);
    if (list || table) {
      entry.value.kind = Value::Kind::kText;
      list ? ReadList(entry, lines) : ReadTable(entry, lines);
    } else {
      ReadOne(entry, lines);
    }
    for (const Placed& placed : lines) entry.damaged = entry.damaged || m_damaged[placed.line];
    m_snapshot.entries.push_back(std::move(entry));
  }

  void ReadOne(Entry& entry, const std::vector<Placed>& lines) {
    auto read = ReadSingle(*entry.row, Behind(lines.front()));
    // An empty list is no error: it holds nothing.
    if (entry.row->form == Form::kAlarms && read.value.kind != Value::Kind::kError)
      read.value.kind = Value::Kind::kText;
    entry.value = std::move(read.value);
    TellMismatch(lines.front(), read.mismatch);
    for (std::size_t i = 1; i < lines.size(); ++i) {
      Tell({lines[i].line + 1, 0, "repeats [" + entry.name + "] of line " + std::to_string(lines.front().line + 1)});
    }
  }

  void ReadList(Entry& entry, const std::vector<Placed>& lines) {
    std::size_t slot = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      auto read = ReadAlarms(m_snapshot.kind, Behind(lines[i]), slot);
      TellMismatch(lines[i], read.mismatch);
      const bool last = i + 1 == lines.size();
      if (!read.mismatch && (read.value.size() > kAlarmsPerLine || (!last && read.value.size() < kAlarmsPerLine))) {
        Tell({lines[i].line + 1, 0, Count(read.value.size(), "alarm") + " rather than 3"});
      }
      entry.alarms.insert(entry.alarms.end(), read.value.begin(), read.value.end());
    }
  }

  void ReadTable(Entry& entry, const std::vector<Placed>& lines) {
    const TableShape& shape = *entry.row->table;
    const bool allThere = lines.size() == shape.Lines();
    if (!allThere) {
      const std::string due = " rather than " + std::to_string(shape.Lines());
      const std::string what = "[" + entry.name + "] has " + Count(lines.size(), "line") + due;
      m_snapshot.faults.push_back({lines.back().line + 1, 0, what});
    }
    const auto isStray = [](const Placed& placed) { return placed.stray; };
    const bool complete = allThere && std::none_of(lines.begin(), lines.end(), isStray);
    entry.damaged = !complete;
    entry.points.resize(shape.points);
    for (std::size_t i = 0; i < lines.size(); ++i) ReadTableLine(entry, lines[i], i, complete);
  }

  void ReadTableLine(Entry& entry, const Placed& placed, std::size_t index, bool complete) {
    const TableShape& shape = *entry.row->table;
    const bool cut = LineText(m_lines[placed.line]).size() == snapshot::kTextLength;
    const auto read = ReadPoints(shape, Behind(placed), cut);
    TellMismatch(placed, read.mismatch);
    const std::size_t due = shape.PointsOf(index);
    if (complete && !read.mismatch && !cut && read.value.size() != due) {
      Tell({placed.line + 1, 0, Count(read.value.size(), "point") + " rather than " + std::to_string(due)});
    }
    for (std::size_t i = 0; i < read.value.size(); ++i) {
      TakePoint(entry, placed, index * shape.perLine + i, read.value[i], complete);
    }
  }

  /// A point that carries its index is known by it also where a line is missing or moved.
  void TakePoint(Entry& entry, const Placed& placed, std::size_t place, const Point& point, bool complete) {
    const bool indexed = entry.row->table->counted && point.first.kind == Value::Kind::kNumber;
    if (indexed) {
      const bool inPlace = point.first.number == static_cast<double>(place);
      if (complete && !inPlace) {
        Tell({placed.line + 1, 0, "point " + point.first.text + " where " + std::to_string(place) + " belongs"});
      }
      if (point.first.number < 0 || point.first.number >= static_cast<double>(entry.points.size())) return;
      place = static_cast<std::size_t>(point.first.number);
    }
    if (place >= entry.points.size()) return;
    entry.points[place] = point;
    entry.points[place].damaged = m_damaged[placed.line] || (!complete && !indexed);
  }

  std::vector<Line> m_lines;
  std::vector<bool> m_damaged;
  Snapshot m_snapshot;
};

}  // namespace

const Entry* Snapshot::Find(const Row& row) const {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.row == &row; });
  return found == entries.end() ? nullptr : &*found;
}

Snapshot ReadSnapshot(std::string_view file) { return Reader(file).All(); }

}  // namespace tarnwell::vorel_snapshot

#include "tools/vorel-snapshot/snapshot.h"

#include <algorithm>

#include "snapshot/snapshot_line.h"
#include "tools/vorel-snapshot/conversion.h"
#include "tools/vorel-snapshot/order.h"

namespace tarnwell::vorel_snapshot {

namespace {

std::string Count(std::size_t count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

/// Gives what can't be read the room between the points ahead of it and those behind: it may look like more points than
/// it is, or like fewer.
void FitLost(std::vector<Point>& points, std::size_t due) {
  const auto isLost = [](const Point& point) { return point.first.kind == Value::Kind::kLost; };
  const auto from = std::find_if(points.begin(), points.end(), isLost);
  const auto to = std::find_if(points.rbegin(), points.rend(), isLost).base();
  if (from == points.end()) return;
  const std::size_t kept = points.size() - static_cast<std::size_t>(to - from);
  if (kept <= due) points.insert(points.erase(from, to), due - kept, Point());
}

class Reader {
 public:
  explicit Reader(std::vector<Line> lines) : m_lines(std::move(lines)), m_damaged(m_lines.size()) {}

  Snapshot All() {
    m_snapshot.lines = m_lines.size();
    Order order = PlaceLines(m_lines);
    if (!order.known) return Foreign();
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
  Snapshot Foreign() const {
    const Fault fault{0, 0, "not a snapshot: no line of one is in it"};
    return {.known = false, .foreign = true, .lines = m_lines.size(), .faults = {fault}};
  }

  void Tell(Fault fault) {
    if (fault.line > 0 && fault.line <= m_damaged.size()) m_damaged[fault.line - 1] = true;
    m_snapshot.faults.push_back(std::move(fault));
  }

  void TellLines() {
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
      if (m_lines[i].body == kGivenUp) {
        Tell({i + 1, 0, "the console gave up here: " + std::string(kGivenUp)});
        continue;
      }
      for (Fault& fault : LineFaults(m_lines[i], i + 1)) Tell(std::move(fault));
    }
  }

  /// What stands behind the label.
  std::string_view Behind(const Placed& placed) const {
    const std::string_view text = LineText(m_lines[placed.line]);
    return text.substr(placed.valueAt);
  }

  static Fault MismatchFault(const Placed& placed, const Mismatch& mismatch) {
    return {placed.line + 1, placed.valueAt + mismatch.offset + 1, mismatch.what};
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
    if (read.mismatch) Tell(MismatchFault(lines.front(), *read.mismatch));
    for (std::size_t i = 1; i < lines.size(); ++i) {
      Tell({lines[i].line + 1, 0, "repeats [" + entry.name + "] of line " + std::to_string(lines.front().line + 1)});
    }
  }

  void ReadList(Entry& entry, const std::vector<Placed>& lines) {
    std::size_t slot = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto read = ReadAlarms(m_snapshot.kind, Behind(lines[i]), slot);
      for (const Mismatch& mismatch : read.mismatches) Tell(MismatchFault(lines[i], mismatch));
      const std::size_t count = read.values.size();
      const bool last = i + 1 == lines.size();
      if (read.mismatches.empty() && (count > kAlarmsPerLine || (!last && count < kAlarmsPerLine))) {
        Tell({lines[i].line + 1, 0, Count(count, "alarm") + " rather than 3"});
      }
      entry.alarms.insert(entry.alarms.end(), read.values.begin(), read.values.end());
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

  /// Of a line that is whole, what can't be read is lost alone; of any other nothing is sure.
  void TellOf(const Placed& placed, Fault fault) {
    if (m_damaged[placed.line]) return Tell(std::move(fault));
    m_snapshot.faults.push_back(std::move(fault));
  }

  void ReadTableLine(Entry& entry, const Placed& placed, std::size_t index, bool complete) {
    const TableShape& shape = *entry.row->table;
    // A blank in the last place may be the text's own.
    const bool cut = LineText(m_lines[placed.line]).size() + 1 >= snapshot::kTextLength;
    const bool whole = !m_damaged[placed.line];
    auto read = ReadPoints(shape, Behind(placed), cut, whole);
    for (const Mismatch& mismatch : read.mismatches) TellOf(placed, MismatchFault(placed, mismatch));
    const std::size_t due = shape.PointsOf(index);
    if (complete && whole && !cut) FitLost(read.values, due);
    const bool shortened = complete && whole && cut && read.mismatches.empty();
    const Point cutPoint{{Value::Kind::kCut}, {Value::Kind::kCut}};
    if (shortened && read.values.size() < due) read.values.resize(due, cutPoint);
    const std::size_t count = read.values.size();
    if (complete && (whole || read.mismatches.empty()) && !cut && count != due) {
      Tell({placed.line + 1, 0, Count(count, "point") + " rather than " + std::to_string(due)});
    }
    for (std::size_t i = 0; i < count; ++i) {
      TakePoint(entry, placed, index * shape.perLine + i, read.values[i], complete);
    }
  }

  /// A point that carries its index is known by it also where a line is missing or moved.
  void TakePoint(Entry& entry, const Placed& placed, std::size_t place, const Point& point, bool complete) {
    const bool indexed = entry.row->table->counted && point.first.kind == Value::Kind::kNumber;
    if (indexed) {
      const bool misplaced = complete && point.first.number != static_cast<double>(place);
      if (misplaced) {
        TellOf(placed,
               {placed.line + 1, 0, "point " + point.first.text + " where " + std::to_string(place) + " belongs"});
      }
      const bool lost = misplaced && !m_damaged[placed.line];
      if (lost || point.first.number < 0 || point.first.number >= static_cast<double>(entry.points.size())) return;
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

/// The conversions of a file as a whole, each told once, and its lines as they stood before.
class Source {
 public:
  explicit Source(std::string_view file) : m_lines(SplitLines(file)) {
    if (auto conversion = FindConversion(file)) Take(std::move(*conversion));
    const auto wrongEnd = SharedWrongEnd(m_lines);
    if (!wrongEnd) return;
    Tell("all lines end in " + EndName(*wrongEnd) + " rather than CR LF", EndCure(*wrongEnd));
    for (Line& line : m_lines) line.end = line.end.empty() ? line.end : "\r\n";
  }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  const std::vector<Line>& Lines() const { return m_lines; }
  const std::vector<Fault>& Faults() const { return m_faults; }

 private:
  /// Bytes of a description can be UTF-8 by chance: what makes more lines hold is right.
  void Take(Conversion conversion) {
    m_bytes = std::move(conversion.bytes);
    std::vector<Line> lines = SplitLines(m_bytes);
    if (std::count_if(lines.begin(), lines.end(), Holds) <= std::count_if(m_lines.begin(), m_lines.end(), Holds))
      return;
    m_lines = std::move(lines);
    Tell(std::string("the characters are ") + conversion.encoding + " rather than windows-1252", conversion.cure);
  }

  void Tell(const std::string& what, const std::string& cure) {
    m_faults.push_back({0, 0, what + ": a converted file, cured by: " + cure});
  }

  std::string m_bytes;
  std::vector<Line> m_lines;
  std::vector<Fault> m_faults;
};

Fault SeveralFault(const std::vector<std::size_t>& begins) {
  std::string what = std::to_string(begins.size()) + " snapshots in one file, from lines";
  for (const std::size_t begin : begins) what += (begin == 0 ? " " : ", ") + std::to_string(begin + 1);
  return {0, 0, what + ": only the first is read"};
}

}  // namespace

const Entry* Snapshot::Find(const Row& row) const {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.row == &row; });
  return found == entries.end() ? nullptr : &*found;
}

Snapshot ReadSnapshot(std::string_view file) {
  // A disk that lost its power may give a file back that has its length and nothing else.
  if (file.find_first_not_of('\0') == std::string_view::npos) {
    return {.known = false,
            .faults = {{0, 0, file.empty() ? "the file is empty" : "nothing but zeros is in the file"}}};
  }
  const Source source(file);
  const std::vector<Line>& lines = source.Lines();
  const std::vector<std::size_t> begins = Beginnings(lines);
  std::vector<Fault> faults = source.Faults();
  if (begins.size() > 1) faults.push_back(SeveralFault(begins));
  Snapshot first;
  for (std::size_t i = 0; i < begins.size(); ++i) {
    const auto at = [&](std::size_t line) { return lines.begin() + static_cast<std::ptrdiff_t>(line); };
    Snapshot read = Reader({at(begins[i]), i + 1 < begins.size() ? at(begins[i + 1]) : lines.end()}).All();
    if (i == 0 && !read.known) return read;
    for (Fault& fault : read.faults) {
      if (fault.line != 0) fault.line += begins[i];
      faults.push_back(std::move(fault));
    }
    if (i == 0) first = std::move(read);
  }
  first.lines = lines.size();
  first.faults = std::move(faults);
  return first;
}

}  // namespace tarnwell::vorel_snapshot

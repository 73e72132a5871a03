#include "tools/vorel-snapshot/diff.h"

#include "tools/vorel-snapshot/describe.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr int kLabelWidth = 31;
constexpr int kValueWidth = 24;

QString Heading(char mark, const NamedSnapshot& named) {
  return QStringLiteral("%1  %2: %3, %4, \"%5\"\n")
      .arg(QLatin1Char(mark))
      .arg(named.file, TextOf(named.snapshot, "time"), TextOf(named.snapshot, "software"),
           TextOf(named.snapshot, "file description"));
}

QString ChangeLine(const QString& label, const QString& from, const QString& to) {
  return QStringLiteral("  %1 %2 -> %3\n").arg(label, -kLabelWidth).arg(from, -kValueWidth).arg(to);
}

/// Numbers by their value: "0.5" is ".5".
bool IsSame(const Value& before, const Value& after) {
  if (before.kind != after.kind) return false;
  return before.kind == Value::Kind::kNumber ? before.number == after.number : before.text == after.text;
}

bool IsSame(const Entry& before, const Entry& after) {
  return before.name == after.name && IsSame(before.value, after.value) && before.alarms == after.alarms &&
         before.points.size() == after.points.size();
}

/// The two lists of changes, filled row by row.
class Comparison {
 public:
  explicit Comparison(bool readingsCount) : m_readingsCount(readingsCount) {}

  void Compare(const Row& row, const Entry* before, const Entry* after) {
    if (row.role == Role::kHeading || (!before && !after)) return;
    if (before && after && IsSame(*before, *after)) return ComparePoints(*before, *after);
    const bool mereReading = IsMereReading(row, before, after);
    Tell(Text((after ? after : before)->name), Describe(before), Describe(after), mereReading);
  }

  Differences Report(const QString& heading) const {
    QString report = heading;
    if (!m_changes.isEmpty()) report += QStringLiteral("\nchanged\n") + m_changes;
    if (!m_readings.isEmpty()) report += QStringLiteral("\nmeasured, not counted\n") + m_readings;
    if (m_count == 0) return {report + QStringLiteral("\nno difference that counts\n"), m_count};
    return {report + QStringLiteral("\n%1 %2\n")
                         .arg(m_count)
                         .arg(m_count == 1 ? QStringLiteral("difference") : QStringLiteral("differences")),
            m_count};
  }

 private:
  static QString Describe(const Entry* entry) {
    if (!entry) return QStringLiteral("(no such line)");
    if (!entry->points.empty()) return QStringLiteral("%1 points").arg(entry->points.size());
    return EntryText(*entry);
  }

  bool IsMereReading(const Row& row, const Entry* before, const Entry* after) const {
    const auto isNumber = [](const Entry* entry) { return entry && entry->value.kind == Value::Kind::kNumber; };
    return !m_readingsCount && row.role == Role::kReading && isNumber(before) && isNumber(after) &&
           before->name == after->name;
  }

  void ComparePoints(const Entry& before, const Entry& after) {
    for (std::size_t i = 0; i < before.points.size(); ++i) {
      const Point& from = before.points[i];
      const Point& to = after.points[i];
      if (IsSame(from.first, to.first) && IsSame(from.second, to.second)) continue;
      const QString label = QStringLiteral("%1, point %2").arg(Text(after.name)).arg(i + 1);
      Tell(label, PointText(from), PointText(to), false);
    }
  }

  void Tell(const QString& label, const QString& from, const QString& to, bool mereReading) {
    (mereReading ? m_readings : m_changes) += ChangeLine(label, from, to);
    if (!mereReading) ++m_count;
  }

  bool m_readingsCount;
  QString m_changes;
  QString m_readings;
  std::size_t m_count = 0;
};

}  // namespace

Differences Diff(const NamedSnapshot& before, const NamedSnapshot& after, bool readingsCount) {
  const QString heading = Heading('-', before) + Heading('+', after);
  for (const NamedSnapshot* named : {&before, &after}) {
    if (!named->snapshot.known) return {QStringLiteral("%1: %2\n").arg(named->file, KindText(named->snapshot)), 1};
  }
  if (before.snapshot.kind != after.snapshot.kind) {
    return {heading + QStringLiteral("\none is of an amplifier, the other of a redundancy controller\n"), 1};
  }
  Comparison comparison(readingsCount);
  for (const Row& row : Rows(before.snapshot.kind)) {
    comparison.Compare(row, before.snapshot.Find(row), after.snapshot.Find(row));
  }
  return comparison.Report(heading);
}

}  // namespace tarnwell::vorel_snapshot

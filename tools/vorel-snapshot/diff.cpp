#include "tools/vorel-snapshot/diff.h"

#include <algorithm>
#include <string>
#include <vector>

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
  return QStringLiteral(" %1 %2 -> %3\n").arg(label, -kLabelWidth).arg(from, -kValueWidth).arg(to);
}

/// Those of `some` that `others` hasn't.
QString Without(std::vector<std::string> some, const std::vector<std::string>& others) {
  for (const std::string& other : others) {
    if (const auto same = std::find(some.begin(), some.end(), other); same != some.end()) some.erase(same);
  }
  QStringList left;
  for (const std::string& alarm : some) left += Text(alarm);
  return left.join(QStringLiteral(", "));
}

/// "come: SIMULATED; gone: AUXILIARY"; empty where both have the same.
QString ListChange(const Entry& before, const Entry& after) {
  const QString come = Without(after.alarms, before.alarms);
  const QString gone = Without(before.alarms, after.alarms);
  QStringList parts;
  if (!come.isEmpty()) parts += QStringLiteral("come: ") + come;
  if (!gone.isEmpty()) parts += QStringLiteral("gone: ") + gone;
  return parts.join(QStringLiteral("; "));
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

/// A whole file has every line of its kind.
bool IsDamaged(const Entry* entry) { return !entry || entry->damaged || entry->value.kind == Value::Kind::kLost; }
bool IsDamaged(const Point& point) { return point.damaged || point.second.kind == Value::Kind::kLost; }

/// The lists of what differs, filled row by row.
class Comparison {
 public:
  explicit Comparison(bool readingsCount) : m_readingsCount(readingsCount) {}

  void Compare(const Row& row, const Entry* before, const Entry* after) {
    if (row.role == Role::kHeading || (!before && !after)) return;
    if (before && after && IsSame(*before, *after)) return ComparePoints(*before, *after);
    Part& part = IsDamaged(before) || IsDamaged(after) ? m_damaged
                 : IsMereReading(row, *before, *after) ? m_readings
                                                       : m_changes;
    part.Add(Line(row, before, after));
  }

  Differences Report(const QString& heading) const {
    const QString total = m_changes.count == 0   ? QStringLiteral("no difference that counts")
                          : m_changes.count == 1 ? QStringLiteral("1 difference")
                                                 : QStringLiteral("%1 differences").arg(m_changes.count);
    const QString damage = m_damaged.count == 0 ? QString() : QStringLiteral(", %1 in damage").arg(m_damaged.count);
    return {heading + m_changes.Page() + m_readings.Page() + m_damaged.Page() + QLatin1Char('\n') + total + damage +
                QLatin1Char('\n'),
            m_changes.count};
  }

 private:
  struct Part {
    const char* title;
    char mark = ' ';
    QString lines = {};
    std::size_t count = 0;

    void Add(const QString& line) {
      lines += QLatin1Char(mark) + line;
      ++count;
    }
    QString Page() const { return count == 0 ? QString() : QStringLiteral("\n%1\n").arg(QLatin1String(title)) + lines; }
  };

  static QString Describe(const Entry* entry) {
    if (!entry) return QStringLiteral("(no such line)");
    if (!entry->points.empty()) return QStringLiteral("%1 points").arg(entry->points.size());
    return EntryText(*entry);
  }

  static QString Line(const Row& row, const Entry* before, const Entry* after) {
    const QString label = Text((after ? after : before)->name);
    const bool lists = row.form == Form::kAlarms && before && after && before->HasContents() && after->HasContents();
    const QString change = lists ? ListChange(*before, *after) : QString();
    if (change.isEmpty()) return ChangeLine(label, Describe(before), Describe(after));
    return QStringLiteral(" %1 %2\n").arg(label, -kLabelWidth).arg(change);
  }

  bool IsMereReading(const Row& row, const Entry& before, const Entry& after) const {
    const auto isNumber = [](const Entry& entry) { return entry.value.kind == Value::Kind::kNumber; };
    return !m_readingsCount && row.role == Role::kReading && isNumber(before) && isNumber(after) &&
           before.name == after.name;
  }

  void ComparePoints(const Entry& before, const Entry& after) {
    for (std::size_t i = 0; i < before.points.size(); ++i) {
      const Point& from = before.points[i];
      const Point& to = after.points[i];
      if (IsSame(from.first, to.first) && IsSame(from.second, to.second)) continue;
      const QString label = QStringLiteral("%1, point %2").arg(Text(after.name)).arg(i + 1);
      (IsDamaged(from) || IsDamaged(to) ? m_damaged : m_changes).Add(ChangeLine(label, PointText(from), PointText(to)));
    }
  }

  bool m_readingsCount;
  Part m_changes{"changed"};
  Part m_readings{"measured, not counted"};
  Part m_damaged{"damaged, counted apart", '!'};
};

}  // namespace

Differences Diff(const NamedSnapshot& before, const NamedSnapshot& after, bool readingsCount) {
  const QString heading = Heading('-', before) + Heading('+', after);
  for (const NamedSnapshot* named : {&before, &after}) {
    if (!named->snapshot.known) return {QStringLiteral("%1: %2\n").arg(named->file, StateText(named->snapshot)), 0};
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

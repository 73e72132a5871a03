#include "tools/vorel-snapshot/show.h"

#include "tools/vorel-snapshot/describe.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr int kLabelWidth = 23;

QString Mark(bool damaged) { return damaged ? QStringLiteral("! ") : QStringLiteral("  "); }

bool IsTable(const Entry& entry) { return entry.row->form == Form::kTable && entry.HasContents(); }

QString EntryLine(const Entry& entry) {
  const QString text = IsTable(entry) ? QStringLiteral("%1 points, below").arg(entry.points.size()) : EntryText(entry);
  return Mark(entry.damaged) + Text(entry.name).leftJustified(kLabelWidth) + text + QLatin1Char('\n');
}

QString FieldText(const Value& value) { return value.text.empty() ? ValueText(value, {}) : Text(value.text); }

QString PointRow(const QString& point, const QString& first, const QString& second, const TableShape& shape) {
  const auto width = [](const Field& field) { return static_cast<int>(FieldTitle(field).size()) + 2; };
  return point.rightJustified(5) + first.rightJustified(width(shape.first)) +
         second.rightJustified(width(shape.second)) + QLatin1Char('\n');
}

QString TablePage(const Entry& entry) {
  const TableShape& shape = *entry.row->table;
  QString page = QLatin1Char('\n') + Text(entry.name) + QLatin1Char('\n');
  page += Mark(false) + PointRow(QStringLiteral("point"), FieldTitle(shape.first), FieldTitle(shape.second), shape);
  for (std::size_t i = 0; i < entry.points.size(); ++i) {
    const Point& point = entry.points[i];
    page += Mark(point.damaged || point.second.kind == Value::Kind::kLost) +
            PointRow(QString::number(i + 1), FieldText(point.first), FieldText(point.second), shape);
  }
  return page;
}

}  // namespace

QString Show(const QString& file, const Snapshot& snapshot) {
  if (!snapshot.known) return QStringLiteral("%1: %2\n").arg(file, KindText(snapshot));
  QString page = QStringLiteral("%1: %2, %3 lines, %4\n\n")
                     .arg(file, KindText(snapshot))
                     .arg(snapshot.lines)
                     .arg(StateText(snapshot));
  for (const Entry& entry : snapshot.entries) page += EntryLine(entry);
  for (const Entry& entry : snapshot.entries) {
    if (IsTable(entry)) page += TablePage(entry);
  }
  return page;
}

}  // namespace tarnwell::vorel_snapshot

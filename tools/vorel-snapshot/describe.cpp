#include "tools/vorel-snapshot/describe.h"

#include <QTimeZone>
#include <algorithm>

#include "platform/text_encoding.h"

namespace tarnwell::vorel_snapshot {

QString Text(std::string_view bytes) { return platform::Printable(platform::FromDevice(bytes)); }

QString ValueText(const Value& value, std::string_view unit) {
  switch (value.kind) {
    case Value::Kind::kNumber:
      return unit.empty() ? Text(value.text) : Text(value.text) + QLatin1Char(' ') + Text(unit);
    case Value::Kind::kText:
      return Text(value.text);
    case Value::Kind::kDisabled:
      return QStringLiteral("disabled");
    case Value::Kind::kLacking:
      return QStringLiteral("none (NA)");
    case Value::Kind::kError:
      return (value.text == kUnknown ? QStringLiteral("unknown (%1)") : QStringLiteral("not read (%1)"))
          .arg(Text(value.text));
    case Value::Kind::kCut:
      return QStringLiteral("cut");
    case Value::Kind::kLost:
      break;
  }
  return value.text.empty() ? QStringLiteral("lost") : Text(value.text);
}

QString EntryText(const Entry& entry) {
  if (entry.row->form != Form::kAlarms || !entry.HasContents()) return ValueText(entry.value, entry.row->unit);
  QStringList alarms;
  for (const std::string& alarm : entry.alarms) alarms += Text(alarm);
  return alarms.isEmpty() ? Text(kNoAlarm) : alarms.join(QStringLiteral(", "));
}

QString PointText(const Point& point) {
  if (point.first.text.empty()) return ValueText(point.first, {});
  return QStringLiteral("(%1, %2)").arg(Text(point.first.text), Text(point.second.text));
}

QString FieldTitle(const Field& field) {
  return field.unit.empty() ? Text(field.name) : QStringLiteral("%1 (%2)").arg(Text(field.name), Text(field.unit));
}

QString FaultText(const QString& file, const Fault& fault) {
  QString text = file + QLatin1Char(':');
  if (fault.line != 0) text += QString::number(fault.line) + QLatin1Char(':');
  if (fault.column != 0) text += QStringLiteral(" column %1:").arg(fault.column);
  return text + QLatin1Char(' ') + Text(fault.what);
}

QString FaultLines(const QString& file, const Snapshot& snapshot) {
  QString lines;
  for (const Fault& fault : snapshot.faults) lines += FaultText(file, fault) + QLatin1Char('\n');
  return lines;
}

QString KindText(const Snapshot& snapshot) {
  if (!snapshot.known) return QStringLiteral("not a snapshot");
  return snapshot.kind == Kind::kController ? QStringLiteral("redundancy controller") : QStringLiteral("amplifier");
}

QString StateText(const Snapshot& snapshot) {
  if (snapshot.foreign) return KindText(snapshot);
  return (snapshot.faults.empty() ? QStringLiteral("whole") : QStringLiteral("damaged")) + NotReadText(snapshot);
}

QString NotReadText(const Snapshot& snapshot) {
  const auto isNotRead = [](const Value& value) {
    return value.kind == Value::Kind::kError && value.text == kNotReadMark;
  };
  std::ptrdiff_t count = 0;
  for (const Entry& entry : snapshot.entries) {
    count += isNotRead(entry.value) ? 1 : 0;
    count += std::count_if(entry.points.begin(), entry.points.end(),
                           [&](const Point& point) { return isNotRead(point.second); });
  }
  if (count == 0) return {};
  return QStringLiteral(", %1 %2 not read")
      .arg(count)
      .arg(count == 1 ? QStringLiteral("value") : QStringLiteral("values"));
}

QString Model(const Snapshot& snapshot) {
  return TextOf(snapshot, snapshot.kind == Kind::kController ? "redundancy controller" : "sspa");
}

QDateTime TimeOf(const QString& text) {
  const QDate date = QDate::fromString(text.section(QLatin1Char(' '), 0, 0), QStringLiteral("dd/MM/yyyy"));
  const QTime time = QTime::fromString(text.section(QLatin1Char(' '), 1), QStringLiteral("hh:mm:ss"));
  return date.isValid() && time.isValid() ? QDateTime(date, time, QTimeZone::utc()) : QDateTime();
}

QString IsoTime(const QDateTime& time) { return time.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")); }

QString IsoTime(const QString& text) {
  const QDateTime time = TimeOf(text);
  return time.isValid() ? IsoTime(time) : text;
}

QString TextOf(const Snapshot& snapshot, std::string_view label) {
  const auto has = [&](const Entry& entry) { return entry.name == label; };
  const auto found = std::find_if(snapshot.entries.begin(), snapshot.entries.end(), has);
  return found == snapshot.entries.end() ? QString() : EntryText(*found);
}

}  // namespace tarnwell::vorel_snapshot

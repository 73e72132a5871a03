#include "tools/vorel-snapshot/export.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include "tools/shared/csv.h"
#include "tools/vorel-snapshot/describe.h"

namespace tarnwell::vorel_snapshot {

namespace {

/// The error of a value; nothing for one that is there, disabled or not in the device.
QString ErrorText(const Value& value) {
  if (value.kind == Value::Kind::kLost) return QStringLiteral("lost");
  if (value.kind == Value::Kind::kCut) return QStringLiteral("cut");
  return value.kind == Value::Kind::kError ? Text(value.text) : QString();
}

}  // namespace

QString StateCell(const Value& value, bool damaged) {
  if (damaged) return QStringLiteral("damaged");
  if (value.kind == Value::Kind::kDisabled) return QStringLiteral("disabled");
  return value.kind == Value::Kind::kLacking ? Text(value.text) : ErrorText(value);
}

QString NumberCell(const Value& value) {
  return value.kind == Value::Kind::kNumber ? QString::number(value.number, 'g', QLocale::FloatingPointShortest)
                                            : QString();
}

QString CsvRow(const QStringList& cells) {
  QStringList quoted;
  for (const QString& cell : cells) quoted += QString::fromStdString(tools::CsvCell(cell.toStdString()));
  return quoted.join(QLatin1Char(',')) + QLatin1Char('\n');
}

namespace {

using ValueKind = Value::Kind;

QString PlainText(const Entry& entry) {
  return entry.row->form == Form::kTime ? IsoTime(Text(entry.value.text)) : Text(entry.value.text);
}

void PutUnit(QJsonObject& object, std::string_view unit) {
  if (!unit.empty()) object[QLatin1String("unit")] = Text(unit);
}

void PutState(QJsonObject& object, const Value& value, bool damaged) {
  if (const QString error = ErrorText(value); !error.isEmpty()) object[QLatin1String("error")] = error;
  if (value.kind == ValueKind::kLost && !value.text.empty()) object[QLatin1String("text")] = Text(value.text);
  if (value.kind == ValueKind::kDisabled) object[QLatin1String("disabled")] = true;
  if (damaged) object[QLatin1String("damaged")] = true;
}

QJsonValue NumberOrNull(const Value& value) {
  return value.kind == ValueKind::kNumber ? QJsonValue(value.number) : QJsonValue();
}

QJsonValue JsonValue(const Entry& entry) {
  if (entry.value.kind != ValueKind::kText) return NumberOrNull(entry.value);
  if (entry.row->form != Form::kAlarms) return PlainText(entry);
  QJsonArray alarms;
  for (const std::string& alarm : entry.alarms) alarms.append(Text(alarm));
  return alarms;
}

QJsonArray JsonFields(const TableShape& shape) {
  QJsonArray fields;
  for (const Field* field : {&shape.first, &shape.second}) {
    QJsonObject object{{QStringLiteral("name"), Text(field->name)}};
    PutUnit(object, field->unit);
    fields.append(object);
  }
  return fields;
}

QJsonArray JsonPoints(const Entry& entry) {
  QJsonArray points;
  for (std::size_t i = 0; i < entry.points.size(); ++i) {
    const Point& point = entry.points[i];
    QJsonObject object{{QStringLiteral("point"), static_cast<int>(i) + 1},
                       {Text(entry.row->table->first.name), NumberOrNull(point.first)},
                       {Text(entry.row->table->second.name), NumberOrNull(point.second)}};
    PutState(object, point.second, point.damaged);
    points.append(object);
  }
  return points;
}

QJsonObject JsonEntry(const Entry& entry) {
  QJsonObject object{{QStringLiteral("label"), Text(entry.name)}};
  PutState(object, entry.value, entry.damaged);
  if (entry.points.empty()) {
    object[QLatin1String("value")] = JsonValue(entry);
    PutUnit(object, entry.row->unit);
  } else {
    object[QLatin1String("fields")] = JsonFields(*entry.row->table);
    object[QLatin1String("points")] = JsonPoints(entry);
  }
  return object;
}

QJsonObject JsonFault(const Fault& fault) {
  QJsonObject object{{QStringLiteral("what"), Text(fault.what)}};
  if (fault.line != 0) object[QLatin1String("line")] = static_cast<int>(fault.line);
  if (fault.column != 0) object[QLatin1String("column")] = static_cast<int>(fault.column);
  return object;
}

QString ValueCell(const Entry& entry) {
  if (entry.value.kind != ValueKind::kText) return NumberCell(entry.value);
  return entry.row->form == Form::kAlarms ? EntryText(entry) : PlainText(entry);
}

QString CsvPoints(const Entry& entry) {
  const TableShape& shape = *entry.row->table;
  QString rows;
  for (std::size_t i = 0; i < entry.points.size(); ++i) {
    const Point& point = entry.points[i];
    const auto row = [&](const Field& field, const Value& value) {
      return CsvRow({Text(entry.name), QString::number(i + 1), Text(field.name), NumberCell(value), Text(field.unit),
                     StateCell(value, point.damaged)});
    };
    rows += row(shape.first, point.first) + row(shape.second, point.second);
  }
  return rows;
}

}  // namespace

QByteArray ExportJson(const QString& file, const Snapshot& snapshot) {
  QJsonArray entries;
  for (const Entry& entry : snapshot.entries) entries.append(JsonEntry(entry));
  QJsonArray faults;
  for (const Fault& fault : snapshot.faults) faults.append(JsonFault(fault));
  const QJsonObject whole{{QStringLiteral("schema"), kJsonSchema},
                          {QStringLiteral("file"), file},
                          {QStringLiteral("kind"), KindText(snapshot)},
                          {QStringLiteral("damage"), faults},
                          {QStringLiteral("entries"), entries}};
  return QJsonDocument(whole).toJson();
}

QByteArray ExportCsv(const Snapshot& snapshot) {
  QString text = QStringLiteral("label,point,field,value,unit,state\n");
  for (const Entry& entry : snapshot.entries) {
    if (!entry.points.empty()) {
      text += CsvPoints(entry);
      continue;
    }
    const QString unit = Text(entry.value.kind == ValueKind::kNumber ? entry.row->unit : std::string_view());
    text += CsvRow({Text(entry.name), {}, {}, ValueCell(entry), unit, StateCell(entry.value, entry.damaged)});
  }
  return text.toUtf8();
}

}  // namespace tarnwell::vorel_snapshot

#include "tools/vorel-snapshot/trend.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QTimeZone>
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/shared/files.h"
#include "tools/vorel-snapshot/describe.h"
#include "tools/vorel-snapshot/export.h"
#include "tools/vorel-snapshot/plot.h"

namespace tarnwell::vorel_snapshot {

namespace {

bool IsNumber(const Value& value) { return value.kind == Value::Kind::kNumber; }

bool HasNumbers(const Row& row) { return IsNumeric(row.form) && row.form != Form::kAddress; }

QString NameOf(const Quantity& quantity) {
  const QString name = Text(quantity.name);
  return quantity.point == 0 ? name : QStringLiteral("%1, point %2").arg(name).arg(quantity.point);
}

Field FieldOf(const Quantity& quantity) {
  if (quantity.point > 0) return quantity.row->table->second;
  return {quantity.name, quantity.row->unit};
}

/// Each row by its name, and by the one that it has in some devices.
std::vector<Quantity> NamedRows() {
  std::vector<Quantity> named;
  for (const Row& row : Rows(Kind::kAmplifier)) {
    named.push_back({&row, row.name.empty() ? row.label : row.name});
    if (!row.otherLabel.empty()) named.push_back({&row, row.otherLabel});
  }
  return named;
}

std::vector<Quantity> AllQuantities() {
  std::vector<Quantity> all = NamedRows();
  std::erase_if(all, [](const Quantity& quantity) { return !HasNumbers(*quantity.row); });
  return all;
}

const Entry* Find(const Snapshot& snapshot, std::string_view label) {
  const auto& entries = snapshot.entries;
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&](const Entry& entry) { return entry.row->label == label || entry.name == label; });
  return found == entries.end() || found->damaged ? nullptr : &*found;
}

/// What the snapshot has of it; kLost for what is damaged or missing.
Value ValueOf(const Snapshot& snapshot, const Quantity& quantity) {
  const Entry* entry = snapshot.Find(*quantity.row);
  if (!entry) return {};
  if (entry->name != quantity.name) return {Value::Kind::kLacking, std::string(kLackingMark)};
  if (quantity.point == 0) return entry->damaged ? Value{} : entry->value;
  if (entry->points.empty()) return {entry->value.kind, entry->value.text};
  const Point& point = entry->points[quantity.point - 1];
  return point.damaged ? Value{} : point.second;
}

/// The folder of a file, by whatever way it was named.
QString FolderOf(const QString& file) {
  namespace fs = std::filesystem;
  std::error_code none;
  const fs::path folder = fs::absolute(tools::PathOf(file), none).parent_path();
  return tools::NameFromPath(fs::weakly_canonical(folder, none));
}

/// How many values aren't drawn; empty where all are.
QString LeftOut(const std::vector<const Value*>& values) {
  const std::pair<Value::Kind, QString> kinds[] = {
      {Value::Kind::kDisabled, QString(QChar(0x00D7)) + QStringLiteral(" disabled")},
      {Value::Kind::kError, QStringLiteral("not read")},
      {Value::Kind::kCut, QStringLiteral("cut")},
      {Value::Kind::kLost, QStringLiteral("damaged")}};
  QStringList notes;
  for (const auto& [kind, name] : kinds) {
    const auto count = std::count_if(values.begin(), values.end(), [k = kind](const Value* v) { return v->kind == k; });
    if (count > 0) notes += QStringLiteral("%1: %2").arg(name).arg(count);
  }
  return notes.join(QStringLiteral(", "));
}

}  // namespace

std::optional<Quantity> FindQuantity(const QString& name) {
  const QString label = name.section(QLatin1Char(':'), 0, 0);
  const auto named = NamedRows();
  const auto found =
      std::find_if(named.begin(), named.end(), [&](const Quantity& row) { return Text(row.name) == label; });
  if (found == named.end()) return std::nullopt;
  if (HasNumbers(*found->row) && label == name) return *found;
  const TableShape* table = found->row->table;
  const std::size_t point = name.section(QLatin1Char(':'), 1).toUInt();
  if (!table || point < 1 || point > table->points) return std::nullopt;
  return Quantity{found->row, found->name, point};
}

QStringList QuantityNames() {
  QStringList names;
  for (const Quantity& named : NamedRows()) {
    if (HasNumbers(*named.row)) names += NameOf(named);
    if (named.row->table) names += QStringLiteral("%1:1 to :%2").arg(NameOf(named)).arg(named.row->table->points);
  }
  return names;
}

QString Trend::Add(const Input& input) {
  if (!input.snapshot.known) return {};
  const Entry* time = Find(input.snapshot, "time dd/mm/yyyy hh:mm:ss");
  const QDateTime at = time ? TimeOf(Text(time->value.text)) : QDateTime();
  const Identity device = DeviceOf(input);
  if (!at.isValid() || device.key.isEmpty())
    return QStringLiteral("left out: its time or what tells the device is damaged");
  if (m_quantities.empty()) m_quantities = AllQuantities();
  m_names.try_emplace(device.key, device.name);
  Sample sample{static_cast<double>(at.toSecsSinceEpoch()), device.key, input.name, {}};
  for (const Quantity& quantity : m_quantities) sample.values.push_back(ValueOf(input.snapshot, quantity));
  m_samples.push_back(std::move(sample));
  return {};
}

Trend::Identity Trend::DeviceOf(const Input& input) const {
  if (m_device == Device::kFolder) return {FolderOf(input.path), QFileInfo(input.name).path()};
  if (m_device == Device::kDescription) {
    const Entry* description = Find(input.snapshot, "file description");
    const QString text = description ? EntryText(*description) : QString();
    return {text, text};
  }
  const Entry* model = Find(input.snapshot, "sspa");
  const Entry* address = Find(input.snapshot, "address");
  if (!model || !address) return {};
  const QString name = QStringLiteral("%1, address %2");
  const QString number = QString::number(address->value.number).rightJustified(2, QLatin1Char('0'));
  return {name.arg(EntryText(*model), number), name.arg(EntryText(*model), EntryText(*address))};
}

void Trend::Finish() {
  const auto order = [](const Sample& a, const Sample& b) {
    return a.device != b.device ? a.device < b.device : a.time < b.time;
  };
  std::stable_sort(m_samples.begin(), m_samples.end(), order);
  for (const Sample& sample : m_samples) {
    if (m_devices.isEmpty() || m_devices.last() != sample.device) m_devices += sample.device;
  }
  NumberNames();
}

void Trend::NumberNames() {
  QStringList taken;
  for (auto& [key, name] : m_names) {
    const QString plain = name;
    for (int n = 2; taken.contains(name); ++n) name = QStringLiteral("%1 (%2)").arg(plain).arg(n);
    taken += name;
  }
}

QStringList Trend::Names() const {
  QStringList names;
  for (const QString& device : m_devices) names += m_names.at(device);
  return names;
}

bool Trend::HasNumber(std::size_t quantity) const {
  return std::any_of(m_samples.begin(), m_samples.end(),
                     [quantity](const Sample& sample) { return IsNumber(sample.values[quantity]); });
}

bool Trend::IsEmpty() const {
  for (std::size_t i = 0; i < m_quantities.size(); ++i) {
    if (HasNumber(i)) return false;
  }
  return true;
}

tools::Chart Trend::MakeChart(std::size_t quantity) const {
  const Field field = FieldOf(m_quantities[quantity]);
  tools::Chart chart{.title = NameOf(m_quantities[quantity]), .yTitle = FieldTitle(field), .timeAcross = true};
  chart.series.resize(static_cast<std::size_t>(m_devices.size()));
  std::vector<const Value*> values;
  std::size_t device = 0;
  bool gap = true;
  for (const Sample& sample : m_samples) {
    const Value& value = sample.values[quantity];
    values.push_back(&value);
    if (m_devices[static_cast<int>(device)] != sample.device) {
      ++device;
      gap = true;
    }
    tools::Series& series = chart.series[device];
    if (value.kind == Value::Kind::kDisabled) series.marked.push_back(sample.time);
    if (IsNumber(value)) {
      if (gap) series.runs.emplace_back();
      series.runs.back() += QPointF(sample.time, value.number);
    }
    gap = !IsNumber(value);
  }
  if (const QString note = LeftOut(values); !note.isEmpty()) chart.notes += note;
  return chart;
}

tools::Page Trend::Picture() const {
  const auto [first, last] = std::minmax_element(m_samples.begin(), m_samples.end(),
                                                 [](const Sample& a, const Sample& b) { return a.time < b.time; });
  const auto day = [](double time) {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(time), QTimeZone::utc()).date().toString(Qt::ISODate);
  };
  tools::Page page{.title = QStringLiteral("%1 to %2").arg(day(first->time), day(last->time)),
                   .details = QStringLiteral("%1 snapshots").arg(m_samples.size())};
  if (m_devices.size() == 1) {
    page.title = Names().first() + Separator() + page.title;
  } else {
    page.details += QStringLiteral(" of %1 devices").arg(m_devices.size());
    page.legend = Names();
  }
  for (std::size_t i = 0; i < m_quantities.size(); ++i) {
    if (HasNumber(i)) page.charts.push_back(MakeChart(i));
  }
  return page;
}

QByteArray Trend::Csv() const {
  QString text =
      CsvRow({QStringLiteral("value"), QStringLiteral("device"), QStringLiteral("time"), QStringLiteral("number"),
              QStringLiteral("unit"), QStringLiteral("state"), QStringLiteral("file")});
  for (std::size_t i = 0; i < m_quantities.size(); ++i) {
    if (!HasNumber(i)) continue;
    for (const Sample& sample : m_samples) {
      const Value& value = sample.values[i];
      const QDateTime time = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(sample.time), QTimeZone::utc());
      text += CsvRow({NameOf(m_quantities[i]), m_names.at(sample.device), IsoTime(time), NumberCell(value),
                      Text(FieldOf(m_quantities[i]).unit), StateCell(value, value.kind == Value::Kind::kLost),
                      sample.file});
    }
  }
  return text.toUtf8();
}

}  // namespace tarnwell::vorel_snapshot

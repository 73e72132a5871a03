#include <QFileInfo>
#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "tools/vorel-snapshot/describe.h"
#include "tools/vorel-snapshot/inputs.h"
#include "tools/vorel-snapshot/trend.h"

namespace tarnwell::vorel_snapshot {

namespace {

struct Counts {
  int whole = 0;
  int damaged = 0;
  int foreign = 0;
  int unreadable = 0;
};

QString CountsLine(const Counts& counts) {
  const int files = counts.whole + counts.damaged + counts.foreign + counts.unreadable;
  QString line = QStringLiteral("%1 %2: %3 whole, %4 damaged")
                     .arg(files)
                     .arg(files == 1 ? QStringLiteral("file") : QStringLiteral("files"))
                     .arg(counts.whole)
                     .arg(counts.damaged);
  if (counts.foreign > 0) line += QStringLiteral(", %1 not a snapshot").arg(counts.foreign);
  if (counts.unreadable > 0) line += QStringLiteral(", %1 can't be read").arg(counts.unreadable);
  return line + QLatin1Char('\n');
}

/// The verdict on one file, its damage ahead.
QString VerdictLines(const Input& input) {
  const Snapshot& snapshot = input.snapshot;
  const QString damage = FaultLines(input.name, snapshot);
  if (!snapshot.known) return damage;
  const auto faults = snapshot.faults.size();
  return damage + input.name + QStringLiteral(": ") +
         (faults == 0
              ? QStringLiteral("%1, %2, %3 lines\n").arg(StateText(snapshot), KindText(snapshot)).arg(snapshot.lines)
              : QStringLiteral("damaged, %1 told%2\n").arg(faults).arg(NotReadText(snapshot)));
}

/// For a command that goes on with what it could read: the damage is told on standard error. Gives the exit code.
int TellDamage(Call& call, const Input& input) {
  call.output.err += FaultLines(input.name, input.snapshot).toUtf8();
  return ExitOf(input.snapshot);
}

/// What a line of `list` shows, and what it is sorted by.
enum Column { kTime, kModel, kAddress, kFirmware, kDescription, kState, kFile, kColumns };
constexpr std::array<const char*, kColumns> kColumnNames = {"time",        "model", "address", "firmware",
                                                            "description", "state", "file"};

using ListRow = std::array<QString, kColumns>;

ListRow RowOf(const Input& input) {
  const Snapshot& snapshot = input.snapshot;
  ListRow row = {IsoTime(TextOf(snapshot, "time")).replace(QLatin1Char('T'), QLatin1Char(' ')),
                 Model(snapshot),
                 TextOf(snapshot, "address"),
                 TextOf(snapshot, "firmware"),
                 TextOf(snapshot, "file description"),
                 StateText(snapshot),
                 input.name};
  for (QString& cell : row) cell = cell.isEmpty() ? QStringLiteral("-") : cell;
  return row;
}

void Sort(std::vector<ListRow>& rows, std::size_t column) {
  std::stable_sort(rows.begin(), rows.end(), [](const ListRow& a, const ListRow& b) { return a[kTime] < b[kTime]; });
  std::stable_sort(rows.begin(), rows.end(), [column](const ListRow& a, const ListRow& b) {
    return column == kAddress ? a[kAddress].toInt() < b[kAddress].toInt() : a[column] < b[column];
  });
}

QString Aligned(const std::vector<ListRow>& rows) {
  std::array<qsizetype, kColumns> widths{};
  for (const ListRow& row : rows) {
    for (std::size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  QString text;
  for (const ListRow& row : rows) {
    for (std::size_t i = 0; i < kFile; ++i) text += row[i].leftJustified(widths[i] + 2);
    text += row[kFile] + QLatin1Char('\n');
  }
  return text;
}

/// What --of names; nothing, and the reason on standard error, where one is no quantity.
std::optional<std::vector<Quantity>> AskedQuantities(Call& call) {
  std::vector<Quantity> quantities;
  for (const QString& name : call.parser.values(QStringLiteral("of"))) {
    const auto quantity = FindQuantity(name);
    if (!quantity) {
      Complain(call.output, QStringLiteral("trend: no value ") + name + QStringLiteral("; there are ") +
                                QuantityNames().join(QStringLiteral(", ")));
      return std::nullopt;
    }
    quantities.push_back(*quantity);
  }
  return quantities;
}

std::optional<Device> AskedDevice(Call& call) {
  const QString by = call.parser.value(QStringLiteral("by"));
  const std::pair<const char*, Device> devices[] = {{"", Device::kModelAndAddress},
                                                    {"address", Device::kModelAndAddress},
                                                    {"description", Device::kDescription},
                                                    {"folder", Device::kFolder}};
  for (const auto& [name, device] : devices) {
    if (by == QLatin1String(name)) return device;
  }
  Complain(call.output, QStringLiteral("trend: --by takes address, description or folder"));
  return std::nullopt;
}

}  // namespace

int Verify(Call& call) {
  Counts counts;
  int worst = kExitFine;
  const Missed missed = ReadInputs(call, [&](const Input& input) {
    const bool whole = input.snapshot.faults.empty();
    const bool passed = whole || (input.IsForeign() && !call.Has("strict"));
    ++(whole ? counts.whole : input.snapshot.foreign ? counts.foreign : counts.damaged);
    if (!call.Has("quiet") || !passed) call.output.out += VerdictLines(input).toUtf8();
    if (!passed) worst = kExitDamaged;
  });
  counts.unreadable = missed.files;
  call.output.out += CountsLine(counts).toUtf8();
  return missed.Any() ? kExitUnreadable : worst;
}

int List(Call& call) {
  const QString by = call.Has("by") ? call.parser.value(QStringLiteral("by")) : QLatin1String(kColumnNames[kTime]);
  const auto* column = std::find_if(kColumnNames.begin(), kColumnNames.end(),
                                    [&](const char* name) { return by == QLatin1String(name); });
  if (column == kColumnNames.end()) {
    Complain(call.output, QStringLiteral("list: no column ") + by);
    return kExitUnreadable;
  }
  int worst = kExitFine;
  std::vector<ListRow> rows;
  const Missed missed = ReadInputs(call, [&](const Input& input) {
    if (input.IsForeign()) return;
    rows.push_back(RowOf(input));
    worst = std::max(worst, TellDamage(call, input));
  });
  Sort(rows, static_cast<std::size_t>(column - kColumnNames.begin()));
  call.output.out += Aligned(rows).toUtf8();
  return missed.Any() ? kExitUnreadable : worst;
}

int TrendFiles(Call& call) {
  const QString path = call.parser.value(QStringLiteral("o"));
  const QString format = QFileInfo(path).suffix().toLower();
  if (!QStringList({QStringLiteral("svg"), QStringLiteral("png"), QStringLiteral("csv")}).contains(format)) {
    Complain(call.output, QStringLiteral("trend: -o takes a file that ends in .svg, .png or .csv"));
    return kExitUnreadable;
  }
  auto quantities = AskedQuantities(call);
  const auto device = AskedDevice(call);
  if (!quantities || !device) return kExitUnreadable;
  Trend trend(std::move(*quantities), *device);
  int worst = kExitFine;
  int controllers = 0;
  const Missed missed = ReadInputs(call, [&](const Input& input) {
    if (input.IsForeign()) return;
    worst = std::max(worst, TellDamage(call, input));
    if (input.snapshot.known && input.snapshot.kind == Kind::kController) {
      ++controllers;
      return;
    }
    const QString why = trend.Add(input);
    if (!why.isEmpty()) Complain(call.output, input.name + QStringLiteral(": ") + why);
  });
  if (missed.Any()) worst = kExitUnreadable;
  trend.Finish();
  if (controllers > 0) {
    Complain(call.output,
             QStringLiteral("trend: %1 of redundancy controllers, which measure nothing").arg(controllers));
  }
  if (trend.IsEmpty()) {
    Complain(call.output, QStringLiteral("trend: no number is there to draw"));
    return worst != kExitFine ? worst : static_cast<int>(kExitNoTables);
  }
  return Deliver(call, path, format == QLatin1String("csv") ? trend.Csv() : tools::DrawPage(trend.Picture(), format),
                 worst);
}

}  // namespace tarnwell::vorel_snapshot

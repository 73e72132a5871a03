#include "tools/vorel-snapshot/file_commands.h"

#include <QFileInfo>
#include <algorithm>
#include <optional>
#include <vector>

#include "tools/shared/files.h"
#include "tools/vorel-snapshot/describe.h"
#include "tools/vorel-snapshot/diff.h"
#include "tools/vorel-snapshot/export.h"
#include "tools/vorel-snapshot/inputs.h"
#include "tools/vorel-snapshot/plot.h"
#include "tools/vorel-snapshot/show.h"

namespace tarnwell::vorel_snapshot {

namespace {

/// For a command that goes on with what it could read: the damage is told on standard error.
std::optional<Snapshot> ReadAndTell(const QString& path, Output& output) {
  auto snapshot = ReadNamed(path, output);
  if (snapshot) output.err += FaultLines(ShownName(path), *snapshot).toUtf8();
  return snapshot;
}

}  // namespace

void Complain(Output& output, const QString& text) {
  output.err += QStringLiteral("%1: %2\n").arg(QLatin1String(kProgram), text).toUtf8();
}

int Deliver(Call& call, const QString& path, const QByteArray& bytes, int code) {
  QString error;
  const auto isTarget = [&](const QString& file) { return tools::IsSameFile(file, path); };
  if (std::any_of(call.files.begin(), call.files.end(), isTarget)) {
    error = QStringLiteral("is read by this command: not replaced");
  } else if (tools::WriteWhole(path, bytes, error)) {
    return code;
  }
  Complain(call.output, tools::Told(path, error));
  return kExitUnreadable;
}

int ShowFile(Call& call) {
  const auto snapshot = ReadAndTell(call.files[0], call.output);
  if (!snapshot) return kExitUnreadable;
  call.output.out += Show(ShownName(call.files[0]), *snapshot).toUtf8();
  return ExitOf(*snapshot);
}

int DiffFiles(Call& call) {
  const auto before = ReadAndTell(call.files[0], call.output);
  const auto after = ReadAndTell(call.files[1], call.output);
  if (!before || !after) return kExitUnreadable;
  const Differences found =
      Diff({ShownName(call.files[0]), *before}, {ShownName(call.files[1]), *after}, call.Has("readings"));
  call.output.out += found.report.toUtf8();
  if (!before->faults.empty() || !after->faults.empty()) return kExitDiffDamaged;
  return found.count == 0 ? kExitFine : kExitDiffers;
}

int ExportFile(Call& call) {
  if (call.Has("json") == call.Has("csv")) {
    Complain(call.output, QStringLiteral("export: give either --json or --csv"));
    return kExitUnreadable;
  }
  const auto snapshot = ReadAndTell(call.files[0], call.output);
  if (!snapshot) return kExitUnreadable;
  const QByteArray bytes = call.Has("json") ? ExportJson(ShownName(call.files[0]), *snapshot) : ExportCsv(*snapshot);
  if (call.Has("o")) return Deliver(call, call.parser.value(QStringLiteral("o")), bytes, ExitOf(*snapshot));
  call.output.out += bytes;
  return ExitOf(*snapshot);
}

int PlotFile(Call& call) {
  const QString path = call.parser.value(QStringLiteral("o"));
  const QString format = QFileInfo(path).suffix().toLower();
  if (format != QLatin1String("svg") && format != QLatin1String("png")) {
    Complain(call.output, QStringLiteral("plot: -o takes a file that ends in .svg or .png"));
    return kExitUnreadable;
  }
  std::vector<NamedSnapshot> snapshots;
  int worst = kExitFine;
  for (const QString& file : call.files) {
    auto snapshot = ReadAndTell(file, call.output);
    if (!snapshot) return kExitUnreadable;
    if (!snapshot->known) return kExitDamaged;
    if (snapshot->kind == Kind::kController) {
      Complain(call.output, tools::Told(file, QStringLiteral("a redundancy controller has no calibration tables")));
      return kExitNoTables;
    }
    worst = std::max(worst, ExitOf(*snapshot));
    snapshots.push_back({ShownName(QFileInfo(file).fileName()), std::move(*snapshot)});
  }
  const tools::Page page = PlotPage(snapshots);
  if (!page.charts.empty()) return Deliver(call, path, tools::DrawPage(page, format), worst);
  Complain(call.output, tools::Told(call.files[0], QStringLiteral("no point of a calibration table is left to draw")));
  return kExitNoTables;
}

}  // namespace tarnwell::vorel_snapshot

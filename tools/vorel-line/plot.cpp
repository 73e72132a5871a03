#include "tools/vorel-line/plot.h"

#include "tools/shared/files.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/line_plot.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/record_reader.h"

namespace tarnwell::vorel_line {

namespace {

int Refuse(const QString& what, int code = kExitUnusable) {
  Complain(what.toStdString());
  return code;
}

}  // namespace

int DrawPlot(const std::vector<std::string>& files, const std::string& out) {
  const QString name = tools::NameFromBytes(QByteArray::fromStdString(out));
  const QString format = name.section(QLatin1Char('.'), -1).toLower();
  if (format != QLatin1String("svg") && format != QLatin1String("png")) {
    return Refuse(tools::Told(name, QStringLiteral("neither .svg nor .png")));
  }
  for (const std::string& file : files) {
    if (!tools::IsSameFile(tools::NameFromBytes(QByteArray::fromStdString(file)), name)) continue;
    return Refuse(tools::Told(name, QStringLiteral("is a recording that is read")));
  }
  LinePlot plot;
  const Exit read = ReadFiles(files, false, [&](const Record& record) { plot.Take(record); });
  plot.End();
  if (plot.IsEmpty() && read == kExitUnusable) return read;
  if (plot.IsEmpty())
    return Refuse(QStringLiteral("no RF level, no temperature and nothing that lasted to draw"), kExitNothing);
  QString error;
  if (!tools::WriteWhole(name, tools::DrawPage(plot.Picture(), format), error)) {
    return Refuse(tools::Told(name, error));
  }
  return read;
}

}  // namespace tarnwell::vorel_line

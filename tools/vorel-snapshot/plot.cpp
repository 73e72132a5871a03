#include "tools/vorel-snapshot/plot.h"

#include <algorithm>

#include "tools/vorel-snapshot/describe.h"

namespace tarnwell::vorel_snapshot {

namespace {

/// How a table is drawn: in the order of the page.
struct ChartRow {
  std::string_view table;
  const char* title;
  bool secondAcross;  ///< the second field along the x axis, else the first
};

constexpr ChartRow kCharts[] = {
    {"rf level table", "RF level: level against detector volts", true},
    {"pin diode table", "PiN diodes: DAC against attenuation", false},
    {"rf temp comp points", "RF level: compensation against temperature", false},
    {"sys temp comp points", "System: compensation against temperature", false},
};

/// "3, 23 to 26"
QString Positions(const std::vector<int>& positions) {
  QStringList parts;
  for (std::size_t i = 0; i < positions.size();) {
    std::size_t last = i;
    while (last + 1 < positions.size() && positions[last + 1] == positions[last] + 1) ++last;
    parts +=
        last == i ? QString::number(positions[i]) : QStringLiteral("%1 to %2").arg(positions[i]).arg(positions[last]);
    i = last + 1;
  }
  return (positions.size() == 1 ? QStringLiteral("point ") : QStringLiteral("points ")) +
         parts.join(QStringLiteral(", "));
}

/// Takes the points of one table into one curve.
class SeriesFiller {
 public:
  explicit SeriesFiller(bool secondAcross) : m_secondAcross(secondAcross) {}

  void Fill(const Entry& entry) {
    for (std::size_t i = 0; i < entry.points.size(); ++i) Take(entry.points[i], static_cast<int>(i) + 1);
  }

  const tools::Series& Curve() const { return m_series; }

  /// What was left out; empty where nothing was.
  QString Note() const {
    QStringList notes;
    const QString sign = m_series.marked.empty() ? QString() : QString(QChar(0x00D7)) + QLatin1Char(' ');
    if (!m_disabled.empty()) notes += sign + QStringLiteral("disabled: ") + Positions(m_disabled);
    if (!m_notRead.empty()) notes += QStringLiteral("not read: ") + Positions(m_notRead);
    if (!m_cut.empty()) notes += QStringLiteral("cut by the end of the line: ") + Positions(m_cut);
    if (!m_damaged.empty()) notes += QStringLiteral("damaged: ") + Positions(m_damaged);
    return notes.join(QStringLiteral("; "));
  }

 private:
  void Take(const Point& point, int position) {
    if (point.damaged || point.second.kind == Value::Kind::kLost) return LeaveOut(m_damaged, position);
    if (point.second.kind == Value::Kind::kError) return LeaveOut(m_notRead, position);
    if (point.second.kind == Value::Kind::kCut) return LeaveOut(m_cut, position);
    if (point.second.kind == Value::Kind::kDisabled) {
      // Where the second field runs across, its place is just what is disabled.
      if (point.first.kind == Value::Kind::kNumber && !m_secondAcross) m_series.marked.push_back(point.first.number);
      return LeaveOut(m_disabled, position);
    }
    const QPointF at(point.first.number, point.second.number);
    if (m_gap) m_series.runs.emplace_back();
    m_gap = false;
    m_series.runs.back() += m_secondAcross ? at.transposed() : at;
  }

  void LeaveOut(std::vector<int>& list, int position) {
    list.push_back(position);
    m_gap = true;
  }

  bool m_secondAcross;
  bool m_gap = true;
  tools::Series m_series;
  std::vector<int> m_disabled;
  std::vector<int> m_notRead;
  std::vector<int> m_cut;
  std::vector<int> m_damaged;
};

/// One snapshot's curve of the table into the chart; why not, or what of it is missing, is the note.
QString AddSeries(tools::Chart& chart, const ChartRow& row, const Snapshot& snapshot) {
  const auto isTable = [&](const Entry& entry) { return entry.row->table && entry.row->name == row.table; };
  const auto entry = std::find_if(snapshot.entries.begin(), snapshot.entries.end(), isTable);
  SeriesFiller filler(row.secondAcross);
  if (entry != snapshot.entries.end()) filler.Fill(*entry);
  chart.series.push_back(filler.Curve());
  if (entry == snapshot.entries.end()) return QStringLiteral("not in the file");
  return entry->points.empty() ? QStringLiteral("this amplifier has none") : filler.Note();
}

/// What notes call the files: by their names as far as a note has room for them.
QStringList NotedFiles(const std::vector<NamedSnapshot>& snapshots) {
  constexpr qsizetype kRoom = 24;
  QStringList names;
  for (const NamedSnapshot& named : snapshots) names += named.file;
  const bool fit = std::all_of(names.begin(), names.end(), [](const QString& name) { return name.size() <= kRoom; });
  return fit ? names : QStringList({QStringLiteral("first file"), QStringLiteral("second file")});
}

tools::Chart MakeChart(const ChartRow& row, const Row& table, const std::vector<NamedSnapshot>& snapshots) {
  const QString first = FieldTitle(table.table->first);
  const QString second = FieldTitle(table.table->second);
  tools::Chart chart{.title = QLatin1String(row.title),
                     .xTitle = row.secondAcross ? second : first,
                     .yTitle = row.secondAcross ? first : second};
  QStringList notes;
  for (const NamedSnapshot& named : snapshots) notes += AddSeries(chart, row, named.snapshot);
  const bool same = std::all_of(notes.begin(), notes.end(), [&](const QString& note) { return note == notes.front(); });
  const QStringList files = NotedFiles(snapshots);
  for (int i = 0; i < (same ? 1 : notes.size()); ++i) {
    const QString which = same ? QString() : QStringLiteral("%1: ").arg(files[i]);
    if (!notes[i].isEmpty()) chart.notes += which + notes[i];
  }
  return chart;
}

/// "240W C-BAND · rack 2 after service", "14/03/2007 09:26:41 · address 1 · ..."
QString TitleOf(const NamedSnapshot& named) {
  return Model(named.snapshot) + Separator() + TextOf(named.snapshot, "file description");
}
QString DetailsOf(const NamedSnapshot& named) {
  const QStringList parts = {TextOf(named.snapshot, "time"),
                             QStringLiteral("address ") + TextOf(named.snapshot, "address"),
                             TextOf(named.snapshot, "firmware"), named.file};
  return parts.join(Separator());
}

}  // namespace

QString Separator() { return QStringLiteral("   %1   ").arg(QChar(0x00B7)); }

std::vector<tools::Chart> Charts(const std::vector<NamedSnapshot>& snapshots) {
  std::vector<tools::Chart> charts;
  for (const ChartRow& chart : kCharts) {
    for (const Row& row : Rows(Kind::kAmplifier)) {
      if (row.table && row.name == chart.table) charts.push_back(MakeChart(chart, row, snapshots));
    }
  }
  return charts;
}

tools::Page PlotPage(const std::vector<NamedSnapshot>& snapshots) {
  tools::Page page{.title = TitleOf(snapshots.front()), .details = DetailsOf(snapshots.front())};
  if (snapshots.size() > 1) {
    page.title = QStringLiteral("Calibration tables, one over the other");
    page.details.clear();
    for (const NamedSnapshot& named : snapshots) page.legend += TitleOf(named) + Separator() + DetailsOf(named);
  }
  for (tools::Chart& chart : Charts(snapshots)) {
    if (chart.IsEmpty()) {
      page.notes += chart.title + QStringLiteral(": ") + chart.notes.join(QStringLiteral("; "));
    } else {
      page.charts.push_back(std::move(chart));
    }
  }
  return page;
}

}  // namespace tarnwell::vorel_snapshot

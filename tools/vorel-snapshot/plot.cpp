#include "tools/vorel-snapshot/plot.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <algorithm>

#include "tools/vorel-snapshot/describe.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr QSize kPage(1200, 912);
constexpr int kMargin = 32;
constexpr int kHeaderHeight = 74;
constexpr int kBetween = 36;
constexpr int kColumns = 2;
constexpr int kSharpness = 2;  // pixels of a PNG for each of the page

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

/// Fills a chart with the points of its table.
class ChartFiller {
 public:
  ChartFiller(Chart& chart, bool secondAcross) : m_chart(chart), m_secondAcross(secondAcross) {}

  void Fill(const Entry& entry) {
    for (std::size_t i = 0; i < entry.points.size(); ++i) Take(entry.points[i], static_cast<int>(i) + 1);
    QStringList notes;
    const QString sign = m_chart.marked.empty() ? QString() : QString(QChar(0x00D7)) + QLatin1Char(' ');
    if (!m_disabled.empty()) notes += sign + QStringLiteral("disabled: ") + Positions(m_disabled);
    if (!m_notRead.empty()) notes += QStringLiteral("not read: ") + Positions(m_notRead);
    if (!m_damaged.empty()) notes += QStringLiteral("damaged: ") + Positions(m_damaged);
    m_chart.note = notes.join(QStringLiteral("; "));
  }

 private:
  void Take(const Point& point, int position) {
    if (point.damaged || point.second.kind == Value::Kind::kLost) return LeaveOut(m_damaged, position);
    if (point.second.kind == Value::Kind::kError) return LeaveOut(m_notRead, position);
    if (point.second.kind == Value::Kind::kDisabled) {
      if (point.first.kind == Value::Kind::kNumber) m_chart.marked.push_back(point.first.number);
      return LeaveOut(m_disabled, position);
    }
    const QPointF at(point.first.number, point.second.number);
    if (m_gap) m_chart.runs.emplace_back();
    m_gap = false;
    m_chart.runs.back() += m_secondAcross ? at.transposed() : at;
  }

  void LeaveOut(std::vector<int>& list, int position) {
    list.push_back(position);
    m_gap = true;
  }

  Chart& m_chart;
  bool m_secondAcross;
  bool m_gap = true;
  std::vector<int> m_disabled;
  std::vector<int> m_notRead;
  std::vector<int> m_damaged;
};

Chart MakeChart(const ChartRow& row, const Row& table, const Entry* entry) {
  const QString first = FieldTitle(table.table->first);
  const QString second = FieldTitle(table.table->second);
  Chart chart{.title = QLatin1String(row.title),
              .note = {},
              .xTitle = row.secondAcross ? second : first,
              .yTitle = row.secondAcross ? first : second,
              .runs = {},
              .marked = {}};
  if (!entry) {
    chart.note = QStringLiteral("not in the file");
  } else if (entry->points.empty()) {
    chart.note = QStringLiteral("this amplifier has none");
  } else {
    ChartFiller(chart, row.secondAcross).Fill(*entry);
  }
  return chart;
}

void DrawHeader(QPainter& painter, const QString& file, const Snapshot& snapshot) {
  const QRectF area(kMargin, kMargin - 8, kPage.width() - 2 * kMargin, kHeaderHeight);
  const QString separator = QStringLiteral("   %1   ").arg(QChar(0x00B7));
  painter.setFont(PictureFont(24, true));
  painter.setPen(QColor(0xFF1F2933));
  const QString title = TextOf(snapshot, "sspa") + separator + TextOf(snapshot, "file description");
  const int width = static_cast<int>(area.width());
  painter.drawText(area, Qt::AlignLeft | Qt::AlignTop, painter.fontMetrics().elidedText(title, Qt::ElideRight, width));
  painter.setFont(PictureFont(14));
  painter.setPen(QColor(0xFF5A6672));
  const QStringList parts = {TextOf(snapshot, "time"), QStringLiteral("address ") + TextOf(snapshot, "address"),
                             TextOf(snapshot, "firmware"), QFileInfo(file).fileName()};
  painter.drawText(area.adjusted(0, 36, 0, 0), Qt::AlignLeft | Qt::AlignTop, parts.join(separator));
}

void DrawPage(QPainter& painter, const QString& file, const Snapshot& snapshot) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(QRect({}, kPage), Qt::white);
  DrawHeader(painter, file, snapshot);
  const std::vector<Chart> charts = Charts(snapshot);
  const double width = (kPage.width() - 2 * kMargin - kBetween) / 2.0;
  const double height = (kPage.height() - kMargin - kHeaderHeight - kMargin / 2.0 - kBetween) / 2.0;
  for (std::size_t i = 0; i < charts.size(); ++i) {
    const std::size_t row = i / kColumns;
    const double left = kMargin + static_cast<double>(i % kColumns) * (width + kBetween);
    const double top = kMargin + kHeaderHeight + static_cast<double>(row) * (height + kBetween);
    DrawChart(painter, QRectF(left, top, width, height), charts[i]);
  }
}

void WriteSvg(QBuffer& buffer, const QString& file, const Snapshot& snapshot) {
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(kPage);
  generator.setViewBox(QRect({}, kPage));
  generator.setResolution(96);
  generator.setTitle(QStringLiteral("Calibration tables: ") + TextOf(snapshot, "file description"));
  QPainter painter(&generator);
  DrawPage(painter, file, snapshot);
}

void WritePng(QBuffer& buffer, const QString& file, const Snapshot& snapshot) {
  QImage image(kPage * kSharpness, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.scale(kSharpness, kSharpness);
  DrawPage(painter, file, snapshot);
  painter.end();
  image.save(&buffer, "PNG");
}

}  // namespace

std::vector<Chart> Charts(const Snapshot& snapshot) {
  std::vector<Chart> charts;
  for (const ChartRow& chart : kCharts) {
    for (const Row& row : Rows(snapshot.kind)) {
      if (row.table && row.name == chart.table) charts.push_back(MakeChart(chart, row, snapshot.Find(row)));
    }
  }
  return charts;
}

QByteArray PlotPage(const QString& file, const Snapshot& snapshot, const QString& format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  format == QLatin1String("svg") ? WriteSvg(buffer, file, snapshot) : WritePng(buffer, file, snapshot);
  return bytes;
}

}  // namespace tarnwell::vorel_snapshot

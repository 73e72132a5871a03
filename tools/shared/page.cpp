#include "tools/shared/page.h"

#include <QBuffer>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <algorithm>

namespace tarnwell::tools {

namespace {

constexpr QRgb kInk = 0xFF1F2933;
constexpr QRgb kQuiet = 0xFF5A6672;

constexpr int kWidth = 1200;
constexpr int kMargin = 32;
constexpr int kInner = kWidth - 2 * kMargin;
constexpr int kHeaderHeight = 74;
constexpr int kLineHeight = 22;
constexpr int kChartHeight = 377;
constexpr int kLoneHeight = 460;  // of a chart in the only row
constexpr int kBetween = 36;
constexpr int kSampleWidth = 44;
constexpr int kSharpness = 2;  // pixels of a PNG for each of the page

/// Where everything stands, from the top.
class Layout {
 public:
  explicit Layout(const Page& page) {
    const QFontMetrics metrics(PictureFont(13));
    int left = kMargin;
    int top = kMargin + (page.details.isEmpty() ? kHeaderHeight / 2 : kHeaderHeight) - 8;
    for (const QString& name : page.legend) {
      const int width = std::min(kSampleWidth + metrics.horizontalAdvance(name) + kBetween, kInner);
      if (left + width > kMargin + kInner + kBetween) {
        left = kMargin;
        top += kLineHeight;
      }
      m_legend.emplace_back(left, top, width, kLineHeight);
      left += width;
    }
    m_chartsTop = page.legend.empty() ? kMargin + kHeaderHeight : top + kLineHeight + kMargin / 2;
    m_columns = page.oneARow ? 1 : 2;
    const int rows = (static_cast<int>(page.charts.size()) + m_columns - 1) / m_columns;
    m_chartHeight = rows == 1 ? kLoneHeight : kChartHeight;
    const bool bandsAlone = page.charts.size() == 1 && page.charts[0].IsEmpty();
    if (bandsAlone) m_chartHeight = static_cast<int>(page.charts[0].HeightOfBands());
    m_notesTop = m_chartsTop + rows * (m_chartHeight + kBetween) - kMargin / 2;
    const int notes = static_cast<int>(page.notes.size());
    m_size = {kWidth, m_notesTop + notes * kLineHeight + (notes > 0 ? kMargin / 2 : 0)};
  }

  const QSize& Size() const { return m_size; }
  const QRect& Legend(std::size_t index) const { return m_legend[index]; }
  QRect Note(int index) const { return {kMargin, m_notesTop + index * kLineHeight, kInner, kLineHeight}; }

  /// The last of an odd count has the row to itself.
  QRect ChartArea(int index, int count) const {
    const int half = (kInner - kBetween) / 2;
    const bool alone = m_columns == 1 || (index % 2 == 0 && index + 1 == count);
    return {kMargin + index % m_columns * (half + kBetween),
            m_chartsTop + index / m_columns * (m_chartHeight + kBetween), alone ? kInner : half, m_chartHeight};
  }

 private:
  std::vector<QRect> m_legend;
  int m_columns;
  int m_chartsTop;
  int m_chartHeight;
  int m_notesTop;
  QSize m_size;
};

void DrawLine(QPainter& painter, const QRect& area, const QString& text) {
  painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
}

void DrawHeader(QPainter& painter, const Page& page) {
  painter.setFont(PictureFont(24, true));
  painter.setPen(QColor(kInk));
  DrawLine(painter, {kMargin, kMargin - 8, kInner, 30}, page.title);
  painter.setFont(PictureFont(14));
  painter.setPen(QColor(kQuiet));
  DrawLine(painter, {kMargin, kMargin + 26, kInner, kLineHeight}, page.details);
}

void Draw(QPainter& painter, const Page& page, const Layout& layout) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(QRect({}, layout.Size()), Qt::white);
  DrawHeader(painter, page);
  for (std::size_t i = 0; i < static_cast<std::size_t>(page.legend.size()); ++i) {
    const QRect& area = layout.Legend(i);
    DrawSample(painter, QRectF(area).adjusted(2, 0, kSampleWidth - 10 - area.width(), 0), i);
    painter.setFont(PictureFont(13));
    painter.setPen(QColor(kInk));
    DrawLine(painter, area.adjusted(kSampleWidth, 0, 0, 0), page.legend[static_cast<int>(i)]);
  }
  for (std::size_t i = 0; i < page.charts.size(); ++i) {
    DrawChart(painter, layout.ChartArea(static_cast<int>(i), static_cast<int>(page.charts.size())), page.charts[i]);
  }
  painter.setFont(PictureFont(13));
  painter.setPen(QColor(kQuiet));
  for (int i = 0; i < page.notes.size(); ++i) DrawLine(painter, layout.Note(i), page.notes[i]);
}

QByteArray Svg(const Page& page, const Layout& layout) {
  const QString place = QStringLiteral("title");
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(layout.Size());
  generator.setViewBox(QRect({}, layout.Size()));
  generator.setResolution(96);
  generator.setTitle(place);
  QPainter painter(&generator);
  Draw(painter, page, layout);
  painter.end();
  // Whether Qt escapes a title depends on its version.
  const auto element = [](const QString& text) { return QStringLiteral("<title>%1</title>").arg(text).toUtf8(); };
  return bytes.replace(element(place), element(page.title.toHtmlEscaped()));
}

QByteArray Png(const Page& page, const Layout& layout) {
  QImage image(layout.Size() * kSharpness, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.scale(kSharpness, kSharpness);
  Draw(painter, page, layout);
  painter.end();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

}  // namespace

QByteArray DrawPage(const Page& page, const QString& format) {
  const Layout layout(page);
  return format == QLatin1String("svg") ? Svg(page, layout) : Png(page, layout);
}

}  // namespace tarnwell::tools

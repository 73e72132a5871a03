#include "tools/shared/chart.h"

#include <QFont>
#include <QPaintEngine>
#include <QPainter>
#include <QRectF>
#include <algorithm>
#include <array>
#include <cmath>

#include "tools/shared/overlap.h"

namespace tarnwell::tools {

namespace {

constexpr QRgb kInk = 0xFF1F2933;
constexpr QRgb kQuiet = 0xFF5A6672;
constexpr QRgb kGrid = 0xFFE1E6EB;
constexpr QRgb kAxis = 0xFF8894A0;
constexpr QRgb kDisabled = 0xFFB4531A;

// The looks of curves: told apart without colours as well. The counts have no common divisor.
constexpr std::array kColours = {0xFF1B5E9CU, 0xFFC2410CU, 0xFF2E7D4FU, 0xFF7B3FA0U,
                                 0xFF0F7C8AU, 0xFFB5306EU, 0xFF7A5C12U};
constexpr std::array kDashes = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
constexpr int kShapes = 5;

constexpr int kTitlePixels = 17;
constexpr int kTextPixels = 13;
constexpr double kNoteHeight = 20.0;
constexpr double kPointRadius = 3.0;
constexpr double kSmallRadius = 2.0;
constexpr double kLeastRadius = 1.2;
constexpr double kLineWidth = 1.8;
constexpr std::size_t kFew = 3;  ///< curves of which the dashes show the lower ones
constexpr double kRim = 1.6;
constexpr double kWidestRim = 10.0;  ///< of a curve below all others
constexpr qsizetype kMany = 60;      ///< points of a curve
constexpr double kCrossArm = 4.5;
constexpr qsizetype kDense = 400;  ///< points of a curve that are drawn as a line alone
constexpr double kLaneHeight = 18.0;
constexpr double kBarHeight = 8.0;
constexpr double kLanesGap = 10.0;  // between the lanes and the plane
constexpr double kLeastBar = 1.5;
constexpr int kTint = 34;  // of 255
constexpr double kHeadingHeight = 36.0;
constexpr double kBelowPlane = 34.0;  // for the numbers
constexpr double kLowestPlane = 8.0;

struct Range {
  double least;
  double greatest;
};

/// Of all that is drawn; the marks count along the x axis.
Range RangeOf(const Chart& chart, bool across) {
  std::vector<double> values;
  if (across && chart.xSpan) values = {chart.xSpan->first, chart.xSpan->second};
  for (const Series& series : chart.series) {
    if (across) values.insert(values.end(), series.marked.begin(), series.marked.end());
    for (const QPolygonF& run : series.runs) {
      for (const QPointF& point : run) values.push_back(across ? point.x() : point.y());
    }
  }
  if (values.empty()) return {0.0, 1.0};
  const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
  return {*least, *greatest};
}

/// One axis: its ends, and what stands along it.
struct Axis {
  Range range;
  std::vector<DateTick> ticks;

  double Share(double value) const { return (value - range.least) / (range.greatest - range.least); }
};

/// "1.05e20"
QString ExponentText(double value) {
  QString text = QString::number(value, 'g', 3);
  return text.replace(QLatin1String("e+0"), QLatin1String("e")).replace(QLatin1String("e+"), QLatin1String("e"));
}

QString TickText(const Ticks& ticks, int index) {
  const double value = ticks.At(index);
  // a sum of steps may miss zero by a hair, and "-0" be shown
  const double shown = std::abs(value) < ticks.step / 1000.0 ? 0.0 : value;
  const double greatest = std::max(std::abs(ticks.first), std::abs(ticks.At(ticks.count - 1)));
  QString text = greatest < kExponentFrom ? QString::number(shown, 'f', ticks.decimals) : ExponentText(shown);
  return text.replace(QLatin1Char('-'), QChar(0x2212));
}

Axis NumberAxis(const Range& range, int about) {
  const Ticks ticks = MakeTicks(range.least, range.greatest, about);
  Axis axis{{ticks.At(0), ticks.At(ticks.count - 1)}, {}};
  for (int i = 0; i < ticks.count; ++i) axis.ticks.push_back({ticks.At(i), TickText(ticks, i)});
  return axis;
}

Axis TimeAxis(const Range& range, int about) {
  constexpr double kLoneMargin = 3600.0;  // seconds about a moment
  const double span = range.greatest - range.least;
  const double margin = span > 0.0 ? std::max(span / 50.0, 1.0) : kLoneMargin;
  const Range wide{range.least - margin, range.greatest + margin};
  return {wide, MakeDateTicks(wide.least, wide.greatest, about)};
}

/// The plane between the axes.
class Plane {
 public:
  Plane(const Chart& chart, const QRectF& area)
      : m_area(area),
        m_x(chart.timeAcross ? TimeAxis(RangeOf(chart, true), static_cast<int>(area.width() / kDateWidth))
                             : NumberAxis(RangeOf(chart, true), 8)),
        m_y(chart.IsEmpty() ? Axis{{0.0, 1.0}, {}} : NumberAxis(RangeOf(chart, false), 6)) {}

  const QRectF& Area() const { return m_area; }
  const Axis& X() const { return m_x; }
  const Axis& Y() const { return m_y; }

  double PixelX(double x) const { return m_area.left() + m_area.width() * m_x.Share(x); }
  double PixelY(double y) const { return m_area.bottom() - m_area.height() * m_y.Share(y); }
  QPointF Pixel(const QPointF& point) const { return {PixelX(point.x()), PixelY(point.y())}; }

 private:
  static constexpr double kDateWidth = 90.0;

  QRectF m_area;
  Axis m_x;
  Axis m_y;
};

void DrawAxes(QPainter& painter, const Plane& plane) {
  const QRectF& area = plane.Area();
  painter.setFont(PictureFont(kTextPixels));
  for (const DateTick& tick : plane.X().ticks) {
    const double x = plane.PixelX(tick.at);
    painter.setPen(QPen(QColor(kGrid), 1.0));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    painter.setPen(QColor(kQuiet));
    painter.drawText(QRectF(x - 45, area.bottom() + 9, 90, 18), Qt::AlignHCenter | Qt::AlignTop, tick.text);
  }
  for (const DateTick& tick : plane.Y().ticks) {
    const double y = plane.PixelY(tick.at);
    const bool zero = std::abs(tick.at) < (plane.Y().range.greatest - plane.Y().range.least) / 1e4;
    painter.setPen(QPen(QColor(zero ? kAxis : kGrid), 1.0));
    painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    painter.setPen(QColor(kQuiet));
    painter.drawText(QRectF(area.left() - 68, y - 9, 60, 18), Qt::AlignRight | Qt::AlignVCenter, tick.text);
  }
  painter.setPen(QPen(QColor(kAxis), 1.2));
  painter.drawLine(area.bottomLeft(), area.bottomRight());
  painter.drawLine(area.topLeft(), area.bottomLeft());
}

QColor ColourOf(std::size_t index) { return QColor(kColours[index % kColours.size()]); }

/// Its colours go on where those of the curves end.
QColor LaneColour(const Chart& chart, int lane) {
  return ColourOf(chart.series.size() + static_cast<std::size_t>(lane));
}

double LanesHeight(const Chart& chart) {
  return chart.lanes.isEmpty() ? 0.0 : kLaneHeight * static_cast<double>(chart.lanes.size()) + kLanesGap;
}

double AbovePlane(const Chart& chart) {
  const auto notes = static_cast<double>(std::max<qsizetype>(chart.notes.size(), 1));
  return kHeadingHeight + notes * kNoteHeight + LanesHeight(chart);
}

void DrawBar(QPainter& painter, const QRectF& bar, const QColor& colour, bool hollow) {
  if (!hollow) return painter.fillRect(bar, colour);
  painter.setPen(QPen(colour, 1.0));
  painter.setBrush(Qt::white);
  painter.drawRect(bar.adjusted(0.5, 0.5, -0.5, -0.5));
  painter.setPen(Qt::NoPen);
}

/// Tints over the whole height; above the plane a bar in the band's lane tells bands apart without colours.
void DrawBands(QPainter& painter, const Plane& plane, const Chart& chart) {
  const QRectF& area = plane.Area();
  painter.setFont(PictureFont(kTextPixels));
  const double top = area.top() - LanesHeight(chart);
  for (int lane = 0; lane < chart.lanes.size(); ++lane) {
    const QRectF name(area.left() - chart.leftMargin, top + kLaneHeight * lane, chart.leftMargin - 8.0, kLaneHeight);
    painter.setPen(QColor(kInk));
    painter.drawText(
        name, Qt::AlignRight | Qt::AlignVCenter,
        painter.fontMetrics().elidedText(chart.lanes[lane], Qt::ElideRight, static_cast<int>(name.width())));
    painter.setPen(QPen(QColor(kGrid), 1.0));
    painter.drawLine(QPointF(area.left(), name.center().y()), QPointF(area.right(), name.center().y()));
  }
  painter.setPen(Qt::NoPen);
  for (const Band& band : chart.bands) {
    const double left = plane.PixelX(band.from);
    const double width = std::max(plane.PixelX(band.to) - left, kLeastBar);
    QColor colour = LaneColour(chart, band.lane);
    if (band.lane < chart.lanes.size()) {
      const double centre = top + kLaneHeight * (band.lane + 0.5);
      DrawBar(painter, QRectF(left, centre - kBarHeight / 2, width, kBarHeight), colour, band.over);
    }
    if (band.over || chart.IsEmpty()) continue;
    colour.setAlpha(kTint);
    painter.fillRect(QRectF(left, area.top(), width, area.height()), colour);
  }
}

void DrawAxisTitles(QPainter& painter, const QRectF& area, const Chart& chart) {
  painter.setFont(PictureFont(kTextPixels));
  painter.setPen(QColor(kInk));
  painter.drawText(QRectF(area.left(), area.bottom() + 30, area.width(), 20), Qt::AlignCenter, chart.xTitle);
  painter.save();
  painter.translate(area.left() - 70, area.center().y());
  painter.rotate(-90);
  painter.drawText(QRectF(-area.height() / 2, -10, area.height(), 20), Qt::AlignCenter, chart.yTitle);
  painter.restore();
}

QPen PenOf(std::size_t index, double width) {
  QPen pen(ColourOf(index), width, kDashes[index % kDashes.size()], Qt::FlatCap, Qt::RoundJoin);
  if (index % kDashes.size() == 0) pen.setCapStyle(Qt::RoundCap);
  return pen;
}

/// A point of the series: circle, square, triangle, diamond, triangle on its tip.
void DrawPoint(QPainter& painter, const QPointF& at, double radius, std::size_t index) {
  const double r = radius * 1.15;
  switch (index % kShapes) {
    case 0:
      return painter.drawEllipse(at, radius, radius);
    case 1:
      return painter.drawRect(QRectF(at - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius)));
    case 3:
      return painter.drawPolygon(
          QPolygonF({at + QPointF(0, -r), at + QPointF(r, 0), at + QPointF(0, r), at + QPointF(-r, 0)}));
    default:
      break;
  }
  const double tip = index % kShapes == 2 ? -r : r;
  painter.drawPolygon(QPolygonF({at + QPointF(0, tip), at + QPointF(r, -tip), at + QPointF(-r, -tip)}));
}

void DrawRun(QPainter& painter, const QPolygonF& pixels, double radius, double width, std::size_t index) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(PenOf(index, width));
  // One outline of a long curve that crosses itself takes the painter minutes; its lines one by one take none.
  const bool isPicture = painter.paintEngine()->type() == QPaintEngine::Raster;
  if (isPicture && radius == 0.0 && PenOf(index, width).style() == Qt::SolidLine) {
    for (qsizetype i = 1; i < pixels.size(); ++i) painter.drawLine(pixels[i - 1], pixels[i]);
  } else {
    painter.drawPolyline(pixels);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(ColourOf(index));
  // A point alone has no line that would show it.
  if (radius == 0.0 && pixels.size() > 1) return;
  for (const QPointF& pixel : pixels) DrawPoint(painter, pixel, std::max(radius, kLeastRadius), index);
}

/// Curves that may hide this one: of a few, and of tables, all that are drawn later.
std::size_t CurvesAbove(const Chart& chart, std::size_t index) {
  const auto later = chart.series.size() - 1 - index;
  if (chart.series.size() <= kFew || !chart.timeAcross) return later;
  const Range x = RangeOf(chart, true);
  const Range y = RangeOf(chart, false);
  const QPointF hair((x.greatest - x.least) / 200.0, (y.greatest - y.least) / 200.0);
  const Series& series = chart.series[index];
  return static_cast<std::size_t>(std::count_if(chart.series.end() - static_cast<std::ptrdiff_t>(later),
                                                chart.series.end(),
                                                [&](const Series& above) { return LieTogether(above, series, hair); }));
}

/// How far a curve stands out on both sides of those above it, so that equal ones are seen.
double Rim(const Chart& chart, std::size_t index) {
  const double step = std::min(kRim, kWidestRim / static_cast<double>(chart.series.size()));
  return step * static_cast<double>(CurvesAbove(chart, index));
}

/// Small where there are many, none where they are dense.
double PointRadius(const Series& series) {
  qsizetype count = 0;
  for (const QPolygonF& run : series.runs) count += run.size();
  if (count > kDense) return 0.0;
  return count > kMany ? kSmallRadius : kPointRadius;
}

void DrawSeries(QPainter& painter, const Plane& plane, const Chart& chart, std::size_t index) {
  const Series& series = chart.series[index];
  const double rim = Rim(chart, index);
  const double plain = PointRadius(series);
  const double radius = plain > 0.0 ? plain + rim : 0.0;
  const double width = kLineWidth + (chart.series.size() > kFew ? 2.0 * rim : 0.0);
  for (const QPolygonF& run : series.runs) {
    QPolygonF pixels;
    for (const QPointF& point : run) pixels += plane.Pixel(point);
    DrawRun(painter, pixels, radius, width, index);
  }
}

/// On the axis; of further series each on a line of its own above, as far as there is room.
void DrawMarks(QPainter& painter, const Plane& plane, const Chart& chart, std::size_t index) {
  const QColor colour = chart.series.size() > 1 ? ColourOf(index) : QColor(kDisabled);
  painter.setPen(QPen(colour, 1.8, Qt::SolidLine, Qt::RoundCap));
  const double above = static_cast<double>(index % kShapes) * 2.5 * kCrossArm;
  for (const double marked : chart.series[index].marked) {
    const QPointF at(plane.PixelX(marked), plane.Area().bottom() - above);
    painter.drawLine(at - QPointF(kCrossArm, kCrossArm), at + QPointF(kCrossArm, kCrossArm));
    painter.drawLine(at - QPointF(kCrossArm, -kCrossArm), at + QPointF(kCrossArm, -kCrossArm));
  }
}

void DrawHeading(QPainter& painter, const QRectF& area, const Chart& chart) {
  painter.setFont(PictureFont(kTitlePixels, true));
  painter.setPen(QColor(kInk));
  painter.drawText(QRectF(area.left(), area.top(), area.width(), 24), Qt::AlignLeft | Qt::AlignVCenter, chart.title);
  painter.setFont(PictureFont(kTextPixels));
  painter.setPen(QColor(kDisabled));
  QRectF line(area.left(), area.top() + 25, area.width(), kNoteHeight);
  for (const QString& note : chart.notes) {
    const QString shown = painter.fontMetrics().elidedText(note, Qt::ElideRight, static_cast<int>(line.width()));
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, shown);
    line.translate(0, kNoteHeight);
  }
}

}  // namespace

bool Chart::IsEmpty() const {
  return std::all_of(series.begin(), series.end(), [](const Series& one) { return one.runs.empty(); });
}

double Chart::HeightOfBands() const { return bands.empty() ? 0.0 : AbovePlane(*this) + kLowestPlane + kBelowPlane; }

void DrawChart(QPainter& painter, const QRectF& area, const Chart& chart) {
  DrawHeading(painter, area, chart);
  if (chart.IsEmpty() && chart.bands.empty()) return;
  const double below = kBelowPlane + (chart.xTitle.isEmpty() ? 0.0 : kNoteHeight);
  const Plane plane(chart, area.adjusted(chart.leftMargin, AbovePlane(chart), -14, -below));
  DrawBands(painter, plane, chart);
  DrawAxes(painter, plane);
  DrawAxisTitles(painter, plane.Area(), chart);
  for (std::size_t i = 0; i < chart.series.size(); ++i) DrawSeries(painter, plane, chart, i);
  for (std::size_t i = 0; i < chart.series.size(); ++i) DrawMarks(painter, plane, chart, i);
}

void DrawSample(QPainter& painter, const QRectF& area, std::size_t index) {
  const double y = area.center().y();
  DrawRun(painter, QPolygonF({{area.left(), y}, {area.center().x(), y}, {area.right(), y}}), kPointRadius, kLineWidth,
          index);
}

QFont PictureFont(int pixels, bool bold) {
  // The generic name, so that a picture of curves is shown with the fonts of the machine that shows it.
  QFont font(QStringLiteral("sans-serif"));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(pixels);
  font.setBold(bold);
  return font;
}

}  // namespace tarnwell::tools

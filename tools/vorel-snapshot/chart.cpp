#include "tools/vorel-snapshot/chart.h"

#include <QFont>
#include <QPainter>
#include <QRectF>
#include <algorithm>
#include <cmath>

namespace tarnwell::vorel_snapshot {

namespace {

constexpr QRgb kInk = 0xFF1F2933;
constexpr QRgb kQuiet = 0xFF5A6672;
constexpr QRgb kGrid = 0xFFE1E6EB;
constexpr QRgb kAxis = 0xFF8894A0;
constexpr QRgb kCurve = 0xFF1B5E9C;
constexpr QRgb kDisabled = 0xFFB4531A;

constexpr int kTitlePixels = 17;
constexpr int kTextPixels = 13;
constexpr double kPointRadius = 3.0;
constexpr double kCrossArm = 4.5;

/// 1, 2 or 5 times a power of ten, at least `step`.
double RoundStep(double step) {
  const double power = std::pow(10.0, std::floor(std::log10(step)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (step <= factor * power * 1.0001) return factor * power;
  }
  return 10.0 * power;
}

struct Range {
  double least = 0.0;
  double greatest = 0.0;
};

template <class Coordinate>
Range RangeOf(const Chart& chart, Coordinate coordinate) {
  const double first = coordinate(chart.runs.front().front());
  Range range{first, first};
  for (const QPolygonF& run : chart.runs) {
    for (const QPointF& point : run) {
      range.least = std::min(range.least, coordinate(point));
      range.greatest = std::max(range.greatest, coordinate(point));
    }
  }
  return range;
}

/// The plane between the axes.
class Plane {
 public:
  Plane(const Chart& chart, const QRectF& area) : m_area(area) {
    Range x = RangeOf(chart, [](const QPointF& point) { return point.x(); });
    for (const double marked : chart.marked) x = {std::min(x.least, marked), std::max(x.greatest, marked)};
    const Range y = RangeOf(chart, [](const QPointF& point) { return point.y(); });
    m_x = MakeTicks(x.least, x.greatest, 8);
    m_y = MakeTicks(y.least, y.greatest, 6);
  }

  const QRectF& Area() const { return m_area; }
  const Ticks& X() const { return m_x; }
  const Ticks& Y() const { return m_y; }

  double PixelX(double x) const { return m_area.left() + m_area.width() * Share(m_x, x); }
  double PixelY(double y) const { return m_area.bottom() - m_area.height() * Share(m_y, y); }
  QPointF Pixel(const QPointF& point) const { return {PixelX(point.x()), PixelY(point.y())}; }

 private:
  static double Share(const Ticks& ticks, double value) {
    return (value - ticks.first) / (ticks.step * (ticks.count - 1));
  }

  QRectF m_area;
  Ticks m_x;
  Ticks m_y;
};

QString TickText(const Ticks& ticks, int index) {
  const double value = ticks.At(index);
  // a sum of steps may miss zero by a hair, and "-0" be shown
  const double shown = std::abs(value) < ticks.step / 1000.0 ? 0.0 : value;
  return QString::number(shown, 'f', ticks.decimals).replace(QLatin1Char('-'), QChar(0x2212));
}

void DrawAxes(QPainter& painter, const Plane& plane) {
  const QRectF& area = plane.Area();
  painter.setFont(PictureFont(kTextPixels));
  for (int i = 0; i < plane.X().count; ++i) {
    const double x = plane.PixelX(plane.X().At(i));
    painter.setPen(QPen(QColor(kGrid), 1.0));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    painter.setPen(QColor(kQuiet));
    painter.drawText(QRectF(x - 40, area.bottom() + 9, 80, 18), Qt::AlignHCenter | Qt::AlignTop,
                     TickText(plane.X(), i));
  }
  for (int i = 0; i < plane.Y().count; ++i) {
    const double y = plane.PixelY(plane.Y().At(i));
    const bool zero = std::abs(plane.Y().At(i)) < plane.Y().step / 1000.0;
    painter.setPen(QPen(QColor(zero ? kAxis : kGrid), 1.0));
    painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    painter.setPen(QColor(kQuiet));
    painter.drawText(QRectF(area.left() - 68, y - 9, 60, 18), Qt::AlignRight | Qt::AlignVCenter,
                     TickText(plane.Y(), i));
  }
  painter.setPen(QPen(QColor(kAxis), 1.2));
  painter.drawLine(area.bottomLeft(), area.bottomRight());
  painter.drawLine(area.topLeft(), area.bottomLeft());
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

void DrawCurve(QPainter& painter, const Plane& plane, const Chart& chart) {
  for (const QPolygonF& run : chart.runs) {
    QPolygonF pixels;
    for (const QPointF& point : run) pixels += plane.Pixel(point);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(kCurve), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(pixels);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(kCurve));
    for (const QPointF& pixel : pixels) painter.drawEllipse(pixel, kPointRadius, kPointRadius);
  }
}

void DrawMarks(QPainter& painter, const Plane& plane, const Chart& chart) {
  painter.setPen(QPen(QColor(kDisabled), 1.8, Qt::SolidLine, Qt::RoundCap));
  for (const double marked : chart.marked) {
    const QPointF at(plane.PixelX(marked), plane.Area().bottom());
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
  painter.drawText(QRectF(area.left(), area.top() + 25, area.width(), 20), Qt::AlignLeft | Qt::AlignVCenter,
                   chart.note);
}

}  // namespace

Ticks MakeTicks(double least, double greatest, int about) {
  if (greatest - least < 1e-9) {
    least -= 1.0;
    greatest += 1.0;
  }
  Ticks ticks;
  ticks.step = RoundStep((greatest - least) / about);
  const double first = std::floor(least / ticks.step + 1e-9);
  ticks.first = first * ticks.step;
  ticks.count = static_cast<int>(std::ceil(greatest / ticks.step - 1e-9) - first) + 1;
  ticks.decimals = std::max(0, static_cast<int>(-std::floor(std::log10(ticks.step) + 1e-9)));
  return ticks;
}

void DrawChart(QPainter& painter, const QRectF& area, const Chart& chart) {
  DrawHeading(painter, area, chart);
  if (chart.runs.empty()) return;
  const Plane plane(chart, area.adjusted(84, 56, -14, -54));
  DrawAxes(painter, plane);
  DrawAxisTitles(painter, plane.Area(), chart);
  DrawCurve(painter, plane, chart);
  DrawMarks(painter, plane, chart);
}

QFont PictureFont(int pixels, bool bold) {
  // The generic name, so that a picture of curves is shown with the fonts of the machine that shows it.
  QFont font(QStringLiteral("sans-serif"));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(pixels);
  font.setBold(bold);
  return font;
}

}  // namespace tarnwell::vorel_snapshot

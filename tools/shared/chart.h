#pragma once

#include <QPolygonF>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

class QFont;
class QPainter;
class QRectF;

namespace tarnwell::tools {

/// One curve. Its place among the chart's, drawn or not, gives its look.
struct Series {
  std::vector<QPolygonF> runs = {};  ///< points that follow one another; a gap stands between two runs
  std::vector<double> marked = {};   ///< on the x axis: what is disabled
};

/// A stretch of the x axis, tinted behind the curves.
struct Band {
  double from;
  double to;
  int lane;           ///< its place among the chart's lanes
  bool over = false;  ///< what it tells is over, and has left something: hollow, and without a tint
};

/// Curves with their axes.
struct Chart {
  QString title;
  QStringList notes = {};  ///< what isn't drawn, and why
  QString xTitle = {};
  QString yTitle = {};
  bool timeAcross = false;  ///< the x axis is in seconds since the start of 1970
  std::vector<Series> series = {};
  std::vector<Band> bands = {};
  QStringList lanes = {};  ///< names of kinds of bands; each is a line above the curves
  int leftMargin = 84;     ///< logical pixels for the y axis and the lanes' names
  /// What the x axis spans at least; unset: what there is to draw.
  std::optional<std::pair<double, double>> xSpan = {};

  bool IsEmpty() const;  ///< of curves
  /// What a chart without curves takes to show its bands; 0: it has none.
  double HeightOfBands() const;
};

/// Numbers along an axis: round ones, from at or below the least value to at or above the greatest.
struct Ticks {
  double first = 0.0;
  double step = 1.0;
  int count = 2;
  int decimals = 0;

  double At(int index) const { return first + step * index; }
};
/// Numbers from here on are written with an exponent.
inline constexpr double kExponentFrom = 1e6;

Ticks MakeTicks(double least, double greatest, int about);

/// Seconds to years along an axis, in order: at most about so many, none outside.
struct DateTick {
  double at;
  QString text;
};
std::vector<DateTick> MakeDateTicks(double least, double greatest, int about);

/// Draws the chart into the rectangle, in logical pixels. Without a run it has its bands and notes alone.
void DrawChart(QPainter& painter, const QRectF& area, const Chart& chart);

/// The look of the series at `index`, as a short piece of its curve within the rectangle.
void DrawSample(QPainter& painter, const QRectF& area, std::size_t index);

/// A font of the picture.
QFont PictureFont(int pixels, bool bold = false);

}  // namespace tarnwell::tools

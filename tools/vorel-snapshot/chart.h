#pragma once

#include <QPolygonF>
#include <QString>
#include <vector>

class QFont;
class QPainter;
class QRectF;

namespace tarnwell::vorel_snapshot {

/// One curve with its axes.
struct Chart {
  QString title;
  QString note;  ///< what isn't drawn, and why
  QString xTitle;
  QString yTitle;
  std::vector<QPolygonF> runs;  ///< points that follow one another in the table; a gap stands between two runs
  std::vector<double> marked;   ///< on the x axis: points that are disabled
};

/// Numbers along an axis: round ones, from at or below the least value to at or above the greatest.
struct Ticks {
  double first = 0.0;
  double step = 1.0;
  int count = 2;
  int decimals = 0;

  double At(int index) const { return first + step * index; }
};
Ticks MakeTicks(double least, double greatest, int about);

/// Draws the chart into the rectangle, in logical pixels. Without a run it says so by its note alone.
void DrawChart(QPainter& painter, const QRectF& area, const Chart& chart);

/// A font of the picture.
QFont PictureFont(int pixels, bool bold = false);

}  // namespace tarnwell::vorel_snapshot

#include "tools/shared/overlap.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnwell::tools {

namespace {

/// What the run is at x, between its points as well, or at an end of it that is so near; nothing beside it.
std::optional<double> ValueAt(const QPolygonF& run, double x, double near) {
  if (run.isEmpty() || x < run.first().x() - near || x > run.last().x() + near) return std::nullopt;
  x = std::clamp(x, run.first().x(), run.last().x());
  const auto isLeft = [](const QPointF& point, double at) { return point.x() < at; };
  const auto right = std::lower_bound(run.begin(), run.end(), x, isLeft);
  if (right->x() == x) return right->y();
  const QPointF left = *(right - 1);
  return left.y() + (right->y() - left.y()) * (x - left.x()) / (right->x() - left.x());
}

/// Whether two neighbouring points of the one, or its only one, stand on the other: more than that they cross.
bool LiesOn(const Series& one, const Series& other, const QPointF& hair) {
  for (const QPolygonF& run : one.runs) {
    qsizetype together = 0;
    for (const QPointF& point : run) {
      const bool on = std::any_of(other.runs.begin(), other.runs.end(), [&](const QPolygonF& line) {
        const auto value = ValueAt(line, point.x(), hair.x());
        return value && std::abs(*value - point.y()) <= hair.y();
      });
      together = on ? together + 1 : 0;
      if (together == std::min<qsizetype>(run.size(), 2)) return true;
    }
  }
  return false;
}

}  // namespace

bool LieTogether(const Series& one, const Series& other, const QPointF& hair) {
  return LiesOn(one, other, hair) || LiesOn(other, one, hair);
}

}  // namespace tarnwell::tools

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <array>
#include <cmath>

#include "tools/shared/chart.h"

namespace tarnwell::tools {

namespace {

constexpr int kMinute = 60;
constexpr int kHour = 60 * kMinute;
constexpr int kDay = 24 * kHour;

/// A step in seconds or in months, which differ in length; months count from a year's start, so that all years look
/// alike.
struct DateStep {
  int seconds;
  int months;
  const char* format;

  double Length() const { return months > 0 ? months * 30.4 * kDay : seconds; }
};

constexpr DateStep kDateSteps[] = {{1, 0, "hh:mm:ss"},
                                   {5, 0, "hh:mm:ss"},
                                   {10, 0, "hh:mm:ss"},
                                   {30, 0, "hh:mm:ss"},
                                   {kMinute, 0, "MM-dd hh:mm"},
                                   {2 * kMinute, 0, "MM-dd hh:mm"},
                                   {5 * kMinute, 0, "MM-dd hh:mm"},
                                   {10 * kMinute, 0, "MM-dd hh:mm"},
                                   {30 * kMinute, 0, "MM-dd hh:mm"},
                                   {kHour, 0, "MM-dd hh:mm"},
                                   {3 * kHour, 0, "MM-dd hh:mm"},
                                   {6 * kHour, 0, "MM-dd hh:mm"},
                                   {12 * kHour, 0, "MM-dd hh:mm"},
                                   {kDay, 0, "yyyy-MM-dd"},
                                   {2 * kDay, 0, "yyyy-MM-dd"},
                                   {7 * kDay, 0, "yyyy-MM-dd"},
                                   {14 * kDay, 0, "yyyy-MM-dd"},
                                   {0, 1, "yyyy-MM"},
                                   {0, 2, "yyyy-MM"},
                                   {0, 3, "yyyy-MM"},
                                   {0, 6, "yyyy-MM"},
                                   {0, 12, "yyyy"},
                                   {0, 24, "yyyy"},
                                   {0, 60, "yyyy"},
                                   {0, 120, "yyyy"},
                                   {0, 600, "yyyy"},
                                   {0, 2400, "yyyy"},
                                   {0, 12000, "yyyy"}};

/// Steps from the start of the count: of the years, or of 1970.
qint64 StepsTo(const DateStep& step, double seconds) {
  if (step.months == 0) return static_cast<qint64>(std::floor(seconds / step.seconds));
  const QDate date = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), QTimeZone::utc()).date();
  return (date.year() * 12 + date.month() - 1) / step.months;
}

/// Invalid where no year has that number.
QDateTime TimeOf(const DateStep& step, qint64 steps) {
  if (step.months == 0) return QDateTime::fromSecsSinceEpoch(steps * step.seconds, QTimeZone::utc());
  const auto month = static_cast<int>(steps * step.months);
  return {QDate(month / 12, month % 12 + 1, 1), QTime(0, 0), QTimeZone::utc()};
}

/// 1, 2 or 5 times a power of ten, at least `step`.
double RoundStep(double step) {
  const double power = std::pow(10.0, std::floor(std::log10(step)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (step <= factor * power * 1.0001) return factor * power;
  }
  return 10.0 * power;
}

/// Of an axis to such a number: a narrower one would take longer texts than there is room for.
double LeastSpan(double magnitude) {
  constexpr double kLeast = 1e-3;
  // With an exponent there is room for three digits.
  return magnitude < kExponentFrom / 10.0 ? std::max(kLeast, magnitude * 1e-4) : magnitude * 0.1;
}

}  // namespace

Ticks MakeTicks(double least, double greatest, int about) {
  const double span = LeastSpan(std::max(std::abs(least), std::abs(greatest)));
  if (greatest - least < span) {
    least -= std::max(span, 1.0);
    greatest += std::max(span, 1.0);
  }
  Ticks ticks;
  ticks.step = RoundStep((greatest - least) / about);
  const double first = std::floor(least / ticks.step + 1e-9);
  ticks.first = first * ticks.step;
  ticks.count = static_cast<int>(std::ceil(greatest / ticks.step - 1e-9) - first) + 1;
  ticks.decimals = std::max(0, static_cast<int>(-std::floor(std::log10(ticks.step) + 1e-9)));
  return ticks;
}

std::vector<DateTick> MakeDateTicks(double least, double greatest, int about) {
  const auto fits = [&](const DateStep& step) { return (greatest - least) / step.Length() <= about; };
  const auto* step = std::find_if(std::begin(kDateSteps), std::end(kDateSteps) - 1, fits);
  std::vector<DateTick> ticks;
  const qint64 last = StepsTo(*step, greatest);
  for (qint64 i = StepsTo(*step, least); i <= last; ++i) {
    const QDateTime time = TimeOf(*step, i);
    const auto at = static_cast<double>(time.toSecsSinceEpoch());
    if (time.isValid() && at >= least) ticks.push_back({at, time.toString(QLatin1String(step->format))});
  }
  return ticks;
}

}  // namespace tarnwell::tools

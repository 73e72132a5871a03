#include "settings/entry_values.h"

#include <algorithm>
#include <limits>

#include "console/entry_text.h"
#include "protocol/encodings.h"
#include "settings/calibration_points.h"

namespace tarnwell::settings {

namespace {

constexpr double kMostVolts = 15.0;
constexpr int kMostDAC = 255;
constexpr double kMostCompensation = 10.0;
constexpr int kColdest = -50;
constexpr int kHottest = 125;

bool Disables(const QString& text) { return text.contains(DisabledText()); }

bool IsDigits(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
}

QString InWords(double least, double most) { return QStringLiteral("%1 to %2").arg(least).arg(most); }

QString OrDisabled(const QString& limits) {
  return limits + QStringLiteral(", ") + DisabledText() + QStringLiteral(": disabled");
}

}  // namespace

std::optional<int> LimitFromEntry(const QString& text) {
  using Range = std::numeric_limits<std::int16_t>;
  if (Disables(text)) return kDisabledLimit;
  const std::optional<double> decibels = console::NumberFromEntry(text);
  if (!decibels) return std::nullopt;
  const int tenths = protocol::Tenths(*decibels);
  if (tenths < Range::min() || tenths > Range::max()) return std::nullopt;
  return tenths;
}

std::optional<float> VoltsFromEntry(const QString& text) {
  if (Disables(text)) return static_cast<float>(protocol::kDisabledValue);
  const std::optional<double> volts = console::NumberFromEntry(text);
  if (!volts) return std::nullopt;
  return static_cast<float>(std::clamp(*volts, 0.0, kMostVolts));
}

std::optional<QString> DACFromEntry(const QString& text) {
  if (Disables(text)) return DisabledText();
  const std::optional<int> value = console::WholeNumberFromEntry(text);
  if (!value) return std::nullopt;
  const int held = std::clamp(*value, 0, kMostDAC);
  // Only what was pasted holds anything but digits; it goes out as the number that it means.
  return held == *value && IsDigits(text) ? text : QString::number(held);
}

std::optional<QString> CompensationFromEntry(const QString& text) {
  if (Disables(text)) return DisabledText();
  const std::optional<double> value = console::NumberFromEntry(text);
  if (!value) return std::nullopt;
  return console::EntryFromNumber(std::clamp(*value, -kMostCompensation, kMostCompensation), 2);
}

std::optional<QString> TemperatureFromEntry(const QString& text) {
  const std::optional<int> degrees = console::WholeNumberFromEntry(text);
  if (!degrees) return std::nullopt;
  return QString::number(std::clamp(*degrees, kColdest, kHottest));
}

QString VoltsInWords() { return OrDisabled(InWords(0, kMostVolts)); }
QString DACInWords() { return OrDisabled(InWords(0, kMostDAC)); }
QString CompensationInWords() { return OrDisabled(InWords(-kMostCompensation, kMostCompensation)); }
QString TemperatureInWords() { return InWords(kColdest, kHottest); }
QString ThresholdInWords(double most, double step) {
  return OrDisabled(InWords(0, most)) + QStringLiteral(", arrow keys step %1").arg(step);
}

}  // namespace tarnwell::settings

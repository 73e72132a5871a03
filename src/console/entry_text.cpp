#include "console/entry_text.h"

#include <QLocale>
#include <cmath>
#include <limits>

#include "platform/text_encoding.h"
#include "protocol/encodings.h"

namespace tarnwell::console {

std::optional<double> NumberFromEntry(const QString& text) {
  QString number = text.trimmed();
  number.replace(QLatin1Char(','), QLatin1Char('.'));
  bool valid = false;
  const double value = QLocale::c().toDouble(number, &valid);
  if (!valid || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<int> WholeNumberFromEntry(const QString& text) {
  using Range = std::numeric_limits<std::int16_t>;
  const std::optional<double> value = NumberFromEntry(text);
  if (!value) return std::nullopt;
  const double whole = std::nearbyint(*value);
  if (whole < Range::min() || whole > Range::max()) return std::nullopt;
  return static_cast<int>(whole);
}

QString EntryFromNumber(double value, int decimals) {
  return QString::fromStdString(protocol::FixedText(value, decimals, protocol::LeadingZero::kAlways));
}

QString OutsideOfEntry(std::string_view text) {
  return QStringLiteral("The device's own value is \"%1\", outside of what can be set here")
      .arg(platform::Printable(platform::FromDevice(text)).trimmed());
}

}  // namespace tarnwell::console

#include "forms/controls/dimming.h"

#include <QApplication>
#include <QLabel>
#include <algorithm>
#include <cmath>
#include <utility>

#include "forms/controls/answers.h"

namespace tarnwell::forms {

namespace {

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Relative luminance of an sRGB colour, 0 to 1.
double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) + 0.0722 * Linear(colour.blueF());
}

QColor Mix(const QColor& from, const QColor& to, int per255) {
  const auto channel = [per255](int a, int b) { return a + (b - a) * per255 / 255; };
  return QColor::fromRgb(channel(from.red(), to.red()), channel(from.green(), to.green()),
                         channel(from.blue(), to.blue()));
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
  const double first = Luminance(a) + 0.05;
  const double second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

QColor ReadableOn(const QColor& background) {
  return Contrast(background, Qt::black) >= Contrast(background, Qt::white) ? QColor(Qt::black) : QColor(Qt::white);
}

QColor WeakOn(const QColor& background) {
  constexpr double kReadable = 3.95;
  const QColor strongest = ReadableOn(background);
  int share = 0;
  while (share < 255 && Contrast(background, Mix(background, strongest, share)) < kReadable) ++share;
  return Mix(background, strongest, share);
}

QColor LineColour(const QPalette& palette) {
  constexpr int kShare = 70;
  return Mix(palette.color(QPalette::Window), palette.color(QPalette::Active, QPalette::WindowText), kShare);
}

bool IsDark(const QPalette& palette) { return ReadableOn(palette.color(QPalette::Window)) == QColor(Qt::white); }

QColor Dimmed(const QColor& colour) { return Mix(colour, QApplication::palette().color(QPalette::Window), 128); }

bool IsDimmed(const QWidget& control) {
  const bool label = qobject_cast<const QLabel*>(&control) != nullptr;
  const bool disabled = label ? control.testAttribute(Qt::WA_ForceDisabled) : !control.isEnabled();
  return disabled || IsOld(control);
}

void AdoptPalette() {
  constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> kTexts[] = {{QPalette::WindowText, QPalette::Window},
                                                                            {QPalette::Text, QPalette::Base},
                                                                            {QPalette::ButtonText, QPalette::Button}};
  QPalette palette = QApplication::palette();
  for (const auto& [text, ground] : kTexts) {
    palette.setColor(QPalette::Disabled, text, WeakOn(palette.color(QPalette::Disabled, ground)));
  }
  if (palette != QApplication::palette()) QApplication::setPalette(palette);
}

}  // namespace tarnwell::forms

#include "forms/layout.h"

#include <QComboBox>
#include <algorithm>
#include <cmath>

#include "forms/controls/tab_strip.h"

namespace tarnwell::forms {

Twips Rounded(double length) {
  // nearbyint goes to the even neighbour, as long as nobody changes the rounding mode
  return static_cast<Twips>(std::nearbyint(length));
}

Arrangement::Arrangement(Form& form) { SetLengths(form, form.ScaleWidth(), form.ScaleHeight()); }

void Arrangement::SetLengths(const QWidget& container, Twips width, Twips height) {
  m_lengths.insert(&container, {width, height});
}

void Arrangement::Place(const QWidget& container, std::initializer_list<Row> rows) {
  const Twips width = Width(container);
  const Twips height = Height(container);
  for (const Row& row : rows) {
    Place(row.control, row.left.In(width), row.top.In(height), row.width.In(width), row.height.In(height));
  }
}

void Arrangement::Place(QWidget& control, Twips left, Twips top, Twips width, Twips height) {
  SetLengths(control, width, height);
  forms::Place(control, left, top, width, height);
}

void SetFontSizes(Form& form, double points) {
  // the parts that Qt builds its own widgets of have no name, or one of Qt's, and follow their control
  for (QWidget* widget : form.Inner().findChildren<QWidget*>()) {
    const QString name = widget->objectName();
    if (!name.isEmpty() && !name.startsWith(QLatin1String("qt_"))) SetFontSize(*widget, points);
  }
}

void FitComboBoxes(Form& form) {
  for (QComboBox* box : form.Inner().findChildren<QComboBox*>()) box->resize(box->width(), box->sizeHint().height());
}

namespace {

bool StepsOn(const Filling& filling, double step) {
  return step > 0.0 ? filling.text < filling.room : filling.text > filling.room;
}

/// Steps from `points` to the first size at which the text would fill its room if it grew exactly as its size does.
double StepsToFill(const Filling& filling, double points, double step) {
  return std::ceil((filling.room / std::max(filling.text, 1e-6) - 1.0) * points / step);
}

}  // namespace

bool StepWhile(const Measure& measure, double step, double& points, const SetPoints& setPoints) {
  const double first = points;
  Filling filling = measure();
  if (!StepsOn(filling, step)) return true;
  double guess = StepsToFill(filling, first, step);
  int on = 0;          // the most steps that are known to be taken
  int off = 1 << 20;   // the fewest that are known to be too many
  bool given = false;  // the platform gives the size after `off`
  while (off - on > 1) {
    const int steps = static_cast<int>(std::clamp(guess, on + 1.0, off - 1.0));
    points = first + steps * step;
    const bool isGiven = setPoints(points);
    if (isGiven) filling = measure();
    if (isGiven && StepsOn(filling, step)) {
      on = steps;
    } else {
      off = steps;
      given = isGiven;
    }
    guess = isGiven ? steps + StepsToFill(filling, points, step) : (on + off) / 2.0;
  }
  points = first + off * step;
  return given && setPoints(points);
}

double FitPoints(const SetPoints& setPoints, const Measure& across, const Measure& down) {
  double points = kSmallestPoints;
  if (!StepWhile(across, kPointStep, points, setPoints)) return kSmallestPoints;
  points -= kPointStep;
  if (!setPoints(points)) return kSmallestPoints;
  return StepWhile(down, -kPointStep, points, setPoints) ? points : kSmallestPoints;
}

SetPoints MeasureLike(Form& form, const QWidget& control) {
  form.SetMeasuringFont(control.font());
  form.SetMeasuringFontSize(kSmallestPoints);
  return [&form](double points) { return form.SetMeasuringFontSize(points); };
}

double FitBelowTabs(TabStrip& tabs, const std::function<double()>& placeAndFit) {
  SetFontSize(tabs, kTabPoints);
  const double points = placeAndFit();
  if (points <= kTabPoints) return points;
  SetFontSize(tabs, points);
  return placeAndFit();
}

}  // namespace tarnwell::forms

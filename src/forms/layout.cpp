#include "forms/layout.h"

#include <QComboBox>
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

bool StepWhile(const FitTest& test, double step, double& points, const SetPoints& setPoints) {
  while (test()) {
    points += step;
    if (!setPoints(points)) return false;
  }
  return true;
}

double FitPoints(const SetPoints& setPoints, const FitTest& up, const FitTest& down) {
  double points = kSmallestPoints;
  if (!StepWhile(up, kPointStep, points, setPoints)) return kSmallestPoints;
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

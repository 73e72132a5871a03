#pragma once

#include <QHash>
#include <functional>
#include <initializer_list>

#include "forms/controls/control.h"

namespace tarnwell::forms {

class TabStrip;
class frmAlarms;
class frmMain;
class frmOptions;
class frmSettings;

/// Place, size and font size of every control from the form's present inner size. Each runs when its form gets a size
/// and keeps nothing between two runs. ArrangeMain and ArrangeAlarms leave a minimised form alone; ArrangeOptions and
/// ArrangeSettings also bring the first page to the front.
void ArrangeMain(frmMain& form);
void ArrangeAlarms(frmAlarms& form);
void ArrangeOptions(frmOptions& form);
void ArrangeSettings(frmSettings& form);

/// The width of a spin control, whatever the size of its form.
inline constexpr Twips kSpinWidth = 240;

/// Font sizes, in points.
inline constexpr double kSmallestPoints = 6.0;
inline constexpr double kTabPoints = 14.0;
inline constexpr double kPointStep = 0.25;

/// A whole number of twips; halves go to the even neighbour.
Twips Rounded(double length);

/// A length in a row of a layout table: a fraction of the container's, or a length that is known already.
class Length {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a row of a table gives the bare fraction
  Length(double fraction) : m_fraction(fraction) {}
  static Length Of(Twips length) { return Length(0.0, length); }

  Twips In(Twips whole) const { return m_known + Rounded(m_fraction * whole); }

 private:
  Length(double fraction, Twips known) : m_fraction(fraction), m_known(known) {}

  double m_fraction;
  Twips m_known = 0;
};

/// Where a control stands in its container.
struct Row {
  QWidget& control;
  Length left;
  Length top;
  Length width;
  Length height;
};

/// One run of a form's layout. A container's lengths are the rounded twips that it was placed with, which its pixels
/// can't give back.
class Arrangement {
 public:
  explicit Arrangement(Form& form);

  /// Places controls as fractions of `container`, which has been placed before.
  void Place(const QWidget& container, std::initializer_list<Row> rows);
  void Place(QWidget& control, Twips left, Twips top, Twips width, Twips height);

  /// Gives the lengths that fractions of `container` refer to; for a tab strip its client area.
  void SetLengths(const QWidget& container, Twips width, Twips height);
  Twips Width(const QWidget& container) const { return m_lengths.value(&container).width; }
  Twips Height(const QWidget& container) const { return m_lengths.value(&container).height; }

 private:
  struct Lengths {
    Twips width;
    Twips height;
  };

  QHash<const QWidget*, Lengths> m_lengths;
};

/// Gives every control of the form the size.
void SetFontSizes(Form& form, double points);

/// Gives the combo boxes of the form the height that their font asks for.
void FitComboBoxes(Form& form);

/// Sets a font's size. False when the platform can't give it.
using SetPoints = std::function<bool(double points)>;

/// What a text takes in one direction, and the room that it has there.
struct Filling {
  double text;
  double room;
};
/// Measures a text at the size that was set last.
using Measure = std::function<Filling()>;

/// The size at which a text fills its control: up by a quarter point for as long as `across` is smaller than its room,
/// then down once and again for as long as `down` is larger. 6 when the platform refuses a size.
double FitPoints(const SetPoints& setPoints, const Measure& across, const Measure& down);

/// Goes from `points` in steps of `step` for as long as the text is smaller than its room, or larger where `step` leads
/// down, and sets that size. False when the platform refuses it. Each size that is looked at costs a font of its own,
/// and the first one at the start of the program a lot: a text grows with its size, all but the rounding to pixels, so
/// only sizes near the sought one are looked at.
bool StepWhile(const Measure& measure, double step, double& points, const SetPoints& setPoints);

/// Makes the control's font the form's measuring font, at 6 points, and gives the way to change its size.
SetPoints MeasureLike(Form& form, const QWidget& control);

/// Runs `placeAndFit` (which gives the font size of the form) below a tab strip of 14 points. Where the form's size
/// comes out larger, it runs once more below a strip of that size: larger tabs would reach into the pages.
double FitBelowTabs(TabStrip& tabs, const std::function<double()>& placeAndFit);

}  // namespace tarnwell::forms

#include "forms/caption_fit.h"
#include "forms/frm_alarms.h"
#include "forms/layout.h"

namespace tarnwell::forms {

namespace {

/// An alarm's button, the label beside it and the button's top in the frame.
struct AlarmRow {
  CommandButton* button;
  Label& label;
  double top;
};

/// A column of alarms, as fractions of the frame.
struct AlarmColumn {
  double buttonLeft;
  double buttonWidth;
  double buttonHeight;
  double labelLeft;
  double labelWidth;
  double labelHeight;
  double labelDrop;  ///< of the label below the button's top
};

constexpr AlarmColumn kLeftColumn{0.17, 0.05, 0.05, 0.235, 0.26, 0.04, 0.005};
constexpr AlarmColumn kRightColumn{0.54, 0.05, 0.05, 0.605, 0.33, 0.04, 0.005};
constexpr AlarmColumn kControllerColumn{0.03, 0.075, 0.125, 0.125, 0.3, 0.075, 0.025};

void PlaceColumn(Arrangement& a, const QWidget& frame, const AlarmColumn& column,
                 std::initializer_list<AlarmRow> rows) {
  for (const AlarmRow& row : rows) {
    a.Place(frame, {{*row.button, column.buttonLeft, row.top, column.buttonWidth, column.buttonHeight},
                    {row.label, column.labelLeft, row.top + column.labelDrop, column.labelWidth, column.labelHeight}});
  }
}

void PlaceAlarms(Arrangement& a, frmAlarms& f) {
  PlaceColumn(a, f.fraAlarms, kLeftColumn,
              {{f.cmdAlarms(0), f.lbl5L, 0.0575},
               {f.cmdAlarms(1), f.lbl5H, 0.1075},
               {f.cmdAlarms(2), f.lbl11L, 0.1775},
               {f.cmdAlarms(3), f.lbl11H, 0.2275},
               {f.cmdAlarms(5), f.lbl14L, 0.2975},
               {f.cmdAlarms(6), f.lbl14H, 0.3475},
               {f.cmdAlarms(9), f.lbl10L, 0.4175},
               {f.cmdAlarms(10), f.lbl10H, 0.4675},
               {f.cmdAlarms(17), f.lbl11LCL, 0.5375},
               {f.cmdAlarms(18), f.lbl11LCH, 0.5875},
               {f.cmdAlarms(11), f.lblRFL, 0.6575},
               {f.cmdAlarms(12), f.lblRFH, 0.7075},
               {f.cmdAlarms(13), f.lblReflectedH, 0.7575},
               {f.cmdAlarms(19), f.lblTemp1H, 0.8425},
               {f.cmdAlarms(20), f.lblTemp2H, 0.9125}});
  PlaceColumn(a, f.fraAlarms, kRightColumn,
              {{f.cmdAlarms(14), f.lblDriverAmp, 0.0575},
               {f.cmdAlarms(15), f.lblPowerAmp1, 0.1075},
               {f.cmdAlarms(16), f.lblPowerAmp2, 0.1575},
               {f.cmdAlarms(7), f.lblPSThermal, 0.2375},
               {f.cmdAlarms(24), f.lblCEFailSafe, 0.2875},
               {f.cmdAlarms(8), f.lblInternal, 0.3375},
               {f.cmdAlarms(4), f.lblEEPROM, 0.3875},
               {f.cmdAlarms(25), f.lblSimulated, 0.4375},
               {f.cmdAlarms(23), f.lblAux, 0.5175}});
}

void PlaceMeasurements(Arrangement& a, frmAlarms& f) {
  struct Measurement {
    Label& label;
    double top;
  };
  for (const Measurement& row : std::initializer_list<Measurement>{{f.lbl5V, 0.08},
                                                                   {f.lbl11V, 0.2},
                                                                   {f.lbl14V, 0.32},
                                                                   {f.lbl10V, 0.44},
                                                                   {f.lbl11VLC, 0.56},
                                                                   {f.lblRF, 0.68},
                                                                   {f.lblReflected, 0.75},
                                                                   {f.lblTemp1, 0.84},
                                                                   {f.lblTemp2, 0.91}}) {
    a.Place(f.fraAlarms, {{row.label, 0.025, row.top, 0.13, 0.055}});
  }
}

struct LegendRow {
  CommandButton& button;
  Label& label;
};

/// A legend's rows in their frame, the first label at `labelTop` of its height. Buttons and labels have the size of the
/// panel's, and the pitch is a fraction of the panel too.
void PlaceLegend(Arrangement& a, const QWidget& legend, const QWidget& panel, const AlarmColumn& sizes, double labelTop,
                 double pitch, std::initializer_list<LegendRow> rows) {
  const Length buttonWidth = Length::Of(Rounded(sizes.buttonWidth * a.Width(panel)));
  const Length buttonHeight = Length::Of(Rounded(sizes.buttonHeight * a.Height(panel)));
  const Length labelHeight = Length::Of(Rounded(sizes.labelHeight * a.Height(panel)));
  double down = 0.0;
  for (const LegendRow& row : rows) {
    const auto top = [&](double start) { return Length::Of(Rounded(start * a.Height(legend) + down)); };
    a.Place(legend, {{row.button, 0.11, top(0.14), buttonWidth, buttonHeight},
                     {row.label, 0.32, top(labelTop), 0.66, labelHeight}});
    down += pitch * a.Height(panel);
  }
}

void PlaceAmplifierPanel(Arrangement& a, frmAlarms& f) {
  PlaceAlarms(a, f);
  PlaceMeasurements(a, f);
  a.Place(f.fraAlarms, {{f.fraLegend, 0.51, 0.62, 0.29, 0.36}, {f.cmdClear, 0.825, 0.875, 0.15, 0.095}});
  PlaceLegend(
      a, f.fraLegend, f.fraAlarms, kLeftColumn, 0.16, 0.07,
      {{f.cmdExOk, f.lblExOk}, {f.cmdExLatch, f.lblExLatch}, {f.cmdExAct, f.lblExAct}, {f.cmdExAck, f.lblExAck}});
}

void PlaceControllerPanel(Arrangement& a, frmAlarms& f) {
  PlaceColumn(a, f.fra7316Alarms, kControllerColumn,
              {{f.cmd7316Alarms(4), f.lbl7316EEPROM, 0.15},
               {f.cmd7316Alarms(18), f.lbl7316System, 0.35},
               {f.cmd7316Alarms(22), f.lbl7316WGuide1, 0.55},
               {f.cmd7316Alarms(23), f.lbl7316WGuide2, 0.75}});
  a.Place(f.fra7316Alarms, {{f.fra7316Legend, 0.55, 0.05, 0.4, 0.65}, {f.cmd7316ClearAlarms, 0.75, 0.75, 0.2, 0.2}});
  PlaceLegend(a, f.fra7316Legend, f.fra7316Alarms, kControllerColumn, 0.18, 0.175,
              {{f.cmd7316ExOk, f.lbl7316ExOk}, {f.cmd7316ExAct, f.lbl7316ExAct}, {f.cmd7316ExAck, f.lbl7316ExAck}});
}

double Fit(const Arrangement& a, frmAlarms& f) {
  const QString text = QStringLiteral("Acknowledged");
  const double width = a.Width(f.lblExAck);
  const double height = a.Height(f.lblExAck);
  const auto across = [&] { return Filling{f.TextWidth(text), width}; };
  const auto down = [&] { return Filling{f.TextHeight(text), height}; };
  return FitPoints(MeasureLike(f, f.lblExAck), across, down);
}

}  // namespace

void ArrangeAlarms(frmAlarms& form) {
  if (form.isMinimized()) return;
  Arrangement a(form);
  a.Place(form, {{form.fraAlarms, 0.02, 0.02, 0.76, 0.96}, {form.fra7316Alarms, 0.05, 0.05, 0.65, 0.55}});
  a.Place(form, {{form.cmdExit, 0.86, 0.86, Length::Of(Rounded(0.15 * a.Width(form.fraAlarms))),
                  Length::Of(Rounded(0.095 * a.Height(form.fraAlarms)))}});
  PlaceAmplifierPanel(a, form);
  PlaceControllerPanel(a, form);
  FitCaptions(form, Fit(a, form), {{form.lblPSThermal, QStringLiteral("Power Supply Thermal")}});
}

}  // namespace tarnwell::forms

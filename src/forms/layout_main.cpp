#include <algorithm>

#include "forms/caption_fit.h"
#include "forms/frm_main.h"
#include "forms/layout.h"

namespace tarnwell::forms {

namespace {

// The two columns that recur on the amplifier's panels, as fractions of a frame's width: value fields, and their
// captions, which end a little to the left of them.
constexpr double kFieldLeft = 0.625;
constexpr double kFieldWidth = 0.275;

/// The layout of the console, with the one height of its value fields.
struct MainArrangement : Arrangement {
  using Arrangement::Arrangement;

  Row Field(QWidget& control, double top) const {
    return {control, kFieldLeft, top, kFieldWidth, Length::Of(fieldHeight)};
  }

  /// A field's caption has its middle where the field has it; `field` and `top` are the tops of both.
  Row Caption(Label& label, const QWidget& frame, double left, double width, double field, double top) const {
    const Twips drop = Rounded(top * Height(frame)) - Rounded(field * Height(frame));
    return {label, left, top, width, Length::Of(fieldHeight - 2 * drop)};
  }

  void PlaceSpinField(const QWidget& frame, double topFraction, TextBox& box, UpDown& spin) {
    const Twips left = Rounded(kFieldLeft * Width(frame));
    const Twips top = Rounded(topFraction * Height(frame));
    const Twips width = Rounded(kFieldWidth * Width(frame)) - kSpinWidth;
    Place(box, left, top, width, fieldHeight);
    Place(spin, left + width, top, kSpinWidth, fieldHeight);
  }

  using Arrangement::Place;

  Twips fieldHeight = 0;
};

void PlaceFrames(MainArrangement& a, frmMain& f) {
  a.Place(f, {{f.fraAlarms, 0.03, 0.03, 0.45, 0.19},
              {f.fraState, 0.03, 0.25, 0.45, 0.19},
              {f.fraCommsMode, 0.03, 0.47, 0.45, 0.19},
              {f.fraCommsConnect, 0.03, 0.69, 0.45, 0.28},
              {f.fraRF, 0.52, 0.03, 0.45, 0.63},
              {f.fraTemp, 0.52, 0.69, 0.45, 0.28},
              {f.fra7316Status, 0.52, 0.03, 0.45, 0.94}});
  a.fieldHeight = Rounded(0.35 * a.Height(f.fraAlarms));
}

void PlaceAlarms(MainArrangement& a, frmMain& f) {
  const Twips side = Rounded(0.41 * a.Height(f.fraAlarms));
  const Twips top = Rounded(0.37 * a.Height(f.fraAlarms));
  const Twips left = Rounded((Rounded(kFieldWidth * a.Width(f.fraAlarms)) - side) / 2.0);
  for (Image* image : {&f.imgAlarm, &f.imgOk}) a.Place(*image, left, top, side, side);
  a.Place(f.fraAlarms, {{f.lblAlarm, 0.3, 0.4, kFieldWidth, Length::Of(a.fieldHeight)}, a.Field(f.cmdViewAlarms, 0.4)});
}

void PlaceOptionRows(MainArrangement& a, frmMain& f) {
  a.Place(f.fraState, {{f.optOnline, 0.045, 0.48, 0.21, 0.2},
                       {f.optStandby, 0.315, 0.48, 0.255, 0.2},
                       {f.optMaint, 0.62, 0.48, 0.34, 0.2}});
  a.Place(f.fraCommsMode,
          {{f.optREM, 0.045, 0.48, 0.2, 0.2}, {f.optLLO, 0.315, 0.48, 0.2, 0.2}, {f.optRLO, 0.62, 0.48, 0.2, 0.2}});
}

void PlaceConnection(MainArrangement& a, frmMain& f) {
  a.PlaceSpinField(f.fraCommsConnect, 0.3, f.txtConnectAddress, f.updwnConnectAddress);
  a.Place(f.fraCommsConnect,
          {a.Caption(f.lblAddress, f.fraCommsConnect, 0.075, 0.5, 0.3, 0.32), a.Field(f.cmdConnect, 0.65)});
}

void PlaceOutput(MainArrangement& a, frmMain& f) {
  a.PlaceSpinField(f.fraRF, 0.1, f.txtGainAdjust, f.updwnGainAdjust);
  a.Place(f.fraRF, {a.Caption(f.lblGainAdjust, f.fraRF, 0.195, 0.38, 0.1, 0.12),
                    a.Field(f.lblRFLevel, 0.26),
                    a.Caption(f.lblRF, f.fraRF, 0.365, 0.21, 0.26, 0.28),
                    {f.fraUserMute, 0.05, 0.44, 0.9, 0.23},
                    {f.fraSSPAMute, 0.05, 0.71, 0.9, 0.23}});
  a.Place(f.fraUserMute, {{f.optRFOn, 0.15, 0.45, 0.3, 0.3}, {f.optRFMute, 0.6, 0.45, 0.3, 0.3}});
  a.Place(f.fraSSPAMute, {{f.lblSSPAMute, 0.05, 0.35, 0.9, Length::Of(a.fieldHeight)}});
}

void PlaceTemperatures(MainArrangement& a, frmMain& f) {
  a.Place(f.fraTemp, {a.Field(f.lblTempMod1, 0.3), a.Caption(f.lblMod1, f.fraTemp, 0.255, 0.32, 0.3, 0.32),
                      a.Field(f.lblTempMod2, 0.65), a.Caption(f.lblMod2, f.fraTemp, 0.255, 0.32, 0.65, 0.68)});
}

void PlaceController(MainArrangement& a, frmMain& f) {
  a.Place(f.fra7316Status, {{f.fra7316Mode, 0.03, 0.05, 0.94, 0.15},
                            {f.fra7316PathASelect, 0.03, 0.235, 0.94, 0.15},
                            {f.fra7316PathBSelect, 0.03, 0.42, 0.94, 0.15},
                            {f.fra7316SSPAStatus, 0.03, 0.6, 0.94, 0.375}});
  const Length line = Length::Of(Rounded(0.375 * a.Height(f.fra7316Mode)));
  a.Place(f.fra7316Mode, {{f.opt7316Auto, 0.45, 0.45, 0.25, 0.3}, {f.opt7316Manual, 0.725, 0.45, 0.25, 0.3}});
  a.Place(f.fra7316PathASelect, {{f.lbl7316PathAState, 0.1, 0.375, 0.3, line},
                                 {f.opt7316PathA1, 0.45, 0.45, 0.25, 0.3},
                                 {f.opt7316PathA2, 0.725, 0.45, 0.25, 0.3}});
  a.Place(f.fra7316PathBSelect, {{f.lbl7316PathBState, 0.1, 0.375, 0.3, line},
                                 {f.opt7316PathB2, 0.45, 0.45, 0.25, 0.3},
                                 {f.opt7316PathB3, 0.725, 0.45, 0.25, 0.3}});
  a.Place(f.fra7316SSPAStatus, {{f.lbl7316SSPA1, 0.175, 0.2, 0.25, line},
                                {f.lbl7316SSPA1State, 0.45, 0.2, 0.5, line},
                                {f.lbl7316SSPA2, 0.175, 0.475, 0.25, line},
                                {f.lbl7316SSPA2State, 0.45, 0.475, 0.5, line},
                                {f.lbl7316SSPA3, 0.175, 0.75, 0.25, line},
                                {f.lbl7316SSPA3State, 0.45, 0.75, 0.5, line}});
}

/// The size of all controls but the RF level: the first one whose text is too high for the control, less a point.
double FitText(const Arrangement& a, frmMain& f) {
  const QString text = QStringLiteral("Maintenence");
  const SetPoints setPoints = MeasureLike(f, f.optMaint);
  const double height = a.Height(f.optMaint);
  double points = kSmallestPoints;
  const auto high = [&] { return Filling{f.TextHeight(text), height}; };
  const bool fits = StepWhile(high, kPointStep, points, setPoints);
  return fits ? f.MeasuringFontSize() - 1.0 : kSmallestPoints;
}

/// The RF level is to stand out: its text fills the field.
double FitLevel(const Arrangement& a, frmMain& f) {
  const QString text = QStringLiteral("-99.9 dBm");
  const SetPoints setPoints = MeasureLike(f, f.lblRFLevel);
  const double width = a.Width(f.lblRFLevel);
  const double height = a.Height(f.lblRFLevel);
  double points = kSmallestPoints;
  const auto high = [&] { return Filling{f.TextHeight(text), height}; };
  const auto wide = [&] { return Filling{f.TextWidth(text), 0.95 * width}; };
  const bool fits = StepWhile(high, kPointStep, points, setPoints) && StepWhile(wide, -kPointStep, points, setPoints);
  return fits ? f.MeasuringFontSize() + 1.0 : kSmallestPoints;
}

}  // namespace

void ArrangeMain(frmMain& form) {
  if (form.isMinimized()) return;
  MainArrangement a(form);
  PlaceFrames(a, form);
  PlaceAlarms(a, form);
  PlaceOptionRows(a, form);
  PlaceConnection(a, form);
  PlaceOutput(a, form);
  PlaceTemperatures(a, form);
  PlaceController(a, form);
  const double text = FitText(a, form);
  const double level = FitLevel(a, form);
  const double fitting = FitCaptions(form, text,
                                     {{form.cmdConnect, QStringLiteral("Disconnect")},
                                      {form.fra7316PathASelect, QStringLiteral("Path A SSPA Selection [Priority]")},
                                      {form.fra7316PathBSelect, QStringLiteral("Path B SSPA Selection [Priority]")}});
  SetFontSize(form.lblRFLevel, fitting < text ? std::max(level, fitting) : level);
  form.SetMenuFontSize(fitting);
}

}  // namespace tarnwell::forms

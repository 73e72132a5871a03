#include <algorithm>

#include "forms/caption_fit.h"
#include "forms/frm_options.h"
#include "forms/layout.h"
#include "forms/pages.h"

namespace tarnwell::forms {

namespace {

void PlacePages(Arrangement& a, frmOptions& f) {
  a.Place(f, {{f.tabOptions, 0.025, 0.025, 0.95, 0.95}});
  const Twips clientWidth = f.tabOptions.ClientWidth();
  const Twips clientHeight = f.tabOptions.ClientHeight();
  a.SetLengths(f.tabOptions, clientWidth, clientHeight);
  for (Frame* page : {&f.fraCommunications, &f.fraGeneral}) {
    a.Place(*page, f.tabOptions.ClientLeft(), f.tabOptions.ClientTop(), Rounded(0.85 * clientWidth), clientHeight);
  }
  a.Place(f.tabOptions, {{f.cmdOK, 0.9, 0.85, 0.125, 0.09}, {f.cmdCancel, 0.9, 0.95, 0.125, 0.09}});
}

void PlaceFrames(Arrangement& a, frmOptions& f) {
  // both pages have the same size
  a.Place(f.fraCommunications, {{f.fraPort, 0.02, 0.04, 0.5, 0.21},
                                {f.fraFlow, 0.55, 0.04, 0.43, 0.21},
                                {f.fraBaud, 0.02, 0.29, 0.5, 0.21},
                                {f.fraRS485, 0.55, 0.29, 0.43, 0.21},
                                {f.fraConnection, 0.02, 0.54, 0.5, 0.42},
                                {f.fraAlarm, 0.02, 0.04, 0.5, 0.21},
                                {f.fraLevels, 0.02, 0.29, 0.5, 0.21}});
}

void PlaceControls(Arrangement& a, frmOptions& f) {
  const Length line = Length::Of(Rounded(0.27 * a.Height(f.fraPort)));
  a.Place(
      f.fraPort,
      {{f.cboPort, 0.06, 0.4, 0.35, line}, {f.optRS232, 0.47, 0.3, 0.47, line}, {f.optRS4xx, 0.47, 0.6, 0.47, line}});
  a.Place(f.fraFlow, {{*f.optFlow(0), 0.105, 0.3, 0.55, line}, {*f.optFlow(1), 0.105, 0.6, 0.55, line}});
  a.Place(f.fraRS485, {{*f.opt485Control(0), 0.105, 0.3, 0.55, line}, {*f.opt485Control(1), 0.105, 0.6, 0.55, line}});
  a.Place(f.fraBaud, {{f.cboSpeed, 0.42, 0.4, 0.425, line}});
  a.Place(f.fraConnection, {{f.cboDataBits, 0.42, 0.21, 0.425, line},
                            {f.cboParity, 0.42, 0.46, 0.425, line},
                            {f.cboStopBits, 0.42, 0.71, 0.425, line},
                            {f.lblDataBits, 0.065, 0.22, 0.325, line},
                            {f.lblParity, 0.065, 0.47, 0.325, line},
                            {f.lblStopBits, 0.065, 0.72, 0.325, line}});
  a.Place(f.fraAlarm, {{f.optAudibleOn, 0.08, 0.4, 0.465, line}, {f.optAudibleOff, 0.58, 0.4, 0.35, line}});
  a.Place(f.fraLevels, {{f.optEngineer, 0.08, 0.4, 0.465, line}, {f.optUnits, 0.58, 0.4, 0.35, line}});
}

/// The box may be a little higher than its text asks for, so that its middle is the caption's.
void FitBesideCaption(ComboBox& box, const Label& caption) {
  const int height = 2 * caption.geometry().center().y() - 2 * box.y() + 1;
  box.resize(box.width(), std::max(height, box.fontMetrics().height() + 4));
}

void ShowFirstPage(frmOptions& f) {
  f.fraGeneral.setEnabled(false);
  f.fraCommunications.setEnabled(true);
  f.fraCommunications.raise();
  f.tabOptions.SelectTab(1);
}

double PlaceAndFit(frmOptions& f) {
  Arrangement a(f);
  PlacePages(a, f);
  PlaceFrames(a, f);
  PlaceControls(a, f);
  const QString text = QStringLiteral("RS422/485");
  const double width = a.Width(f.optRS4xx);
  const double height = a.Height(f.optRS4xx);
  const auto across = [&] { return Filling{f.TextWidth(text), 0.7 * width}; };
  const auto down = [&] { return Filling{f.TextHeight(text), height}; };
  return FitPoints(MeasureLike(f, f.optRS4xx), across, down);
}

}  // namespace

void ArrangeOptions(frmOptions& form) {
  SetFontSizes(form, kSmallestPoints);
  const double points = FitBelowTabs(form.tabOptions, [&form] { return PlaceAndFit(form); });
  ShowFirstPage(form);
  FitCaptions(form, points);
  FitComboBoxes(form);
  FitBesideCaption(form.cboDataBits, form.lblDataBits);
  FitBesideCaption(form.cboParity, form.lblParity);
  FitBesideCaption(form.cboStopBits, form.lblStopBits);
  for (Frame* page : {&form.fraCommunications, &form.fraGeneral}) PlacePage(form.tabOptions, *page);
  for (Frame* page : {&form.fraCommunications, &form.fraGeneral}) SetFontSize(*page, kSmallestPoints);
}

}  // namespace tarnwell::forms

#include <algorithm>
#include <array>
#include <utility>

#include "forms/caption_fit.h"
#include "forms/frm_settings.h"
#include "forms/layout.h"
#include "forms/pages.h"

namespace tarnwell::forms {

namespace {

// Every page has two columns of frames.
constexpr double kLeftColumn = 0.03;
constexpr double kRightColumn = 0.52;
constexpr double kColumnWidth = 0.45;

void PlacePages(Arrangement& a, frmSettings& f) {
  a.Place(f, {{f.tabSettings, 0.02, 0.065, 0.8, 0.91},
              {f.cmdUnlock, 0.88, 0.81, 0.1, 0.07},
              {f.cmdExit, 0.88, 0.9, 0.1, 0.07},
              {f.lblHWPlat, 0.34, 0.03, 0.15, 0.04},
              {f.lblHWPlatform, 0.5, 0.03, 0.14, 0.04},
              {f.lblFWVer, 0.68, 0.03, 0.15, 0.04},
              {f.lblFirmwareVersion, 0.84, 0.03, 0.14, 0.04}});
  for (Frame* page : {&f.fraStandard, &f.fraAdvanced, &f.fraFactory}) {
    a.Place(*page, f.tabSettings.ClientLeft(), f.tabSettings.ClientTop(), f.tabSettings.ClientWidth(),
            f.tabSettings.ClientHeight());
  }
}

/// The controller's two groups stand where an amplifier has groups that a controller lacks.
void PlaceFrames(Arrangement& a, frmSettings& f) {
  a.Place(f.fraStandard, {{f.fraAddress, kLeftColumn, 0.03, kColumnWidth, 0.24},
                          {f.fraThresholds, kLeftColumn, 0.31, kColumnWidth, 0.36},
                          {f.fraTransceiver, kRightColumn, 0.03, kColumnWidth, 0.24},
                          {f.fra7316Config, kRightColumn, 0.03, kColumnWidth, 0.24},
                          {f.fraReflectedThreshold, kRightColumn, 0.31, kColumnWidth, 0.24},
                          {f.fra7316Priority, kRightColumn, 0.31, kColumnWidth, 0.24}});
  a.Place(f.fraAdvanced, {{f.fraAlarmStyle, kLeftColumn, 0.03, kColumnWidth, 0.21},
                          {f.fraAuxSense, kLeftColumn, 0.28, kColumnWidth, 0.21},
                          {f.fraShutdown, kLeftColumn, 0.53, kColumnWidth, 0.21},
                          {f.fraBeeper, kRightColumn, 0.03, kColumnWidth, 0.21},
                          {f.fraTempComp, kRightColumn, 0.28, kColumnWidth, 0.31}});
  a.Place(f.fraFactory, {{f.fraRFTable, kLeftColumn, 0.02, kColumnWidth, 0.39},
                         {f.fraPINTable, kRightColumn, 0.02, kColumnWidth, 0.39},
                         {f.fraTCPoints, kLeftColumn, 0.43, kColumnWidth, 0.39},
                         {f.fraRFTCPoints, kRightColumn, 0.43, kColumnWidth, 0.39},
                         {f.fraMode, kLeftColumn, 0.84, kColumnWidth, 0.145},
                         {f.fraFanCtrl, kRightColumn, 0.84, kColumnWidth, 0.145}});
}

struct OptionPair {
  Frame& frame;
  OptionButton& left;
  OptionButton& right;
  double top = 0.4;
};

void PlaceOptions(Arrangement& a, frmSettings& f) {
  const Length line = Length::Of(Rounded(0.275 * a.Height(f.fraAuxSense)));
  for (const OptionPair& row :
       std::initializer_list<OptionPair>{{f.fraTransceiver, f.optTxVorel, f.optTxOther},
                                         {f.fra7316Config, f.opt7316_11, f.opt7316_12},
                                         {f.fraShutdown, f.optAmpShutdownOn, f.optAmpShutdownOff},
                                         {f.fraAuxSense, f.optAuxLow, f.optAuxHigh},
                                         {f.fraAlarmStyle, f.optAlarmFleeting, f.optAlarmLatching},
                                         {f.fraBeeper, f.optBeeperOn, f.optBeeperOff},
                                         {f.fraFanCtrl, f.optFanCtrlOn, f.optFanCtrlOff},
                                         {f.fraTempComp, f.optTempCompOn, f.optTempCompOff, 0.3},
                                         {f.fraTempComp, f.optTempCompMin, f.optTempCompMax, 0.65}}) {
    a.Place(row.frame, {{row.left, 0.28, row.top, 0.33, line}, {row.right, 0.64, row.top, 0.33, line}});
  }
  a.Place(f.fraMode, {{f.optModeOnline, 0.05, 0.4, 0.3, line},
                      {f.optModeStandby, 0.36, 0.4, 0.3, line},
                      {f.optModeMaint, 0.67, 0.4, 0.3, line}});
  a.Place(f.fra7316Priority, {{f.opt7316None, 0.05, 0.4, 0.3, line},
                              {f.opt7316PathA, 0.36, 0.4, 0.3, line},
                              {f.opt7316PathB, 0.67, 0.4, 0.3, line}});
  a.Place(f.fraAuxSense, {{f.lblAuxSense, 0.05, 0.4, 0.2, line}});
}

struct Field {
  Frame& frame;
  double top;
  Label& caption;
  TextBox& box;
  UpDown& spin;
};

void PlaceFields(Arrangement& a, frmSettings& f) {
  const Length line = Length::Of(Rounded(0.22 * a.Height(f.fraThresholds)));
  for (const Field& row : std::initializer_list<Field>{
           {f.fraThresholds, 0.24, f.lblRFMax, f.txtRFMax, f.updwnRFMax},
           {f.fraThresholds, 0.62, f.lblRFMin, f.txtRFMin, f.updwnRFMin},
           {f.fraReflectedThreshold, 0.4, f.lblReflectedMax, f.txtReflectedMax, f.updwnReflectedMax},
           {f.fraAddress, 0.4, f.lblSSPAAddress, f.txtSSPAAddress, f.updwnSSPAAddress}}) {
    a.Place(row.frame, {{row.caption, 0.16, row.top, 0.36, line},
                        {row.box, 0.55, row.top, 0.31, line},
                        {row.spin, 0.86, row.top, Length::Of(kSpinWidth), line}});
  }
}

/// One calibration table: two values with their captions, and the number of the point that the spin control turns.
struct Table {
  Label& firstCaption;
  QWidget& first;
  Label& secondCaption;
  QWidget& second;
  Label& scrollCaption;
  QWidget& point;
  UpDown& spin;
};

std::array<Table, 4> Tables(frmSettings& f) {
  return {
      {{f.lblRFLev, f.lblRFLevel, f.lblRFVolts, f.txtRFVolts, f.lblScrollRFLevel, f.txtRFLevelPoint, f.updwnRFLevel},
       {f.lblPiNLev, f.lblPiNLevel, f.lblPiNDAC, f.txtPiNDAC, f.lblScrollPiNLevel, f.txtPiNLevelPoint, f.updwnPiNLevel},
       {f.lblTCTemp, f.txtTCTemp, f.lblTCComp, f.txtTCComp, f.lblScrollTempComp, f.txtTempCompPoint, f.updwnTempComp},
       {f.lblRFTCTemp, f.txtRFTCTemp, f.lblRFTCComp, f.txtRFTCComp, f.lblScrollRFTempComp, f.txtRFTempCompPoint,
        f.updwnRFTempComp}}};
}

void PlaceTables(Arrangement& a, frmSettings& f) {
  for (const Table& t : Tables(f)) {
    a.Place(f.fraRFTable, {{t.firstCaption, 0.02, 0.25, 0.63, 0.1},
                           {t.first, 0.67, 0.21, 0.3, 0.15},
                           {t.secondCaption, 0.02, 0.5, 0.63, 0.1},
                           {t.second, 0.67, 0.46, 0.3, 0.15},
                           {t.scrollCaption, 0.02, 0.75, 0.545, 0.1},
                           {t.point, 0.67, 0.71, 0.3, 0.15},
                           {t.spin, 0.585, 0.69, Length::Of(kSpinWidth), 0.19}});
  }
  a.Place(f.fraRFTable, {{f.cmdQuickCal, 0.02, 0.71, 0.2, 0.15}});
}

/// With its final font: each caption begins lower than its field, and its height gives it the field's middle, or as
/// near to it as its text lets it.
void CentreTableCaptions(frmSettings& f) {
  for (const Table& t : Tables(f)) {
    for (const auto& [caption, field] :
         {std::pair{&t.firstCaption, &t.first}, {&t.secondCaption, &t.second}, {&t.scrollCaption, &t.point}}) {
      const int height = 2 * (field->geometry().center().y() - caption->y()) + 1;
      caption->resize(caption->width(), std::max(height, caption->fontMetrics().height()));
    }
  }
}

void ShowFirstPage(frmSettings& f) {
  f.fraAdvanced.setEnabled(false);
  f.fraFactory.setEnabled(false);
  f.fraStandard.setEnabled(true);
  f.fraStandard.raise();
  f.tabSettings.SelectTab(1);
  f.cmdUnlock.hide();
  f.cmdUnlock.setEnabled(false);
}

double PlaceAndFit(frmSettings& f) {
  Arrangement a(f);
  PlacePages(a, f);
  PlaceFrames(a, f);
  PlaceOptions(a, f);
  PlaceFields(a, f);
  PlaceTables(a, f);
  const QString text = QStringLiteral("0264C-01 V6.0");
  const double width = a.Width(f.lblFirmwareVersion);
  const double height = a.Height(f.lblFirmwareVersion);
  const auto across = [&] { return Filling{f.TextWidth(text), 0.8 * width}; };
  const auto down = [&] { return Filling{f.TextHeight(text), height}; };
  return FitPoints(MeasureLike(f, f.lblFirmwareVersion), across, down);
}

}  // namespace

void ArrangeSettings(frmSettings& form) {
  SetFontSizes(form, kSmallestPoints);
  const double points = FitBelowTabs(form.tabSettings, [&form] { return PlaceAndFit(form); });
  ShowFirstPage(form);
  FitCaptions(form, points, {{form.fraAddress, QStringLiteral("Redundancy Controller Address")}});
  for (Frame* page : {&form.fraStandard, &form.fraAdvanced, &form.fraFactory}) PlacePage(form.tabSettings, *page);
  CentreTableCaptions(form);
  for (TextBox* box : {&form.txtRFMin, &form.txtRFMax, &form.txtReflectedMax, &form.txtSSPAAddress}) {
    SetFontSize(*box, form.MainLevelPoints());
  }
}

}  // namespace tarnwell::forms

#include <gtest/gtest.h>

#include <cmath>

#include "forms/layout.h"
#include "tests/forms/sample_values.h"

namespace tarnwell::forms {

namespace {

TEST(Rounding, HalvesGoToTheEvenNeighbour) {
  struct Case {
    double length;
    Twips rounded;
  };
  for (const Case& c : {Case{4279.5, 4280}, Case{4280.5, 4280}, Case{0.5, 0}, Case{1.5, 2}, Case{-0.5, 0},
                        Case{-2.5, -2}, Case{2.500001, 3}, Case{57600.5, 57600}}) {
    EXPECT_EQ(Rounded(c.length), c.rounded) << c.length;
  }
}

TEST(FontFit, StepsUpThenDownByQuarters) {
  struct Case {
    const char* what;
    double widthOfHeight;
    double largest;
    double width;
    double height;
    double points;
  };
  // At p points the text is 20 p high; up while the width is below, down once and then while the height is above.
  for (const Case& c :
       {Case{"width 5 * 20 * 10 reached at 10", 5, 400, 1000, 300, 9.75},
        Case{"just above: reached at 10.25", 5, 400, 1001, 300, 10.0},
        Case{"height 150 allows 7.5", 5, 400, 1000, 150, 7.5}, Case{"too wide at 6 already", 5, 400, 100, 300, 5.75},
        Case{"too wide and too high", 5, 400, 100, 80, 4.0}, Case{"size refused on the way up", 5, 9, 1000, 300, 6.0},
        Case{"no height at all: size runs out", 5, 400, 1000, 0, 6.0}}) {
    double set = kSmallestPoints;
    const auto setPoints = [&](double wanted) {
      const bool possible = wanted > 0.0 && wanted <= c.largest;
      if (possible) set = wanted;
      return possible;
    };
    const double points = FitPoints(
        setPoints, [&] { return c.widthOfHeight * 20.0 * set < c.width; }, [&] { return 20.0 * set > c.height; });
    EXPECT_EQ(points, c.points) << c.what;
  }
}

/// A control's edges in pixels.
struct Spot {
  const char* name;
  QRect edges;
};

void ExpectSpots(const Form& form, std::initializer_list<Spot> spots) {
  for (const Spot& spot : spots) {
    const auto* control = form.findChild<QWidget*>(QLatin1String(spot.name));
    ASSERT_NE(control, nullptr) << spot.name;
    EXPECT_EQ(control->geometry(), spot.edges) << spot.name;
  }
}

/// A place in twips, as pixels with their edges rounded.
QRect Twip(int left, int top, int width, int height) {
  const auto pixels = [](int twips) { return static_cast<int>(std::lround(twips / 15.0)); };
  return QRect(QPoint(pixels(left), pixels(top)), QPoint(pixels(left + width) - 1, pixels(top + height) - 1));
}

// Computed by hand from the fractions. The console's frames are 0.45 * 9510 = 4279.5, so 4280 wide; fraAlarms is
// 1322 high, and the field height 463.
TEST(Layout, ConsoleAtItsFirstSize) {
  frmMain form;
  form.SetInnerSize(9510, 6960);
  ExpectSpots(form, {{"fraAlarms", Twip(285, 209, 4280, 1322)},
                     {"fra7316Status", Twip(4945, 209, 4280, 6542)},
                     {"cmdConnect", Twip(2675, 1267, 1177, 463)},
                     {"updwnGainAdjust", Twip(3612, 438, 240, 463)},
                     {"lblRF", Twip(1562, 1228, 899, 287)},
                     {"optMaint", Twip(2654, 635, 1455, 264)},
                     {"fraSSPAMute", Twip(214, 3113, 3852, 1009)},
                     {"lbl7316SSPA3State", Twip(1810, 1840, 2012, 368)}});
}

TEST(Layout, AlarmViewerAtItsFirstSize) {
  frmAlarms form;
  form.SetInnerSize(9480, 6795);
  // fraAlarms is 7205 by 6523, fra7316Alarms 6162 by 3737
  ExpectSpots(form, {{"fraAlarms", Twip(190, 136, 7205, 6523)},
                     {"cmdExit", Twip(8153, 5844, 1081, 620)},
                     {"cmdAlarms(13)", Twip(1225, 4941, 360, 326)},
                     {"lblExAck", Twip(668, 1746, 1379, 261)},
                     {"cmd7316Alarms(18)", Twip(185, 1308, 462, 467)},
                     {"lbl7316System", Twip(770, 1401, 1849, 280)}});
}

TEST(Layout, OptionsAndSettingsAtTheirFirstSize) {
  const frmMain main;
  frmOptions o;
  frmSettings s(main.lblRFLevel);
  o.SetInnerSize(7110, 5025);
  s.SetInnerSize(9510, 6825);
  struct Columns {
    const QWidget& control;
    int from;
    int behind;
  };
  // Across alone: what stands below tabs has heights that follow the font. The client areas are 6690 and 7545 wide; a
  // page of options is 0.85 of it, so 5686 (half to even), and a frame of the settings 3395.
  for (const Columns& c : {Columns{o.tabOptions, 12, 462},
                           {o.cmdOK, 401, 457},
                           {o.optRS4xx, 89, 178},
                           {o.cboSpeed, 80, 160},
                           {o.lblParity, 12, 74},
                           {s.tabSettings, 13, 520},
                           {s.fraPINTable, 262, 488},
                           {s.txtRFVolts, 152, 220},
                           {s.updwnTempComp, 132, 148},
                           {s.lblFirmwareVersion, 533, 621}}) {
    EXPECT_EQ(c.control.x(), c.from) << c.control.objectName().toStdString();
    EXPECT_EQ(c.control.x() + c.control.width(), c.behind) << c.control.objectName().toStdString();
  }
}

TEST(Layout, MinimisedConsoleStaysAsItIs) {
  frmMain form;
  form.Show();
  const QRect before = form.fraRF.geometry();
  form.showMinimized();
  form.SetInnerSize(20000, 15000);
  EXPECT_EQ(form.fraRF.geometry(), before);
  form.showNormal();
  EXPECT_NE(form.fraRF.geometry(), before);
}

TEST(Layout, FirstPageComesToTheFront) {
  SampleForms forms;
  forms.options.tabOptions.SelectTab(2);
  forms.settings.tabSettings.SelectTab(3);
  forms.settings.cmdUnlock.show();
  ShowAt(forms, {640, 480});
  EXPECT_EQ(forms.options.tabOptions.SelectedTab(), 1);
  EXPECT_TRUE(forms.options.optRS232.isEnabled());
  EXPECT_FALSE(forms.options.optAudibleOn.isEnabled());
  EXPECT_EQ(forms.settings.tabSettings.SelectedTab(), 1);
  EXPECT_FALSE(forms.settings.fraFactory.isEnabled());
  EXPECT_FALSE(forms.settings.cmdUnlock.isVisible());
  const QPoint middle = forms.settings.fraStandard.geometry().center();
  QWidget* front = forms.settings.Inner().childAt(middle);
  EXPECT_TRUE(forms.settings.fraStandard.isAncestorOf(front) || front == &forms.settings.fraStandard);
}

TEST(Layout, FontSizesFollowTheFit) {
  SampleForms forms;
  ShowAt(forms, {640, 480});
  frmMain& f = forms.main;
  const double text = FontSize(f.optMaint);
  for (const QWidget* control : {static_cast<QWidget*>(&f.fraRF), static_cast<QWidget*>(&f.cmdConnect),
                                 static_cast<QWidget*>(&f.txtGainAdjust), static_cast<QWidget*>(&f.lblAlarm)}) {
    EXPECT_EQ(FontSize(*control), text) << control->objectName().toStdString();
  }
  EXPECT_GT(FontSize(f.lblRFLevel), text);
  EXPECT_TRUE(Bold(f.lblAlarm));
  EXPECT_EQ(FontSize(forms.settings.txtRFMax), FontSize(f.lblRFLevel));
  EXPECT_NE(FontSize(forms.settings.txtRFVolts), FontSize(f.lblRFLevel));
  EXPECT_EQ(FontSize(forms.options.fraGeneral), kSmallestPoints);
}

}  // namespace

}  // namespace tarnwell::forms

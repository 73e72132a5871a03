#include <QMenuBar>
#include <array>
#include <limits>

#include "forms/controls/reading_order.h"
#include "forms/frm_alarms.h"
#include "forms/frm_main.h"
#include "forms/frm_options.h"
#include "forms/frm_save_snapshot.h"
#include "forms/frm_settings.h"
#include "forms/layout.h"
#include "tests/forms/blemishes.h"
#include "tests/forms/test_form.h"

namespace tarnwell::forms {
namespace {

/// All five forms, with values in their fields as a device gives them, the longest where it matters.
struct SampleForms {
  SampleForms() {
    Fill(main,
         "lblAlarm=ALARM; cmdConnect=Dis&connect; txtConnectAddress=31; txtGainAdjust=-12.5; lblRFLevel=-99.9 dBm; "
         "lblSSPAMute=RF Mute (Amp Module Fail); lblTempMod1=100.5°C; lblTempMod2=-10.5°C; "
         "lbl7316PathAState=SSPA1; lbl7316PathBState=UNKNOWN; lbl7316SSPA1State=ONLINE; "
         "lbl7316SSPA2State=STBY/ALARM; lbl7316SSPA3State=ONLINE");
    main.fra7316PathASelect.SetCaption(QStringLiteral("Path &A SSPA Selection [Priority]"));
    main.imgOk.hide();
    Fill(settings,
         "lblHWPlatform=0712/0358; lblFirmwareVersion=0264C-01 V6.0; txtSSPAAddress=31; txtRFMax=100.0; "
         "txtRFMin=-0.5; txtReflectedMax=100.0; lblRFLevel=45.0; txtRFVolts=2.345; txtRFLevelPoint=26; "
         "lblPiNLevel=-20.0; txtPiNDAC=255; txtPiNLevelPoint=41; txtTCTemp=-40.0; txtTCComp=-10.25; "
         "txtTempCompPoint=8; txtRFTCTemp=-40.0; txtRFTCComp=-10.25; txtRFTempCompPoint=3");
    for (QWidget* widget : settings.Inner().findChildren<QWidget*>()) widget->setEnabled(true);
    Fill(alarms,
         "lbl5V=5.02V; lbl11V=11.3V; lbl14V=14.1V; lbl10V=-10.2V; lbl11VLC=11.2V; lblRF=-99.9dBm; "
         "lblReflected=-99.9dBm; lblTemp1=100.5°C; lblTemp2=-10.5°C; cmdAlarms(3)=A");
    Fill(options, "cboPort=COM12; cboSpeed=115200; cboDataBits=8; cboParity=None; cboStopBits=1");
    Fill(snapshot, "txtSnapShotID=Rack 3, upper amplifier, after the fan was changed");
  }

  /// Gives the console a window of this size in pixels, the other forms the size that follows from it, and shows all.
  void ShowAt(QSize size) {
    const Twips width = size.width() * kTwipsPerPixel;
    const Twips height = size.height() * kTwipsPerPixel;
    main.SetInnerSize(width, height - main.MenuBar().sizeHint().height() * kTwipsPerPixel);
    settings.SetInnerSize(width, height);
    alarms.SetInnerSize(width, height);
    options.SetInnerSize(width * 3 / 4, height * 3 / 4);
    for (Form* form : std::initializer_list<Form*>{&main, &settings, &alarms, &options, &snapshot}) form->Show();
  }

  frmMain main;
  frmSettings settings{main.lblRFLevel};
  frmAlarms alarms;
  frmOptions options;
  frmSaveSnapshot snapshot;

 private:
  /// Gives the controls of a form their texts: "name=text; name=text".
  static void Fill(Form& form, const char* texts) {
    for (const QString& pair : QString::fromUtf8(texts).split(QStringLiteral("; "))) {
      auto* control = form.findChild<QWidget*>(pair.section(QLatin1Char('='), 0, 0));
      const QString text = pair.section(QLatin1Char('='), 1);
      auto* combo = qobject_cast<ComboBox*>(control);
      combo != nullptr ? combo->addItem(text) : static_cast<void>(control->setProperty("text", text));
    }
  }
};

TEST(Views, NothingIsCutOffOrStandsOnAnother) {
  for (const QSize size : {QSize(640, 480), QSize(640, 900), QSize(3840, 2160)}) {
    SampleForms f;
    f.ShowAt(size);
    // what is hidden for a device or behind a page
    const std::pair<Form&, const char*> scenes[] = {
        {f.main, "fra7316Status"},
        {f.main, "fraRF fraState fraTemp"},
        {f.settings, "fraAdvanced fraFactory fra7316Config fra7316Priority"},
        {f.settings,
         "fraAdvanced fraFactory fraTransceiver fraThresholds fraReflectedThreshold lblHWPlat lblHWPlatform"},
        {f.settings, "fraStandard fraFactory"},
        {f.settings, "fraStandard fraAdvanced"},
        {f.alarms, "fra7316Alarms"},
        {f.alarms, "fraAlarms"},
        {f.options, "fraGeneral"},
        {f.options, "fraCommunications"},
        {f.snapshot, ""}};
    const auto setVisible = [](Form& form, const char* parts, bool visible) {
      for (const QString& part : QString::fromLatin1(parts).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        form.findChild<QWidget*>(part)->setVisible(visible);
      }
    };
    for (const auto& [form, parts] : scenes) {
      for (const auto& [other, shown] : scenes) setVisible(other, shown, true);
      setVisible(form, parts, false);
      EXPECT_EQ(Blemishes(form).Found(), "") << "without " << parts << " at " << size.width();
    }
  }
}

TEST(Views, TabGoesDownTheColumnsOfTheAlarms) {
  SampleForms forms;
  forms.ShowAt({640, 480});
  int columns = 0;
  int above = std::numeric_limits<int>::max();
  for (const QWidget* stop : ReadingOrder(forms.alarms.fraAlarms)) {
    if (!stop->objectName().startsWith(QLatin1String("cmdAlarms("))) continue;
    if (stop->y() < std::exchange(above, stop->y())) ++columns;
  }
  EXPECT_EQ(columns, 2);
}

// A key that was meant for a field must not press the button that got the focus instead.
TEST(Views, KeysAtAControlThatWentGreyDoNothing) {
  SampleForms f;
  f.ShowAt({1024, 768});
  for (Form* form : std::initializer_list<Form*>{&f.main, &f.settings, &f.alarms, &f.options, &f.snapshot}) {
    std::string acts;
    const auto note = [&acts](const QWidget* control) { Append(acts, control->objectName().toStdString()); };
    for (auto* button : form->findChildren<CommandButton*>())
      QObject::connect(button, &CommandButton::Click, form, [=] { note(button); });
    for (auto* option : form->findChildren<OptionButton*>()) {
      QObject::connect(option, &OptionButton::Click, form, [=] { note(option); });
      QObject::connect(option, &OptionButton::GotFocus, form, [=] { note(option); });
    }
    for (auto* box : form->findChildren<TextBox*>()) {
      QObject::connect(box, &TextBox::KeyPress, form, [=](KeyAscii&) { note(box); });
      QObject::connect(box, &TextBox::KeyDown, form, [=] { note(box); });
    }
    QObject::connect(form, &Form::Unload, form, [=] { note(form); });
    BringToFront(*form);
    for (QWidget* control : ReadingOrder(form->Inner())) {
      if (!TakesFocus(*control) || !control->isVisible()) continue;
      for (QWidget* grey : {control, control->parentWidget()}) {
        if (grey == &form->Inner()) continue;
        control->setFocus();
        Settle();
        acts.clear();
        grey->setEnabled(false);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_A, Qt::Key_Up, Qt::Key_Down,
                                  Qt::Key_Left, Qt::Key_Right, Qt::Key_Escape}) {
          Key(key);
        }
        grey->setEnabled(true);
        Settle();
        EXPECT_EQ(acts, "") << qPrintable(control->objectName());
        EXPECT_EQ(form->focusWidget(), control) << qPrintable(control->objectName());
      }
    }
  }
}

// Each wrong one would send another value to the device, or a command nobody gave.
TEST(Views, StartAsTheLogicExpects) {
  SampleForms f;
  for (const auto& [form, states] : std::initializer_list<std::pair<Form&, const char*>>{
           {f.main, "tmrForcePollResume interval 4000, tmrFlasher enabled false"},
           {f.alarms, "tmrAlarmBeeper interval 1000, tmrStartPolling enabled false"},
           {f.settings,
            "updwnReflectedMax minimum -5, updwnReflectedMax maximum 1000, updwnPiNLevel maximum 40, "
            "txtPiNLevelPoint readOnly true, tmrStartLoad interval 100"},
           {f.snapshot, "txtSnapShotID maxLength 50"}}) {
    for (const QString& state : QString::fromLatin1(states).split(QStringLiteral(", "))) {
      const QStringList words = state.split(QLatin1Char(' '));
      const QObject& control = *form.findChild<QObject*>(words[0]);
      EXPECT_EQ(control.property(words[1].toLatin1().constData()).toString(), words[2]) << qPrintable(state);
    }
  }
}

TEST(Views, AllFormsHaveOneIconAndTheConsoleAloneButtonsForItsSize) {
  const SampleForms f;
  const qint64 key = f.main.windowIcon().cacheKey();
  for (const Form* form :
       std::initializer_list<const Form*>{&f.main, &f.settings, &f.alarms, &f.options, &f.snapshot}) {
    const bool sizes = form->windowFlags().testAnyFlags(Qt::WindowMinMaxButtonsHint);
    EXPECT_TRUE(form->windowIcon().cacheKey() == key && sizes == (form == &f.main)) << qPrintable(form->objectName());
  }
  EXPECT_EQ(f.main.windowIcon().pixmap(32).toImage().pixelColor(16, 4), QColor(0x1d3f6e));
}

TEST(Layout, FontsStepUpThenDownByQuarters) {
  // At p points the text is 100 p wide and 20 p high: up while it is narrower than the field, down once and then while
  // it is higher; 6 where a size is refused or none is small enough.
  const std::array<double, 4> cases[] = {{400, 1000, 300, 9.75}, {400, 1000, 150, 7.5}, {400, 100, 300, 5.75},
                                         {400, 100, 80, 4.0},    {9, 1000, 300, 6.0},   {400, 1000, 0, 6.0}};
  for (const auto& [largest, width, height, points] : cases) {
    double set = kSmallestPoints;
    const auto setPoints = [&, limit = largest](double wanted) {
      set = wanted > 0.0 && wanted <= limit ? wanted : set;
      return set == wanted;
    };
    const auto across = [&, field = width] { return Filling{100.0 * set, field}; };
    const auto down = [&, field = height] { return Filling{20.0 * set, field}; };
    EXPECT_EQ(FitPoints(setPoints, across, down), points) << largest << ' ' << width << ' ' << height;
  }
}

// From left to right and from top to bottom in pixels, computed by hand from the fractions; not the heights of what
// stands below tabs, which follow the font. The console's frames are 0.45 * 9510 = 4279.5 twips, so 4280 wide.
TEST(Layout, PlacesAtTheFirstSizes) {
  SampleForms f;
  f.main.SetInnerSize(9510, 6960);
  f.alarms.SetInnerSize(9480, 6795);
  f.options.SetInnerSize(7110, 5025);
  f.settings.SetInnerSize(9510, 6825);
  for (const auto& [form, spots] : std::initializer_list<std::pair<Form&, const char*>>{
           {f.main,
            "fra7316Status 330-615 14-450, updwnGainAdjust 241-257 29-60, optMaint 177-274 42-60, "
            "lbl7316SSPA3State 121-255 123-147"},
           {f.alarms, "cmdExit 544-616 390-431, cmdAlarms(13) 82-106 329-351, cmd7316Alarms(18) 12-43 87-118"},
           {f.options, "cmdOK 401-457, optRS4xx 89-178, cboSpeed 80-160"},
           {f.settings, "fraPINTable 262-488, txtRFVolts 152-220, updwnTempComp 132-148"}}) {
    for (const QString& spot : QString::fromLatin1(spots).split(QStringLiteral(", "))) {
      const QString name = spot.section(QLatin1Char(' '), 0, 0);
      const QRect at = form.findChild<QWidget*>(name)->geometry().adjusted(0, 0, 1, 1);
      const QString places = QStringLiteral("%1 %2-%3 %4-%5 ");
      const QString found = places.arg(name).arg(at.left()).arg(at.right()).arg(at.top()).arg(at.bottom());
      EXPECT_TRUE(found.startsWith(spot + QLatin1Char(' '))) << qPrintable(found) << "is not " << qPrintable(spot);
    }
  }
}

TEST(Layout, FontSizesFollowTheFit) {
  SampleForms forms;
  forms.ShowAt({640, 480});
  frmMain& f = forms.main;
  const double text = FontSize(f.optMaint);
  for (const char* name : {"fraRF", "cmdConnect", "txtGainAdjust", "lblAlarm"}) {
    EXPECT_EQ(FontSize(*f.findChild<QWidget*>(QLatin1String(name))), text) << name;
  }
  f.SetMeasuringFont(f.optMaint.font());
  EXPECT_LT(f.TextHeight(QStringLiteral("x")), 0.9 * f.optMaint.height() * kTwipsPerPixel) << "with some room";
  EXPECT_TRUE(FontSize(f.lblRFLevel) > text && Bold(f.lblAlarm));
  EXPECT_EQ(FontSize(forms.settings.txtRFMax), FontSize(f.lblRFLevel));
  EXPECT_NE(FontSize(forms.settings.txtRFVolts), FontSize(f.lblRFLevel));
  EXPECT_EQ(FontSize(forms.options.fraGeneral), kSmallestPoints);
}

}  // namespace
}  // namespace tarnwell::forms

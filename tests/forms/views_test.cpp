#include <gtest/gtest.h>

#include <set>

#include "tests/forms/blemishes.h"
#include "tests/forms/sample_values.h"
#include "tests/forms/test_form.h"

namespace tarnwell::forms {

namespace {

class ViewsAt : public testing::TestWithParam<QSize> {};

TEST_P(ViewsAt, NothingIsCutOffOrStandsOnAnother) {
  SampleForms forms;
  ShowAt(forms, GetParam());
  for (const Scene& scene : Scenes(forms)) {
    ShowScene(scene, forms);
    EXPECT_EQ(Blemishes(*scene.form).join(QLatin1Char('\n')).toStdString(), "") << scene.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ViewsAt, testing::Values(QSize(640, 480), QSize(1280, 1024), QSize(3840, 2160)));

TEST(Views, BlemishesAreSeen) {
  SampleForms forms;
  ShowAt(forms, {640, 480});
  frmMain& f = forms.main;
  f.fra7316Status.hide();
  ASSERT_EQ(Blemishes(f).join(QLatin1Char('\n')).toStdString(), "");
  f.optOnline.resize(f.optOnline.width() / 2, f.optOnline.height());
  f.lblRF.move(f.lblRFLevel.pos());
  f.fraTemp.move(f.Inner().width() - 20, 0);
  f.optREM.move(0, 0);
  f.lblMod1.move(f.lblMod1.x(), f.lblMod1.y() + 12);
  f.lblMod2.setBuddy(nullptr);
  const std::string found = Blemishes(f).join(QLatin1Char('\n')).toStdString();
  for (const char* blemish :
       {"optOnline: drawn at", "lblRF stands on lblRFLevel", "fraTemp: leaves its frame", "optREM: stands on the title",
        "lblMod1: not beside its field", "lblMod2: names no field"}) {
    EXPECT_NE(found.find(blemish), std::string::npos) << blemish << '\n' << found;
  }
}

TEST(Views, EveryNameIsThereOnce) {
  SampleForms forms;
  for (Form* form : forms.All()) {
    std::set<QString> names;
    for (const QObject* object : form->findChildren<QObject*>()) {
      const bool toolkits = object->objectName().startsWith(QLatin1String("qt_")) || object->objectName().isEmpty() ||
                            qobject_cast<const QAction*>(object) != nullptr;  // bears the name of its entry
      EXPECT_TRUE(toolkits || names.insert(object->objectName()).second)
          << form->objectName().toStdString() << ' ' << object->objectName().toStdString();
    }
  }
}

TEST(Views, TabGoesDownTheColumnsOfTheAlarms) {
  SampleForms forms;
  ShowAt(forms, {640, 480});
  frmAlarms& f = forms.alarms;
  f.fra7316Alarms.hide();
  f.fraAlarms.show();
  BringToFront(f);
  f.cmdAlarms(0)->setFocus();
  int columns = 1;
  while (f.focusWidget() != &f.cmdClear && columns < 9) {
    const int top = f.focusWidget()->y();
    Key(Qt::Key_Tab);
    if (f.focusWidget()->y() < top) ++columns;
  }
  EXPECT_EQ(columns, 2);
}

// Each wrong one would send another value to the device, or a command nobody gave.
TEST(Views, StartAsTheLogicExpects) {
  SampleForms forms;
  for (const auto& [control, state] : std::initializer_list<std::pair<QObject&, const char*>>{
           {forms.main.tmrForcePollResume, "enabled true, interval 4000"},
           {forms.main.tmrFlasher, "enabled false"},
           {forms.main.updwnGainAdjust, "minimum -200, maximum 0, singleStep 2"},
           {forms.main.updwnConnectAddress, "maximum 31"},
           {forms.main.optMaint, "enabled false"},
           {forms.alarms.tmrAlarmBeeper, "interval 1000"},
           {forms.alarms.tmrStartPolling, "enabled false"},
           {forms.settings.updwnReflectedMax, "minimum -5, maximum 1000, singleStep 5"},
           {forms.settings.updwnPiNLevel, "maximum 40"},
           {forms.settings.txtPiNLevelPoint, "readOnly true"},
           {forms.settings.tmrStartLoad, "interval 100"},
           {forms.snapshot.txtSnapShotID, "maxLength 50"}}) {
    for (const QString& pair : QString::fromLatin1(state).split(QStringLiteral(", "))) {
      const QByteArray property = pair.section(QLatin1Char(' '), 0, 0).toLatin1();
      EXPECT_EQ(control.property(property).toString(), pair.section(QLatin1Char(' '), 1))
          << control.objectName().toStdString() << ' ' << property.toStdString();
    }
  }
  EXPECT_TRUE(forms.main.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  EXPECT_FALSE(forms.alarms.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  for (const int missing : {21, 22}) EXPECT_EQ(forms.alarms.cmdAlarms(missing), nullptr);
  for (const int there : {4, 18, 22, 23}) EXPECT_NE(forms.alarms.cmd7316Alarms(there), nullptr);
}

// Options whose click, also from code, is an event of its own.
TEST(Views, OptionsThatActOnTheirClick) {
  frmMain main;
  frmOptions options;
  std::string clicked;
  for (OptionButton* option : {&main.optRFOn, &main.optRFMute, &options.optRS232, &options.optRS4xx,
                               options.opt485Control(0), options.opt485Control(1)}) {
    QObject::connect(option, &OptionButton::Click, option,
                     [&, option] { clicked += option->objectName().toStdString() + ' '; });
    option->Select();
  }
  EXPECT_EQ(clicked, "optRFMute optRS232 optRS4xx opt485Control(0) opt485Control(1) ");
}

}  // namespace

}  // namespace tarnwell::forms

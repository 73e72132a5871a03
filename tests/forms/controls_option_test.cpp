#include <QAccessible>
#include <QMenu>
#include <QMenuBar>
#include <functional>

#include "forms/test_form.h"

namespace tarnwell::forms {

namespace {

using OptionTest = ControlTest;

using Act = std::function<void(TestForm&)>;
using Option = OptionButton TestForm::*;

Act Clicks(Option option, Qt::MouseButton button = Qt::LeftButton) {
  return [=](TestForm& form) { Click(form.*option, button); };
}
Act Types(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  return [=](TestForm&) { Key(key, modifiers); };
}
Act Focuses(Option option) {
  return [=](TestForm& form) { (form.*option).setFocus(); };
}
Act Selects(Option option) {
  return [=](TestForm& form) { (form.*option).Select(); };
}

constexpr Option kOnline = &TestForm::optOnline;
constexpr Option kStandby = &TestForm::optStandby;
constexpr Option kRFOn = &TestForm::optRFOn;
constexpr Option kMute = &TestForm::optRFMute;

struct Way {
  const char* how;
  std::vector<Act> acts;
  const char* raised;
  const char* selected;
};

// Online is selected when the operator sets out, and RFMute.
const std::vector<Way> kWays = {
    {"mouse", {Clicks(kStandby)}, "Standby", "Standby RFMute"},
    {"mouse, at the selected one", {Clicks(kOnline)}, "Online", "Online RFMute"},
    {"right button", {Clicks(kStandby, Qt::RightButton)}, "", "Online RFMute"},
    {"disabled", {Clicks(&TestForm::optMaint)}, "", "Online RFMute"},
    {"Tab", {Types(Qt::Key_Tab)}, "Online", "Online RFMute"},
    {"Shift-Tab", {Focuses(kMute), Types(Qt::Key_Backtab, Qt::ShiftModifier)}, "Online", "Online RFMute"},
    {"arrow", {Types(Qt::Key_Tab), Types(Qt::Key_Right)}, "Online Standby", "Standby RFMute"},
    {"access key of the frame", {Types(Qt::Key_S, Qt::AltModifier)}, "Online", "Online RFMute"},
    {"own access key", {Types(Qt::Key_B, Qt::AltModifier)}, "Standby", "Standby RFMute"},
    {"code", {Focuses(kStandby)}, "Standby", "Online RFMute"},
    {"selected from code", {Selects(kStandby)}, "", "Standby RFMute"},
    {"again, selected", {Clicks(kOnline), Clicks(kOnline), Types(Qt::Key_Space)}, "Online", "Online RFMute"},
    {"again, the device chose another: mouse",
     {Clicks(kOnline), Selects(kStandby), [](TestForm& form) { DoubleClick(form.optOnline); }},
     "Online Online",
     "Online RFMute"},
    {"again, the device chose another: space bar",
     {Clicks(kOnline), Selects(kStandby), Types(Qt::Key_Space)},
     "Online Online",
     "Online RFMute"},
    {"mute: mouse", {Clicks(kMute), Clicks(kMute)}, "RFMute! RFMute!", "Online RFMute"},
    {"mute: Tab", {Types(Qt::Key_Tab), Types(Qt::Key_Tab)}, "Online", "Online RFMute"},
    {"mute: space bar", {Focuses(kMute), Types(Qt::Key_Space)}, "RFMute!", "Online RFMute"},
    {"mute: arrow", {Clicks(kRFOn), Types(Qt::Key_Right)}, "RFOn RFMute!", "Online RFMute"},
    {"mute: released elsewhere",
     {[](TestForm& form) { Press(form.optRFMute); }, [](TestForm& form) { Release(form.txtOther); }},
     "",
     "Online RFMute"},
    {"mute: double click", {[](TestForm& form) { DoubleClick(form.optRFMute); }}, "RFMute!", "Online RFMute"},
    {"mute: code", {Selects(kMute), Selects(kRFOn), Selects(kMute)}, "RFMute!", "Online RFMute"},
};

TEST_F(OptionTest, EveryArrivalActsOnceAndSelectionFromCodeIsSilent) {
  for (const Way& way : kWays) {
    TestForm fresh;
    fresh.optOnline.Select();
    fresh.optRFMute.Select();
    EXPECT_EQ(fresh.Transcript(), "RFMute!") << "inside the call";
    fresh.Show();
    BringToFront(fresh);
    for (const Act& act : way.acts) act(fresh);
    Settle();
    EXPECT_EQ(fresh.Transcript(), way.raised) << way.how;
    EXPECT_EQ(fresh.Selected(), way.selected) << way.how;
    fresh.UnloadForm();
  }
}

TEST_F(OptionTest, WindowsMenusAndPopupsThatComeAndGoCommandNothing) {
  Click(form.optOnline);
  form.Transcript();
  GoAwayAndComeBack();
  QMenu popup(&form);
  popup.addAction(QStringLiteral("Entry"));
  popup.popup(form.mapToGlobal(QPoint(0, 0)));
  Settle();
  popup.close();
  Settle();
  form.MenuBar().addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("E&xit"));
  Settle();
  form.MenuBar().setFocus(Qt::MenuBarFocusReason);
  form.optOnline.setFocus(Qt::MenuBarFocusReason);
  Settle();
  form.MenuBar().setFocus(Qt::MenuBarFocusReason);
  Click(form.optOnline);
  EXPECT_EQ(form.Transcript(), "") << "the focus had only lent itself";

  BringToFront(other);
  form.optStandby.setFocus();  // takes effect when the window is activated, by nobody's hand then
  BringToFront(form);
  EXPECT_EQ(form.Focused() + form.Transcript(), "optStandby");
}

TEST_F(OptionTest, AClickIntoAnInactiveWindowIsOneArrival) {
  form.optOnline.Select();
  BringToFront(other);
  Press(form.optStandby);
  BringToFront(form);
  Release(form.optStandby);
  EXPECT_EQ(form.Focused() + ' ' + form.Transcript(), "optStandby Standby");
  BringToFront(other);
  Click(form.optStandby);
  BringToFront(form);
  EXPECT_EQ(form.Transcript(), "") << "the option had the focus all the time";
}

TEST_F(OptionTest, TheHandlersWordStandsWhenTheReleaseComesLate) {
  std::string shownFirst;
  QObject::connect(&form.optOnline, &OptionButton::GotFocus, &form, [&] {
    shownFirst = form.Selected();
    form.optStandby.Select();
  });
  Press(form.optOnline);  // the handler runs before the release
  EXPECT_EQ(form.Transcript(), "Online");
  Release(form.optOnline);
  EXPECT_EQ(shownFirst, "Online");
  EXPECT_EQ(form.Selected(), "Standby");
  EXPECT_FALSE(form.optOnline.isDown());

  form.cmdConnect.setFocus();
  QTest::mouseClick(&form.optOnline, Qt::LeftButton);  // press and release are delivered before the handler
  EXPECT_EQ(form.Transcript(), "") << "no handler may run inside the toolkit's event";
  Settle();
  EXPECT_EQ(form.Transcript(), "Online");
  EXPECT_EQ(form.Selected(), "Standby");
  EXPECT_FALSE(form.optOnline.isDown());

  QObject::connect(&form.optRFMute, &OptionButton::Click, &form, [&] { form.optRFOn.Select(); });
  Click(form.optRFMute);
  EXPECT_EQ(form.Selected(), "Standby RFOn");
}

TEST_F(OptionTest, AnArrivalAtWhatWasTakenAwayActsOnNothing) {
  form.optOnline.setFocus();
  form.optOnline.setEnabled(false);
  form.optStandby.setFocus();
  form.optStandby.hide();
  Settle();
  EXPECT_EQ(form.Focused() + form.Transcript(), "cmdConnect");
}

TEST_F(OptionTest, ArrowsGoRoundTheEnabledOptionsFromTheFocusedOne) {
  form.optMaint.setEnabled(true);
  Click(form.optOnline);
  form.optMaint.Select();  // the device's word; the focus stays
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Left, Qt::Key_Up}) Key(key);
  EXPECT_EQ(form.Transcript(), "Online Standby Maint Online Maint Standby");
  form.optMaint.setEnabled(false);
  form.optOnline.setEnabled(false);
  Key(Qt::Key_Right);
  EXPECT_EQ(form.Selected() + form.Transcript(), "Standby");
}

TEST_F(OptionTest, AHeldArrowCommandsOneOption) {
  form.optOnline.setFocus();
  Settle();
  form.Transcript();
  Key(Qt::Key_Right);
  for (int held = 0; held < 3; ++held) {
    PostRepeats(form.optStandby, Qt::Key_Right, 1);
    Settle();
  }
  EXPECT_EQ(form.Transcript(), "Standby");
  Key(Qt::Key_Right);
  EXPECT_EQ(form.Transcript(), "Online") << "let go and pressed again";
}

TEST_F(OptionTest, AnAssistiveToolChoosesAsTheMouseDoes) {
  QAccessibleInterface* option = QAccessible::queryAccessibleInterface(&form.optStandby);
  ASSERT_NE(option, nullptr);
  option->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  Settle();
  EXPECT_EQ(form.Transcript() + form.Selected(), "StandbyStandby");
}

}  // namespace

}  // namespace tarnwell::forms

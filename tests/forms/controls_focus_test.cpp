#include "forms/controls/label.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/tab_strip.h"
#include "forms/test_form.h"

namespace tarnwell::forms {

namespace {

using FocusTest = ControlTest;

/// The names at which Tab or Shift-Tab stops on one way round, from the button on.
std::string Round(TestForm& form, bool forward) {
  std::string stops;
  do {
    Key(forward ? Qt::Key_Tab : Qt::Key_Backtab, forward ? Qt::NoModifier : Qt::ShiftModifier);
    Append(stops, form.Focused().substr(3));
  } while (form.Focused() != "cmdConnect" && stops.size() < 200);
  return stops;
}

TEST_F(FocusTest, TabStopsInReadingOrderAndOnceInAGroup) {
  EXPECT_EQ(Round(form, true), "Gain Other Connect") << "none selected: any option would be a command";
  form.optStandby.Select();
  form.optRFMute.Select();
  EXPECT_EQ(Round(form, true), "Standby RFMute Gain Other Connect");
  EXPECT_EQ(Round(form, false), "Other Gain RFMute Standby Connect");
  form.optOnline.setFocus();
  Key(Qt::Key_Tab);
  EXPECT_EQ(form.Focused(), "optRFMute") << "from an option that isn't selected";
  form.optMaint.Select();
  form.txtGain.hide();
  form.cmdConnect.setFocus();
  EXPECT_EQ(Round(form, true), "RFMute Other Connect") << "the selected option is disabled";
  Place(form.fraUserMute, -20000, 2400, 4500, 1500);
  EXPECT_EQ(Round(form, true), "Other Connect") << "a page out of sight";
  Place(form.txtOther, 1800, -75, 1500, 450);
  Place(form.fraUserMute, 0, 2400, 4500, 1500);
  EXPECT_EQ(Round(form, true), "Other RFMute Connect") << "the button's row, though a bit higher";
}

TEST_F(FocusTest, EveryKindIsReachedByTabButForOneWithoutTabStop) {
  TabStrip tabs("tabPages", form, {"&One", "&Two"});
  ComboBox combo("cboPort", form);
  CommandButton passed("cmdPassed", form, "A", "", kNoTabStop);
  Place(tabs, 4800, 0, 3000, 450);
  Place(combo, 4800, 600, 1500, 450);
  Place(passed, 3000, 0, 600, 450);
  for (QWidget* control : std::initializer_list<QWidget*>{&tabs, &combo, &passed}) control->show();
  Key(Qt::Key_Tab);
  EXPECT_TRUE(tabs.isAncestorOf(form.focusWidget()));
  Key(Qt::Key_Right);
  EXPECT_EQ(tabs.SelectedTab(), 2);
  Key(Qt::Key_Tab);
  EXPECT_EQ(form.Focused(), "cboPort");
}

TEST_F(FocusTest, FocusOfAControlTakenAwayNeverLandsOnAnOption) {
  Click(form.optOnline);
  form.Transcript();
  form.optOnline.setEnabled(false);
  EXPECT_EQ(form.Focused(), "cmdConnect");
  form.cmdConnect.setEnabled(false);
  EXPECT_EQ(form.Focused(), "txtGain");
  form.SetSafeFocus(form.txtOther);
  form.txtGain.hide();
  EXPECT_EQ(form.Focused(), "txtOther");
  form.txtOther.setEnabled(false);
  EXPECT_EQ(form.Focused(), "") << "only options are left";
  GoAwayAndComeBack();
  EXPECT_EQ(form.Focused() + form.Transcript(), "");
}

TEST_F(FocusTest, AFrameTakenAwayWithTheFocusInsideHandsItToTheSafeControl) {
  Click(form.optOnline);
  form.fraState.setEnabled(false);
  Settle();
  EXPECT_EQ(form.Focused(), "cmdConnect");
  form.optRFOn.setFocus();
  Settle();
  form.fraUserMute.hide();
  Settle();
  EXPECT_EQ(form.Focused() + ' ' + form.Transcript(), "cmdConnect Online RFOn");
}

TEST_F(FocusTest, AFormStartsAtItsSafeControl) {
  TestForm fresh;
  Place(fresh.cmdConnect, 0, 5000, 1500, 450);  // an option is the first control now
  QObject::connect(&fresh, &Form::Load, &fresh, [&] { fresh.optOnline.setFocus(); });
  fresh.Show();
  BringToFront(fresh);
  EXPECT_EQ(fresh.Focused() + fresh.Transcript(), "txtGain");
}

TEST_F(FocusTest, AccessKeysOfFramesAndLabelsLeadToTheirControl) {
  const auto typed = [&](Qt::Key key) {
    Key(key, Qt::AltModifier);
    return form.Focused() + ' ' + form.Transcript();
  };
  EXPECT_EQ(typed(Qt::Key_U), "fraUserMute ") << "none selected: any option would be a command";
  Key(Qt::Key_Tab);
  EXPECT_EQ(form.Focused(), "txtGain");
  for (const auto& [arrow, arrives] : {std::pair{Qt::Key_Down, "optRFOn RFOn"}, {Qt::Key_Left, "optRFMute RFMute!"}}) {
    form.optRFMute.Deselect();
    form.optRFOn.Deselect();
    typed(Qt::Key_U);
    Key(arrow);
    EXPECT_EQ(form.Focused() + ' ' + form.Transcript(), arrives);
  }
  form.cmdConnect.setFocus();
  EXPECT_EQ(typed(Qt::Key_U), "optRFMute ") << "the selected one, which doesn't act on focus";
  form.optRFMute.setEnabled(false);
  form.cmdConnect.setFocus();
  EXPECT_EQ(typed(Qt::Key_U), "fraUserMute ") << "the selected one is disabled";
  Label caption("lblOther", form, "&Other:");
  caption.setBuddy(&form.txtOther);
  caption.show();
  EXPECT_EQ(typed(Qt::Key_O), "txtOther ");
  EXPECT_EQ(typed(Qt::Key_C), "cmdConnect Connect");
  form.fraUserMute.setEnabled(false);
  EXPECT_EQ(typed(Qt::Key_U), "cmdConnect ");
  form.fraUserMute.setEnabled(true);
  Place(form.fraUserMute, -20000, 0, 1500, 1500);
  EXPECT_EQ(typed(Qt::Key_U), "cmdConnect ") << "a page out of sight";
}

}  // namespace

}  // namespace tarnwell::forms

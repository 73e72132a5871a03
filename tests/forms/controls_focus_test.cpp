#include <QAccessible>
#include <QMenu>
#include <QMenuBar>

#include "forms/controls/label.h"
#include "forms/controls/menu_entry.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/tab_strip.h"
#include "forms/test_form.h"

namespace tarnwell::forms {
namespace {

using OptionTest = ControlTest;

/// A popup and the menu bar take the focus and give it back to `option`.
void OpenMenus(QWidget& option) {
  QMenu popup(&option);
  popup.addAction(QStringLiteral("Entry"));
  popup.popup(option.mapToGlobal(QPoint(0, 0)));
  Settle();
  popup.close();
  Settle();
  QMenuBar& bar = FormOf(option).MenuBar();
  bar.addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("E&xit"));
  Settle();
  bar.setFocus(Qt::MenuBarFocusReason);
  option.setFocus(Qt::MenuBarFocusReason);
  Settle();
  bar.setFocus(Qt::MenuBarFocusReason);
}

TEST_F(OptionTest, EveryArrivalActsOnceAndSelectionFromCodeIsSilent) {
  for (const char* way : {
           "click optStandby -> Standby [Standby RFMute]",
           "right optStandby -> [Online RFMute]",
           "click optMaint -> [Online RFMute]",
           "focus optRFMute, Shift+Backtab -> Online [Online RFMute]",
           "Tab, Right -> Online Standby [Standby RFMute]",
           "Alt+B -> Standby [Standby RFMute]",
           "toggle optStandby -> Standby [Standby RFMute]",
           "click optOnline, click optOnline, Space -> Online [Online RFMute]",
           // the device chose another meanwhile
           "click optOnline, select optStandby, double optOnline -> Online Online [Online RFMute]",
           "click optOnline, select optStandby, Space -> Online Online [Online RFMute]",
           // one that acts on its click
           "click optRFMute, click optRFMute -> RFMute! RFMute! [Online RFMute]",
           "press optRFMute, release txtOther -> [Online RFMute]",
           "Tab, Tab -> Online @optRFMute [Online RFMute]",
           "focus optRFMute, hold Space -> RFMute! [Online RFMute]",
           "click optRFOn, Right -> RFOn RFMute! [Online RFMute]",
           "select optRFMute, select optRFOn, select optRFMute -> RFMute! [Online RFMute]",
           // a held arrow commands one option; each press goes on from the focused one
           "focus optOnline, hold Right, Right -> Online Standby Online [Online RFMute]",
           "enable optMaint, click optOnline, select optMaint, Right, Down -> Online Standby Maint",
           "enable optMaint, click optOnline, Left, Up, Right, Right -> Online Maint Standby Maint Online",
           "click optStandby, disable optOnline, Right -> Standby [Standby RFMute]",
           "focus optOnline, disable optOnline, focus optStandby, hide optStandby -> @",
           // windows, menus and popups that come and go command nothing
           "click optOnline, leave, return, menus optOnline, click optOnline -> Online @optOnline",
           "leave, focus optStandby, return -> @optStandby",
           "leave, press optStandby, return, release optStandby -> Standby @optStandby",
           "click optStandby, leave, click optStandby, return -> Standby @optStandby",
       }) {
    TestForm fresh;
    fresh.verbs["menus"] = OpenMenus;
    fresh.verbs["toggle"] = [](QWidget& option) {
      auto* actions = QAccessible::queryAccessibleInterface(&option)->actionInterface();
      actions->doAction(QAccessibleActionInterface::toggleAction());
    };
    fresh.optOnline.Select();
    fresh.optRFMute.Select();
    EXPECT_EQ(fresh.Transcript(), "RFMute!") << "inside the call";
    fresh.Show();
    BringToFront(fresh);
    fresh.Expect(way);
    fresh.UnloadForm();
  }
}

TEST_F(OptionTest, TheHandlersWordStandsWhenTheReleaseComesLate) {
  QObject::connect(&form.optOnline, &OptionButton::GotFocus, &form, [&] {
    form.Note(form.optOnline.Value() ? "shown" : "not shown");
    form.optStandby.Select();
  });
  QObject::connect(&form.optRFMute, &OptionButton::Click, &form, [&] { form.optRFOn.Select(); });
  form.Play(QStringLiteral("press optOnline"));
  EXPECT_EQ(form.Transcript(), "Online shown") << "the handler ran before the release";
  form.Expect("release optOnline -> [Standby]");
  form.cmdConnect.setFocus();
  QTest::mouseClick(&form.optOnline, Qt::LeftButton);
  EXPECT_EQ(form.Transcript(), "") << "no handler may run inside the toolkit's event";
  form.Expect("wait -> Online shown [Standby]; click optRFMute -> RFMute! [Standby RFOn]");
  EXPECT_FALSE(form.optOnline.isDown());
}

/// Knows the verbs "away", to a page out of sight far to the left, and "round" and "back": where Tab or Shift-Tab stop
/// on one way round from the button on.
class FocusTest : public ControlTest {
 protected:
  void SetUp() override {
    ControlTest::SetUp();
    form.verbs["away"] = [](QWidget& control) { Place(control, -20000, 2400, 4500, 1500); };
    form.verbs["deselect"] = [](QWidget& option) { static_cast<OptionButton&>(option).Deselect(); };
    form.verbs["round"] = [this](QWidget&) { GoRound(Qt::Key_Tab, Qt::NoModifier); };
    form.verbs["back"] = [this](QWidget&) { GoRound(Qt::Key_Backtab, Qt::ShiftModifier); };
  }

  void GoRound(Qt::Key key, Qt::KeyboardModifier modifier) {
    std::string stops;
    form.cmdConnect.setFocus();
    do {
      Key(key, modifier);
      Append(stops, form.Focused().substr(3));
    } while (form.Focused() != "cmdConnect" && stops.size() < 200);
    form.Transcript();
    form.Note(stops);
  }
};

TEST_F(FocusTest, TabStopsInReadingOrderAndOnceInAGroup) {
  form.Expect(
      "round -> Gain Other Connect; "  // none selected: any option would be a command
      "select optStandby, select optRFMute, round -> Standby RFMute Gain Other Connect; "
      "back -> Other Gain RFMute Standby Connect; "
      "focus optOnline, Tab -> Online @optRFMute; "
      "select optMaint, hide txtGain, round -> RFMute Other Connect; "  // Maint is disabled
      "away fraUserMute, round -> Other Connect");
  Place(form.fraUserMute, 0, 2400, 4500, 1500);
  Place(form.txtOther, 1800, -75, 1500, 450);
  form.Expect("round -> Other RFMute Connect");  // the button's row, though a bit higher
}

TEST_F(FocusTest, EveryKindIsReachedByTabButForOneWithoutTabStop) {
  TabStrip tabs("tabPages", form, {"&One", "&Two"});
  ComboBox combo("cboPort", form);
  CommandButton passed("cmdPassed", form, "A", "", kNoTabStop);
  Place(tabs, 4800, 0, 3000, 450);
  Place(combo, 4800, 600, 1500, 450);
  Place(passed, 3000, 0, 600, 450);
  form.Expect("show tabPages, show cboPort, show cmdPassed, Tab, Right, Tab -> @cboPort");
  EXPECT_EQ(tabs.SelectedTab(), 2);
}

TEST_F(FocusTest, FocusOfAControlTakenAwayIsLentBackToItUnlessAnotherTookIt) {
  form.Expect(
      "click optOnline, disable fraState -> Online @; enable fraState -> @optOnline; Space ->; "
      "click optRFOn, hide fraUserMute -> RFOn @; leave, return -> @; show fraUserMute -> @optRFOn; "
      "disable optRFOn, leave, enable optRFOn, return -> @optRFOn; "
      "click optOnline, leave, disable fraState, enable fraState, return -> Online @optOnline; click optRFOn -> RFOn; "
      "disable optRFOn, Tab -> @txtGain; enable optRFOn -> @txtGain; "
      "disable txtGain, click optOnline, enable txtGain -> Online @optOnline; "
      "disable optOnline, disable fraState, enable optOnline -> @; enable fraState -> @optOnline");
  Menu file("mnuFile", form, "&File");
  const Menu exit("mnuExit", file, "E&xit");
  form.MenuBar().show();
  form.MenuBar().setFocus(Qt::MenuBarFocusReason);  // left there by a menu that closed over a disabled control
  form.Expect("disable fraState, F -> @");
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "no letter acts at the bar";
  form.Expect("enable fraState -> @optOnline");
  form.MenuBar().setFocus(Qt::MenuBarFocusReason);
  form.Expect("disable fraState, enable fraState -> @optOnline");
  TestForm fresh;
  Place(fresh.cmdConnect, 0, 5000, 1500, 450);  // an option is the first control now
  QObject::connect(&fresh, &Form::Load, &fresh, [&] { fresh.optOnline.setFocus(); });
  fresh.Show();
  fresh.Expect("return -> @txtGain");
}

TEST_F(FocusTest, AccessKeysOfFramesAndLabelsLeadToTheirControl) {
  Label caption("lblOther", form, "&Other:");
  caption.setBuddy(&form.txtOther);
  // the frame itself where none is selected, or one that is disabled: any of its options would be a command
  form.Expect(
      "Alt+U -> @fraUserMute; "
      "Tab -> @txtGain; "
      "Alt+U, Down -> RFOn @optRFOn; "
      "deselect optRFOn, focus cmdConnect, Alt+U, Left -> RFMute! @optRFMute; "
      "focus cmdConnect, Alt+U -> @optRFMute; "
      "disable optRFMute, focus cmdConnect, Alt+U -> @fraUserMute; "
      "show lblOther, Alt+O -> @txtOther; "
      "Alt+C -> Connect @cmdConnect; "
      "disable fraUserMute, Alt+U -> @cmdConnect; "
      "enable fraUserMute, away fraUserMute, Alt+U -> @cmdConnect");
}

}  // namespace
}  // namespace tarnwell::forms

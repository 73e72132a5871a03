#include "forms/test_form.h"
#include "support/late_input.h"

namespace tarnwell::forms {

namespace {

using namespace test;

/// Inputs that are delivered long after they were made.
class InputTest : public ControlTest {
 protected:
  void SetUp() override {
    ControlTest::SetUp();
    form.optOnline.Select();
  }

  ManualClock clock;
};

struct Change {
  const char* what;
  std::function<void(TestForm&)> happens;
  bool drawn = false;  ///< at once
};

/// What happens while a modal form stands in front of `form` and closes again.
void CoverForAWhile(TestForm& form) {
  TestForm front;
  QMetaObject::invokeMethod(
      &front, [&] { front.UnloadForm(); }, Qt::QueuedConnection);
  front.ShowModal();
  form.activateWindow();
}

const std::vector<Change> kChanges = {
    {"another caption", [](TestForm& form) { form.cmdConnect.SetCaption(QStringLiteral("Dis&connect")); }},
    {"another colour", [](TestForm& form) { form.cmdConnect.SetBackground(Qt::red); }},
    {"off and on",
     [](TestForm& form) {
       form.cmdConnect.setEnabled(false);
       form.cmdConnect.setEnabled(true);
     }},
    {"away and back",
     [](TestForm& form) {
       form.cmdConnect.hide();
       form.cmdConnect.show();
     }},
    {"another place", [](TestForm& form) { Place(form.cmdConnect, 150, 0, 1500, 450); }},
    {"a frame comes to the front", [](TestForm& form) { form.HideAndShow(); }},
    {"a modal form in front", CoverForAWhile, true},
};

TEST_F(InputTest, WhatWasMadeAheadOfAChangeIsLostUntilTheChangeWasSeen) {
  for (const Change& change : kChanges) {
    const platform::Moment before = clock.Now();
    change.happens(form);
    form.cmdConnect.setFocus(Qt::MouseFocusReason);
    const auto actAll = [&](platform::Moment made) {
      DeliverClick(form.cmdConnect, made);
      DeliverKey(form, Qt::Key_Return, made);
      DeliverKey(form, Qt::Key_C, made, Qt::AltModifier);
      return form.Transcript();
    };
    EXPECT_EQ(actAll(before), "") << change.what;
    if (!change.drawn) {
      EXPECT_EQ(actAll(clock.Now()), "") << change.what << ", not drawn yet";
    }
    BringToFront(form);
    EXPECT_EQ(actAll(before), "") << change.what << ", drawn since";
    EXPECT_EQ(actAll(clock.Now()), "Connect Connect Connect") << change.what;
  }
}

TEST_F(InputTest, AButtonThatChangesUnderThePressIsNotClicked) {
  DeliverMouse(form.cmdConnect, QEvent::MouseButtonPress, clock.Now(), QPoint(5, 5));
  const platform::Moment released = clock.Now();
  form.cmdConnect.SetCaption(QStringLiteral("Dis&connect"));
  Settle();
  DeliverMouse(form.cmdConnect, QEvent::MouseButtonRelease, released, QPoint(5, 5));
  EXPECT_EQ(form.Transcript(), "");
}

TEST_F(InputTest, AKeyNeedsAFocusThatTheOperatorGaveOrSaw) {
  form.optOnline.setFocus();
  Settle();
  form.Transcript();
  const platform::Moment typed = clock.Now();
  form.optOnline.setEnabled(false);  // the focus goes to the button
  EXPECT_EQ(form.Focused(), "cmdConnect");
  DeliverKey(form, Qt::Key_Return, typed);
  Settle();
  DeliverKey(form, Qt::Key_Return, typed);
  EXPECT_EQ(form.Transcript(), "");
  DeliverKey(form, Qt::Key_Return, clock.Now());
  EXPECT_EQ(form.Transcript(), "Connect") << "seen there since";

  form.txtGain.setFocus();
  Settle();
  const platform::Moment ahead = clock.Now();
  DeliverKey(form, Qt::Key_Tab, ahead);
  DeliverKey(form, Qt::Key_Tab, ahead + 1);
  DeliverKey(form, Qt::Key_Return, ahead + 2);
  EXPECT_EQ(form.Transcript(), "Connect") << "typed ahead, by way of the other field";
}

TEST_F(InputTest, AFormClosesWhenItWasInFrontAtTheRequest) {
  const platform::Moment behind = clock.Now();
  CoverForAWhile(form);
  DeliverClose(form, clock, behind);
  BringToFront(form);
  DeliverClose(form, clock, behind);
  EXPECT_FALSE(form.Unloaded());
  DeliverClose(form, clock, clock.Now());
  EXPECT_TRUE(form.Unloaded());
}

TEST_F(InputTest, AnOptionActsAheadOfWhateverWasPressedAfterIt) {
  QObject::connect(&form, &Form::Unload, &form, [this] { form.Note("Unload"); });
  const std::vector<std::pair<std::function<void()>, const char*>> next = {
      {[this] { DeliverClick(form.cmdConnect, clock.Now()); }, "Standby Connect"},
      {[this] { DeliverClick(form.optRFMute, clock.Now()); }, "Standby RFMute!"},
      {[this] { DeliverKey(form, Qt::Key_C, clock.Now(), Qt::AltModifier); }, "Standby Connect"},
      {[this] { DeliverKey(form, Qt::Key_Right, clock.Now()); }, "Standby Online"},
      {[this] { DeliverClose(form, clock, clock.Now()); }, "Standby Unload"},
  };
  for (const auto& [act, raised] : next) {
    form.cmdConnect.setFocus();
    form.optOnline.Select();
    Settle();
    form.Transcript();
    DeliverClick(form.optStandby, clock.Now());
    EXPECT_EQ(form.Transcript(), "") << "not inside the toolkit's event";
    act();
    Settle();
    EXPECT_EQ(form.Transcript(), raised);
  }
}

TEST_F(InputTest, AnOptionThatWentMeanwhileStillActedFirst) {
  QObject::connect(&form.optStandby, &OptionButton::GotFocus, &form, [this] { form.cmdConnect.setEnabled(false); });
  const platform::Moment made = clock.Now();
  DeliverClick(form.optStandby, made);
  DeliverClick(form.cmdConnect, made);
  EXPECT_EQ(form.Transcript(), "Standby") << "and the button it took away is not pressed";
}

}  // namespace

}  // namespace tarnwell::forms

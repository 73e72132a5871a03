#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QTimer>

#include "forms/test_form.h"
#include "platform/desktop.h"
#include "support/late_input.h"

namespace tarnwell::forms {
namespace {

using namespace test;

/// Inputs that are delivered long after they were made: "mark" remembers the moment, and those that follow "late" were
/// made then, those that follow "fresh" now.
class InputTest : public ControlTest {
 protected:
  void SetUp() override {
    ControlTest::SetUp();
    form.optOnline.Select();
    form.verbs["mark"] = [this](QWidget&) { marked = clock.Now(); };
    form.verbs["late"] = [this](QWidget&) { late = true; };
    form.verbs["fresh"] = [this](QWidget&) { late = false; };
    form.verbs["down"] = [this](QWidget& at) { DeliverMouse(at, QEvent::MouseButtonPress, Made(), QPoint(5, 5)); };
    form.verbs["up"] = [this](QWidget& at) { DeliverMouse(at, QEvent::MouseButtonRelease, Made(), QPoint(5, 5)); };
    form.verbs["tap"] = [this](QWidget& control) { DeliverClick(control, Made()); };
    form.verbs["enter"] = [this](QWidget&) { DeliverKey(form, Qt::Key_Return, Made()); };
    form.verbs["ask"] = [this](QWidget&) {  // an assistive tool about Return, which comes as a copy on its answer
      qt_sendShortcutOverrideEvent(form.windowHandle(), static_cast<ulong>(Made()), Qt::Key_Return, {}, {}, false, 1);
    };
    form.verbs["answer"] = [this](QWidget&) { DeliverKey(form, Qt::Key_Return, 0); };
    form.verbs["tab"] = [this](QWidget&) { DeliverKey(form, Qt::Key_Tab, Made()); };
    form.verbs["arrow"] = [this](QWidget&) { DeliverKey(form, Qt::Key_Right, Made()); };
    form.verbs["access"] = [this](QWidget&) { DeliverKey(form, Qt::Key_C, Made(), Qt::AltModifier); };
    form.verbs["close"] = [this](QWidget&) { DeliverClose(form, clock, Made()); };
    form.verbs["caption"] = [this](QWidget&) { form.cmdConnect.SetCaption(QStringLiteral("Dis&connect")); };
    form.verbs["colour"] = [this](QWidget&) { form.cmdConnect.SetBackground(Qt::red); };
    form.verbs["move"] = [](QWidget& control) { control.move(control.pos() + QPoint(10, 0)); };
    form.verbs["raise"] = [this](QWidget&) { form.HideAndShow(); };
    form.verbs["aim"] = [](QWidget& control) { control.setFocus(Qt::MouseFocusReason); };
    form.verbs["cover"] = [this](QWidget&) {
      TestForm front;
      QTimer::singleShot(0, &front, [&] { front.UnloadForm(); });
      front.ShowModal();
      form.activateWindow();
    };
    form.verbs["minimise"] = [this](QWidget&) {  // as it is on a real display: not exposed, and nothing of it drawn
      form.setAttribute(Qt::WA_Mapped, false);
      form.setUpdatesEnabled(false);
    };
    QObject::connect(&form, &Form::Unload, &form, [this] { form.Note("Unload"); });
  }

  platform::Moment Made() { return late ? marked : clock.Now(); }

  ManualClock clock;
  platform::Moment marked = 0;
  bool late = false;
};

TEST_F(InputTest, WhatWasMadeAheadOfAChangeIsLostUntilTheChangeWasSeen) {
  for (const std::string change : {"caption", "colour", "disable cmdConnect, enable cmdConnect",
                                   "hide cmdConnect, show cmdConnect", "move cmdConnect", "raise", "cover"}) {
    const std::string all = "tap cmdConnect, enter, access";
    const std::string undrawn = change != "cover" ? ", fresh, " + all : "";
    form.Expect("mark, late, " + change + ", aim cmdConnect, " + all + undrawn + " ->; return, late, " + all +
                " ->; fresh, " + all + " -> Connect Connect Connect");
  }
}

TEST_F(InputTest, AButtonThatChangesUnderThePressIsNotClicked) {
  form.Expect("down cmdConnect, mark, caption, wait, late, up cmdConnect ->");
}

TEST_F(InputTest, AKeyNeedsAFocusThatTheOperatorGaveOrSaw) {
  form.Expect(
      "focus optOnline -> Online; mark, late, focus cmdConnect, enter ->; enter ->; "
      "fresh, enter -> Connect; "                                   // seen there since
      "focus txtGain ->; mark, late, tab, tab, enter -> Connect");  // typed ahead, by way of the other field
}

TEST_F(InputTest, AKeyThatComesAsACopyActsAsItWasPressed) {
  form.Expect(
      "aim cmdConnect, ask, answer -> Connect; ask, ask, focus txtGain, focus cmdConnect, answer, answer ->; "
      "ask, answer -> Connect");
  clock.letGo = static_cast<quint64>(clock.Now()) + 1;
  form.Expect("ask, answer ->");  // held down since
  PressedKeys keys;
  keys.Complete(QEvent::ShortcutOverride, {Qt::Key_C, 100, false}, 100);
  keys.ForgetLast();
  EXPECT_FALSE(keys.Complete(QEvent::KeyPress, {Qt::Key_C, {}, false}, 200).made) << "that was an access key";
  keys.Complete(QEvent::ShortcutOverride, {Qt::Key_C, 300, false}, 300);
  EXPECT_FALSE(keys.Complete(QEvent::KeyPress, {Qt::Key_C, {}, false}, 60'000).made) << "the tool has kept it";
}

// No input would reach what an act opens then.
TEST_F(InputTest, NoActRunsWhileAMessageTakesTheRequestsToCloseOrInputIsLost) {
  int acts = 0;
  InputGate::Instance().ActLater([&] { acts += platform::OnlyClosesAreTaken() ? 100 : 1; });
  QTimer answer;
  answer.callOnTimeout([] {
    QWidget* box = QApplication::activeModalWidget();
    if (box != nullptr && !platform::OnlyClosesAreTaken()) box->close();
  });
  answer.start(0);
  platform::ToolkitDesktop().ShowMessage({QStringLiteral("Connection Failed")});
  Settle();
  {
    const InputPause pause;
    InputGate::Instance().ActLater([&] { ++acts; });
    Settle();
    EXPECT_EQ(acts, 1);
  }
  Settle();
  EXPECT_EQ(acts, 2);
}

// A file dialog proposes names while one is typed.
TEST_F(InputTest, AListThatComesWhileAFieldIsTypedInLosesNoKey) {
  QLineEdit field;
  field.setCompleter(new QCompleter({QStringLiteral("snapshots"), QStringLiteral("snow")}, &field));
  field.show();
  Settle();
  const auto type = [this](QWidget& receiver, const QString& letter) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, {}, letter);
    event.setTimestamp(static_cast<quint64>(Made()));
    QCoreApplication::sendEvent(&receiver, &event);
  };
  type(field, QStringLiteral("s"));
  QWidget* list = field.completer()->popup();
  ASSERT_TRUE(list->isVisible());
  form.Expect("mark, late ->");
  type(*list, QStringLiteral("n"));
  EXPECT_EQ(field.text().toStdString(), "sn");
}

TEST_F(InputTest, AFormClosesWhenItWasInFrontAtTheRequest) {
  form.Expect("mark, late, cover, close ->; return, close ->; fresh, close -> Unload");
}

TEST_F(InputTest, AMinimisedFormClosesThoughAModalOneEndedMeanwhile) {
  form.Expect("minimise, cover, wait, close -> Unload");
}

// The toolkit draws what covers a control in its stead, and never the control.
TEST_F(InputTest, WhatIsCoveredByItsPartsCountsAsDrawnWithItsWindow) {
  QWidget cover(&form.cmdConnect);
  cover.setAttribute(Qt::WA_OpaquePaintEvent);
  cover.setAttribute(Qt::WA_TransparentForMouseEvents);
  cover.resize(form.cmdConnect.size());
  cover.show();
  form.Expect("wait, move cmdConnect, wait, tap cmdConnect -> Connect");
}

TEST_F(InputTest, AnOptionActsAheadOfWhateverWasPressedAfterIt) {
  form.Expect(
      "tap optStandby, tap cmdConnect -> Standby Connect; focus cmdConnect, select optOnline ->; "
      "tap optStandby, tap optRFMute -> Standby RFMute!; focus cmdConnect, select optOnline ->; "
      "tap optStandby, access -> Standby Connect; focus cmdConnect, select optOnline ->; "
      "tap optStandby, arrow -> Standby Online; focus cmdConnect ->; tap optStandby, close -> Standby Unload");
}

TEST_F(InputTest, AnOptionThatWentMeanwhileStillActedFirst) {
  QObject::connect(&form.optStandby, &OptionButton::GotFocus, &form, [this] { form.cmdConnect.setEnabled(false); });
  form.Expect("mark, late, tap optStandby, tap cmdConnect -> Standby");  // the button it took away is not pressed
}

}  // namespace
}  // namespace tarnwell::forms

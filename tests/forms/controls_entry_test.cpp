#include <QAbstractEventDispatcher>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QTimerEvent>

#include "forms/controls/input_gate.h"
#include "forms/controls/plain_controls.h"
#include "forms/controls/tab_strip.h"
#include "forms/test_form.h"
#include "support/manual_clock.h"

namespace tarnwell::forms {

namespace {

/// The text box and the spin control of the test form, their events in its transcript.
class EntryTest : public ControlTest {
 protected:
  void SetUp() override {
    ControlTest::SetUp();
    QObject::connect(&box, &TextBox::KeyPress, &form, [this](KeyAscii& key) { Answer(key); });
    QObject::connect(&box, &TextBox::KeyDown, &form, [this](int key) { form.Note(key == Qt::Key_Up ? "Up" : "Down"); });
    QObject::connect(&box, &TextBox::LostFocus, &form, [this] { form.Note("LostFocus"); });
    QObject::connect(&spin, &UpDown::Change, &form, [this] { form.Note(std::to_string(spin.Value())); });
    QObject::connect(&spin, &UpDown::MouseUp, &form, [this] { form.Note("MouseUp"); });
    box.setFocus();
  }

  /// Notes the code; swallows letters and Enter, makes "," a ".".
  void Answer(KeyAscii& key) {
    form.Note(std::to_string(key.character));
    const QChar character(key.character);
    if (character.isLetter() || key.character == KeyAscii::kEnter) key.character = KeyAscii::kSwallowed;
    if (character == QLatin1Char(',')) key.character = u'.';
  }

  /// The interval of the spin control's running repeat; 0 when it is at rest. `fire` lets it elapse.
  int Repeat(bool fire) {
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&spin);
    if (timers.isEmpty()) return 0;
    QTimerEvent elapsed(timers.front().timerId);
    if (fire) QCoreApplication::sendEvent(&spin, &elapsed);
    return timers.front().interval;
  }

  QPoint Upper() const { return {spin.width() / 2, spin.height() / 4}; }
  QPoint Lower() const { return {spin.width() / 2, spin.height() * 3 / 4}; }

  TextBox& box = form.txtGain;
  UpDown& spin = form.updwnGain;
};

/// Counts the key presses that go on to the form.
struct Watcher : QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() != Qt::Key_Control) ++keys;
    return false;
  }
  int keys = 0;
};

TEST_F(EntryTest, KeyPressComesBeforeTheCharacterAndDecides) {
  struct Case {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    const char* raised;
    const char* text;
  };
  Watcher watcher;
  form.installEventFilter(&watcher);
  int row = 0;
  for (const Case& step : std::initializer_list<Case>{{Qt::Key_7, {}, "55", "7"},
                                                      {Qt::Key_Comma, {}, "44", "7."},
                                                      {Qt::Key_A, {}, "97", "7."},
                                                      {Qt::Key_5, Qt::KeypadModifier, "53", "7.5"},
                                                      {Qt::Key_Return, {}, "13", "7.5"},
                                                      {Qt::Key_Enter, Qt::KeypadModifier, "13", "7.5"},
                                                      {Qt::Key_Escape, {}, "27", "7.5"},
                                                      {Qt::Key_Backspace, {}, "8", "7."},
                                                      {Qt::Key_Z, Qt::ControlModifier, "", "7.5"},
                                                      {Qt::Key_A, Qt::ControlModifier, "", "7.5"},
                                                      {Qt::Key_C, Qt::ControlModifier, "", "7.5"},
                                                      {Qt::Key_Delete, {}, "", ""},
                                                      {Qt::Key_V, Qt::ControlModifier, "", "7.5"},
                                                      {Qt::Key_Home, {}, "", "7.5"},
                                                      {Qt::Key_Minus, {}, "45", "-7.5"},
                                                      {Qt::Key_Up, {}, "Up", "-7.5"},
                                                      {Qt::Key_Down, Qt::KeypadModifier, "Down", "-7.5"}}) {
    watcher.keys = 0;
    Key(step.key, step.modifiers);
    EXPECT_EQ(form.Transcript(), step.raised) << row;
    EXPECT_EQ(box.Text().toStdString(), step.text) << row++;
    EXPECT_EQ(watcher.keys, step.key == Qt::Key_Escape ? 1 : 0) << "Escape alone goes on to the form";
  }
  QInputMethodEvent composed;
  composed.setCommitString(QStringLiteral("1a,"));
  QCoreApplication::sendEvent(&box, &composed);
  EXPECT_EQ(form.Transcript(), "49 97 44");
  EXPECT_EQ(box.Text(), QStringLiteral("-1.7.5"));
  Key(Qt::Key_1);
  EXPECT_EQ(box.Text(), QStringLiteral("-1.7.5")) << "full";
  box.setReadOnly(true);
  watcher.keys = 0;
  for (const Qt::Key key : {Qt::Key_Comma, Qt::Key_Backspace, Qt::Key_Escape}) Key(key);
  EXPECT_EQ(watcher.keys, 0) << "Escape takes back what was typed, and here nothing can be";
  EXPECT_EQ(box.Text(), QStringLiteral("-1.7.5"));
  EXPECT_FALSE(box.acceptDrops());
}

TEST_F(EntryTest, LostFocusIsRaisedOnlyWhenTheFocusGoesElsewhereOnTheForm) {
  GoAwayAndComeBack();
  QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
  QCoreApplication::sendEvent(&box, &menu);
  Click(spin, Qt::RightButton);
  EXPECT_EQ(form.Focused() + form.Transcript(), "txtGain") << "the spin control takes no focus";
  Click(form.optOnline);
  EXPECT_EQ(form.Transcript(), "LostFocus Online");
}

TEST_F(EntryTest, HeldStepKeysDoNotPileUpAndTypedCharactersAllArrive) {
  QObject::connect(&box, &TextBox::KeyDown, &form, [this] { PostRepeats(box, Qt::Key_Up, 9); });
  Key(Qt::Key_Up);
  EXPECT_EQ(form.Transcript(), "Up");
  QTest::keyClick(&box, Qt::Key_2);  // two more at the same moment, which looks as if the key were held
  PostRepeats(box, Qt::Key_2, 2, QStringLiteral("2"));
  PostRepeats(box, Qt::Key_Space, 1, QStringLiteral(" "));
  PostRepeats(box, Qt::Key_Backspace, 2);
  Settle();
  EXPECT_EQ(box.Text(), QStringLiteral("22"));
}

TEST_F(EntryTest, AHeldEnterAndAHeldStepOfAnAddressActOnce) {
  TextBox address("txtAddress", form, "", "", kSingleStep);
  QObject::connect(&address, &TextBox::KeyDown, &form, [this](int) { form.Note("Step"); });
  address.show();
  const auto held = [this](TextBox& field, Qt::Key key, const QString& text) {
    field.setFocus();
    Key(key);
    for (int repeat = 0; repeat < 3; ++repeat) {
      PostRepeats(field, key, 1, text);
      Settle();
    }
    return form.Transcript();
  };
  EXPECT_EQ(held(box, Qt::Key_Return, QStringLiteral("\r")), "13");
  EXPECT_EQ(held(box, Qt::Key_Up, {}), "Up Up Up Up");
  EXPECT_EQ(held(address, Qt::Key_Up, {}), "LostFocus Step");
}

TEST(HeldKeyTest, AReleaseAndAPressAtTheSameMomentAreARepeat) {
  HeldKey held;
  held.Released(Qt::Key_Up, 1660);
  EXPECT_TRUE(held.Repeats(Qt::Key_Up, 1660));
  EXPECT_FALSE(held.Repeats(Qt::Key_Down, 1660));
  EXPECT_FALSE(held.Repeats(Qt::Key_Up, 1661));
}

TEST_F(EntryTest, AButtonClicksOnceAPress) {
  struct Case {
    const char* how;
    std::function<void()> act;
    int clicks;
  };
  const auto hold = [this](Qt::Key key) {
    QTest::keyPress(form.windowHandle(), key);
    for (int repeat = 0; repeat < 4; ++repeat) {
      PostRepeats(form.cmdConnect, key, 1);
      Settle();
    }
    QTest::keyRelease(form.windowHandle(), key);
  };
  for (const Case& way : {Case{"click", [&] { Click(form.cmdConnect); }, 1},
                          {"double click", [&] { DoubleClick(form.cmdConnect); }, 1},
                          {"Return held", [&] { hold(Qt::Key_Return); }, 1},
                          {"space held", [&] { hold(Qt::Key_Space); }, 1},
                          {"right button", [&] { Click(form.cmdConnect, Qt::RightButton); }, 0},
                          {"arrow", [&] { Key(Qt::Key_Down); }, 0},
                          {"access key", [&] { Key(Qt::Key_C, Qt::AltModifier); }, 1}}) {
    form.cmdConnect.setFocus();
    form.Transcript();
    way.act();
    Settle();
    EXPECT_EQ(form.Transcript(), way.clicks == 1 ? "Connect" : "") << way.how;
    EXPECT_EQ(form.Focused(), "cmdConnect") << way.how;
  }
}

TEST_F(EntryTest, SpinArrowsStepWithinTheLimitsAndEveryReleaseCounts) {
  for (const int value : {-2, -2, 7, -201}) spin.SetValue(value);
  EXPECT_EQ(form.Transcript(), "-2 0 -200");
  QTest::mouseClick(&spin, Qt::LeftButton, {}, Lower());
  QTest::mouseClick(&spin, Qt::LeftButton, {}, Upper());
  QTest::mouseClick(&spin, Qt::RightButton, {}, Upper());
  QTest::mouseDClick(form.windowHandle(), Qt::LeftButton, {}, spin.mapTo(&form, Upper()));
  EXPECT_EQ(form.Transcript(), "MouseUp -198 MouseUp -196 MouseUp -194 MouseUp");
  QTest::mousePress(&spin, Qt::LeftButton, {}, Upper());
  QTest::mouseRelease(&spin, Qt::LeftButton, {}, QPoint(-300, -300));
  EXPECT_EQ(form.Transcript(), "-192 MouseUp");
}

TEST_F(EntryTest, ASpinHeldWhileItsFormClosesChangesNothingMore) {
  QTest::mousePress(&spin, Qt::LeftButton, {}, Lower());
  EXPECT_EQ(form.Transcript(), "-2");
  form.UnloadForm();
  EXPECT_EQ(form.Transcript(), "");
}

TEST_F(EntryTest, SpinRepeatsWhileTheArrowIsHeld) {
  QTest::mousePress(&spin, Qt::LeftButton, {}, Lower());
  EXPECT_EQ(Repeat(true), 400);
  EXPECT_EQ(Repeat(true), 60);
  QTest::mouseMove(&spin, Upper());
  Repeat(true);
  EXPECT_EQ(form.Transcript(), "-2 -4 -6") << "not while the pointer is off the arrow";
  QTest::mouseMove(&spin, Lower());
  Repeat(true);
  QTest::mouseRelease(&spin, Qt::LeftButton, {}, Lower());
  EXPECT_EQ(form.Transcript(), "-8 MouseUp");
  EXPECT_EQ(Repeat(false), 0);
  QTest::mousePress(&spin, Qt::LeftButton, {}, Lower());
  GoAwayAndComeBack();
  EXPECT_EQ(Repeat(false), 0) << "another window may have had the release";
}

TEST_F(EntryTest, AnArrowThatMayHaveBeenLetGoDuringAHoldWaitsToBeTold) {
  test::ManualClock clock;
  QTest::mousePress(&spin, Qt::LeftButton, {}, Lower());
  clock.Pass(900);
  Repeat(true);
  EXPECT_EQ(form.Transcript(), "-2");
  Repeat(true);
  EXPECT_EQ(form.Transcript(), "-4") << "it is still held";
}

TEST_F(EntryTest, SpinTakenAwayUnderThePressGoesBackUnlessCodeSetAnotherValue) {
  for (const bool disable : {true, false}) {
    QTest::mousePress(&spin, Qt::LeftButton, {}, Lower());
    Repeat(true);
    if (!disable) spin.SetValue(-100);
    disable ? spin.setEnabled(false) : spin.hide();
    EXPECT_EQ(Repeat(false), 0);
    spin.setEnabled(true);
    spin.show();
    QTest::mouseRelease(&spin, Qt::LeftButton, {}, Lower());
    EXPECT_EQ(form.Transcript(), disable ? "-2 -4 0" : "-2 -4 -100");
  }
}

TEST_F(EntryTest, TheWheelTurnsABoxOnlyWithTheFocus) {
  ComboBox combo("cboSpeed", form);
  Place(combo, 4800, 600, 1500, 450);
  combo.addItems({QStringLiteral("9600"), QStringLiteral("19200")});
  combo.show();
  const auto turn = [&] {
    const QPointF at(5, 5);
    QWheelEvent wheel(at, combo.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&combo, &wheel);
    return combo.currentIndex();
  };
  EXPECT_EQ(turn(), 0);
  EXPECT_EQ(form.Focused(), "txtGain");
  combo.setFocus();
  EXPECT_EQ(turn(), 1);
}

TEST_F(EntryTest, ATabClicksOnlyByTheOperatorsHand) {
  TabStrip tabs("tabPages", form, {"&One", "&Two", "T&hree"});
  Place(tabs, 4800, 0, 3900, 1500);
  tabs.show();
  QObject::connect(&tabs, &TabStrip::Click, &form, [&] { form.Note(std::to_string(tabs.SelectedTab())); });
  tabs.SelectTab(2);
  EXPECT_EQ(tabs.SelectedTab(), 2);
  auto* bar = tabs.findChild<QTabBar*>();
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(0).center());
  Key(Qt::Key_H, Qt::AltModifier);
  EXPECT_EQ(form.Transcript(), "1 3");
  EXPECT_EQ(tabs.ClientLeft(), 4800 + 2 * kTwipsPerPixel);
  EXPECT_EQ(tabs.ClientTop(), (bar->height() + 2) * kTwipsPerPixel);
  EXPECT_EQ(tabs.ClientTop() + tabs.ClientHeight() + 2 * kTwipsPerPixel, 1500);
}

}  // namespace

}  // namespace tarnwell::forms

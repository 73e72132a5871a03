#include <QAbstractEventDispatcher>
#include <QInputMethodEvent>
#include <QTimerEvent>

#include "forms/controls/plain_controls.h"
#include "forms/test_form.h"
#include "support/late_input.h"

namespace tarnwell::forms {
namespace {

/// The text box of the test form, its events in the transcript: a key by its code. Letters and Enter are swallowed, a
/// "," is made a ".".
class EntryTest : public ControlTest {
 protected:
  void SetUp() override {
    ControlTest::SetUp();
    QObject::connect(&box, &TextBox::KeyPress, &form, [this](KeyAscii& key) {
      form.Note(std::to_string(key.character));
      const QChar character(key.character);
      if (character.isLetter() || key.character == KeyAscii::kEnter) key.character = KeyAscii::kSwallowed;
      if (character == QLatin1Char(',')) key.character = u'.';
    });
    QObject::connect(&box, &TextBox::KeyDown, &form, [this](int key) { form.Note(key == Qt::Key_Up ? "Up" : "Down"); });
    QObject::connect(&box, &TextBox::LostFocus, &form, [this] { form.Note("LostFocus"); });
    box.setFocus();
  }

  TextBox& box = form.txtGain;
};

// Escape alone goes on to the form.
TEST_F(EntryTest, KeyPressComesBeforeTheCharacterAndDecides) {
  form.SetCancelButton(form.cmdConnect);
  form.SetDefaultButton(form.cmdConnect);
  form.Expect(
      "7 -> 55 =7; , -> 44 =7.; A -> 97 =7.; Num+5 -> 53 =7.5; Return -> 13 =7.5; Num+Enter -> 13 =7.5; "
      "Esc -> 27 Connect =7.5; Backspace -> 8 =7.; Ctrl+Z -> =7.5; Ctrl+A -> =7.5; Ctrl+C -> =7.5; Del -> =; "
      "Ctrl+V -> =7.5; Home -> =7.5; - -> 45 =-7.5; Up -> Up =-7.5; Num+Down -> Down =-7.5");
  QInputMethodEvent composed;
  composed.setCommitString(QStringLiteral("1a,"));
  QCoreApplication::sendEvent(&box, &composed);
  form.Expect("wait -> 49 97 44 =-1.7.5; 1 -> 49 =-1.7.5; hide cmdConnect, Esc -> 27 =-1.7.5");
  box.setReadOnly(true);
  form.Expect(", -> 44 =-1.7.5; Backspace -> 8 =-1.7.5; Esc -> 27 =-1.7.5");
  EXPECT_FALSE(box.acceptDrops());
}

TEST_F(EntryTest, LostFocusIsRaisedOnlyWhenTheFocusGoesElsewhereOnTheForm) {
  QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
  QCoreApplication::sendEvent(&box, &menu);
  form.Expect(
      "leave, return, right updwnGain -> @txtGain; click updwnGain -> @txtGain; 7, click updwnGain -> 55 LostFocus; "
      "click optOnline -> LostFocus Online");
}

TEST_F(EntryTest, HeldKeysActOnceOrStepAndNeverPileUpAndTypedCharactersAllArrive) {
  TextBox address("txtAddress", form, "", "", kSingleStep);
  QObject::connect(&address, &TextBox::KeyDown, &form, [this] { form.Note("Step"); });
  form.Expect(
      "hold Return -> 13; hold Up -> Up Up Up Up; show txtAddress, focus txtAddress, hold Up -> LostFocus Step; "
      "focus txtGain ->");
  QObject::connect(&box, &TextBox::KeyDown, &form, [this] { PostRepeats(box, Qt::Key_Up, 9); });
  QObject::connect(&box, &TextBox::KeyDown, &form, [this] { PostRepeats(box, Qt::Key_Tab, 1); });
  form.Expect("Up -> Up @txtGain");
  QTest::keyClick(&box, Qt::Key_2);  // two more at the same moment, which looks as if the key were held
  PostRepeats(box, Qt::Key_2, 2, QStringLiteral("2"));
  PostRepeats(box, Qt::Key_Space, 1, QStringLiteral(" "));
  PostRepeats(box, Qt::Key_Backspace, 2);
  form.Expect("wait -> 50 50 50 32 8 8 =22");
}

/// The spin control, which clicks hit on its upper arrow, with verbs for its lower one, and "fire": the running repeat
/// elapses. Its interval is noted in parentheses, 0 where none runs.
class SpinTest : public ControlTest {
 protected:
  void SetUp() override {
    ControlTest::SetUp();
    QObject::connect(&spin, &UpDown::Change, &form, [this] { form.Note(std::to_string(spin.Value())); });
    QObject::connect(&spin, &UpDown::MouseUp, &form, [this] { form.Note("MouseUp"); });
    const QPoint lower(spin.width() / 2, spin.height() * 3 / 4);
    form.verbs["down"] = [this, lower](QWidget&) { QTest::mousePress(&spin, Qt::LeftButton, {}, lower); };
    form.verbs["off"] = [this](QWidget&) { QTest::mouseMove(&spin, QPoint(1, 1)); };
    form.verbs["on"] = [this, lower](QWidget&) { QTest::mouseMove(&spin, lower); };
    form.verbs["letgo"] = [this](QWidget&) { QTest::mouseRelease(&spin, Qt::LeftButton, {}, QPoint(-300, -300)); };
    form.verbs["set"] = [this](QWidget&) { spin.SetValue(-100); };
    form.verbs["close"] = [this](QWidget&) { form.UnloadForm(); };
    form.verbs["fire"] = [this](QWidget&) {
      const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&spin);
      form.Note('(' + std::to_string(timers.isEmpty() ? 0 : timers.front().interval) + ')');
      if (timers.isEmpty()) return;
      QTimerEvent elapsed(timers.front().timerId);
      QCoreApplication::sendEvent(&spin, &elapsed);
    };
  }

  UpDown& spin = form.updwnGain;
};

TEST_F(SpinTest, StepsAndRepeatsWithinTheLimitsWhileItIsHeld) {
  for (const int value : {-2, -2, 7, -201}) spin.SetValue(value);
  form.Expect(
      "right updwnGain -> -2 0 -200; down, letgo -> MouseUp; click updwnGain -> -198 MouseUp; "
      "double updwnGain -> -196 MouseUp -194 MouseUp; set, down, fire, fire -> -100 -102 (400) -104 (60) -106; "
      "off, fire -> (60); on, fire, letgo, fire -> (60) -108 MouseUp (0); "
      "down, leave, return, fire -> -110 (0)");  // the other window may have had the release
}

TEST_F(SpinTest, TakenAwayItGoesBackUnlessCodeSetAnotherValueOrTheFormCloses) {
  test::ManualClock clock;
  form.verbs["stall"] = [&](QWidget&) { clock.Pass(900); };
  form.Expect(
      "down, stall, fire, fire, letgo -> -2 (400) (20) -4 MouseUp; "  // it may have been let go meanwhile
      "down, fire, disable updwnGain, fire, enable updwnGain, letgo -> -6 (400) -8 -4 (0); "
      "down, fire, set, hide updwnGain, fire, show updwnGain, letgo -> -6 (400) -8 -100 (0); "
      "down, close -> -102");
}

using PlainTest = ControlTest;

TEST_F(PlainTest, AButtonClicksOnceAPress) {
  CommandButton second("cmdView", form, "&View");
  Place(second, 4800, 0, 1500, 450);
  form.Expect(
      "show cmdView, focus cmdView, Down, Up, Left, Right -> @cmdView; click cmdConnect -> Connect; double cmdConnect "
      "-> Connect; hold Return -> Connect; hold Space -> Connect; "
      "right cmdConnect -> @cmdConnect; Alt+C -> Connect @cmdConnect");
}

TEST_F(PlainTest, AListTakesTheWheelOnlyWithTheFocusAndAKeyForItselfAlone) {
  ComboBox combo("cboSpeed", form);
  combo.addItems({QStringLiteral("9600"), QStringLiteral("19200")});
  form.verbs["turn"] = [&](QWidget&) {
    QWheelEvent wheel({5, 5}, combo.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&combo, &wheel);
    form.Note(combo.currentText().toStdString());
  };
  form.Expect("show cboSpeed, turn -> 9600 @cmdConnect; focus cboSpeed, turn -> 19200");
  // Some window systems give the keys to the form's window while a list is open.
  form.SetDefaultButton(form.cmdConnect);
  form.SetCancelButton(form.cmdConnect);
  form.verbs["open"] = [&](QWidget&) { combo.showPopup(); };
  form.Expect("open, Return ->; return, Return -> Connect; open, Escape ->; return, Escape -> Connect");
}

}  // namespace
}  // namespace tarnwell::forms

#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWindow>
#include <string>

#include "forms/controls/command_button.h"
#include "forms/controls/control.h"
#include "forms/controls/frame.h"
#include "forms/controls/option_button.h"
#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

inline void PrintTo(const QString& text, std::ostream* stream) { *stream << '"' << text.toStdString() << '"'; }

namespace tarnwell::forms {

inline void Append(std::string& words, const std::string& word) { words += (words.empty() ? "" : " ") + word; }

/// A form with two groups of options between a button and two text boxes. What is raised is noted in a transcript:
/// "Online" for GotFocus, "RFMute!" for Click.
class TestForm : public Form {
 public:
  TestForm() : Form("frmTest", "Test", Border::kFixedDialog, 9000, 6000) {
    Place(cmdConnect, 0, 0, 1500, 450);
    Place(fraState, 0, 600, 4500, 1500);
    Place(fraUserMute, 0, 2400, 4500, 1500);
    Place(optOnline, 150, 600, 1200, 300);
    Place(optStandby, 1500, 600, 1200, 300);
    Place(optMaint, 2850, 600, 1200, 300);
    Place(optRFOn, 150, 600, 1200, 300);
    Place(optRFMute, 1500, 600, 1200, 300);
    Place(txtGain, 0, 4200, 1500, 450);
    Place(updwnGain, 1500, 4200, 240, 450);
    Place(txtOther, 3000, 4200, 1500, 450);
    for (OptionButton* option : findChildren<OptionButton*>()) {
      const std::string label = option->objectName().mid(3).toStdString();
      connect(option, &OptionButton::GotFocus, this, [this, label] { Note(label); });
      connect(option, &OptionButton::Click, this, [this, label] { Note(label + '!'); });
    }
    connect(&cmdConnect, &CommandButton::Click, this, [this] { Note("Connect"); });
  }

  void Note(const std::string& event) { Append(m_transcript, event); }

  /// What was raised since the last call.
  std::string Transcript() { return std::exchange(m_transcript, {}); }

  /// The names of the selected options without their prefix.
  std::string Selected() const {
    std::string selected;
    for (const OptionButton* option : findChildren<OptionButton*>()) {
      if (option->Value()) Append(selected, option->objectName().mid(3).toStdString());
    }
    return selected;
  }

  std::string Focused() const { return focusWidget() != nullptr ? focusWidget()->objectName().toStdString() : ""; }

  CONTROL(CommandButton, cmdConnect, *this, "&Connect");
  CONTROL(Frame, fraState, *this, "Operating &State");
  CONTROL(OptionButton, optOnline, fraState, "Online");
  CONTROL(OptionButton, optStandby, fraState, "Stand&by");
  CONTROL(OptionButton, optMaint, fraState, "Maintenance", "", kDisabled);
  CONTROL(Frame, fraUserMute, *this, "&User Setting");
  CONTROL(OptionButton, optRFOn, fraUserMute, "RF on");
  CONTROL(OptionButton, optRFMute, fraUserMute, "Mute", "", kActsOnClick);
  CONTROL(TextBox, txtGain, *this, "", "", UpTo(6));
  CONTROL(UpDown, updwnGain, *this, "", "", Range(-200, 0, 2));
  CONTROL(TextBox, txtOther, *this);

 private:
  std::string m_transcript;
};

/// Everything that is pending runs, and what that posts, until a held key counts again.
inline void Settle() {
  for (int pass = 0; pass < 8; ++pass) QCoreApplication::processEvents();
}

inline QPoint CentreOf(const QWidget& control) { return control.mapTo(control.window(), control.rect().center()); }

inline void Press(QWidget& control, Qt::MouseButton button = Qt::LeftButton) {
  QTest::mousePress(control.window()->windowHandle(), button, {}, CentreOf(control));
}

inline void Release(QWidget& control, Qt::MouseButton button = Qt::LeftButton) {
  QTest::mouseRelease(control.window()->windowHandle(), button, {}, CentreOf(control));
  Settle();
}

inline void Click(QWidget& control, Qt::MouseButton button = Qt::LeftButton) {
  Press(control, button);
  Release(control, button);
}

inline void DoubleClick(QWidget& control) {
  QTest::mouseDClick(control.window()->windowHandle(), Qt::LeftButton, {}, CentreOf(control));
  Settle();
}

/// A key to the active window, through its access keys to the control with the focus.
inline void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, modifiers);
  Settle();
}

/// Repeats of a held key that wait to be delivered.
inline void PostRepeats(QWidget& control, Qt::Key key, int count, const QString& text = {}) {
  for (int repeat = 0; repeat < count; ++repeat) {
    QCoreApplication::postEvent(&control, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text, true));
  }
}

inline void BringToFront(QWidget& window) {
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  Settle();
}

/// The test form, shown and active, the focus on its button.
class ControlTest : public testing::Test {
 protected:
  void SetUp() override {
    QApplication::setQuitOnLastWindowClosed(false);
    form.Show();
    BringToFront(form);
    form.cmdConnect.setFocus();
    Settle();
    form.Transcript();
  }

  void GoAwayAndComeBack() {
    BringToFront(other);
    BringToFront(form);
  }

  TestForm form;
  QWidget other;
};

}  // namespace tarnwell::forms

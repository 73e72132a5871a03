#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWindow>
#include <functional>
#include <map>
#include <string>

#include "forms/controls/command_button.h"
#include "forms/controls/frame.h"
#include "forms/controls/option_button.h"
#include "forms/controls/text_box.h"
#include "forms/controls/up_down.h"

inline void PrintTo(const QString& text, std::ostream* stream) { *stream << '"' << text.toStdString() << '"'; }

namespace tarnwell::forms {

inline void Append(std::string& words, const std::string& word) { words += (words.empty() ? "" : " ") + word; }

/// Everything that is pending runs, and what that posts, until a held key counts again.
inline void Settle() {
  for (int pass = 0; pass < 8; ++pass) QCoreApplication::processEvents();
}

inline void Mouse(QTest::MouseAction action, QWidget& control, Qt::MouseButton button = Qt::LeftButton) {
  QWidget* window = control.window();
  QTest::mouseEvent(action, window->windowHandle(), button, {}, control.mapTo(window, control.rect().center()));
  if (action != QTest::MousePress) Settle();
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

/// A form with two groups of options between a button and two text boxes. What is raised is noted in a transcript:
/// "Online" for GotFocus, "RFMute!" for Click.
class TestForm : public Form {
 public:
  TestForm() : Form("frmTest", "Test", Border::kFixedDialog, 9000, 6000) {
    QApplication::setQuitOnLastWindowClosed(false);
    Place(cmdConnect, 0, 0, 1500, 450);
    Place(fraState, 0, 600, 4500, 1500);
    Place(fraUserMute, 0, 2400, 4500, 1500);
    for (OptionButton* left : {&optOnline, &optRFOn}) Place(*left, 150, 600, 1200, 300);
    for (OptionButton* middle : {&optStandby, &optRFMute}) Place(*middle, 1500, 600, 1200, 300);
    Place(optMaint, 2850, 600, 1200, 300);
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

  std::string Focused() const { return focusWidget() != nullptr ? focusWidget()->objectName().toStdString() : ""; }

  /// Plays "click optOnline, Alt+S, leave": verbs, with the name of a control where they need one, and keys.
  void Play(const QString& acts) {
    for (const QString& act : acts.split(QStringLiteral(", "))) {
      const QString word = act.section(QLatin1Char(' '), 0, 0);
      const QString operand = act.section(QLatin1Char(' '), 1);
      const auto verb = verbs.find(word.toStdString());
      if (verb != verbs.end()) {
        verb->second(*findChild<QWidget*>(operand));
      } else if (operand.isEmpty()) {
        if (QKeySequence(word)[0].key() == Qt::Key_unknown) Note("no act: " + word.toStdString());
        Key(QKeySequence(word)[0].key(), QKeySequence(word)[0].keyboardModifiers());
      } else {
        const Qt::Key held = QKeySequence(operand)[0].key();
        QTest::keyPress(windowHandle(), held);
        for (int repeat = 0; repeat < 3; ++repeat) {
          Settle();
          PostRepeats(*focusWidget(), held, 1);
        }
        QTest::keyRelease(windowHandle(), held);
      }
    }
  }

  /// Plays "acts -> outcome; acts -> outcome". An outcome is what the acts raised and, where it is told, "@" the
  /// control with the focus, "[the selected options]" and "=" the text of the box.
  void Expect(const std::string& script) {
    QStringList played;
    for (const QString& row : QString::fromStdString(script).split(QStringLiteral("; "))) {
      const QString acts = row.section(QStringLiteral(" ->"), 0, 0);
      const QString wanted = row.section(QStringLiteral(" ->"), 1);
      Play(acts);
      Settle();
      std::string selected;
      for (const OptionButton* option : findChildren<OptionButton*>()) {
        if (option->Value()) Append(selected, option->objectName().mid(3).toStdString());
      }
      if (wanted.contains(QLatin1Char('@'))) Note('@' + Focused());
      if (wanted.contains(QLatin1Char('['))) Note('[' + selected + ']');
      if (wanted.contains(QLatin1Char('='))) Note('=' + txtGain.Text().toStdString());
      played << (acts + QStringLiteral(" -> ") + QString::fromStdString(Transcript())).trimmed();
    }
    EXPECT_EQ(played.join(QStringLiteral("; ")).toStdString(), script);
  }

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

  QWidget other;  ///< another window of the program
  std::map<std::string, std::function<void(QWidget&)>> verbs = {
      {"press", [](QWidget& control) { Mouse(QTest::MousePress, control); }},
      {"release", [](QWidget& control) { Mouse(QTest::MouseRelease, control); }},
      {"click", [](QWidget& control) { Mouse(QTest::MouseClick, control); }},
      {"double", [](QWidget& control) { Mouse(QTest::MouseDClick, control); }},
      {"right", [](QWidget& control) { Mouse(QTest::MouseClick, control, Qt::RightButton); }},
      {"focus", [](QWidget& control) { control.setFocus(); }},
      {"select", [](QWidget& option) { static_cast<OptionButton&>(option).Select(); }},
      {"enable", [](QWidget& control) { control.setEnabled(true); }},
      {"disable", [](QWidget& control) { control.setEnabled(false); }},
      {"show", [](QWidget& control) { control.show(); }},
      {"hide", [](QWidget& control) { control.hide(); }},
      {"wait", [](QWidget&) { Settle(); }},
      {"leave", [this](QWidget&) { BringToFront(other); }},
      {"return", [this](QWidget&) { BringToFront(*this); }}};

 private:
  std::string m_transcript;
};

/// The test form, shown and active, the focus on its button.
class ControlTest : public testing::Test {
 protected:
  void SetUp() override {
    form.Show();
    BringToFront(form);
    form.Transcript();
  }

  TestForm form;
};

}  // namespace tarnwell::forms

#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <QtTest/QTest>
#include <map>

#include "app/program.h"
#include "support/scripted_port.h"

namespace tarnwell::test {

/// A desktop that shows nothing: message boxes are noted, and closed at once after `OnMessage`.
class FakeDesktop final : public platform::Desktop {
 public:
  bool EndAsked() const override { return platform::EndAsked(); }
  void ShowMessage(const platform::Message& message) override;
  std::optional<QString> ChooseSaveFile(const platform::SaveDialog& dialog) override;
  void Beep() override { ++m_beeps; }
  platform::AlarmSound HeardAs() override { return heard; }
  void SetBusyPointer(bool busy) override { m_busy = busy; }

  /// Runs while a message box is up.
  void OnMessage(std::function<void()> action) { m_onMessage = std::move(action); }

  /// Answers the next file dialog; one without an answer, or with a null one, is cancelled.
  void AnswerSave(const QString& path) { m_saveAnswers.push_back(path); }
  /// The file dialogs that were shown since the last call.
  std::vector<platform::SaveDialog> TakeSaveDialogs() { return std::exchange(m_saveDialogs, {}); }

  /// The texts shown since the last call, "(!)", "(i)" or "(X)" for the icon ahead, details behind a "|".
  QStringList TakeMessages() { return std::exchange(m_messages, {}); }
  int TakeBeeps() { return std::exchange(m_beeps, 0); }
  bool Busy() const { return m_busy; }

  platform::AlarmSound heard = platform::AlarmSound::kSystemBeep;

 private:
  QStringList m_messages;
  std::vector<platform::SaveDialog> m_saveDialogs;
  QStringList m_saveAnswers;
  std::function<void()> m_onMessage;
  int m_beeps = 0;
  bool m_busy = false;
};

/// A device that answers by a table: "S?" gives "S=OT". A command without a row is met with silence.
using ReplyTable = std::map<std::string, std::string>;

ReplyTable AmplifierReplies();   ///< class 3, two modules, platform 2; online, RF on, gain -3.4
ReplyTable ControllerReplies();  ///< 1:2, manual, no priority

/// The whole program on a scripted port, a virtual counter and an empty store. The device is an amplifier unless
/// m_replies are changed. A session runs inside Connect(): what is to happen in it is queued as actions of the yield.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();

  void SaveProperty(const char* key, const char* text);
  QString StoredProperty(const char* key);

  void Start();
  forms::frmMain& Main() { return m_program->MainForm(); }
  link::SSPA_Public& Shared() { return m_program->Shared(); }

  /// The modal form that is up, else the main form.
  forms::Form& Front();
  /// Opens a modal form and runs `act` as soon as it is up. Returns when the form is gone.
  void Open(const std::function<void()>& open, std::function<void()> act);

  /// The control of that object name on the form in front; fails the test and stops it when there is none.
  template <typename Control = QWidget>
  Control& Find(const char* name) {
    auto* control = Front().findChild<Control*>(QString::fromLatin1(name));
    if (control == nullptr) ADD_FAILURE() << "no control " << name;
    return *control;
  }

  /// A mouse click on a control that the operator can reach; Press also waits for what comes of it.
  void ClickOn(const char* name);
  void Press(const char* name) {
    ClickOn(name);
    QCoreApplication::processEvents();
  }

  /// The commands sent since the last Take, and the same with the pauses around them.
  std::string TakeCommands() { return Taken(m_port.Commands()); }
  std::string TakePaces() { return Taken(m_port.Paces()); }

  /// What `act` sends in a session, with the pauses, up to the end of the yield in which it happens.
  std::string PacesOf(const std::function<void()>& act);

  /// How often the form in front is hidden when its watchdog looks for a pass of the poll since its last look.
  int HidesAtWatchdog();

  /// Chooses an entry of the console's menus that is enabled, and stays in what it opens until that ends.
  void Choose(const char* entry);

  /// Presses cmdConnect and stays in the session until it ends; with `polls`, after so many.
  void Connect(int polls = 0) {
    if (polls > 0) DisconnectAfter(polls);
    ClickOn("cmdConnect");
  }
  /// Ends the session after that many polls.
  void DisconnectAfter(int polls);

  /// Notes for each control and menu entry of the form in front: "+" free, "-" greyed, "." hidden. Each is looked at
  /// for itself: a greyed frame would hide what was forgotten in it. `ahead` goes before.
  void NoteStates(const char* ahead = "");
  /// A line for each set of controls that were noted alike, but for those that always were free: how they stood, time
  /// after time, and their names.
  std::string NotedStates();
  /// Names of the options that are selected, sorted, joined by blanks.
  std::string SelectedOptions();
  std::string Title() { return Front().Title().toStdString(); }
  std::string CaptionOf(const char* label) { return Find<forms::Label>(label).Caption().toStdString(); }

  VirtualCounter m_counter;
  VirtualYielder m_yielder{m_counter};
  ScriptedPort m_port{m_counter};
  FakeDesktop m_desktop;
  ReplyTable m_replies = AmplifierReplies();
  std::map<QString, QString> m_states;
  QDateTime m_timeOfDay = QDateTime(QDate(2007, 3, 14), QTime(9, 26, 41));
  std::optional<app::Program> m_program;

 private:
  std::string Taken(std::string sent) {
    m_port.TakeTranscript();
    return sent;
  }
};

}  // namespace tarnwell::test

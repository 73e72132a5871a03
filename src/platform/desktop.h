#pragma once

#include <QFont>
#include <QObject>
#include <QString>
#include <QStringList>
#include <deque>
#include <optional>

#include "platform/alarm_sound.h"
#include "platform/ending.h"

namespace tarnwell::platform {

enum class MessageIcon { kNone, kInformation, kWarning, kCritical };

/// One message box. Both texts are plain text; `details` stands below `text`, smaller.
struct Message {
  QString text;
  MessageIcon icon = MessageIcon::kNone;
  QString details = {};
};

/// A file dialog for saving.
struct SaveDialog {
  QStringList filters;  ///< such as "All Files (*.*)", each with its patterns in brackets
  int filterIndex = 1;  ///< the one that is chosen at first, counted from 1
  QString fileName;     ///< the proposed name, with its folder
};

/// What the program asks of the desktop beside its windows. One door, so that a test can stand in it.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// The program was told to end from outside: blocking work gives up, and no message and no dialog is shown any more.
  virtual bool EndAsked() const { return false; }

  /// Shows a modal message box and returns when the operator has closed it. While another one is up or about to come
  /// it returns at once, and the box comes when the code that shows the other one has let other code run.
  virtual void ShowMessage(const Message& message) = 0;

  /// Shows the file dialog above the program's topmost window. The path that the operator chose, as typed; nothing
  /// where the dialog was cancelled or failed. The file may exist.
  virtual std::optional<QString> ChooseSaveFile(const SaveDialog& dialog) = 0;

  /// Sounds an alarm, once. Returns at once.
  virtual void Beep() = 0;

  /// What Beep() is heard as, as far as it is known by now. Looks meanwhile, for the next call.
  virtual AlarmSound HeardAs() { return AlarmSound::kSystemBeep; }

  /// The busy mouse pointer on or off for the whole program. Not counted: off is off.
  virtual void SetBusyPointer(bool busy) = 0;
};

/// The program's window that the operator can act on: the modal one that is up, else the main form; nothing before that
/// is shown. What opens over it belongs to it, also while another program's window is active: a desktop that places its
/// windows by itself would else put it anywhere.
QWidget* FrontWindow();

/// True while only requests to close are taken, ahead of a message: what would open a window now has to wait, since
/// no input would reach it.
bool OnlyClosesAreTaken();

/// The font of message boxes from now on.
void SetMessageFont(const QFont& font);

/// The real desktop, through the toolkit.
class ToolkitDesktop final : public Desktop {
 public:
  ToolkitDesktop();
  bool EndAsked() const override { return platform::EndAsked(); }
  void ShowMessage(const Message& message) override;
  std::optional<QString> ChooseSaveFile(const SaveDialog& dialog) override;
  void Beep() override { m_sounder.Sound(); }
  AlarmSound HeardAs() override { return m_sounder.HeardAs(); }
  void SetBusyPointer(bool busy) override;

 private:
  void ShowBox(const Message& message);
  void ShowWaiting();

  Sounder m_sounder;
  QObject m_context;  ///< what is posted goes with it
  bool m_showing = false;
  std::deque<Message> m_waiting;  ///< came while another message was up
};

/// The first of `folders` that can be written to, written as the platform does; the last where none can.
QString FirstWritable(const QStringList& folders);

/// The folder that the file dialog proposes: the application's own, else the user's documents, else the user's home.
QString ProposedFolder();

}  // namespace tarnwell::platform

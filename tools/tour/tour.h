#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <vector>

#include "app/program.h"

namespace tarnwell::tour {

/// Takes the operator's part: presses the buttons of a running console and leaves a picture of every stage.
class Tour {
 public:
  Tour(app::Program& program, QDir pictures) : m_program(program), m_pictures(std::move(pictures)) {}

  /// Runs the event loop until the tour is over. 0: every picture was taken.
  int Run();

  /// Ends the tour without success. Safe from any depth of the stack.
  void Fail(const QString& reason);

 private:
  /// A stage: once `ready` holds, its picture is taken if it has a name, and `act` leads to the next one.
  struct Stage {
    bool (Tour::*ready)() const;
    QString (Tour::*picture)() const;
    void (Tour::*act)();
  };
  static const std::vector<Stage> kStages;

  void LookAgain();
  void Look();
  /// False: nothing has been drawn yet.
  bool TakePicture(const QString& name);

  /// The modal form that is up, else the main form.
  forms::Form& Front() const;
  bool IsController() const { return m_program.Shared().SSPAType == link::kRedundancyController; }

  bool IsDisconnected() const;
  bool ShowsOptions() const;
  bool ShowsDevice() const;
  bool ShowsAlarms() const;
  bool ShowsSettings() const;
  bool ShowsSnapshot() const;
  bool IsMaximised() const;

  QString NoPicture() const { return {}; }
  QString StartPicture() const { return QStringLiteral("start"); }
  QString OptionsPicture() const { return QStringLiteral("options"); }
  QString GeneralPicture() const { return QStringLiteral("options-general"); }
  QString DevicePicture() const { return IsController() ? QStringLiteral("controller") : QStringLiteral("amplifier"); }
  QString AlarmsPicture() const {
    return IsController() ? QStringLiteral("alarms-controller") : QStringLiteral("alarms");
  }
  QString StandardPicture() const { return QStringLiteral("settings-standard"); }
  QString AdvancedPicture() const { return QStringLiteral("settings-advanced"); }
  QString FactoryPicture() const { return QStringLiteral("settings-factory"); }
  QString SnapshotPicture() const { return QStringLiteral("snapshot"); }
  QString MaximisedPicture() const { return QStringLiteral("maximised"); }
  QString EndPicture() const { return QStringLiteral("disconnected"); }

  void OpenOptions();
  void ShowGeneralPage();
  void CloseForm();
  void PressConnect();
  void ViewAlarms();
  void Maximise();
  void OpenSettings();
  void ShowAdvancedPage();
  void ShowFactoryPage();
  void OpenSnapshot();
  void RestoreAndDisconnect();
  void Close();

  app::Program& m_program;
  QDir m_pictures;
  QElapsedTimer m_sinceLastStage;
  std::size_t m_stage = 0;
  bool m_wasReady = false;
  bool m_failed = false;
  int m_result = 1;
};

}  // namespace tarnwell::tour

#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QMap>
#include <vector>

#include "app/program.h"

namespace tarnwell::tour {

/// What a tour is to do with the pictures of its stages.
struct Plan {
  QDir folder;
  QMap<QString, QString> files;  ///< the pictures to be taken, with the names of their files; none: all, by their own
  bool check = false;            ///< takes none, but looks whether those in the folder show the forms as they are
};

/// Takes the operator's part: presses the buttons of a running console and leaves a picture of every stage.
class Tour {
 public:
  Tour(app::Program& program, Plan plan) : m_program(program), m_plan(std::move(plan)) {}

  /// Runs the event loop until the tour is over. 0: every picture was taken, or is as it should be.
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
  /// False: the form isn't drawn yet.
  bool TakePicture(const QString& name);
  bool Save(const QImage& picture, const QString& path);
  bool Check(const QImage& picture, const QString& path);

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
  Plan m_plan;
  QImage m_lastLook;
  int m_looks = 0;  ///< at the form of the stage
  QElapsedTimer m_sinceLastStage;
  std::size_t m_stage = 0;
  bool m_wasReady = false;
  bool m_failed = false;
  bool m_different = false;
  int m_result = 1;
};

}  // namespace tarnwell::tour

#include "snapshot/dialog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include "sim/device.h"
#include "support/late_input.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class DialogTest : public ProgramTest {
 protected:
  DialogTest() {
    m_counter.SetReadTakes(VirtualCounter::kRate / 1000);
    m_port.AnswerAlways([this](const std::string& command) {
      if (m_onCommand) m_onCommand(command);
      return m_device->Answer(command);
    });
  }

  void Use(const char* kind) { m_device = sim::MakeDevice({sim::FindKind(kind), 1, "", "", 0, 0}); }

  /// A session in which the menu entry is chosen and `inDialog` runs once the dialog is up.
  void Session(std::function<void()> inDialog) {
    Start();
    m_yielder.OnYieldAfter(5, [this, inDialog] {
      QTimer::singleShot(0, &Main(), [this, inDialog] {
        ASSERT_TRUE(QTest::qWaitFor([this] { return Description().hasFocus(); }));
        inDialog();
      });
      m_port.TakeTranscript();
      Choose("mnuSnapshot");
      EXPECT_EQ(Form(), nullptr);
      EXPECT_TRUE(Main().tmrFlasher.Enabled() && Main().tmrForcePollResume.Enabled());
      EXPECT_FALSE(m_desktop.Busy());
      m_snapshotCommands = TakeCommands();
    });
    Connect(12);
  }

  forms::frmSaveSnapshot* Form() { return dynamic_cast<forms::frmSaveSnapshot*>(QApplication::activeModalWidget()); }
  forms::TextBox& Description() { return Form()->txtSnapShotID; }
  void Press(int key) { QTest::keyClick(&Description(), static_cast<Qt::Key>(key)); }
  QString Path() const { return m_folder.filePath(QStringLiteral("hub B.txt")); }

  QTemporaryDir m_folder;
  std::unique_ptr<sim::Device> m_device;
  std::function<void(const std::string& command)> m_onCommand;
  std::string m_snapshotCommands;
};

TEST_F(DialogTest, FromTheMenuToTheFileAndBack) {
  Use("controller");
  m_desktop.AnswerSave(QString());
  m_desktop.AnswerSave(Path());
  Session([this] {
    EXPECT_FALSE(Main().tmrFlasher.Enabled() || Main().tmrForcePollResume.Enabled());
    QTest::keyClicks(&Description(), QStringLiteral("/a\\:*?\"<>|.b"));
    Press(Qt::Key_Return);
    EXPECT_EQ(m_desktop.TakeMessages(),
              QStringList(QStringLiteral("(!) Must enter at least 3 characters for File Description")));
    QTest::keyClicks(&Description(), QStringLiteral("c"));
    Press(Qt::Key_Return);  // cancelled
    ASSERT_NE(Form(), nullptr);
    EXPECT_EQ(m_port.Commands(), "");
    Description().insert(QStringLiteral("/\\.") + QString(60, QLatin1Char('x')));
    QTest::mouseClick(&Form()->cmdOk, Qt::LeftButton);
    EXPECT_EQ(Form(), nullptr);
  });
  EXPECT_EQ(m_snapshotCommands, "CT? U? S? A? CV? CM? CP? O? PA? PB?");
  EXPECT_EQ(m_port.Commands().substr(0, 9), "CP? A? S?") << "the poll goes on";
  QFile file(Path());
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray written = file.readAll();
  EXPECT_EQ(written.size(), 16 * 82);
  EXPECT_TRUE(written.contains("[file description] abc/\\." + QByteArray(44, 'x') + QByteArray(10, ' '))) << "fifty";
  const QString folder = platform::ProposedFolder() + QDir::separator();
  QStringList dialogs;
  for (const platform::SaveDialog& dialog : m_desktop.TakeSaveDialogs()) {
    dialogs += dialog.fileName + QLatin1Char('|') + dialog.filters.value(dialog.filterIndex - 1);
  }
  EXPECT_EQ(dialogs, QStringList({folder + QStringLiteral("abc|Text Files(*.txt)"),
                                  folder + QStringLiteral("abc/\\.xxxxxxxxxxxxxx|Text Files(*.txt)")}));
}

TEST_F(DialogTest, CancelWritesNothingAndAFailedFileClosesTheDialogToo) {
  Use("controller");
  Session([this] { QTest::mouseClick(&Form()->cmdCancel, Qt::LeftButton); });
  EXPECT_EQ(m_snapshotCommands, "");

  m_desktop.AnswerSave(m_folder.path());
  m_desktop.OnMessage([this] {
    EXPECT_FALSE(Form()->cmdOk.isEnabled() || Form()->cmdCancel.isEnabled());
    EXPECT_TRUE(m_desktop.Busy());
  });
  Session([this] {
    Description().SetText(QStringLiteral("abc"));
    Press(Qt::Key_Return);
  });
  EXPECT_TRUE(m_desktop.TakeMessages().value(0).startsWith(QLatin1String("(!) Error with Save 7316 Snapshot | ")));
}

/// Done when somebody handles events, as what comes from the window system.
void Post(const std::function<void()>& act) {
  QMetaObject::invokeMethod(QCoreApplication::instance(), act, Qt::QueuedConnection);
}

TEST_F(DialogTest, WhatTheOperatorDidDuringTheWritingIsLost) {
  Use("c240");
  m_desktop.AnswerSave(Path());
  m_desktop.AnswerSave(Path());
  int posted = 0;
  m_onCommand = [&](const std::string& command) {
    if (Form() == nullptr) return;
    EXPECT_FALSE(Form()->cmdOk.isEnabled() || Form()->cmdCancel.isEnabled()) << command;
    EXPECT_TRUE(m_desktop.Busy());
    if (command != "V5?" && command != "P40?") return;
    ++posted;
    for (QWidget* control : std::initializer_list<QWidget*>{&Form()->cmdOk, &Form()->cmdCancel, &Main().optStandby,
                                                            &Main().optRFMute, &Main().cmdConnect}) {
      Post([control] { DeliverClick(*control, 0); });
    }
    for (forms::Form* form : std::initializer_list<forms::Form*>{Form(), &Main()}) {
      Post([form] { DeliverKey(*form, Qt::Key_Return, 0); });
    }
  };
  Session([this] {
    Description().SetText(QStringLiteral("abc"));
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(posted, 2);
  EXPECT_EQ(m_desktop.TakeSaveDialogs().size(), 1U);
  EXPECT_EQ(std::count(m_snapshotCommands.begin(), m_snapshotCommands.end(), '?'), 101);
  EXPECT_EQ(m_port.Commands().find('='), std::string::npos) << m_port.Commands();
  EXPECT_GT(m_port.Commands().size(), 20U) << "the session goes on";
}

}  // namespace
}  // namespace tarnwell::test

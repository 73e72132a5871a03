#include <signal.h>

#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>

#include "forms/frm_save_snapshot.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

/// The program is told to end by the system.
class EndingTest : public ProgramTest {
 protected:
  EndingTest() {
    QObject::connect(&m_ending, &platform::Ending::Asked, &m_ending, [this] { m_program->End(); });
  }

  /// A session in which `act` is done, and which ends only because the program does.
  void InSession(std::function<void()> act) {
    Start();
    m_yielder.OnYieldAfter(13, std::move(act));
    Connect();
    m_port.SetPortOpen(false);
  }

  platform::Ending m_ending;
};

TEST_F(EndingTest, EachSignalEndsWhateverIsOpen) {
  const std::pair<const char*, std::function<void()>> phases[] = {
      {"alarms", [this] { ClickOn("cmdViewAlarms"); }},
      {"settings", [this] { Q_EMIT Main().mnuSSPASettings.Click(); }},
      {"options", [this] { Q_EMIT Main().mnuSWOpt.Click(); }},
      {"snapshot", [this] { Q_EMIT Main().mnuSnapshot.Click(); }},
      {"message", [] { QMessageBox().exec(); }},
      {"poll", [] {}}};
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    for (const auto& [phase, open] : phases) {
      InSession([signal, &open = open] {
        QTimer::singleShot(0, [signal] { raise(signal); });
        open();
      });
      EXPECT_TRUE(Main().Unloaded()) << phase << ' ' << signal;
    }
  }
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
}

TEST(Ending, LeavesAnIgnoredSignalIgnored) {
  std::optional<platform::Ending> ending;
  const auto disposition = [](int number) {
    struct sigaction present = {};
    sigaction(number, nullptr, &present);
    return present.sa_handler;
  };
  const auto former = signal(SIGHUP, SIG_IGN);
  signal(SIGTERM, SIG_DFL);
  ending.emplace();
  EXPECT_EQ(disposition(SIGHUP), SIG_IGN);
  EXPECT_NE(disposition(SIGTERM), SIG_DFL);
  ending.reset();
  EXPECT_EQ(disposition(SIGHUP), SIG_IGN);
  EXPECT_EQ(disposition(SIGTERM), SIG_DFL);
  signal(SIGHUP, former);
}

TEST_F(EndingTest, TheEndOfTheDesktopSessionEndsItAndTheRequestToSaveDoesNot) {
  bool ended = true;
  InSession([&] {
    const QMetaObject& meta = QGuiApplication::staticMetaObject;
    void* arguments[] = {nullptr, nullptr};  // nobody can make a session manager
    for (const char* request : {"commitDataRequest(QSessionManager&)", "saveStateRequest(QSessionManager&)"}) {
      QMetaObject::activate(qApp, &meta, meta.indexOfSignal(request) - meta.methodOffset(), arguments);
    }
    QCoreApplication::processEvents();
    ended = Main().Unloaded();
    QTimer::singleShot(0, [] { QCoreApplication::postEvent(qApp, new QEvent(QEvent::Quit)); });
    Q_EMIT Main().mnuSSPASettings.Click();
  });
  EXPECT_FALSE(ended) << "another program may cancel it still";
  EXPECT_TRUE(Main().Unloaded() && platform::EndAsked());
  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  QApplication::exec();  // else no event loop runs any more
}

TEST_F(EndingTest, ASnapshotUnderWayEndsWithItsErrorMark) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("rack.txt"));
  int left = 8;
  InSession([&] {
    m_desktop.AnswerSave(path);
    m_port.AnswerAlways([&](const std::string&) -> std::optional<std::string> {
      if (--left == 0) raise(SIGTERM);
      return std::nullopt;
    });
    Open([this] { Q_EMIT Main().mnuSnapshot.Click(); },
         [this] {
           auto& form = dynamic_cast<forms::frmSaveSnapshot&>(Front());
           form.txtSnapShotID.SetText(QStringLiteral("rack"));
           form.cmdOk.click();
         });
  });
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().trimmed().split('\n').back().startsWith("#ERROR"));
  EXPECT_GT(left, -3) << "no question more than the one on the line, with its tries";
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  EXPECT_TRUE(Main().Unloaded());
}

}  // namespace
}  // namespace tarnwell::test

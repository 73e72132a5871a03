#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>
#include <deque>

#include "platform/qt_serial_port.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

/// The whole program on the real port, counter and event loop, against the simulator over a pseudo-terminal.
class EndToEndTest : public testing::Test {
 protected:
  EndToEndTest() {
    QDir().mkpath(QFileInfo(m_link).path());
    m_script.setInterval(10);
    QObject::connect(&m_script, &QTimer::timeout, [this] { RunScript(); });
  }

  ~EndToEndTest() override {
    Tell("quit");
    if (!m_simulator.waitForFinished(5000)) m_simulator.kill();
  }

  void StartSimulator(const QStringList& options) {
    m_simulator.start(QStringLiteral(VOREL_SIM), QStringList{QStringLiteral("--link"), m_link} + options);
    ASSERT_TRUE(m_simulator.waitForStarted());
    QElapsedTimer waited;
    waited.start();
    while (!QFile::exists(m_link) && waited.elapsed() < 5000) m_simulator.waitForReadyRead(10);
    ASSERT_TRUE(QFile::exists(m_link)) << "the simulator made no port";
  }

  /// A line to the simulator's standard input.
  void Tell(const char* command) {
    m_simulator.write(QByteArray(command) + '\n');
    m_simulator.waitForBytesWritten(1000);
  }

  /// Next in the script: once `ready` holds, `act` is done.
  void When(std::function<bool()> ready, std::function<void()> act) {
    m_steps.push_back({std::move(ready), std::move(act)});
  }

  void RunSession() {
    ASSERT_TRUE(m_program.Start());
    m_sinceStep.start();
    m_script.start();
    QTest::mouseClick(&Main().cmdConnect, Qt::LeftButton);
    m_script.stop();
    EXPECT_TRUE(m_steps.empty()) << m_steps.size() << " steps of the script were not reached";
  }

  forms::frmMain& Main() { return m_program.MainForm(); }
  bool TitleHolds(const char* text) { return Main().Title().contains(QLatin1String(text)); }
  QString Level() { return Main().lblRFLevel.Caption(); }

  QProcess m_simulator;
  platform::MonotonicCounter m_counter;
  platform::EventLoopYielder m_yielder{m_counter};
  platform::QtSerialPort m_port;
  FakeDesktop m_desktop;
  app::Program m_program{{m_counter, m_yielder, m_port, m_desktop}};

 private:
  struct Step {
    std::function<bool()> ready;
    std::function<void()> act;
  };

  void RunScript() {
    constexpr qint64 kPatience = 30'000;
    if (m_sinceStep.elapsed() > kPatience) {
      ADD_FAILURE() << "the title is still " << Main().Title().toStdString();
      m_steps.clear();
      Main().close();
      return;
    }
    if (m_steps.empty() || !m_steps.front().ready()) return;
    const Step step = std::move(m_steps.front());
    m_steps.pop_front();
    m_sinceStep.restart();
    step.act();
  }

  QString m_link = qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/tarnwell/ports/com1");
  QTimer m_script;
  QElapsedTimer m_sinceStep;
  std::deque<Step> m_steps;
};

TEST_F(EndToEndTest, ASessionLivesThroughSilenceAndAPulledAdapter) {
  StartSimulator({QStringLiteral("--kind"), QStringLiteral("c240")});
  When([this] { return TitleHolds("Connected to 240W") && Level().endsWith(QStringLiteral(" dBm")); },
       [this] { Tell("silence"); });
  When([this] { return TitleHolds("Lost Connection to 240W"); },
       [this] {
         EXPECT_FALSE(Main().optOnline.isEnabled());
         Tell("talk");
       });
  When([this] { return TitleHolds("Connected to 240W"); }, [this] { Tell("pull"); });
  When([this] { return TitleHolds("Lost Connection to 240W"); }, [this] { Tell("plug"); });
  When([this] { return TitleHolds("Connected to 240W"); },
       [this] {
         EXPECT_TRUE(Main().optOnline.isEnabled());
         QTest::mouseClick(&Main().cmdConnect, Qt::LeftButton);
       });
  RunSession();
  EXPECT_FALSE(m_port.PortOpen());
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
}

}  // namespace
}  // namespace tarnwell::test

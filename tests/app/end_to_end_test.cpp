#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include "platform/qt_serial_port.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

// The whole program on the real port, counter and event loop, against the simulator over a pseudo-terminal.
TEST(EndToEnd, ASessionLivesThroughSilenceAndAPulledAdapter) {
  constexpr int kPatience = 30'000;  // ms
  const QString link = qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/tarnwell/ports/com1");
  ASSERT_TRUE(QDir().mkpath(QFileInfo(link).path()));
  QProcess simulator;
  simulator.start(QStringLiteral(VOREL_SIM),
                  {QStringLiteral("--link"), link, QStringLiteral("--kind"), QStringLiteral("c240")});
  ASSERT_TRUE(simulator.waitForStarted() && simulator.waitForReadyRead(kPatience) && QFile::exists(link));

  platform::MonotonicCounter counter;
  platform::EventLoopYielder yielder{counter};
  platform::QtSerialPort port;
  FakeDesktop desktop;
  app::Program program{{counter, yielder, port, desktop}};
  ASSERT_TRUE(program.Start());
  forms::frmMain& main = program.MainForm();
  const struct {
    const char* title;
    const char* tell;  ///< to the simulator when the title says that; nothing: disconnect
  } steps[] = {{"Connected to 240W", "silence\n"},
               {"Lost Connection to 240W", "talk\n"},
               {"Connected to 240W", "pull\n"},
               {"Lost Connection to 240W", "plug\n"},
               {"Connected to 240W", nullptr}};
  const auto* step = std::begin(steps);
  QElapsedTimer waited;
  QTimer script;
  script.callOnTimeout([&] {
    if (waited.elapsed() > kPatience) main.close();
    const bool ready = main.Title().contains(QLatin1String(step->title)) && !main.lblRFLevel.Caption().isEmpty();
    if (!ready || main.Unloaded()) return;
    EXPECT_EQ(main.optOnline.isEnabled(), step->title[0] == 'C') << step->title;
    waited.restart();
    step->tell != nullptr ? static_cast<void>(simulator.write(step->tell))
                          : QTest::mouseClick(&main.cmdConnect, Qt::LeftButton);
    if (step + 1 != std::end(steps)) ++step;
  });
  waited.start();
  script.start(10);
  QTest::mouseClick(&main.cmdConnect, Qt::LeftButton);
  script.stop();
  EXPECT_FALSE(main.Unloaded()) << "waited in vain for " << step->title;
  EXPECT_FALSE(port.PortOpen());
  EXPECT_EQ(desktop.TakeMessages(), QStringList());
  simulator.terminate();
  EXPECT_TRUE(simulator.waitForFinished(kPatience) && simulator.exitCode() == 0);
  const QByteArray said = simulator.readAllStandardOutput();
  EXPECT_TRUE(said.contains("ok silence\nok talk\nok pull\n") && said.endsWith("ok plug\n")) << said.toStdString();
  EXPECT_FALSE(QFileInfo(link).isSymLink()) << "the simulator leaves no link";
}

}  // namespace
}  // namespace tarnwell::test

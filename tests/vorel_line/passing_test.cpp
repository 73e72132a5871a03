#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <QFile>
#include <QProcess>
#include <QSerialPort>
#include <QTemporaryDir>

#include "support/pty.h"
#include "support/scripted_port.h"
#include "tools/vorel-line/commands.h"
#include "tools/vorel-line/device.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/record_reader.h"

namespace tarnwell::test {
namespace {

using vorel_line::Kind;
using vorel_line::Record;

// The program between a console's end, opened as the console opens it, and a device's.
class Passing : public testing::Test {
 protected:
  ~Passing() override {
    if (m_console >= 0) close(m_console);
    m_recorder.terminate();
    m_recorder.waitForFinished();
  }

  QString Path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

  static QStringList Words(const QString& device, const QString& link, const QString& file) {
    return {QStringLiteral("record"), device, QStringLiteral("--link"), link, QStringLiteral("-o"), file};
  }

  bool Start(const QString& device, const QStringList& more = {}) {
    m_recorder.start(QStringLiteral(VOREL_LINE), Words(device, Path("line"), Path("a.rec")) + more);
    if (m_console >= 0) close(m_console);
    return m_recorder.waitForReadyRead() &&
           (m_console = open(qPrintable(Path("line")), O_RDWR | O_NOCTTY | O_NONBLOCK)) >= 0;
  }

  std::string Heard(std::size_t count) const { return ReadLine(m_console, count, 3000); }

  void AwaitSaid(const char* text) {
    m_recorder.setReadChannel(QProcess::StandardError);
    for (QByteArray said; !said.contains(text); said += m_recorder.readAllStandardError())
      ASSERT_TRUE(m_recorder.bytesAvailable() > 0 || m_recorder.waitForReadyRead()) << said.constData();
  }

  void Say(const std::string& bytes) { EXPECT_EQ(write(m_console, bytes.data(), bytes.size()), ssize_t(bytes.size())); }

  /// "> bytes" and so on, of the recording.
  std::string Recorded() const {
    std::string text;
    vorel_line::ReadFiles({Path("a.rec").toStdString()}, false, [&](const Record& record) {
      text += (record.kind == Kind::kConsole ? ">" : record.kind == Kind::kDevice ? "<" : "-") + record.bytes + "\n";
    });
    return text;
  }

  QTemporaryDir m_folder;
  QProcess m_recorder;
  int m_console = -1;
};

TEST(CommandLine, TakesTheConsolesFormatAndTheOldOneAndPrintsNamesHarmlessly) {
  const std::pair<const char*, const char*> formats[] = {{"e,7,1", "e,7,1"}, {"8,n,2", "n,8,2"}, {"n,8,3", ""},
                                                         {"7,7,1", ""},      {"e,n,1", ""},      {"e,7,12", ""}};
  for (const auto& [text, format] : formats) EXPECT_EQ(vorel_line::DataFormatOf(text), format) << text;
  testing::internal::CaptureStderr();
  vorel_line::Complain("a\x1b[2J\n\x7f\xC2\x9B b\xC3\xA4\xC2\xB0\\.rec");
  EXPECT_EQ(vorel_line::Run({"events", "--csv", "a", "--csv"}), vorel_line::kExitUnusable);
  EXPECT_EQ(vorel_line::Run({"record", "a", "--link", "b", "-o", "-"}), vorel_line::kExitUnusable);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "vorel-line: a\\x1B[2J\\x0A\\x7F\\xC2\\x9B b\xC3\xA4\xC2\xB0\\.rec\nvorel-line: --csv is given twice\n"
            "vorel-line --help tells how it is used.\nvorel-line: record: -o: - is no file; one of that name is ./-\n"
            "vorel-line --help tells how it is used.\n");
}

TEST_F(Passing, BytesFormatAndTwoConsolesAndAKill) {
  Pty device;
  ASSERT_TRUE(Start(QString::fromStdString(device.Path())));
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  Say(all);
  EXPECT_EQ(device.Read(256), all);
  device.Write(all);
  EXPECT_EQ(Heard(256), all);
  // A console that dies leaves its claim on the line; any speed is followed.
  ioctl(m_console, TIOCEXCL);
  Say("{B}");
  EXPECT_EQ(device.Read(3), "{B}");
  int claimed = -1;
  for (int i = 0; i < 3000 && (ioctl(m_console, TIOCGEXCL, &claimed), claimed != 0); ++i) usleep(1000);
  EXPECT_EQ(claimed, 0);
  QSerialPort console(Path("line"));
  ASSERT_TRUE(console.open(QIODevice::ReadWrite) && console.setBaudRate(14400) &&
              console.setStopBits(QSerialPort::TwoStop));
  ASSERT_TRUE(console.write("{A}") == 3 && console.flush());
  EXPECT_EQ(device.Read(3), "{A}");
  EXPECT_EQ(vorel_line::FormatText(*vorel_line::FormatOf(device.Descriptor())), "14400,n,8,2");
  for (int i = 0; i < 5000 && Recorded().find(">{A}\n") == std::string::npos; ++i) usleep(1000);
  m_recorder.kill();
  m_recorder.waitForFinished();
  const std::size_t brace = all.find('}') + 1;
  EXPECT_EQ(Recorded(), "-recording started\n-format 9600,n,8,1\n>" + all.substr(0, brace) + "\n>" + all.substr(brace) +
                            "\n<" + all.substr(0, brace) + "\n<" + all.substr(brace) +
                            "\n>{B}\n-format 14400,n,8,2\n>{A}\n");
}

TEST_F(Passing, ADeviceThatComesLateOrIsPulledIsTaken) {
  QProcess simulator;
  const QString device = Path("new/folder/device");
  ASSERT_TRUE(Start(device, {QStringLiteral("--wait")}));
  simulator.start(QStringLiteral(VOREL_SIM), {QStringLiteral("--link"), device});
  ASSERT_TRUE(simulator.waitForReadyRead());
  const std::string ask = Framed("U?", 1), answer = Framed("U=A", 1);
  AwaitSaid("is back");
  Say(ask);
  EXPECT_EQ(Heard(answer.size()), answer);
  const auto tell = [&](const char* command) {
    return simulator.write(command) > 0 && simulator.waitForBytesWritten();
  };
  ASSERT_TRUE(tell("pull\n"));
  AwaitSaid("gone");
  Say(ask);
  ASSERT_TRUE(tell("plug\n"));
  AwaitSaid("back");
  Say(ask);
  EXPECT_EQ(Heard(answer.size()), answer);
  m_recorder.terminate();
  EXPECT_TRUE(m_recorder.waitForFinished() && m_recorder.exitCode() == 0);
  const std::string back = "-device back\n-format 9600,n,8,1\n>" + ask + "\n<" + answer + "\n";
  EXPECT_EQ(Recorded(),
            "-recording started\n-device gone\n" + back + "-device gone\n>" + ask + "\n" + back + "-recording ended\n");
  simulator.terminate();
  EXPECT_TRUE(simulator.waitForFinished() && simulator.readAllStandardOutput().contains("ok pull\n"));
  EXPECT_FALSE(QFileInfo(device).isSymLink()) << "the simulator leaves no link";
}

TEST_F(Passing, ALinkIsPutBackAndOneInUseAndAPipeAreRefused) {
  Pty device, other;
  const auto leadsTo = [this] { return QFile::symLinkTarget(Path("line")); };
  const auto refused = [this, &device](const QString& link, const QString& file) {
    QProcess recorder;
    recorder.start(QStringLiteral(VOREL_LINE), Words(QString::fromStdString(device.Path()), link, file));
    return recorder.waitForFinished() && recorder.exitCode() == 2;
  };
  ASSERT_TRUE(QFile::link(QStringLiteral("/dev/null"), Path("line")));
  ASSERT_EQ(mkfifo(qPrintable(Path("pipe")), 0600), 0);
  EXPECT_TRUE(refused(Path("line"), Path("pipe")));
  ASSERT_TRUE(Start(QString::fromStdString(device.Path())));
  EXPECT_TRUE(refused(Path("other"), Path("a.rec"))) << "two recorders of one file";
  const QString own = leadsTo();
  EXPECT_TRUE(refused(Path("line"), Path("b.rec"))) << "two recorders of one link";
  EXPECT_FALSE(QFile::exists(Path("b.rec")));
  EXPECT_EQ(leadsTo(), own);
  m_recorder.terminate();
  EXPECT_TRUE(m_recorder.waitForFinished());
  EXPECT_EQ(leadsTo(), QStringLiteral("/dev/null"));
  // A killed one's link is taken, also where another terminal has its number by now.
  ASSERT_TRUE(QFile::remove(Path("line")) && QFile::link(QString::fromStdString(other.Path()), Path("line")));
  EXPECT_TRUE(Start(QString::fromStdString(device.Path())));
}

}  // namespace
}  // namespace tarnwell::test

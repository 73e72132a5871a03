#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 10'000;  // ms
const QString kLink = QStringLiteral("line");

/// The program itself, told by what it prints; nothing is waited for by the clock.
class Simulator : public testing::Test {
 protected:
  void Start(const QStringList& options) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral(VOREL_SIM),
                    QStringList{QStringLiteral("--link"), m_folder.filePath(kLink)} + options);
    ASSERT_TRUE(m_process.waitForStarted(kPatience));
  }

  std::string NextLine() {
    while (!m_process.canReadLine()) {
      if (!m_process.waitForReadyRead(kPatience)) return "(nothing)";
    }
    return m_process.readLine().trimmed().toStdString();
  }

  int ExitCode() {
    EXPECT_TRUE(m_process.waitForFinished(kPatience) && m_process.exitStatus() == QProcess::NormalExit);
    return m_process.exitCode();
  }

  /// What a console that opens the link, asks once and closes it gets.
  std::string AskOnTheLine(std::string_view request, std::size_t replyLength) {
    const int line = ::open(m_link.c_str(), O_RDWR | O_NOCTTY);
    if (::write(line, request.data(), request.size()) < 0) return "(no line)";
    std::string reply(replyLength, '?');
    pollfd polled{line, POLLIN, 0};
    for (std::size_t had = 0; had<replyLength&& ::poll(&polled, 1, kPatience)> 0;) {
      const ssize_t got = ::read(line, &reply[had], replyLength - had);
      if (got <= 0) break;
      had += static_cast<std::size_t>(got);
    }
    ::close(line);
    return reply;
  }

  QTemporaryDir m_folder;
  std::string m_link = m_folder.filePath(kLink).toStdString();
  QProcess m_process;
};

TEST_F(Simulator, OutlivesPullingAndItsInputAndLeavesNoLink) {
  fs::create_symlink("nowhere", m_link);  // as a run that was killed leaves it
  Start({QStringLiteral("--seed"), QStringLiteral("0")});
  std::string path = NextLine();
  EXPECT_EQ(fs::read_symlink(m_link), path);
  EXPECT_EQ(NextLine(), "* address 1: 60W C-BAND, 0264C-01 V6.2, status OTQCR, alarms");
  EXPECT_EQ(AskOnTheLine("{AS?0}", 11), "{AS=OTQCR;}");

  m_process.write("pull\nexplode\n");
  EXPECT_EQ(NextLine(), "unknown command explode; help lists them");
  EXPECT_FALSE(fs::is_symlink(m_link));
  m_process.write("plug\n");
  path = NextLine();
  EXPECT_EQ(fs::read_symlink(m_link), path);

  m_process.closeWriteChannel();
  EXPECT_EQ(AskOnTheLine("{AU?6}", 7), "{AU=A4}");
  m_process.terminate();
  EXPECT_EQ(ExitCode(), 0);
  EXPECT_FALSE(fs::is_symlink(m_link));
}

TEST_F(Simulator, RefusesAtOnceAndReplacesNoFile) {
  Start({QStringLiteral("--kind"), QStringLiteral("c61")});
  EXPECT_EQ(NextLine(), "vorel-sim: --kind: not usable: c61");
  EXPECT_EQ(ExitCode(), 2);

  std::ofstream(m_link) << "precious";
  Start({});
  EXPECT_NE(NextLine().find(m_link), std::string::npos);
  EXPECT_EQ(ExitCode(), 1);
  EXPECT_TRUE(fs::is_regular_file(m_link));
}

}  // namespace
}  // namespace tarnwell::test

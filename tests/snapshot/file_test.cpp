#include <sys/resource.h>

#include <QDir>
#include <csignal>

#include "writer_test.h"

namespace tarnwell::test {
namespace {

constexpr std::size_t kLine = 82;
const std::string kMark = "#ERROR: FILE MAY BE INCOMPLETE\r\n";

/// No file of this process grows beyond a size while it lives, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t size) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit full = {size, m_before.rlim_max};
    m_handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit m_before{};
  void (*m_handler)(int);
};

class FileTest : public WriterTest {
 protected:
  /// The one message, with the icon ahead and without its details; the details must say something.
  std::string Message() {
    const QStringList messages = m_desktop.TakeMessages();
    EXPECT_EQ(messages.size(), 1);
    const QStringList parts = messages.value(0).split(QStringLiteral(" | "));
    EXPECT_GT(parts.value(1).size(), 10);
    return parts.value(0).toStdString();
  }
};

TEST_F(FileTest, AFileThatCannotBeCreatedIsOnlyToldOf) {
  const QString folder = m_folder.path();
  for (const auto& [kind, message] : {std::pair{"c240", "(!) Error with Save Snapshot"},
                                      std::pair{"controller", "(!) Error with Save 7316 Snapshot"}}) {
    Use(kind);
    for (const QString& path : {folder, folder + QStringLiteral("/no/folder"), QString()}) {
      WriteTo(path);
      EXPECT_EQ(Message(), message) << path.toStdString();
      EXPECT_FALSE(m_complete);
      EXPECT_EQ(m_port.Commands(), "") << "nothing is asked for no file";
    }
  }
  EXPECT_TRUE(QDir(folder).isEmpty());
}

TEST_F(FileTest, AFullDiskShowsAtTheLineThatFoundItFull) {
  Use("c240");
  const std::string whole = Write();
  for (const std::size_t size : {std::size_t{0}, kLine, 12 * kLine + 40, 12 * kLine + 20}) {
    {
      const FullDisk full(size);
      std::string expected = whole.substr(0, size / kLine * kLine);
      expected += kMark.substr(0, size - expected.size());
      EXPECT_EQ(Write(), expected) << size;
    }
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot");
    EXPECT_FALSE(m_complete);
  }
  EXPECT_EQ(m_port.Commands(), "CT? U? TX? S? VR?") << "and nothing more is asked";
}

TEST_F(FileTest, WhatNoFileMayHoldEndsIt) {
  Use("c240");
  const std::string whole = Write();
  for (const auto& [command, reply, lines] :
       {std::tuple{"P05?", "P05=abc", 46}, std::tuple{"P05?", "P05=", 46}, std::tuple{"P05?", "P05=32768", 46},
        std::tuple{"P05?", "P05=nan", 46}, std::tuple{"U?", "U=", 4}}) {
    m_replies = {{command, reply}};
    // the message is up before the file's last line is written
    m_desktop.OnMessage([&] { EXPECT_EQ(QFile(Path()).size(), static_cast<qint64>(kLine) * lines); });
    EXPECT_EQ(Write(), whole.substr(0, kLine * static_cast<std::size_t>(lines)) + kMark) << reply;
    EXPECT_EQ(Message(), "(!) Error with Save Snapshot");
    EXPECT_FALSE(m_complete);
  }
  m_desktop.OnMessage({});
  Use("controller");
  m_replies = {{"U?", "U="}};
  EXPECT_EQ(Write().size(), 4 * kLine + kMark.size());
  EXPECT_EQ(Message(), "(!) Error with Save 7316 Snapshot");
}

TEST_F(FileTest, AFileThatWasRemovedMeanwhileIsTold) {
  Use("controller");
  m_port.Expect("CT?").Answer("CT=7316 RCP").Do([this] { QFile::remove(Path()); });
  Write();
  EXPECT_FALSE(m_complete);
  EXPECT_EQ(Message(), "(!) Error with Save 7316 Snapshot");
}

}  // namespace
}  // namespace tarnwell::test

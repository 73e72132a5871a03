#include "platform/qt_serial_port.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "support/pty.h"
#include "tests/platform/clocks.h"

namespace tarnwell::platform {
namespace {

using namespace test;

constexpr int kPort = 200;

class QtSerialPortTest : public testing::Test {
 protected:
  ~QtSerialPortTest() override { QFile::remove(m_link); }

  /// Makes the port number stand for `device`, as an operator's link does.
  void LinkPort(const std::string& device) {
    QDir().mkpath(m_folder);
    QFile::remove(m_link);
    ASSERT_TRUE(QFile::link(QString::fromStdString(device), m_link));
  }

  void OpenLine() {
    m_line.emplace();
    LinkPort(m_line->Path());
    ASSERT_TRUE(m_port.SetCommPort(kPort) && m_port.SetPortOpen(true)) << m_port.OpenFailure();
  }

  /// A request goes out whole and a reply comes in, with no event loop.
  void ExpectExchange(std::string_view request = "{AS?0}", std::string_view reply = "{AS=OTU}") {
    m_port.Output(request);
    EXPECT_EQ(m_line->Read(request.size()), request);
    m_line->Write(reply);
    std::string bytes;
    const std::int64_t deadline = CountAfter(1000);
    while (bytes.size() < reply.size() && CountAfter(0) < deadline) {
      if (m_port.InBufferCount() > 0) bytes += static_cast<char>(m_port.Input());
    }
    EXPECT_EQ(bytes, reply);
  }

  void ExpectOnTheLine(speed_t speed, bool twoStopBits) {
    const termios format = m_line->Format();
    EXPECT_EQ(cfgetospeed(&format), speed);
    EXPECT_EQ((format.c_cflag & CSTOPB) != 0, twoStopBits);
    ExpectExchange();
  }

  MonotonicCounter m_counter;
  EventLoopYielder m_yielder{m_counter};
  QString m_folder =
      QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/tarnwell/ports");
  QString m_link = m_folder + QStringLiteral("/com%1").arg(kPort);
  std::optional<Pty> m_line;
  QtSerialPort m_port;
};

TEST_F(QtSerialPortTest, TakesOnlyWholeKnownFormatsAndWhatFitsItsState) {
  EXPECT_EQ(m_port.Settings(), "9600,n,8,1");
  for (const char* taken : {"300,e,7,2", "1200,O,8,1", "115200,N,8,2", "2400,m,5,1", "9600,S,6,1"}) {
    EXPECT_TRUE(m_port.SetSettings(taken)) << taken;
  }
  for (const char* refused : {"", "9600,n,8", "9600,n,8,1,", "9600,n,8,1,1", "9601,n,8,1", "09600,n,8,1", "9600,x,8,1",
                              "9600,ne,8,1", "9600,,8,1", "9600,n,9,1", "9600,n,8,1.5", " 9600,n,8,1"}) {
    EXPECT_FALSE(m_port.SetSettings(refused)) << refused;
  }
  EXPECT_EQ(m_port.Settings(), "9600,s,6,1");
  for (const int number : {-1, 0, 257}) EXPECT_FALSE(m_port.SetCommPort(number)) << number;
  for (const int handshaking : {-1, 1, 3}) EXPECT_FALSE(m_port.SetHandshaking(handshaking)) << handshaking;
  ASSERT_TRUE(m_port.SetSettings("9600,n,8,1") && !m_port.SetInputMode(1)) << "a closed port has no mode";
  OpenLine();
  EXPECT_TRUE(!m_port.SetCommPort(2) && m_port.CommPort() == kPort);
  EXPECT_TRUE(m_port.SetInputMode(1) && !m_port.SetInputMode(0));
  EXPECT_TRUE(m_port.SetPortOpen(false) && m_port.SetCommPort(2));
}

TEST_F(QtSerialPortTest, MovesBytesWithoutAnEventLoop) {
  OpenLine();
  // No byte is anybody's: neither line ends, nor the terminal's own keys, nor codes above 127; and none is echoed.
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  const double start = Milliseconds();
  ExpectExchange(everyByte, everyByte);
  EXPECT_LT(Milliseconds() - start, 200) << "a look that finds a byte doesn't wait";

  m_line->Write("stale");
  EXPECT_GT(m_port.InBufferCount(), 0);
  m_port.DiscardInput();
  EXPECT_EQ(m_port.InBufferCount(), 0);
  m_port.Output(std::string(1'000'000, '~'));
  EXPECT_GT(m_port.OutBufferCount(), 0) << "what nobody takes is counted";
  m_port.DiscardOutput();
  EXPECT_EQ(m_port.OutBufferCount(), 0);
  const int on = 1;
  ioctl(m_line->Descriptor(), TIOCPKT, &on);  // from here the line tells what is done to it
  m_port.SetPortOpen(false);
  EXPECT_EQ((m_line->Read(1) + '\0')[0] & TIOCPKT_FLUSHWRITE, TIOCPKT_FLUSHWRITE)
      << "unsent, it would hold up the close";
}

TEST_F(QtSerialPortTest, RestsInTheSystemUntilAByteComes) {
  OpenLine();
  const double start = Milliseconds();
  const double busy = ProcessorMilliseconds();
  EXPECT_EQ(m_port.InBufferCount(), 0);
  m_port.AwaitInput(20);
  m_line->Write("~");
  m_port.AwaitInput(60'000);
  EXPECT_EQ(m_port.InBufferCount(), 1);
  m_line.reset();
  EXPECT_TRUE(m_port.SetSettings("9600,n,8,1"));
  m_port.AwaitInput(20);
  EXPECT_GE(Milliseconds() - start, 37) << "also for a device that is gone";
  EXPECT_LT(ProcessorMilliseconds() - busy, 15);
}

TEST_F(QtSerialPortTest, AWaitForAByteLetsTheWindowsDrawFiveTimesASecond) {
  QtSerialPort port(&m_yielder);
  const QObject context;
  int rounds = 0;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context,
                   [&rounds] { ++rounds; });
  const double end = Milliseconds() + 500;
  for (int waits = 0; Milliseconds() < end && waits < 20; ++waits)
    port.AwaitInput(static_cast<int>(end - Milliseconds()));
  EXPECT_GE(rounds, 2) << "at once, since nobody knows when the last was, and every 200 ms";
  EXPECT_LE(rounds, 3);
  EXPECT_GE(Milliseconds(), end - 1);
}

TEST_F(QtSerialPortTest, AFormatIsTakenBeforeTheLineOpensAndOneRefusedLaterLeavesIt) {
  ASSERT_TRUE(m_port.SetSettings("1200,E,7,2"));
  OpenLine();
  ExpectOnTheLine(B1200, true);
  m_port.SetPortOpen(false);

  ASSERT_TRUE(m_port.SetSettings("9600,n,8,1"));
  OpenLine();
  EXPECT_FALSE(m_port.SetSettings("1200,e,7,2")) << "a line of this kind, once open, has 8 data bits only";
  EXPECT_EQ(m_port.Settings(), "9600,n,8,1");
  ExpectOnTheLine(B9600, false);
  EXPECT_TRUE(m_port.SetSettings("2400,n,8,2"));
  ExpectOnTheLine(B2400, true);
}

TEST_F(QtSerialPortTest, TheLinesDropWhenTheProcessIsKilled) {
  OpenLine();
  m_port.SetPortOpen(false);
  termios kept = m_line->Format();
  kept.c_cflag &= ~static_cast<tcflag_t>(HUPCL);
  m_line->SetFormat(kept);
  ASSERT_TRUE(m_port.SetPortOpen(true) && m_port.SetSettings("19200,N,8,1"));
  EXPECT_NE(m_line->Format().c_cflag & HUPCL, 0U);
}

TEST_F(QtSerialPortTest, HandshakingReachesTheLineBeforeAndAfterItOpens) {
  const auto usesRtsCts = [this] { return (m_line->Format().c_cflag & CRTSCTS) != 0; };
  ASSERT_TRUE(m_port.SetHandshaking(2));
  OpenLine();
  EXPECT_TRUE(usesRtsCts());
  EXPECT_TRUE(m_port.SetHandshaking(0));
  EXPECT_FALSE(usesRtsCts());

  // a line without modem control takes a change of RTS as done, and stays up
  EXPECT_FALSE(m_port.CTSHolding());
  m_port.SetRTSEnable(true);
  EXPECT_TRUE(m_port.DevicePresent());
  ExpectExchange();
}

TEST_F(QtSerialPortTest, APulledAdapterCostsNothingAndComesBackUnderItsLink) {
  OpenLine();
  ASSERT_TRUE(m_port.DevicePresent());
  m_line.reset();
  const double busy = ProcessorMilliseconds();
  const std::int64_t deadline = CountAfter(100);
  while (CountAfter(0) < deadline) m_yielder.Yield(deadline);
  EXPECT_LT(ProcessorMilliseconds() - busy, 20);
  EXPECT_FALSE(m_port.DevicePresent());
  EXPECT_TRUE(m_port.PortOpen()) << "it is the operator who closes it";
  m_line.emplace();
  LinkPort(m_line->Path());
  EXPECT_TRUE(m_port.DevicePresent());
  ExpectExchange();
}

TEST_F(QtSerialPortTest, APullInTheMiddleOfAnExchangeIsSilenceAndAFormatGivenThenHolds) {
  OpenLine();
  m_line.reset();
  EXPECT_TRUE(m_port.SetSettings("2400,n,8,2")) << "nobody has noticed yet that it is gone";
  m_port.Output("{AS?0}");
  EXPECT_EQ(m_port.InBufferCount() + m_port.OutBufferCount(), 0);
  m_port.SetRTSEnable(true);
  EXPECT_FALSE(m_port.CTSHolding() || m_port.DevicePresent());
  m_line.emplace();
  LinkPort(m_line->Path());
  EXPECT_TRUE(m_port.DevicePresent());
  ExpectOnTheLine(B2400, true);
  m_line.reset();
  EXPECT_TRUE(m_port.SetPortOpen(false)) << "closed by the operator while it is gone";
}

TEST_F(QtSerialPortTest, AFloodFillsNeitherMemoryNorTimeAndEndsWithADiscard) {
  OpenLine();
  std::size_t taken = 0;
  const double busy = ProcessorMilliseconds();
  const std::int64_t deadline = CountAfter(100);
  while (CountAfter(0) < deadline) {
    taken += m_line->Write(std::string(1024, '~'));
    m_yielder.Yield(CountAfter(5));
  }
  EXPECT_LT(taken, 100'000U);
  EXPECT_LT(ProcessorMilliseconds() - busy, 40);
  EXPECT_LE(m_port.InBufferCount(), 4096);

  // The operating system holds some more; the console's way is to discard before each command.
  while (m_port.InBufferCount() > 0) m_port.DiscardInput();
  ExpectExchange();
}

TEST_F(QtSerialPortTest, ARefusedOpeningSaysWhichDeviceAndWhy) {
  const auto refusal = [this](int number) {
    m_port.SetCommPort(number);
    EXPECT_FALSE(m_port.SetPortOpen(true));
    return m_port.OpenFailure();
  };
  EXPECT_EQ(refusal(199), "There is no port 199 on this computer.");
  LinkPort("/dev/ttyUSB777");
  EXPECT_EQ(refusal(kPort), "/dev/ttyUSB777: the device doesn't exist (adapter not plugged in?)");
  const std::string missing = m_folder.toStdString() + "/com199";
  EXPECT_EQ(refusal(199).substr(0, missing.size() + 18), missing + ": it doesn't exist");
  LinkPort("/dev/null");
  EXPECT_EQ(refusal(kPort), "/dev/null: it isn't a serial port, or can't do 9600,n,8,1");

  QtSerialPort other;
  Pty line;
  LinkPort(line.Path());
  other.SetCommPort(kPort);
  EXPECT_TRUE(other.SetPortOpen(true));
  EXPECT_EQ(refusal(kPort).find(line.Path() + ": in use by another program"), 0U);
}

}  // namespace
}  // namespace tarnwell::platform

#include "platform/qt_serial_port.h"

#include <QMetaObject>
#include <QThread>
#include <algorithm>
#include <cctype>

#include "platform/port_map.h"

#ifdef Q_OS_UNIX
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#endif

namespace tarnwell::platform {

namespace {

constexpr int kMaxPort = 256;
constexpr int kNoHandshaking = 0;
constexpr int kRtsCts = 2;
constexpr int kBinaryMode = 1;
constexpr int kLookMilliseconds = 1;

/// Sixteen of the longest replies; what comes above it waits in the operating system, and is lost there.
constexpr qint64 kInputBufferSize = 4096;

QSerialPort::FlowControl FlowControl(int handshaking) {
  return handshaking == kRtsCts ? QSerialPort::HardwareControl : QSerialPort::NoFlowControl;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return lower;
}

/// Bytes that the operating system took and the line has not: with RTS/CTS and no CTS they stay there.
int QueuedInSystem(const QSerialPort& device) {
  int queued = 0;
#ifdef Q_OS_UNIX
  if (ioctl(device.handle(), TIOCOUTQ, &queued) != 0) return 0;
#else
  Q_UNUSED(device)
#endif
  return queued;
}

}  // namespace

QtSerialPort::QtSerialPort(EventLoopYielder* yielder) : m_yielder(yielder) {
  m_device.setReadBufferSize(kInputBufferSize);
  QObject::connect(&m_device, &QSerialPort::errorOccurred, &m_device,
                   [this](QSerialPort::SerialPortError error) { NoteError(error); });
}

QtSerialPort::~QtSerialPort() {
  m_device.disconnect();
  CloseDevice();
}

bool QtSerialPort::SetCommPort(int number) {
  if (m_open || number < 1 || number > kMaxPort) return false;
  m_commPort = number;
  return true;
}

bool QtSerialPort::SetSettings(std::string_view settings) {
  const std::optional<PortFormat> format = ParsePortFormat(settings);
  if (!format) return false;
  if (!Apply(*format)) {
    Apply(m_format);
    return false;
  }
  m_format = *format;
  m_settings = LowerCase(settings);
  return true;
}

bool QtSerialPort::SetHandshaking(int handshaking) {
  if (handshaking != kNoHandshaking && handshaking != kRtsCts) return false;
  if (!m_device.setFlowControl(FlowControl(handshaking)) && Reachable()) return false;
  m_handshaking = handshaking;
  if (Reachable()) ApplyRts();
  return true;
}

bool QtSerialPort::SetPortOpen(bool open) {
  if (open == m_open) return true;
  m_openFailure.clear();
  if (!open) CloseDevice();
  m_open = open && OpenPort();
  return m_open == open;
}

bool QtSerialPort::SetInputMode(int mode) { return m_open && mode == kBinaryMode; }

void QtSerialPort::SetRTSEnable(bool on) {
  m_rts = on;
  if (Reachable()) ApplyRts();
}

bool QtSerialPort::CTSHolding() const {
  return m_device.isOpen() && m_device.pinoutSignals().testFlag(QSerialPort::ClearToSendSignal);
}

int QtSerialPort::InBufferCount() {
  if (!Reachable()) return 0;
  if (m_device.bytesAvailable() == 0) Look();  // else nothing moves without an event loop
  return static_cast<int>(m_device.bytesAvailable());
}

// On Windows a wait takes one step, and a byte needs several: the notice that it is there, its reading, and ahead of
// them the end of a writing. Elsewhere the first tells all.
void QtSerialPort::Look() {
#ifdef Q_OS_WIN
  constexpr int kMostSteps = 8;
  for (int step = 0; step < kMostSteps && m_device.isOpen(); ++step) {
    m_device.clearError();
    if (m_device.waitForReadyRead(0) || m_device.error() != QSerialPort::NoError) return;
  }
#else
  m_device.waitForReadyRead(0);
#endif
}

void QtSerialPort::AwaitInput(int milliseconds) {
  if (milliseconds <= 0) return;
  if (m_yielder != nullptr) {
    const int untilDrawing = m_yielder->MillisecondsToDraw();
    if (untilDrawing == 0) return m_yielder->LetDraw();
    milliseconds = std::min(milliseconds, untilDrawing);
  }
  if (Reachable()) {
    m_device.waitForReadyRead(milliseconds);
  } else {
    QThread::msleep(static_cast<unsigned long>(milliseconds));  // nothing comes from a device that is gone
  }
}

void QtSerialPort::DiscardInput() {
  if (Reachable()) m_device.clear(QSerialPort::Input);
}

int QtSerialPort::OutBufferCount() {
  if (!Reachable()) return 0;
  if (m_device.bytesToWrite() > 0) m_device.waitForBytesWritten(kLookMilliseconds);
  return Reachable() ? static_cast<int>(m_device.bytesToWrite()) + QueuedInSystem(m_device) : 0;
}

void QtSerialPort::DiscardOutput() {
  if (Reachable()) m_device.clear(QSerialPort::Output);
}

void QtSerialPort::Output(std::string_view bytes) {
  if (!Reachable()) return;
  m_device.write(bytes.data(), static_cast<qint64>(bytes.size()));
  // Writing only fills a buffer that nothing empties while the event loop stands still.
  if (Reachable()) m_device.flush();
}

std::uint8_t QtSerialPort::Input() {
  char byte = 0;
  m_device.getChar(&byte);
  return static_cast<std::uint8_t>(byte);
}

bool QtSerialPort::DevicePresent() { return m_open && (Reachable() || OpenDevice()); }

bool QtSerialPort::OpenPort() {
  const std::optional<QString> path = DeviceOfPort(m_commPort);
  if (!path) {
    m_openFailure = QStringLiteral("There is no port %1 on this computer.").arg(m_commPort);
    return false;
  }
  m_path = *path;
  if (OpenDevice()) return true;
  m_openFailure = m_target + QStringLiteral(": ") + FailureReason();
  return false;
}

bool QtSerialPort::OpenDevice() {
  // The link is followed each time: the adapter may have come back under another name.
  m_target = TargetOf(m_path);
  m_device.setPortName(m_target);
  // Given while it is closed: some lines take a format only as they open. Given again: what a device refused because
  // it was already gone would otherwise not be what Settings says.
  Apply(m_format);
  m_device.setFlowControl(FlowControl(m_handshaking));
  const bool opened = m_device.open(QIODevice::ReadWrite);
  m_deviceLost = false;
  if (opened) {
    DropLinesAtClose();
    WatchHangUp();
    ApplyRts();
  }
  return opened;
}

// A process that is killed closes its devices, and nothing else: a line that it drove would stay driven.
void QtSerialPort::DropLinesAtClose() {
#ifdef Q_OS_UNIX
  termios settings = {};
  if (tcgetattr(m_device.handle(), &settings) != 0) return;
  settings.c_cflag |= HUPCL;
  tcsetattr(m_device.handle(), TCSANOW, &settings);
#endif
}

// Not every version of the toolkit takes a device that is gone for an error: to some it is a port that can be read at
// once and has nothing, which keeps a processor busy.
void QtSerialPort::WatchHangUp() {
#ifdef Q_OS_UNIX
  m_hangUp = std::make_unique<QSocketNotifier>(m_device.handle(), QSocketNotifier::Exception);
  // Queued, since closing the device ends the notifier.
  QObject::connect(
      m_hangUp.get(), &QSocketNotifier::activated, &m_device, [this] { Reachable(); }, Qt::QueuedConnection);
#endif
}

bool QtSerialPort::HungUp() const {
#ifdef Q_OS_UNIX
  pollfd look = {m_device.handle(), 0, 0};
  return m_device.isOpen() && poll(&look, 1, 0) > 0;
#else
  return false;
#endif
}

bool QtSerialPort::Apply(const PortFormat& format) {
  const bool taken = m_device.setBaudRate(format.speed) && m_device.setDataBits(format.dataBits) &&
                     m_device.setParity(format.parity) && m_device.setStopBits(format.stopBits);
  return taken || !Reachable();
}

void QtSerialPort::ApplyRts() {
  if (m_handshaking != kRtsCts) m_device.setRequestToSend(m_rts);
}

void QtSerialPort::CloseDevice() {
  m_hangUp.reset();
  if (m_device.isOpen()) {
    // What can't be sent would hold up the close for as long as the driver waits for it.
    m_device.clear();
    m_device.close();
  }
  m_deviceLost = false;
}

void QtSerialPort::NoteError(QSerialPort::SerialPortError error) {
  const bool lost =
      error == QSerialPort::ReadError || error == QSerialPort::WriteError || error == QSerialPort::ResourceError;
  if (!lost || m_deviceLost || !m_device.isOpen()) return;
  // The device is still at work on the stack: it is closed by the next call or the event loop, whichever is first. Left
  // open, a device that is gone signals without end.
  m_deviceLost = true;
  QMetaObject::invokeMethod(
      &m_device, [this] { Reachable(); }, Qt::QueuedConnection);
}

bool QtSerialPort::Reachable() {
  if (m_deviceLost || HungUp()) CloseDevice();
  return m_device.isOpen();
}

QString QtSerialPort::FailureReason() const {
  switch (m_device.error()) {
    case QSerialPort::DeviceNotFoundError:
      return MissingReason(m_target);
    case QSerialPort::PermissionError:
      return PermissionReason(m_target);
    case QSerialPort::UnsupportedOperationError:
      return QStringLiteral("it isn't a serial port, or can't do %1").arg(QString::fromStdString(m_settings));
    default:
      return m_device.errorString();
  }
}

}  // namespace tarnwell::platform

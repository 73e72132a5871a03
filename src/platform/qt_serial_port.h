#pragma once

#include <QSerialPort>
#include <QSocketNotifier>
#include <QString>
#include <memory>

#include "platform/port_format.h"
#include "platform/serial_port.h"
#include "platform/yield.h"

namespace tarnwell::platform {

/// The real port. No event loop is needed for its bytes to move, and it costs none: nothing is connected to the arrival
/// of bytes, and the input buffer is capped, so a flooded line fills neither memory nor time.
class QtSerialPort final : public SerialPort {
 public:
  /// While it waits for a byte, `yielder` lets the windows draw; null: nothing happens meanwhile.
  explicit QtSerialPort(EventLoopYielder* yielder = nullptr);
  ~QtSerialPort() override;
  QtSerialPort(const QtSerialPort&) = delete;
  QtSerialPort& operator=(const QtSerialPort&) = delete;

  int CommPort() const override { return m_commPort; }
  bool SetCommPort(int number) override;
  std::string Settings() const override { return m_settings; }
  bool SetSettings(std::string_view settings) override;
  int Handshaking() const override { return m_handshaking; }
  bool SetHandshaking(int handshaking) override;
  bool PortOpen() const override { return m_open; }
  bool SetPortOpen(bool open) override;
  bool SetInputMode(int mode) override;
  std::string OpenFailure() const override { return m_openFailure.toStdString(); }
  std::string DevicePath() const override { return m_target.toStdString(); }

  /// A line without modem control has no RTS to drive: that is no error.
  void SetRTSEnable(bool on) override;

  /// A line without modem control never holds CTS: who asks for RTS/CTS there must not send unseen.
  bool CTSHolding() const override;

  int InBufferCount() override;
  void AwaitInput(int milliseconds) override;
  void DiscardInput() override;
  int OutBufferCount() override;
  void DiscardOutput() override;
  void Output(std::string_view bytes) override;
  std::uint8_t Input() override;
  bool DevicePresent() override;

 private:
  bool OpenPort();
  bool OpenDevice();
  bool Apply(const PortFormat& format);
  void ApplyRts();
  void DropLinesAtClose();
  void WatchHangUp();
  bool HungUp() const;
  void CloseDevice();
  void NoteError(QSerialPort::SerialPortError error);
  bool Reachable();
  void Look();
  QString FailureReason() const;

  EventLoopYielder* m_yielder;
  int m_commPort = 1;
  std::string m_settings = "9600,n,8,1";
  PortFormat m_format;
  int m_handshaking = 0;
  bool m_rts = false;
  bool m_open = false;        ///< the operator's wish; stays while the device is gone
  bool m_deviceLost = false;  ///< an I/O error came and the device isn't closed yet
  QString m_path;             ///< of the device, or of the operator's link to it
  QString m_target;           ///< where that led at the last opening
  QString m_openFailure;
  std::unique_ptr<QSocketNotifier> m_hangUp;  ///< wakes the event loop when the device is gone
  mutable QSerialPort m_device;               ///< mutable: asking for the modem lines notes an error in it
};

}  // namespace tarnwell::platform

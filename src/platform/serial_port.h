#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell::platform {

/// The serial port control, by its properties. Every setter that can be refused returns whether the value was taken;
/// a refused value leaves the property as it was. I/O failures at run time are no error of their own: nothing comes in
/// and nothing goes out until the device is back.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  /// Port number, 1 or more; the n-th port of the port map. Refused below 1 and above 256, and while the port is open.
  virtual int CommPort() const = 0;
  virtual bool SetCommPort(int number) = 0;

  /// "speed,parity letter in lower case,data bits,stop bits", such as "9600,n,8,1".
  virtual std::string Settings() const = 0;
  virtual bool SetSettings(std::string_view settings) = 0;

  /// 0 none, 2 RTS/CTS. Anything else is refused.
  virtual int Handshaking() const = 0;
  virtual bool SetHandshaking(int handshaking) = 0;

  virtual bool PortOpen() const = 0;
  virtual bool SetPortOpen(bool open) = 0;

  /// 1 is binary mode, the only one there is. Refused while the port is closed.
  virtual bool SetInputMode(int mode) = 0;

  /// Why the last opening was refused, for the operator: the device's path and the reason. Empty when it wasn't.
  virtual std::string OpenFailure() const = 0;

  /// The path that the last opening tried, behind all links: what the port's number stood for then. Empty where the
  /// port has none.
  virtual std::string DevicePath() const { return {}; }

  /// Drives RTS. The wish is kept: a device that comes back gets it again.
  virtual void SetRTSEnable(bool on) = 0;

  virtual bool CTSHolding() const = 0;

  /// Bytes received and not yet read.
  virtual int InBufferCount() = 0;
  /// Rests in the operating system until a byte has come, at most for `milliseconds`. May return early. Windows may be
  /// drawn meanwhile; no other code of the program runs.
  virtual void AwaitInput(int /*milliseconds*/) {}
  virtual void DiscardInput() = 0;

  /// Bytes queued and not yet sent.
  virtual int OutBufferCount() = 0;
  virtual void DiscardOutput() = 0;

  /// Queues `bytes` for sending and returns at once.
  virtual void Output(std::string_view bytes) = 0;

  /// The next received byte. Called only when InBufferCount gave more than 0.
  virtual std::uint8_t Input() = 0;

  /// False while an open port's device is gone (an adapter that was pulled). Tries to get it back before it answers.
  virtual bool DevicePresent() = 0;
};

}  // namespace tarnwell::platform

#pragma once

#include "platform/serial_port.h"

namespace tarnwell::test {

/// A port at 9600,n,8,1 that is always open and refuses nothing. What goes out and comes in is the heir's business.
class PlainPort : public platform::SerialPort {
 public:
  int CommPort() const override { return 1; }
  bool SetCommPort(int) override { return true; }
  std::string Settings() const override { return "9600,n,8,1"; }
  bool SetSettings(std::string_view) override { return true; }
  int Handshaking() const override { return 0; }
  bool SetHandshaking(int) override { return true; }
  bool PortOpen() const override { return true; }
  bool SetPortOpen(bool) override { return true; }
  bool SetInputMode(int) override { return true; }
  std::string OpenFailure() const override { return {}; }
  void SetRTSEnable(bool) override {}
  bool CTSHolding() const override { return true; }
  int OutBufferCount() override { return 0; }
  void DiscardOutput() override {}
  bool DevicePresent() override { return true; }
};

}  // namespace tarnwell::test

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "sim/alarm_board.h"
#include "sim/kinds.h"
#include "sim/request.h"

namespace tarnwell::sim {

/// Who commands the device. In remote lockout (RLO) it answers queries and takes no setting.
enum class CommsMode { kREM, kLLO, kRLO };

/// A device on the line: request text in, reply text out. It holds no clock and no line; what it measures moves by a
/// step with each request that asks for it.
class Device {
 public:
  explicit Device(const DeviceSetup& setup);
  virtual ~Device() = default;
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  /// The reply to `command`, the echo included and the frame's bytes not. Nothing: the device is silent, because it
  /// doesn't know the request or refuses it.
  std::optional<std::string> Answer(std::string_view command);

  std::uint8_t Address() const { return m_address; }
  bool SetAddress(std::uint8_t address);  ///< 0 to 31, else refused

  AlarmBoard& Alarms() { return m_alarms; }
  void SetMode(CommsMode mode) { m_mode = mode; }

  const std::string& Model() const { return m_model; }
  const std::string& Firmware() const { return m_firmware; }

  /// The letters of the status reply.
  virtual std::string Status() const = 0;
  /// One letter of a status setting. False: it is none, or this device doesn't take it now.
  virtual bool SetStatus(std::string_view letter) = 0;

 protected:
  virtual std::optional<std::string> AnswerOwn(const Request& request) = 0;
  virtual bool AllowsClearing() const { return true; }
  /// The letter of the comms mode, if it has one.
  std::string CommsLetter() const;

 private:
  std::optional<std::string> AnswerVerb(const Request& request);

  std::string m_model;
  std::string m_firmware;
  std::uint8_t m_address;
  CommsMode m_mode = CommsMode::kREM;
  AlarmBoard m_alarms;
};

std::unique_ptr<Device> MakeDevice(const DeviceSetup& setup);

}  // namespace tarnwell::sim

#pragma once

#include <string>
#include <utility>

#include "sim/faults.h"
#include "sim/frame_server.h"
#include "sim/outbox.h"
#include "support/plain_port.h"
#include "support/virtual_counter.h"

namespace tarnwell::test {

/// A line to simulated devices, faults and all, in virtual time.
class SimulatedPort final : public PlainPort {
 public:
  static constexpr double kLookTakes = 0.001;   ///< seconds that an empty line is looked at
  static constexpr double kAnswerTime = 0.005;  ///< seconds

  SimulatedPort(VirtualCounter& counter, sim::FrameServer& devices, sim::Faults& faults)
      : m_counter(counter), m_devices(devices), m_faults(faults) {}

  /// Done while a command is on the line.
  void OnOutput(std::function<void(const std::string& command)> act) { m_onOutput = std::move(act); }

  bool PortOpen() const override { return m_open; }
  bool SetPortOpen(bool open) override {
    m_open = open;
    return true;
  }

  int InBufferCount() override {
    if (Arrived().empty()) m_counter.Advance(kLookTakes);
    return static_cast<int>(Arrived().size());
  }
  void DiscardInput() override { Arrived().clear(); }

  void Output(std::string_view bytes) override {
    if (m_onOutput) m_onOutput(std::string(bytes.substr(2, bytes.size() - 4)));
    for (const sim::Exchange& exchange : m_devices.Receive(bytes)) {
      if (exchange.reply) m_line.Add(m_counter.Seconds() + kAnswerTime, m_faults.Apply(exchange.frame));
    }
  }

  std::uint8_t Input() override {
    const char byte = m_arrived.front();
    m_arrived.erase(0, 1);
    return static_cast<std::uint8_t>(byte);
  }

 private:
  std::string& Arrived() { return m_arrived += m_line.Take(m_counter.Seconds()); }

  VirtualCounter& m_counter;
  sim::FrameServer& m_devices;
  sim::Faults& m_faults;
  sim::Outbox m_line{0};
  std::string m_arrived;
  std::function<void(const std::string&)> m_onOutput;
  bool m_open = false;
};

}  // namespace tarnwell::test

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/device.h"
#include "sim/faults.h"
#include "sim/frame_server.h"
#include "sim/options.h"
#include "sim/outbox.h"

namespace tarnwell::sim {

/// What commands ask of the program around the station.
struct Wishes {
  bool trace = false;
  bool plugged = true;  ///< false: the line is to be gone
  bool quit = false;
};

/// Everything at the devices' end of one line. All times are seconds since the start, told from outside.
class Station {
 public:
  explicit Station(const Options& options);

  /// Takes bytes from the line. Gives the lines of the trace, whether or not the trace is on.
  std::vector<std::string> Receive(double now, std::string_view bytes);

  /// The bytes for the line up to `now`.
  std::string Send(double now);

  /// When there is something to do; nothing: not before bytes come.
  std::optional<double> NextDue() const;

  /// Drops what is on its way, as the line is gone.
  void LoseLine() { m_outbox.Clear(); }

  /// The devices hear and answer nothing, as without power, for `seconds` or for good.
  void Silence(double now, std::optional<double> seconds);
  void Talk();
  bool Silent() const { return m_silentUntil.has_value(); }

  const std::vector<std::unique_ptr<Device>>& Devices() const { return m_devices; }
  /// The device that commands act on.
  Device& Selected() const { return *m_devices[m_selected]; }
  bool Select(std::uint8_t address);
  Faults& LineFaults() { return m_faults; }

  Wishes& Asked() { return m_asked; }

 private:
  void EndSilence(double now);

  Wishes m_asked;
  std::vector<std::unique_ptr<Device>> m_devices;
  std::size_t m_selected = 0;
  FrameServer m_server;
  Faults m_faults;
  Outbox m_outbox;
  double m_answerTime;
  bool m_echo;
  std::optional<double> m_silentUntil;  // infinite for a silence without an end
};

}  // namespace tarnwell::sim

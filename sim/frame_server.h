#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/device.h"

namespace tarnwell::sim {

/// One request and what one device made of it.
struct Exchange {
  char addressByte;  ///< the request's: "@" for address 0
  std::string command;
  std::optional<std::string> reply;  ///< nothing: silence
  std::string frame;                 ///< the reply as it goes out; empty for silence
};

/// The devices' end of the line: finds requests in a stream of bytes and has them answered.
class FrameServer {
 public:
  /// Puts a device on the line, which must outlive the server.
  void Attach(Device& device) { m_devices.push_back(&device); }

  /// Silent devices hear nothing and answer nothing, as without power.
  void SetSilent(bool silent) { m_silent = silent; }

  /// Takes bytes as they come, in whatever pieces, and gives the exchanges of the requests that they complete. A
  /// request at address 0 is for every device, and each answers from its own address. What is no whole frame with the
  /// right checksum, or is for somebody else, gives none.
  std::vector<Exchange> Receive(std::string_view bytes);

 private:
  void Serve(std::string_view frame, std::vector<Exchange>& exchanges);

  std::vector<Device*> m_devices;
  std::string m_pending;
  bool m_silent = false;
};

}  // namespace tarnwell::sim

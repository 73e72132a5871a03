#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "link/echo_memory.h"
#include "link/interval_timing.h"
#include "link/sspa_public.h"
#include "platform/serial_port.h"

namespace tarnwell::link {

/// Seconds from RTS, where it is driven, to the first bit; a part of the transmit window.
inline constexpr double kTransmitLead = 0.002;
/// Seconds that the transmit window is longer than its frame.
inline constexpr double kTransmitMargin = 0.01;
/// Seconds from the end of the transmit window in which a reply is taken.
inline constexpr double kReplyWindow = 2.0;
/// Seconds behind a failed try.
inline constexpr double kRetryPause = 0.05;

/// The time in seconds that the line is held for one frame: its bits at the speed and format of `settings`, which is
/// the port's text such as "9600,n,8,1", and 0.01 s.
double TransmitTime(std::string_view settings, std::size_t frameBytes);

/// The one way to the device.
class SerialLink {
 public:
  SerialLink(SSPA_Public& shared, const IntervalTiming& timing, platform::SerialPort& comConnect)
      : m_shared(shared), m_timing(timing), m_port(comConnect) {}

  /// One command and its reply, the whole exchange repeated up to `tries` times. Never lets other code run.
  /// `maxReply` (at most 251) is the largest reply text in bytes; `expected` must occur in a valid reply.
  /// True: `reply` holds the reply text, the command's echo included, and CommsLost is false.
  /// False: no valid reply came, and CommsLost is true. Called only while the port is open.
  bool SendCommand(std::string_view command, std::string& reply, std::uint8_t tries, std::uint8_t maxReply,
                   std::string_view expected);

 private:
  struct Request {
    std::string_view frame;
    std::string_view expected;
    std::uint8_t maxReply;
    bool copyMayConfirm;  ///< a setting, whose confirmation and whose echo can be the same bytes
    bool mayAsk = false;  ///< a query may tell which of the two a copy is: once a request
  };
  enum class Outcome {
    kFailed,
    kCopyAlone,  ///< the request's copy that may be its confirmation or the line's echo, and nothing else
    kAnswered,
    kEchoedAndAnswered  ///< something else came ahead of the answer or behind it
  };
  bool Exchange(Request& request, int tries, std::string& reply);
  Outcome Try(const Request& request, std::string& reply);
  bool AnswersWithoutEcho();
  bool PassGates();
  void AwaitClearToSend();
  void Transmit(std::string_view frame);

  struct Gathered {
    std::string bytes;
    bool copied;  ///< a copy of the request came ahead of them, and was dropped
    int early;    ///< how many bytes were there at the end of the transmit window
  };
  Gathered Gather(const Request& request);
  /// Where the device's answers come as early as an echo, or the copy as late as an answer, no confirmation is still to
  /// be awaited behind a copy.
  bool EndsSoon(const Request& request, bool isEarly) const;
  void EndFailedTry();

  SSPA_Public& m_shared;
  const IntervalTiming& m_timing;
  platform::SerialPort& m_port;
  EchoMemory m_echoes;
  bool m_deviceIsQuick = false;
};

}  // namespace tarnwell::link

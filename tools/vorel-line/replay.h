#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/vorel-line/turns.h"

namespace tarnwell::vorel_line {

/// What the recorded device did with each request, in its order.
class Script {
 public:
  /// Bytes that came in one go.
  struct Piece {
    std::int64_t after = 0;  ///< microseconds from the request's first byte to its own first
    std::int64_t lasted = 0;
    std::string bytes;
  };
  /// What came for one request. No piece is silence.
  struct Reply {
    std::vector<Piece> pieces;
    std::string taken;  ///< what of them the console gathered: without what came too late
    bool last = false;  ///< the recording has no further one for this request: it is given again
  };

  Script() : m_turns([this](const Turn& turn) { Take(turn); }) {}
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;

  void Take(const Record& record);
  /// The recording is over.
  void End();

  /// The reply to the next request with these bytes; nothing: the recording hasn't got such a request.
  std::optional<Reply> Next(const std::string& frame);

  /// The addresses that were asked, in their order.
  std::vector<int> Addresses() const;

  bool Empty() const { return m_replies.empty(); }

 private:
  void Take(const Turn& turn);
  void DropUnsettled();

  Turns m_turns;
  std::map<std::string, std::deque<Reply>> m_replies;
  std::string m_frame;
  std::int64_t m_askedAt = 0;
  // Whether it is known what became of the last request. One whose answer nobody waited for tells nothing of the
  // device.
  bool m_settled = false;
};

/// Plays the recorded device under `link` until a signal ends it. Gives the exit code.
int ReplayFiles(const std::vector<std::string>& files, const std::string& link, bool fast);

}  // namespace tarnwell::vorel_line

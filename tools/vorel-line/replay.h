#pragma once

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
  /// What came for one request. Nothing at all is silence.
  struct Reply {
    std::string bytes;
    std::int64_t took = 0;  ///< microseconds from the request
    bool last = false;      ///< the recording has no further one for this request: it is given again
  };

  /// Turns in the order of the recording.
  void Take(const Turn& turn);

  /// The reply to the next request with these bytes; nothing: the recording hasn't got such a request.
  std::optional<Reply> Next(const std::string& frame);

  bool Empty() const { return m_replies.empty(); }

 private:
  std::map<std::string, std::deque<Reply>> m_replies;
  std::string m_frame;
};

/// Plays the recorded device under `link` until a signal ends it. Gives the exit code.
int ReplayFiles(const std::vector<std::string>& files, const std::string& link, bool fast);

}  // namespace tarnwell::vorel_line

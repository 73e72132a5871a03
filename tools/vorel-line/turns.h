#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/echo_memory.h"
#include "tools/vorel-line/recording.h"

namespace tarnwell::vorel_line {

enum class What {
  kAsked,    ///< a whole request
  kAnswer,   ///< what was gathered for it, good or not
  kSilence,  ///< nothing came for it
  kDropped,  ///< nothing came, and the console didn't wait: it asked the next thing, or the recording ends
  kLate,     ///< bytes of the device that nobody waits for
  kEcho,     ///< the request, given back by the line
  kNoise,    ///< bytes of the console that are no request
  kNote
};

/// How an answer fails.
enum class Fault { kNone, kSilent, kCut, kFrame, kCheck, kAddress, kOther, kLong };
inline constexpr std::size_t kFaults = 8;
std::string_view FaultText(Fault fault);

/// One step of what went over the line.
struct Turn {
  What what = What::kNote;
  std::int64_t at = 0;  ///< of the first byte, microseconds since 1970
  int offset = 0;       ///< minutes of local time ahead of UTC
  std::string bytes;
  std::string request;            ///< text of the request that it belongs to
  char address = '@';             ///< its address byte
  int attempt = 1;                ///< of the same request, in a row
  bool last = false;              ///< a failure that the console doesn't try again
  Fault fault = Fault::kNone;     ///< of an answer or a silence
  std::int64_t took = 0;          ///< microseconds from the request's first byte to its own first
  std::int64_t firstAskedAt = 0;  ///< when the request was sent for the first time: its try 1
};

/// Finds requests and answers in records, by the console's own rules.
class Turns {
 public:
  using Sink = std::function<void(const Turn&)>;
  explicit Turns(Sink sink) : m_sink(std::move(sink)) {}

  void Take(const Record& record);
  /// What is still open at the end of the recording, told as it stands.
  void End();

 private:
  void TakeConsole(const Record& record);
  void TakeDevice(const Record& record);
  void TakeNote(const Record& record);
  void Ask(const Record& record, std::string_view frame);
  void Answer(const Record& record, std::string_view bytes);
  bool IsCopy() const;
  bool CopyMayConfirm() const;
  Fault Judge() const;
  /// What has come by `now` is all that came.
  void CloseOpen(std::int64_t now);
  void DropOpen();
  void CloseAnswered();
  /// Nothing came but the copy of a setting: what the console asks next says what it took that for.
  void SettleCopy(const Record& next, std::string_view frame);
  bool MayAsk() const;
  /// The console has had the time to ask, or likely had nothing to ask. One on RS-232 hears no echo and takes each copy
  /// for the confirmation.
  bool WentUnasked(std::int64_t now) const;
  void TellCopy(bool confirmed, std::int64_t now);
  void TellNothing(std::int64_t now);
  void TellNoise();
  void Tell(What what, std::int64_t at, std::string bytes, Fault fault = Fault::kNone);

  Sink m_sink;
  std::string m_fromConsole;
  std::int64_t m_fromConsoleAt = 0;
  std::int64_t m_now = 0;
  std::string m_settings = "9600,n,8,1";
  struct Asking {
    std::string frame;
    std::string request;
    std::int64_t at = 0;
    std::int64_t firstAt = 0;  ///< of its first try
    std::int64_t until = 0;
    int attempt = 0;
    bool asked = false;  ///< the console asked whether the line echoes, in this try or in one before
    bool failed = false;
    bool copied = false;                 ///< its copy came, and was dropped
    std::optional<std::int64_t> copyAt;  ///< when, as long as it may be the confirmation
    bool isLate = false;                 ///< it came when an answer would: it likely is one
  };
  Asking m_asking;                ///< the request in force
  std::optional<Asking> m_asked;  ///< the setting behind whose copy the console asks for its echo now
  bool m_open = false;
  link::EchoMemory m_echoes;
  // What has come for it.
  std::string m_gathered;
  std::int64_t m_gatheredAt = 0;
  std::int64_t m_gatheredUntil = 0;
  int m_offset = 0;
};

}  // namespace tarnwell::vorel_line

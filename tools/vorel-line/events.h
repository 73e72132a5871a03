#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "link/sspa_public.h"
#include "tools/vorel-line/flapping.h"
#include "tools/vorel-line/turns.h"
#include "tools/vorel-line/words.h"

namespace tarnwell::vorel_line {

/// Something that lasts: an alarm, a mute, the loss of the link.
struct Condition {
  std::string name;
  bool stands = false;
  bool latched = false;  ///< of an alarm: it is gone itself
};

/// One entry of an operator's log.
struct Event {
  std::int64_t at = 0;  ///< of a command: when it was sent for the first time
  int offset = 0;
  std::optional<int> address;              ///< as the console asked; nothing: the recorder's own
  std::string type;                        ///< "command", "alarm", "link", ...
  std::string text;                        ///< for a reader
  std::string request = {};                ///< the command, where there is one
  std::string reply = {};                  ///< and what the device made of it
  std::vector<Condition> conditions = {};  ///< what stands from here on, or no more
  bool isOther = false;                    ///< another device is there: nothing is known of what stood before
};

/// Makes events of what went over the line.
class Events {
 public:
  using Sink = std::function<void(const Event&)>;
  explicit Events(Sink sink) : m_sink(std::move(sink)) {}

  void Take(const Turn& turn);
  /// What is still open at the end of the recording.
  void End();

 private:
  /// What is known of the device at one address.
  struct Device {
    explicit Device(Words known = {}) : words(std::move(known)) {}

    Words words;
    link::AlarmTable alarms{};
    bool alarmsKnown = false;
    bool cleared = false;  ///< since the alarms were read
    bool lost = false;
    std::string status;
    std::map<std::string, std::string, std::less<>> replies;  // the last one to each watched query, by its tag
  };

  void TakeTurn(const Turn& turn);
  void TakeNote(const Turn& turn);
  void Asked(const Turn& turn);
  void Answered(const Turn& turn);
  void Failed(const Turn& turn);
  void Connected(const Turn& turn, Device& device, std::string_view modelBefore);
  void FollowLink(const Turn& turn, Device& device, bool answered);
  void FollowAlarms(const Turn& turn, Device& device, std::string_view letters);
  void FollowStatus(const Turn& turn, Device& device, std::string_view reply);
  void FollowValue(const Turn& turn, Device& device, std::string_view reply);
  void Tell(const Turn& turn, std::string type, std::string text, std::vector<Condition> conditions = {});
  void TellNote(std::int64_t at, std::string text);
  void TellFlapping();
  void TellHeld();
  void TellCommand(const Turn& turn, const std::string& outcome, std::string reply = {});
  void TellAnswered(const Turn& turn, const Device& device, const std::string& reply);
  void TellPending();

  Sink m_sink;
  std::map<char, Device> m_devices;
  std::int64_t m_now = 0;
  int m_offset = 0;
  std::int64_t m_heardAt = 0;
  bool m_afterPause = true;
  AddressFollower m_addresses;
  std::string m_format;           // told last
  std::optional<Turn> m_pending;  // a command that failed and may be tried again
  bool m_commandOpen = false;
  std::vector<Event> m_held;  // notes since that command was sent: they stand behind it
  Flapping m_flapping;
};

}  // namespace tarnwell::vorel_line

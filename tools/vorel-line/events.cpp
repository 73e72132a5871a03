#include "tools/vorel-line/events.h"

#include <utility>

#include "alarms/alarm_table.h"
#include "link/frame_codec.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/requests.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::int64_t kPause = 1'000'000;       // microseconds; a console that polls never rests so long
constexpr std::int64_t kLastChance = 5'000'000;  // behind a failed try no further one is sent

std::string_view StateOf(const link::AlarmSlot& slot) { return slot.Latched ? "latched" : slot.Active ? "active" : ""; }

/// "come", "gone, latched": what became of an alarm.
std::string_view Became(std::string_view before, std::string_view now, bool cleared) {
  if (now == "active") return before.empty() ? "come" : "come again";
  if (now == "latched") return before.empty() ? "come and gone, latched" : "gone, latched";
  return cleared && before == "latched" ? "cleared" : "gone";
}

/// Each amplifier of a controller's reply "O=13".
std::vector<Condition> OnlineConditions(std::string_view digits) {
  std::vector<Condition> conditions;
  for (const char digit : {'1', '2', '3'}) {
    conditions.push_back({std::string("SSPA ") + digit + " online", digits.find(digit) != std::string_view::npos});
  }
  return conditions;
}

int AddressOf(const Turn& turn) { return turn.address - link::AddressByte(0); }

}  // namespace

void Events::Take(const Turn& turn) {
  m_now = turn.at;
  m_offset = turn.offset;
  if (m_pending && turn.at - m_pending->at > kLastChance) TellPending();
  if (m_flapping.IsSettled(turn.at)) TellFlapping();
  const auto move = m_addresses.Take(turn);
  if (move) m_devices[move->second] = Device(m_devices[move->first]);
  TakeTurn(turn);
  if (move) m_devices.erase(move->first);  // who answers there is another one
}

void Events::TakeTurn(const Turn& turn) {
  switch (turn.what) {
    case What::kNote:
      return TakeNote(turn);
    case What::kAsked:
      return Asked(turn);
    case What::kAnswer:
    case What::kSilence:
    case What::kDropped:
      m_heardAt = turn.at;
      return turn.what == What::kAnswer && turn.fault == Fault::kNone ? Answered(turn) : Failed(turn);
    case What::kLate:
    case What::kEcho:
    case What::kNoise:
      return;
  }
}

void Events::End() {
  TellPending();
  TellHeld();
  TellFlapping();
}

void Events::TakeNote(const Turn& turn) {
  if (const std::string frame = KnownFrame(turn); !frame.empty()) {
    m_devices[turn.address].words.Learn(link::ReplyPayload(frame));
    return;
  }
  // Each file of a recording tells the format anew.
  if (turn.bytes.starts_with(kFormat) && std::exchange(m_format, turn.bytes) == turn.bytes) return;
  if (turn.bytes == kStarted || turn.bytes == kEnded) End();
  // Nobody knows what befell the device between two recordings.
  if (turn.bytes == kStarted) {
    for (auto& [address, device] : m_devices) device = Device(device.words);
  }
  if (m_flapping.Folds(turn.bytes, turn.at)) return;
  TellNote(turn.at, Readable(turn.bytes));
}

void Events::TellNote(std::int64_t at, std::string text) {
  Event event{at, m_offset, {}, "recorder", std::move(text)};
  m_commandOpen ? m_held.push_back(std::move(event)) : m_sink(event);
}

void Events::TellFlapping() {
  const std::int64_t at = m_flapping.SettledAt(m_now);
  if (std::string text = m_flapping.Settled(m_offset); !text.empty()) TellNote(at, std::move(text));
}

void Events::TellHeld() {
  m_commandOpen = false;
  for (const Event& event : std::exchange(m_held, {})) m_sink(event);
}

void Events::Asked(const Turn& turn) {
  if (turn.attempt > 1) {
    m_pending.reset();
  } else {
    TellPending();
    m_afterPause = turn.at - m_heardAt > kPause;
  }
  m_commandOpen = KindOf(turn.request) != RequestKind::kQuery;
  m_heardAt = turn.at;
}

void Events::Answered(const Turn& turn) {
  Device& device = m_devices[turn.address];
  const std::string reply(link::ReplyPayload(turn.bytes));
  const std::string modelBefore = device.words.Model();
  device.words.Learn(reply);
  // Not the last request: behind the copy of a setting the console may ask "U?" to know what that was.
  if (KindOf(turn.request) != RequestKind::kQuery) TellAnswered(turn, device, reply);
  FollowLink(turn, device, true);
  if (turn.request == protocol::kModelQuery.text && m_afterPause) Connected(turn, device, modelBefore);
  if (turn.request == protocol::kClearAlarms.text) device.cleared = true;
  if (turn.request == protocol::kAlarmQuery.text) FollowAlarms(turn, device, protocol::AfterEcho(reply, 2));
  if (reply.starts_with(protocol::kStatusQuery.expected)) FollowStatus(turn, device, reply);
  FollowValue(turn, device, reply);
}

void Events::Connected(const Turn& turn, Device& device, std::string_view modelBefore) {
  // The alarms of the device that was there before say nothing of this one.
  const bool isOther = device.words.Model() != modelBefore;
  if (isOther) device = Device(device.words);
  const std::string address = std::to_string(turn.bytes[1] - link::AddressByte(0));
  m_sink({turn.at,
          turn.offset,
          AddressOf(turn),
          "connected",
          device.words.Model() + ", address " + address,
          {},
          {},
          {},
          isOther});
}

void Events::Failed(const Turn& turn) {
  const bool isCommand = KindOf(turn.request) != RequestKind::kQuery;
  if (isCommand) m_pending = turn;
  if (!turn.last) return;
  TellPending();
  if (TriesFor(turn.request) > 1) FollowLink(turn, m_devices[turn.address], false);
}

void Events::TellPending() {
  if (!m_pending) return;
  const Turn turn = *std::exchange(m_pending, std::nullopt);
  if (turn.what == What::kDropped) return TellCommand(turn, "no answer to it was awaited, or recorded");
  const std::string tries = turn.attempt == 1 ? "one try" : std::to_string(turn.attempt) + " tries";
  TellCommand(turn, "no valid answer in " + tries + ", the last: " + std::string(FaultText(turn.fault)));
}

void Events::TellAnswered(const Turn& turn, const Device& device, const std::string& reply) {
  const std::string tries = turn.attempt == 1 ? "" : " in try " + std::to_string(turn.attempt);
  TellCommand(turn, device.words.Meaning(reply) + "; answered " + ClockText(turn.at, turn.offset) + tries, reply);
}

void Events::FollowLink(const Turn& turn, Device& device, bool answered) {
  if (device.lost == !answered) return;
  device.lost = !answered;
  Tell(turn, "link",
       answered ? "back" : "lost: " + std::string(FaultText(turn.fault)) + " to " + Readable(turn.request),
       {{"link lost", device.lost}});
}

void Events::FollowAlarms(const Turn& turn, Device& device, std::string_view letters) {
  const link::AlarmTable before = device.alarms;
  alarms::DecodeAlarmReply(letters, device.alarms);
  for (int i = 0; i < link::kAlarmSlots; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    const std::string_view was = StateOf(before[slot]);
    const std::string_view is = StateOf(device.alarms[slot]);
    if (was == is) continue;
    // What stood when the recording began came at a moment that nobody knows.
    const std::string_view became = device.alarmsKnown ? Became(was, is, device.cleared) : is;
    const std::string name = device.words.AlarmName(i);
    Tell(turn, "alarm", name + " " + std::string(became), {{name, !is.empty(), is == "latched"}});
  }
  device.alarmsKnown = true;
  device.cleared = false;
}

void Events::FollowStatus(const Turn& turn, Device& device, std::string_view reply) {
  std::string status = device.words.Meaning(reply);
  if (status == device.status) return;
  device.status = std::move(status);
  const protocol::RFOutput output = protocol::ReadRFOutput(protocol::AfterEcho(reply, 2));
  std::vector<Condition> conditions;
  if (output != protocol::RFOutput::kNotTold && !device.words.IsController()) {
    conditions = {{"RF Mute", output != protocol::RFOutput::kOn}};
  }
  Tell(turn, "status", device.status, std::move(conditions));
}

void Events::FollowValue(const Turn& turn, Device& device, std::string_view reply) {
  const std::string_view tag = Tag(turn.request);
  const Watch watch = WatchOf(turn.request);
  // An amplifier tells of its PiN diodes where a controller tells its priority.
  const bool isDiodes = tag == Tag(protocol::kPriorityOrDiodeQuery.text) && !device.words.IsController();
  if (watch == Watch::kNot || isDiodes) return;
  const std::string before = std::exchange(device.replies[std::string(tag)], reply);
  if (IsSameValue(before, reply)) return;
  const bool isSetting = watch == Watch::kSetting;
  if (isSetting && (before.empty() || KindOf(turn.request) != RequestKind::kQuery)) return;
  std::string text = device.words.Meaning(reply);
  if (!before.empty()) text += "; before " + device.words.ValueMeaning(before);
  const bool isOnline = tag == Tag(protocol::kOnlineQuery.text);
  Tell(turn, isSetting ? "changed" : "status", std::move(text),
       isOnline ? OnlineConditions(protocol::AfterEcho(reply, tag.size() + 1)) : std::vector<Condition>());
}

void Events::TellCommand(const Turn& turn, const std::string& outcome, std::string reply) {
  const char* const type = KindOf(turn.request) == RequestKind::kCommand ? "command" : "setting";
  const Words& words = m_devices[turn.address].words;
  const std::string text = words.Asks(turn.request) + " (" + Readable(turn.request) + "): " + outcome;
  m_sink({turn.firstAskedAt, turn.offset, AddressOf(turn), type, text, turn.request, std::move(reply)});
  TellHeld();
}

void Events::Tell(const Turn& turn, std::string type, std::string text, std::vector<Condition> conditions) {
  m_sink({turn.at, turn.offset, AddressOf(turn), std::move(type), std::move(text), {}, {}, std::move(conditions)});
}

}  // namespace tarnwell::vorel_line

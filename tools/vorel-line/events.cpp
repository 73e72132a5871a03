#include "tools/vorel-line/events.h"

#include "alarms/alarm_table.h"
#include "link/frame_codec.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"

namespace tarnwell::vorel_line {

namespace {

constexpr std::int64_t kPause = 1'000'000;  // microseconds; a console that polls never rests so long

std::string_view StateOf(const link::AlarmSlot& slot) { return slot.Latched ? "latched" : slot.Active ? "active" : ""; }

/// "come", "gone, latched": what became of an alarm.
std::string_view Became(std::string_view before, std::string_view now, bool cleared) {
  if (now == "active") return before.empty() ? "come" : "come again";
  if (now == "latched") return before.empty() ? "come and gone, latched" : "gone, latched";
  return cleared && before == "latched" ? "cleared" : "gone";
}

}  // namespace

void Events::Take(const Turn& turn) {
  switch (turn.what) {
    case What::kNote:
      return Tell(turn, "recorder", Readable(turn.bytes));
    case What::kAsked:
      m_afterPause = turn.at - m_heardAt > kPause;
      m_heardAt = turn.at;
      return;
    case What::kAnswer:
    case What::kSilence:
      m_heardAt = turn.at;
      return turn.fault == Fault::kNone ? Answered(turn) : Failed(turn);
    case What::kLate:
    case What::kEcho:
    case What::kNoise:
      return;
  }
}

void Events::Answered(const Turn& turn) {
  Device& device = m_devices[turn.address];
  const std::string reply(link::ReplyPayload(turn.bytes));
  device.words.Learn(reply);
  FollowLink(turn, true);
  if (turn.request == protocol::kModelQuery.text && m_afterPause) {
    Tell(turn, "connected", device.words.Model() + ", address " + std::to_string(turn.bytes[1] - link::AddressByte(0)));
  }
  const RequestKind kind = KindOf(turn.request);
  if (kind != RequestKind::kQuery) {
    Tell(turn, kind == RequestKind::kCommand ? "command" : "setting",
         NameOf(turn.request) + " (" + Readable(turn.request) + "): " + device.words.Meaning(reply), reply);
  }
  if (turn.request == protocol::kClearAlarms.text) device.cleared = true;
  if (turn.request == protocol::kAlarmQuery.text) FollowAlarms(turn, device, protocol::AfterEcho(reply, 2));
  if (reply.starts_with(protocol::kStatusQuery.expected)) FollowStatus(turn, device, reply);
}

void Events::Failed(const Turn& turn) {
  if (!turn.last) return;
  if (KindOf(turn.request) != RequestKind::kQuery) {
    const std::string tries = TriesFor(turn.request) == 1 ? "one try" : std::to_string(turn.attempt) + " tries";
    Tell(turn, KindOf(turn.request) == RequestKind::kCommand ? "command" : "setting",
         NameOf(turn.request) + " (" + Readable(turn.request) + "): no valid answer in " + tries +
             ", the last: " + std::string(FaultText(turn.fault)));
  }
  if (TriesFor(turn.request) > 1) FollowLink(turn, false);
}

void Events::FollowLink(const Turn& turn, bool answered) {
  if (m_lost == !answered) return;
  m_lost = !answered;
  Tell(turn, "link",
       answered ? "back" : "lost: " + std::string(FaultText(turn.fault)) + " to " + Readable(turn.request));
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
    Tell(turn, "alarm", device.words.AlarmName(i) + " " + std::string(became));
  }
  device.alarmsKnown = true;
  device.cleared = false;
}

void Events::FollowStatus(const Turn& turn, Device& device, std::string_view reply) {
  std::string status = device.words.Meaning(reply);
  if (status == device.status) return;
  device.status = std::move(status);
  Tell(turn, "status", device.status);
}

void Events::Tell(const Turn& turn, std::string type, std::string text, std::string reply) {
  const bool command = type == "command" || type == "setting";
  m_sink({turn.at, turn.offset, std::move(type), std::move(text), command ? turn.request : "", std::move(reply)});
}

}  // namespace tarnwell::vorel_line

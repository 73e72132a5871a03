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
  if (KindOf(turn.request) != RequestKind::kQuery) TellCommand(turn, device.words.Meaning(reply), reply);
  if (turn.request == protocol::kClearAlarms.text) device.cleared = true;
  if (turn.request == protocol::kAlarmQuery.text) FollowAlarms(turn, device, protocol::AfterEcho(reply, 2));
  if (reply.starts_with(protocol::kStatusQuery.expected)) FollowStatus(turn, device, reply);
}

void Events::Failed(const Turn& turn) {
  if (!turn.last) return;
  if (KindOf(turn.request) != RequestKind::kQuery) {
    const std::string tries = TriesFor(turn.request) == 1 ? "one try" : std::to_string(turn.attempt) + " tries";
    TellCommand(turn, "no valid answer in " + tries + ", the last: " + std::string(FaultText(turn.fault)));
  }
  if (TriesFor(turn.request) > 1) FollowLink(turn, false);
}

void Events::FollowLink(const Turn& turn, bool answered) {
  if (m_lost == !answered) return;
  m_lost = !answered;
  Tell(turn, "link",
       answered ? "back" : "lost: " + std::string(FaultText(turn.fault)) + " to " + Readable(turn.request),
       {"link lost", m_lost});
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
    Tell(turn, "alarm", name + " " + std::string(became), {name, !is.empty()});
  }
  device.alarmsKnown = true;
  device.cleared = false;
}

void Events::FollowStatus(const Turn& turn, Device& device, std::string_view reply) {
  std::string status = device.words.Meaning(reply);
  if (status == device.status) return;
  device.status = std::move(status);
  const bool muted = protocol::ReadRFOutput(protocol::AfterEcho(reply, 2)) >= protocol::RFOutput::kMutedDirect;
  Tell(turn, "status", device.status, {"RF muted", muted && !device.words.IsController()});
}

void Events::TellCommand(const Turn& turn, const std::string& outcome, std::string reply) {
  const char* const type = KindOf(turn.request) == RequestKind::kCommand ? "command" : "setting";
  const std::string text =
      m_devices[turn.address].words.Asks(turn.request) + " (" + Readable(turn.request) + "): " + outcome;
  m_sink({turn.at, turn.offset, type, text, turn.request, std::move(reply), {}});
}

void Events::Tell(const Turn& turn, std::string type, std::string text, Condition condition) {
  m_sink({turn.at, turn.offset, std::move(type), std::move(text), {}, {}, std::move(condition)});
}

}  // namespace tarnwell::vorel_line

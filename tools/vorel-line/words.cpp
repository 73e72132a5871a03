#include "tools/vorel-line/words.h"

#include <algorithm>
#include <span>

#include "alarms/alarm_table.h"
#include "alarms/alarm_tokens.h"
#include "link/frame_codec.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/requests.h"
#include "tools/vorel-line/turns.h"

namespace tarnwell::vorel_line {

namespace {

using View = std::string_view;

struct Letter {
  char letter;
  View meaning;
};

constexpr Letter kCompensation[] = {{'C', "compensation on"},
                                    {'U', "compensation off"},
                                    {'H', "compensation at maximum"},
                                    {'L', "compensation at minimum"}};
constexpr Letter kBeeper[] = {{'A', "beeper on"}, {'Q', "beeper off"}};
constexpr Letter kStorage[] = {{'R', "storage on"}, {'F', "storage off"}};

void Add(std::string& words, View word) {
  if (word.empty()) return;
  if (!words.empty()) words += ", ";
  words += word;
}

void AddFirst(std::string& words, View letters, std::span<const Letter> codes) {
  for (const Letter& code : codes) {
    if (letters.find(code.letter) != View::npos) return Add(words, code.meaning);
  }
}

constexpr View kDisabled = "D";

/// Values whose code says nothing by itself.
struct Coded {
  View tag;
  View value;
  View meaning;
};
constexpr Coded kCoded[] = {{"CM", "1", "1:1"},     {"CM", "2", "1:2"},       {"CP", "N", "none"},
                            {"CP", "A", "A"},       {"CP", "B", "B"},         {"PA", "1", "SSPA1"},
                            {"PA", "2", "SSPA2"},   {"PA", "?", "not known"}, {"PB", "2", "SSPA2"},
                            {"PB", "3", "SSPA3"},   {"PB", "?", "not known"}, {"TX", "1", "Vorel"},
                            {"TX", "0", "generic"}, {"CS", "E", "on"},        {"CS", "D", "off"},
                            {"CF", "E", "on"},      {"CF", "D", "off"},       {"CX", "H", "high"},
                            {"CX", "L", "low"},     {"CA", "F", "fleeting"},  {"CA", "L", "latching"}};

constexpr View kStates[] = {"", "online", "standby", "maintenance"};
constexpr View kModes[] = {"", "local lockout", "remote lockout"};
constexpr View kControllerModes[] = {"", "automatic", "manual"};

std::string OnlineWords(View digits) {
  std::string words;
  for (const View sspa : {"1", "2", "3"}) {
    if (protocol::Holds(digits, sspa)) Add(words, "SSPA" + std::string(sspa));
  }
  return words.empty() ? "none" : words;
}

template <class Code, std::size_t Count>
View TextOf(const View (&texts)[Count], Code code) {
  return texts[static_cast<std::size_t>(code)];
}

}  // namespace

void Words::Learn(View reply) {
  const View value = protocol::AfterEcho(reply, Tag(reply).size() + 1);
  if (reply.starts_with(protocol::kModelQuery.expected)) {
    const protocol::Model model = protocol::ReadModel(value);
    if (Readable(value) != m_model) m_device = {};
    m_device.SSPAType = model.type;
    m_device.SingleModule = model.singleModule;
    m_device.KBandAmp = model.kBand;
    m_model = Readable(value);
  }
  if (reply.starts_with(protocol::kPlatformQuery.expected)) m_device.HWPlatform = protocol::ReadPlatform(value);
}

std::string Words::Meaning(View reply) const {
  const View tag = Tag(reply);
  const View value = protocol::AfterEcho(reply, tag.size() + 1);
  if (tag == "S") return StatusWords(value);
  if (tag == "A") return AlarmWords(value);
  if (tag == "U" && value.size() == 1) return "address " + std::to_string(value[0] - '@');
  return Name(reply) + " " + ValueMeaning(reply);
}

std::string Words::ValueMeaning(View reply) const {
  const View tag = Tag(reply);
  const View value = protocol::AfterEcho(reply, tag.size() + 1);
  std::string text = Value(tag, value);
  const View unit = UnitOf(reply);
  if (!unit.empty() && value != kDisabled) (text += ' ') += unit;
  return text;
}

std::string Words::Value(View tag, View value) const {
  for (const Coded& coded : kCoded) {
    const bool isMeant = coded.tag != Tag(protocol::kPriorityOrDiodeQuery.text) || IsController();
    if (coded.tag == tag && coded.value == value && isMeant) return std::string(coded.meaning);
  }
  if (value == kDisabled) return "disabled";
  if (tag == Tag(protocol::kOnlineQuery.text)) return OnlineWords(value);
  // A point of the RF level table: "P29V2.50".
  const std::size_t volts = value.find('V');
  if (value.starts_with('P') && volts != View::npos) {
    return Readable(value.substr(1, volts - 1)) + " dBm, " + Readable(value.substr(volts + 1)) + " V";
  }
  return Readable(value);
}

std::string Words::Asks(View request) const {
  return request.find('=') != View::npos ? Meaning(request) : Name(request);
}

/// A controller and an amplifier are asked one thing by the same letters.
std::string Words::Name(View text) const {
  if (m_model.empty() || Tag(text) != Tag(protocol::kPriorityOrDiodeQuery.text)) return NameOf(text);
  return IsController() ? "priority path" : "PiN diode";
}

std::string Words::StatusWords(View letters) const {
  // The letters of a controller and of an amplifier mean different things.
  if (m_model.empty()) return "status " + Readable(letters);
  std::string words;
  if (IsController()) {
    Add(words, TextOf(kControllerModes, protocol::ReadControllerMode(letters)));
  } else {
    Add(words, TextOf(kStates, protocol::ReadOperatingState(letters)));
    Add(words, protocol::RFOutputText(protocol::ReadRFOutput(letters)));
    AddFirst(words, letters, kBeeper);
    AddFirst(words, letters, kCompensation);
    AddFirst(words, letters, kStorage);
  }
  Add(words, TextOf(kModes, protocol::ReadCommsMode(letters)));
  return words.empty() ? "status " + Readable(letters) : words;
}

std::string Words::AlarmName(int slot) const {
  const bool known = !m_model.empty();
  const View token = !known ? alarms::kUnknownToken : alarms::TokensFor(m_device)[static_cast<std::size_t>(slot)];
  return token == alarms::kUnknownToken ? "alarm " + std::string(1, static_cast<char>('A' + slot)) : std::string(token);
}

std::string Words::AlarmWords(View letters) const {
  link::AlarmTable table{};
  alarms::DecodeAlarmReply(letters, table);
  std::string words;
  for (int slot = 0; slot < link::kAlarmSlots; ++slot) {
    const link::AlarmSlot& alarm = table[static_cast<std::size_t>(slot)];
    if (alarm.Active || alarm.Latched) Add(words, AlarmName(slot) + (alarm.Latched ? " (latched)" : ""));
  }
  return words.empty() ? "no alarm" : words;
}

std::optional<double> NumberOf(View text) {
  const std::size_t digit = text.find_first_of("0123456789");
  const std::size_t other = text.find_first_not_of(" +-.");
  return digit != View::npos && digit == other ? std::optional(protocol::LeadingNumber(text)) : std::nullopt;
}

bool IsSameValue(View a, View b) {
  const auto number = [](View reply) { return NumberOf(protocol::AfterEcho(reply, Tag(reply).size() + 1)); };
  return a == b || (number(a) && number(a) == number(b));
}

std::string KnownFrame(const Turn& turn) {
  const bool known = turn.what == What::kNote && turn.bytes.starts_with(kKnown);
  const std::string frame = known ? turn.bytes.substr(std::min(kKnown.size() + 1, turn.bytes.size())) : std::string();
  return !frame.empty() && link::CheckReplyFrame(frame, 0, {}) ? frame : std::string();
}

std::optional<std::pair<char, char>> AddressFollower::Take(const Turn& turn) {
  constexpr View kSetAddress = "U=";
  const bool asks = turn.request.starts_with(kSetAddress) && turn.request.size() == kSetAddress.size() + 1;
  if (turn.what == What::kAsked && asks) m_asked = {turn.address, turn.request.back()};
  if (m_asked && m_asked->first == m_asked->second) m_asked.reset();
  const bool answered = turn.what == What::kAnswer && turn.fault == Fault::kNone;
  if (!answered || !m_asked || !(asks || turn.address == m_asked->second)) return std::nullopt;
  return std::exchange(m_asked, std::nullopt);
}

}  // namespace tarnwell::vorel_line

#include "tools/vorel-line/words.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <ctime>
#include <span>

#include "alarms/alarm_table.h"
#include "protocol/readings.h"
#include "protocol/vocabulary.h"

namespace tarnwell::vorel_line {

namespace {

using View = std::string_view;
using protocol::Request;

struct Row {
  const Request* query;
  View name;
  View unit;
};

const Row kRows[] = {
    {&protocol::kModelQuery, "model", ""},
    {&protocol::kFirmwareQuery, "firmware", ""},
    {&protocol::kStatusQuery, "status", ""},
    {&protocol::kAlarmQuery, "alarms", ""},
    {&protocol::kAddressQuery, "address", ""},
    {&protocol::kPriorityOrDiodeQuery, "priority path or PiN diode", ""},
    {&protocol::kConfigurationQuery, "configuration", ""},
    {&protocol::kOnlineQuery, "amplifiers online", ""},
    {&protocol::kPathAQuery, "path A", ""},
    {&protocol::kPathBQuery, "path B", ""},
    {&protocol::kGainQuery, "gain adjust", "dB"},
    {&protocol::kRFLevelQuery, "RF level", "dBm"},
    {&protocol::kReflectedLevelQuery, "reflected RF level", "dBm"},
    {&protocol::kTemperature1Query, "temperature 1", "C"},
    {&protocol::kTemperature2Query, "temperature 2", "C"},
    {&protocol::kRail5VQuery, "5 V rail", "V"},
    {&protocol::kRail11VQuery, "11 V rail", "V"},
    {&protocol::kRail11VLCQuery, "11 V LC rail", "V"},
    {&protocol::kRail14VQuery, "14 V rail", "V"},
    {&protocol::kRailMinus10VQuery, "-10 V rail", "V"},
    {&protocol::kPlatformQuery, "hardware platform", ""},
    {&protocol::kTransceiverQuery, "transceiver", ""},
    {&protocol::kRFMinimumQuery, "RF minimum", "dBm"},
    {&protocol::kRFMaximumQuery, "RF maximum", "dBm"},
    {&protocol::kReflectedMaximumQuery, "reflected RF maximum", "dBm"},
    {&protocol::kShutdownQuery, "amplifier shutdown", ""},
    {&protocol::kAlarmStyleQuery, "alarm style", ""},
    {&protocol::kAuxSenseQuery, "auxiliary alarm sense", ""},
    {&protocol::kFanQuery, "thermal fan control", ""},
};

struct Verb {
  const Request* command;
  View name;
};
const Verb kVerbs[] = {{&protocol::kLocalLockout, "local lockout"},
                       {&protocol::kRemote, "remote"},
                       {&protocol::kClearAlarms, "clear alarms"}};

/// Tables: the letters ahead of a point's index.
struct Table {
  View letters;
  View name;
};
constexpr Table kTables[] = {{"RT", "RF temperature compensation"},
                             {"R", "RF level table"},
                             {"P", "PiN diode table"},
                             {"H", "system temperature compensation"},
                             {"Q", "quick calibration of RF level table"}};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The text ahead of "?" or "=".
View Tag(View text) { return text.substr(0, text.find_first_of("?=")); }

const Row* FindRow(View tag) {
  const auto* row =
      std::find_if(std::begin(kRows), std::end(kRows), [tag](const Row& r) { return Tag(r.query->text) == tag; });
  return row != std::end(kRows) ? row : nullptr;
}

const Request* FindVerb(View text, View* name = nullptr) {
  for (const Verb& verb : kVerbs) {
    if (verb.command->text != text) continue;
    if (name != nullptr) *name = verb.name;
    return verb.command;
  }
  return nullptr;
}

const Table* FindTable(View tag) {
  for (const Table& table : kTables) {
    if (!tag.starts_with(table.letters)) continue;
    const View index = tag.substr(table.letters.size());
    if (!index.empty() && (IsDigit(index[0]) || ((index[0] == '-' || index[0] == '+') && index.size() > 1))) {
      return &table;
    }
  }
  return nullptr;
}

/// The index of a point: "04" of "R04=", "01" of "RT01.25=", "+025" of "H+025?".
View IndexOf(View tag, const Table& table) {
  const View rest = tag.substr(table.letters.size());
  return rest.substr(0, rest.find('.'));
}

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

void AddFirst(std::string& words, View letters, std::span<const Letter> codes) {
  for (const Letter& code : codes) {
    if (letters.find(code.letter) == View::npos) continue;
    words += ", ";
    words += code.meaning;
    return;
  }
}

void Add(std::string& words, View word) {
  if (word.empty()) return;
  if (!words.empty()) words += ", ";
  words += word;
}

constexpr View kStates[] = {"", "online", "standby", "maintenance"};
constexpr View kOutputs[] = {
    "", "RF on", "RF on, a module failed", "RF muted by direct input", "RF muted, a module failed", "RF muted"};
constexpr View kModes[] = {"", "local lockout", "remote lockout"};
constexpr View kControllerModes[] = {"", "automatic", "manual"};

template <class Code, std::size_t Count>
View TextOf(const View (&texts)[Count], Code code) {
  return texts[static_cast<std::size_t>(code)];
}

}  // namespace

std::string ExpectedFor(View request) {
  if (const Request* verb = FindVerb(request)) return verb->expected;
  const View tag = Tag(request);
  if (const Row* row = FindRow(tag)) return row->query->expected;
  if (const Table* table = FindTable(tag)) {
    const std::string index(IndexOf(tag, *table));
    if (table->letters == "Q") return "R" + index + "=";
    if (table->letters == "RT" || table->letters == "H") return index;
    return std::string(table->letters) + index;
  }
  return std::string(tag);
}

std::size_t MostReply(View request) {
  if (const Request* verb = FindVerb(request)) return verb->maxReply;
  const Row* row = FindRow(Tag(request));
  return row != nullptr ? std::max(row->query->maxReply, row->query->snapshotMaxReply) : 20;
}

int TriesFor(View request) { return request.starts_with("U=") ? 1 : protocol::kUsualTries; }

RequestKind KindOf(View request) {
  if (request.ends_with('?')) return RequestKind::kQuery;
  if (FindVerb(request) != nullptr || request.starts_with("Q")) return RequestKind::kCommand;
  for (const View tag : {"S", "PA", "PB", "G"}) {
    if (Tag(request) == tag) return RequestKind::kCommand;
  }
  return RequestKind::kSetting;
}

std::string NameOf(View request) {
  View verb;
  if (FindVerb(request, &verb) != nullptr) return std::string(verb);
  const View tag = Tag(request);
  if (const Row* row = FindRow(tag)) return std::string(row->name);
  const Table* table = FindTable(tag);
  if (table == nullptr) return Readable(tag);
  return std::string(table->name) + ", point " + Readable(IndexOf(tag, *table));
}

std::string GroupOf(View request) {
  const View tag = Tag(request);
  std::string rest = request.ends_with('?') ? "?" : tag.size() < request.size() ? "=" : "";
  const Table* table = FindRow(tag) == nullptr ? FindTable(tag) : nullptr;
  return (table != nullptr ? std::string(table->letters) + "nn" : Readable(tag)) + rest;
}

void Words::Learn(View reply) {
  const View value = protocol::AfterEcho(reply, Tag(reply).size() + 1);
  if (reply.starts_with(protocol::kModelQuery.expected)) {
    const protocol::Model model = protocol::ReadModel(value);
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
  const Row* row = FindRow(tag);
  const std::string name = Name(reply);
  if (value == "D") return name + " disabled";
  std::string text = name + " " + Readable(value);
  if (row != nullptr && !row->unit.empty()) (text += ' ') += row->unit;
  return text;
}

std::string Words::Asks(View request) const {
  const View command = protocol::kStatusQuery.expected;
  const std::string words = request.starts_with(command) ? StatusWords(request.substr(command.size())) : std::string();
  return words.empty() ? Name(request) : words;
}

/// A controller and an amplifier are asked one thing by the same letters.
std::string Words::Name(View text) const {
  if (m_model.empty() || Tag(text) != Tag(protocol::kPriorityOrDiodeQuery.text)) return NameOf(text);
  return IsController() ? "priority path" : "PiN diode";
}

std::string Words::StatusWords(View letters) const {
  std::string words;
  if (IsController()) {
    Add(words, TextOf(kControllerModes, protocol::ReadControllerMode(letters)));
  } else {
    Add(words, TextOf(kStates, protocol::ReadOperatingState(letters)));
    Add(words, TextOf(kOutputs, protocol::ReadRFOutput(letters)));
    AddFirst(words, letters, kBeeper);
    AddFirst(words, letters, kCompensation);
    AddFirst(words, letters, kStorage);
  }
  Add(words, TextOf(kModes, protocol::ReadCommsMode(letters)));
  return words;
}

std::string Words::AlarmName(int slot) const {
  const View token = alarms::TokensFor(m_device)[static_cast<std::size_t>(slot)];
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

std::string Readable(View bytes) {
  std::string text;
  for (const char byte : bytes) {
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\x%02X", static_cast<unsigned char>(byte));
    byte >= ' ' && byte <= '~' && byte != '\\' ? text += byte : text += code.data();
  }
  return text;
}

std::string TimeText(std::int64_t at, int offset) {
  const std::int64_t local = at + std::int64_t{offset} * 60'000'000;
  const auto seconds = static_cast<std::time_t>(local / 1'000'000);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> time{};
  std::strftime(time.data(), time.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "%s.%03d%c%02d:%02d", time.data(), static_cast<int>(local / 1000 % 1000),
                offset < 0 ? '-' : '+', std::abs(offset) / 60, std::abs(offset) % 60);
  return text.data();
}

}  // namespace tarnwell::vorel_line

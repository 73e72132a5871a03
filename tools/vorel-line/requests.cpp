#include "tools/vorel-line/requests.h"

#include <algorithm>
#include <iterator>

#include "protocol/vocabulary.h"
#include "tools/vorel-line/plain_text.h"

namespace tarnwell::vorel_line {

namespace {

using View = std::string_view;
using protocol::Request;

struct Row {
  const Request* query;
  View name;
  View unit;
  Watch watch = Watch::kNot;
};

const Row kRows[] = {
    {&protocol::kModelQuery, "model", ""},
    {&protocol::kFirmwareQuery, "firmware", ""},
    {&protocol::kStatusQuery, "status", ""},
    {&protocol::kAlarmQuery, "alarms", ""},
    {&protocol::kAddressQuery, "address", ""},
    {&protocol::kPriorityOrDiodeQuery, "priority path or PiN diode", "", Watch::kState},
    {&protocol::kConfigurationQuery, "configuration", "", Watch::kState},
    {&protocol::kOnlineQuery, "amplifiers online", "", Watch::kState},
    {&protocol::kPathAQuery, "path A", "", Watch::kState},
    {&protocol::kPathBQuery, "path B", "", Watch::kState},
    {&protocol::kGainQuery, "gain adjust", "dB", Watch::kSetting},
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
    {&protocol::kTransceiverQuery, "transceiver", "", Watch::kSetting},
    {&protocol::kRFMinimumQuery, "RF minimum", "dBm", Watch::kSetting},
    {&protocol::kRFMaximumQuery, "RF maximum", "dBm", Watch::kSetting},
    {&protocol::kReflectedMaximumQuery, "reflected RF maximum", "dBm", Watch::kSetting},
    {&protocol::kShutdownQuery, "amplifier shutdown", "", Watch::kSetting},
    {&protocol::kAlarmStyleQuery, "alarm style", "", Watch::kSetting},
    {&protocol::kAuxSenseQuery, "auxiliary alarm sense", "", Watch::kSetting},
    {&protocol::kFanQuery, "thermal fan control", "", Watch::kSetting},
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

}  // namespace

View Tag(View text) { return text.substr(0, text.find_first_of("?=")); }

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
  const View index = IndexOf(tag, *table);
  const std::string name = std::string(table->name) + ", point " + Readable(index);
  // A compensation's point is set with its temperature: "H01.25=1.5".
  const View degrees = tag.substr(table->letters.size() + index.size());
  return degrees.size() > 1 ? name + " at " + Readable(degrees.substr(1)) + " C" : name;
}

View UnitOf(View request) {
  const Row* row = FindRow(Tag(request));
  return row != nullptr ? row->unit : View();
}

Watch WatchOf(View request) {
  const Row* row = FindRow(Tag(request));
  return row != nullptr ? row->watch : Watch::kNot;
}

std::string GroupOf(View request) {
  const View tag = Tag(request);
  std::string rest = request.ends_with('?') ? "?" : tag.size() < request.size() ? "=" : "";
  const Table* table = FindRow(tag) == nullptr ? FindTable(tag) : nullptr;
  return (table != nullptr ? std::string(table->letters) + "nn" : Readable(tag)) + rest;
}

}  // namespace tarnwell::vorel_line

#include "sim/commands.h"

#include "sim/command_call.h"

namespace tarnwell::sim {

namespace {

using View = std::string_view;
using Words = std::vector<View>;

Told Help(const Call& call);

enum class Needs { kNothing, kAmplifier, kController };

struct Row {
  View name;
  View arguments;
  View help;
  Needs needs;
  std::size_t least;  ///< arguments
  std::size_t most;
  Told (*carryOut)(const Call&);
  View number = {};  ///< which of the arguments is a number in `range`
  Range range = {};
};

constexpr Row kRows[] = {
    {"help", "", "this list", Needs::kNothing, 0, 0, Help},
    {"show", "", "the devices and what was set", Needs::kNothing, 0, 0, Show},
    {"device", "ADDRESS", "the device that the next commands are for, one that show lists", Needs::kNothing, 1, 1,
     SelectDevice},
    {"alarm", "LETTER active|passed|latched|off", "one alarm; passed: latched or off by the alarm style",
     Needs::kNothing, 2, 2, SetAlarm},
    {"alarms", "[off]", "the alarms present, or no more of them", Needs::kNothing, 0, 1, Alarms},
    {"lockout", "on|off", "remote lockout", Needs::kNothing, 1, 1, Lockout},
    {"comms", "rem|llo|rlo", "comms mode", Needs::kNothing, 1, 1, Comms},
    {"state", "online|standby|maint", "operating state", Needs::kAmplifier, 1, 1, SetState},
    {"mute", "on|direct|module|off", "by the user, by direct input, by a failed module; off: none of them",
     Needs::kAmplifier, 1, 1, Mute},
    {"module", "fail|ok", "the amplifier module and its alarm P", Needs::kAmplifier, 1, 1, SetModule},
    {"level", "DBM", "RF level at the present gain", Needs::kAmplifier, 1, 1, Level, "DBM", {-100, 100}},
    {"temp", "1|2 DEGREES", "temperature of a module", Needs::kAmplifier, 2, 2, Temperature, "DEGREES", {-100, 200}},
    {"gain", "DB", "gain adjust", Needs::kAmplifier, 1, 1, Gain, "DB", {-20, 0}},
    {"auto", "", "automatic mode", Needs::kController, 0, 0, Automatic},
    {"manual", "", "manual mode", Needs::kController, 0, 0, Manual},
    {"config", "1:1|1:2", "configuration", Needs::kController, 1, 1, Configuration},
    {"path", "A 1|2|? or B 2|3|?", "amplifier on a path; ?: not known", Needs::kController, 2, 2, Path},
    {"priority", "N|A|B", "priority path", Needs::kController, 1, 1, Priority},
    {"online", "[DIGITS]", "amplifiers that are online, such as 13", Needs::kController, 0, 1, Online},
    {"silence", "[SECONDS]", "no device hears or answers", Needs::kNothing, 0, 1, Silence, "SECONDS", {0, 1'000'000}},
    {"talk", "", "ends the silence", Needs::kNothing, 0, 0, Talk},
    {"fault",
     "NAME PROBABILITY",
     "a fault of the line, or all",
     Needs::kNothing,
     2,
     2,
     SetFault,
     "PROBABILITY",
     {0, 1}},
    {"pull", "", "the adapter is pulled: the pseudo-terminal goes away", Needs::kNothing, 0, 0, Pull},
    {"plug", "", "it is back, under the same link", Needs::kNothing, 0, 0, Plug},
    {"trace", "on|off", "print each exchange", Needs::kNothing, 1, 1, Trace},
    {"quit", "", "the end", Needs::kNothing, 0, 0, Quit},
};

std::string Usage(const Row& row) {
  return std::string(row.name) + (row.arguments.empty() ? "" : " ") + std::string(row.arguments);
}

std::string Meaning(const Row& row) {
  std::string text(row.help);
  if (row.number.empty()) return text;
  return text + "; " + std::string(row.number) + " from " + Shortest(row.range.low) + " to " + Shortest(row.range.high);
}

Told Help(const Call&) {
  std::string text;
  for (const Row& row : kRows) {
    std::string line = "  " + Usage(row);
    line.resize(std::max<std::size_t>(line.size() + 2, 42), ' ');
    text += line + Meaning(row) + "\n";
  }
  return text;
}

Words SplitWords(View line) {
  constexpr View kBlanks = " \t\r\n";
  Words words;
  for (std::size_t start = line.find_first_not_of(kBlanks); start != View::npos;) {
    const std::size_t end = std::min(line.find_first_of(kBlanks, start), line.size());
    words.push_back(line.substr(start, end - start));
    start = line.find_first_not_of(kBlanks, end);
  }
  return words;
}

std::string Join(const Words& words) {
  std::string text;
  for (const View word : words) text.append(text.empty() ? "" : " ").append(word);
  return text;
}

bool Meets(const Device& device, Needs needs) {
  if (needs == Needs::kNothing) return true;
  const bool isAmplifier = dynamic_cast<const Amplifier*>(&device) != nullptr;
  return isAmplifier == (needs == Needs::kAmplifier);
}

/// What is wrong, or nothing: then `told` is what it has to print.
std::string Complaint(const Row& row, const Call& call, std::string& told) {
  if (!Meets(call.TheDevice(), row.needs)) {
    return row.needs == Needs::kAmplifier ? "not an amplifier" : "not a controller";
  }
  const bool counted = call.words.size() >= row.least && call.words.size() <= row.most;
  const Told done = counted ? row.carryOut(call) : std::nullopt;
  if (!done) return "not usable; usage: " + Usage(row) + " (" + Meaning(row) + ")";
  told = *done;
  return {};
}

}  // namespace

Outcome Execute(Station& station, double now, std::string_view line) {
  const Words words = SplitWords(line);
  if (words.empty()) return {true, {}, {}};
  const std::string command = Join(words);
  for (const Row& row : kRows) {
    if (row.name != words.front()) continue;
    std::string told;
    const std::string wrong = Complaint(row, {station, now, Words(words.begin() + 1, words.end()), row.range}, told);
    if (wrong.empty()) return {true, told, command};
    return {false, std::string(command).append(": ").append(wrong), {}};
  }
  return {false, command + ": unknown; help lists the commands", {}};
}

}  // namespace tarnwell::sim

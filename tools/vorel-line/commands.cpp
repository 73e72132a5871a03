#include "tools/vorel-line/commands.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <span>
#include <string_view>

#include "tools/shared/files.h"
#include "tools/vorel-line/device.h"
#include "tools/vorel-line/plain_text.h"
#include "tools/vorel-line/plot.h"
#include "tools/vorel-line/readers.h"
#include "tools/vorel-line/recorder.h"
#include "tools/vorel-line/replay.h"

namespace tarnwell::vorel_line {

namespace {

using View = std::string_view;

constexpr const char* kHelp =
    "Usage: vorel-line record DEVICE --link LINK [-o FILE] [--wait] [--rs485] [--format e,7,1]\n"
    "                         [--size MB] [--keep N]\n"
    "       vorel-line show FILE... [--raw] [--follow]\n"
    "       vorel-line events FILE... [--csv | --json] [--follow]\n"
    "       vorel-line stats FILE...\n"
    "       vorel-line plot FILE... -o OUT.svg|OUT.png\n"
    "       vorel-line replay FILE... --link LINK [--fast]\n"
    "Records what goes between the console and its device, and tells what a recording holds.\n"
    "Several recordings are read in the order in which they were begun: line.rec* is all of a line.\n";

/// A command line, taken apart.
struct Parsed {
  std::vector<std::string> operands;
  std::map<View, std::string> options;
  bool Has(View name) const { return options.contains(name); }
  std::string Value(View name, const std::string& otherwise = {}) const {
    const auto found = options.find(name);
    return found != options.end() ? found->second : otherwise;
  }
};

struct Option {
  View name;
  bool hasValue;
};

constexpr Option kRecordOptions[] = {{"--link", true},   {"-o", true},     {"--wait", false}, {"--rs485", false},
                                     {"--format", true}, {"--size", true}, {"--keep", true}};
constexpr Option kShowOptions[] = {{"--raw", false}, {"--follow", false}};
constexpr Option kEventsOptions[] = {{"--csv", false}, {"--json", false}, {"--follow", false}};
constexpr Option kPlotOptions[] = {{"-o", true}};
constexpr Option kReplayOptions[] = {{"--link", true}, {"--fast", false}};

int Refuse(const std::string& what) {
  Complain(what);
  std::fputs("vorel-line --help tells how it is used.\n", stderr);
  return kExitUnusable;
}

/// A whole number from 0 on, or -1.
int Number(const std::string& text) {
  const bool digits = !text.empty() && text.size() < 7 && text.find_first_not_of("0123456789") == std::string::npos;
  return digits ? std::atoi(text.c_str()) : -1;
}

int Record(const Parsed& parsed) {
  RecordOptions options;
  options.device = parsed.operands[0];
  options.link = parsed.Value("--link");
  options.file.path = parsed.Value("-o", "line.rec");
  options.rs485 = parsed.Has("--rs485");
  options.wait = parsed.Has("--wait");
  options.dataFormat = DataFormatOf(parsed.Value("--format"));
  if (parsed.operands.size() != 1) return Refuse("record: one device");
  if (options.file.path == "-") return Refuse(std::string("record: -o: - ") + tools::kDashIsNoFile);
  if (options.link.empty()) return Refuse("record: --link is needed: what the console opens");
  const auto whole = [](const std::string& path) { return std::filesystem::absolute(path).lexically_normal(); };
  if (whole(options.device) == whole(options.link)) return Refuse("record: the link can't be the device itself");
  if (parsed.Has("--format") && options.dataFormat.empty()) return Refuse("--format: parity, bits, stops: e,7,1");
  const int size = Number(parsed.Value("--size", "0"));
  options.file.keep = Number(parsed.Value("--keep", "0"));
  if (size < 0 || options.file.keep < 0) return Refuse("--size and --keep: whole numbers");
  options.file.largest = static_cast<std::uint64_t>(size) * 1'000'000;
  return RecordLine(options);
}

int Show(const Parsed& parsed) { return PrintShow(parsed.operands, parsed.Has("--raw"), parsed.Has("--follow")); }

int ShowEvents(const Parsed& parsed) {
  if (parsed.Has("--csv") && parsed.Has("--json")) return Refuse("events: --csv or --json");
  const View format = parsed.Has("--csv") ? "csv" : parsed.Has("--json") ? "json" : "text";
  return PrintEvents(parsed.operands, format, parsed.Has("--follow"));
}

int Stats(const Parsed& parsed) { return PrintStats(parsed.operands); }

int Plot(const Parsed& parsed) {
  if (!parsed.Has("-o")) return Refuse("plot: -o is needed: the picture");
  return DrawPlot(parsed.operands, parsed.Value("-o"));
}

int Replay(const Parsed& parsed) {
  if (!parsed.Has("--link")) return Refuse("replay: --link is needed: what the console opens");
  return ReplayFiles(parsed.operands, parsed.Value("--link"), parsed.Has("--fast"));
}

struct Command {
  View name;
  std::span<const Option> options;
  int (*run)(const Parsed&);
};

const Command kCommands[] = {{"record", kRecordOptions, Record},     {"show", kShowOptions, Show},
                             {"events", kEventsOptions, ShowEvents}, {"stats", {}, Stats},
                             {"plot", kPlotOptions, Plot},           {"replay", kReplayOptions, Replay}};

const Option* Find(std::span<const Option> options, View name) {
  for (const Option& option : options) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

/// What is wrong, or nothing.
std::string Parse(const std::vector<std::string>& arguments, const Command& command, Parsed& parsed) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (!arguments[i].starts_with('-') || arguments[i] == "-") {
      parsed.operands.push_back(arguments[i]);
      continue;
    }
    const Option* option = Find(command.options, arguments[i]);
    if (option == nullptr) return "unknown option " + arguments[i];
    if (parsed.Has(option->name)) return arguments[i] + " is given twice";
    if (option->hasValue && i + 1 == arguments.size()) return arguments[i] + " needs a value";
    parsed.options[option->name] = option->hasValue ? arguments[++i] : "";
  }
  return parsed.operands.empty() ? std::string(command.name) + ": what?" : std::string();
}

}  // namespace

bool NeedsPainting(const std::vector<std::string>& arguments) { return !arguments.empty() && arguments[0] == "plot"; }

int Run(const std::vector<std::string>& arguments) {
  const std::string first = arguments.empty() ? "" : arguments[0];
  for (const std::string& argument : arguments) {
    if (argument != "--help" && argument != "-h") continue;
    std::fputs(kHelp, stdout);
    return kExitFine;
  }
  if (first == "--version") return std::puts("vorel-line " TARNWELL_VERSION), kExitFine;
  for (const Command& command : kCommands) {
    if (command.name != first) continue;
    Parsed parsed;
    const std::string error = Parse(arguments, command, parsed);
    return error.empty() ? command.run(parsed) : Refuse(error);
  }
  return Refuse(first.empty() ? "what?" : "unknown command " + first);
}

}  // namespace tarnwell::vorel_line

#include "sim/options.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "link/sspa_public.h"
#include "sim/faults.h"
#include "sim/numbers.h"

namespace tarnwell::sim {

namespace {

using View = std::string_view;

constexpr std::size_t kLongestFirmware = 17;
constexpr std::size_t kLongestPlatform = 12;

/// What can stand in a reply: no brace, which would end the frame, and ASCII alone.
bool FitsReply(View text, std::size_t longest) {
  const auto plain = [](char c) { return c >= ' ' && c <= '~' && c != '{' && c != '}'; };
  return !text.empty() && text.size() <= longest && std::all_of(text.begin(), text.end(), plain);
}

/// A whole number from `low` to `high` into `target`.
template <class T>
bool TakeWhole(View text, int low, int high, T& target) {
  const auto value = ParseWhole(text);
  if (!value || *value < low || *value > high) return false;
  target = static_cast<T>(*value);
  return true;
}

bool TakeText(View text, std::size_t longest, std::string& target) {
  if (!FitsReply(text, longest)) return false;
  target = text;
  return true;
}

bool SetKind(DeviceSetup& setup, View name) {
  const Kind* kind = FindKind(name);
  if (kind) setup.kind = kind;
  return kind != nullptr;
}

struct DeviceKey {
  View name;
  View argument;
  View help;
  bool (*set)(DeviceSetup&, View);
};

constexpr DeviceKey kDeviceKeys[] = {
    {"kind", "KIND", "c60, c120, c240, k40, k80, unknown or controller (c60)", SetKind},
    {"address", "N", "0 to 31 (1)",
     [](DeviceSetup& s, View text) { return TakeWhole(text, 0, link::kMaxAddress, s.address); }},
    {"firmware", "TEXT", "at most 17 characters, such as \"0264C-01 V6.0\"; decides on the requests it has",
     [](DeviceSetup& s, View text) { return TakeText(text, kLongestFirmware, s.firmware); }},
    {"platform", "TEXT", "at most 12 characters, such as \"0842\", the same",
     [](DeviceSetup& s, View text) { return TakeText(text, kLongestPlatform, s.platform); }},
    {"modules", "N", "1 or 2 amplifier modules",
     [](DeviceSetup& s, View text) { return TakeWhole(text, 1, 2, s.modules); }},
};

bool SetDeviceKey(DeviceSetup& setup, View name, View value) {
  for (const DeviceKey& key : kDeviceKeys) {
    if (key.name == name) return key.set(setup, value);
  }
  return false;
}

DeviceSetup PlainDevice() { return {&Kinds().front(), 1, {}, {}, 0, 1}; }

/// "kind=c60,address=3"
bool AddDevice(Options& options, View words) {
  DeviceSetup setup = PlainDevice();
  while (!words.empty()) {
    const View pair = words.substr(0, words.find(','));
    words.remove_prefix(std::min(pair.size() + 1, words.size()));
    const std::size_t equals = pair.find('=');
    if (equals == View::npos || !SetDeviceKey(setup, pair.substr(0, equals), pair.substr(equals + 1))) return false;
  }
  options.devices.push_back(setup);
  return true;
}

/// "split=0.1"
bool AddFault(Options& options, View text) {
  const std::size_t equals = text.find('=');
  const auto probability = ParseNumber(equals == View::npos ? View() : text.substr(equals + 1));
  const std::string name(text.substr(0, equals));
  if (!probability || !Faults(0).Set(name, *probability)) return false;
  options.faults.emplace_back(name, *probability);
  return true;
}

bool SetAnswerTime(Options& options, View text) {
  const auto milliseconds = ParseNumber(text);
  if (!milliseconds || *milliseconds < 0.0 || *milliseconds > 10'000.0) return false;
  options.answerTime = *milliseconds / 1000.0;
  return true;
}

bool SetPath(std::string& path, View text) {
  path = text;
  return !text.empty();
}

struct OptionRow {
  View name;
  View argument;  ///< empty: the option stands alone
  View help;
  bool (*set)(Options&, View);
};

constexpr OptionRow kOptions[] = {
    {"device", "WORDS", "one device of several, by the names of the options of one: kind=c60,address=3", AddDevice},
    {"link", "PATH", "a symbolic link to the pseudo-terminal, removed at the end",
     [](Options& o, View text) { return SetPath(o.link, text); }},
    {"port", "DEVICE", "a real serial device instead of a pseudo-terminal",
     [](Options& o, View text) { return SetPath(o.port, text); }},
    {"rate", "N", "speed of the line in bits per second, 0 to 4000000, at ten bits a byte (0: no pacing)",
     [](Options& o, View text) { return TakeWhole(text, 0, 4'000'000, o.rate); }},
    {"answer-time", "MS", "from a request to its reply, 0 to 10000 (5)", SetAnswerTime},
    {"seed", "N", "of faults, ripple and drift, 0 to 1000000000 (1); 0: measured values stand still",
     [](Options& o, View text) { return TakeWhole(text, 0, 1'000'000'000, o.seed); }},
    {"fault", "NAME=P", "a fault that --help lists, with its probability, 0 to 1; \"all\" for every one", AddFault},
    {"faults", "NAME=P", "the same", AddFault},
    {"echo", "", "the line gives back what it hears, as many two-wire adapters do",
     [](Options& o, View) { return o.echo = true; }},
    {"trace", "", "print each exchange", [](Options& o, View) { return o.trace = true; }},
    {"quiet", "", "print no \"ok\" for a command that is in force", [](Options& o, View) { return o.quiet = true; }},
    {"help", "", "print this", [](Options& o, View) { return o.help = true; }},
    {"version", "", "print the version", [](Options& o, View) { return o.version = true; }},
};

std::string HelpLine(View name, View argument, View help) {
  std::string line = "  --" + std::string(name) + (argument.empty() ? "" : " ") + std::string(argument);
  line.resize(std::max<std::size_t>(line.size() + 2, 22), ' ');
  return line + std::string(help) + "\n";
}

/// The arguments being read, one option after the other.
class Reader {
 public:
  explicit Reader(const std::vector<std::string>& arguments) : m_arguments(arguments) {}

  /// What is wrong, or nothing.
  std::string ReadAll(Options& options) {
    DeviceSetup single = PlainDevice();
    bool singleTold = false;
    for (; m_at < m_arguments.size(); ++m_at) {
      const bool known = ReadDeviceKey(single, singleTold) || ReadOption(options);
      if (!m_error.empty()) return m_error;
      if (!known) return "unknown option " + m_arguments[m_at];
    }
    if (singleTold && !options.devices.empty()) return "give either --device or the options of a single device";
    if (options.devices.empty()) options.devices.push_back(single);
    return {};
  }

 private:
  bool ReadDeviceKey(DeviceSetup& single, bool& told) {
    for (const DeviceKey& key : kDeviceKeys) {
      const auto value = ValueOf(key.name, key.argument);
      if (!value) continue;
      told = true;
      if (m_error.empty() && !key.set(single, *value)) Refuse(key, *value);
      return true;
    }
    return false;
  }

  bool ReadOption(Options& options) {
    for (const OptionRow& row : kOptions) {
      const auto value = ValueOf(row.name, row.argument);
      if (!value) continue;
      if (m_error.empty() && !row.set(options, *value)) Refuse(row, *value);
      return true;
    }
    return false;
  }

  /// The value of the option `name` if it stands here, as "--name value" or "--name=value".
  std::optional<View> ValueOf(View name, View argument) {
    const View here = m_arguments[m_at];
    if (here.substr(0, 2) != "--" || here.substr(2, name.size()) != name) return std::nullopt;
    const View rest = here.substr(2 + name.size());
    if (argument.empty() || rest.starts_with('=')) {
      const bool fits = argument.empty() == rest.empty();
      return fits ? std::optional(rest.substr(rest.empty() ? 0 : 1)) : std::nullopt;
    }
    if (!rest.empty()) return std::nullopt;
    if (m_at + 1 == m_arguments.size()) {
      m_error = "--" + std::string(name) + " needs a value";
      return View();
    }
    return m_arguments[++m_at];
  }

  void Refuse(const auto& row, View value) {
    const std::string option = "--" + std::string(row.name);
    m_error = option + ": not usable: " + std::string(value) + " (" + option + " " + std::string(row.argument) + ": " +
              std::string(row.help) + ")";
  }

  const std::vector<std::string>& m_arguments;
  std::size_t m_at = 0;
  std::string m_error;
};

/// What is wrong with the whole, or nothing.
std::string Complaint(const Options& options) {
  for (std::size_t i = 0; i < options.devices.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (options.devices[i].address == options.devices[k].address) return "two devices have the same address";
    }
  }
  if (!options.link.empty() && !options.port.empty()) return "--link goes with a pseudo-terminal, not with --port";
  return {};
}

void SpreadSeed(Options& options) {
  std::uint32_t next = options.seed;
  for (DeviceSetup& device : options.devices) device.seed = options.seed == 0 ? 0 : next++;
}

}  // namespace

std::variant<Options, std::string> ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  std::string error = Reader(arguments).ReadAll(options);
  if (error.empty()) error = Complaint(options);
  if (!error.empty()) return error;
  SpreadSeed(options);
  return options;
}

std::string OptionsHelp() {
  std::string text =
      "Usage: vorel-sim [OPTION]...\nA simulated amplifier or redundancy controller on a serial line.\n\n";
  for (const DeviceKey& key : kDeviceKeys) text += HelpLine(key.name, key.argument, key.help);
  for (const OptionRow& row : kOptions) text += HelpLine(row.name, row.argument, row.help);
  text += "\nFaults:\n";
  for (const FaultName& fault : kFaultNames) {
    std::string line = "  " + std::string(fault.name);
    line.resize(22, ' ');
    text += line + std::string(fault.help) + "\n";
  }
  return text + "\nCommands on standard input change the world while it runs; help lists them.\n";
}

}  // namespace tarnwell::sim

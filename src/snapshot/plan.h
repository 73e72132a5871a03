#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "alarms/alarm_tokens.h"
#include "protocol/vocabulary.h"

namespace tarnwell::snapshot {

/// What stands for a value that couldn't be read, and for one that the device doesn't have.
inline constexpr std::string_view kReadError = "#ERR";
inline constexpr std::string_view kNotAvailable = "NA";

/// True for the devices that are asked.
using Condition = bool (*)(const link::SSPA_Public& device);
constexpr bool EveryDevice(const link::SSPA_Public& /*device*/) { return true; }

/// What a code in a reply means.
struct Meaning {
  std::string_view code;
  std::string_view word;
};

/// The same for every device; "REM" where none of them fits.
inline constexpr Meaning kCommsModes[] = {{"Y", "LLO"}, {"Z", "RLO"}};

/// The values of a label, each on a line of its own. Nothing: an error that ends the file.
using Values = std::optional<std::vector<std::string>>;

/// How the text of a reply, its echo gone, becomes values.
struct Shown {
  Values (*values)(const Shown& shown, std::string_view text, const alarms::AlarmTokens& tokens);
  std::string_view unit = {};
  std::span<const Meaning> meanings = {};
  std::string_view otherwise = {};  ///< where no meaning fits
};

/// One line of the file, or a list. Neighbours with the same request share one transaction, and the bar moves behind
/// the last of them.
struct Row {
  std::string_view label;
  const protocol::Request* request;
  Shown shown;
  Condition asked = EveryDevice;
  std::string_view unasked = kNotAvailable;  ///< empty: no line at all
};

/// The text of one point, "(a, b)". Nothing: an error that ends the file.
using Entry = std::optional<std::string> (*)(int index, std::string_view reply);

/// A calibration table of the device, several points on a line.
struct Table {
  std::string_view label;
  int first;
  int last;
  int pointsPerLine;
  int unaskedSteps;  ///< of the bar, where the table isn't asked
  protocol::Request (*query)(int index);
  Entry entry;
  Condition asked = EveryDevice;
  std::string_view unasked = {};  ///< empty: no line at all
};

/// A whole file behind its first three lines.
struct Plan {
  std::string_view failure;  ///< the message of a file that stopped
  int stepsAhead;            ///< of the bar, before the file is opened
  int stepsPerRequest;
  std::span<const Row> rows;
  std::span<const Table> tables;
};

const Plan& SSPAPlan();
const Plan& ControllerPlan();

}  // namespace tarnwell::snapshot

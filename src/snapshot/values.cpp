#include "snapshot/values.h"

#include <algorithm>

#include "link/frame_codec.h"
#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::snapshot {

namespace {

constexpr std::size_t kAlarmsPerLine = 3;

std::vector<std::string> OneValue(std::string_view value, std::string_view unit = {}) {
  return {std::string(value).append(unit)};
}

Values WordFor(const Shown& shown, auto fits) {
  const auto* const end = shown.meanings.data() + shown.meanings.size();
  const auto* const found = std::find_if(shown.meanings.data(), end, fits);
  return OneValue(found != end ? found->word : shown.otherwise);
}

std::vector<std::string> AlarmList(char firstLetter, std::string_view text, const alarms::AlarmTokens& tokens) {
  std::vector<std::string> lines;
  std::size_t count = 0;
  for (std::size_t slot = 0; slot < tokens.size(); ++slot) {
    if (text.find(static_cast<char>(firstLetter + static_cast<int>(slot))) == std::string_view::npos) continue;
    if (count++ % kAlarmsPerLine == 0) {
      lines.emplace_back(tokens[slot]);
    } else {
      lines.back().append(", ").append(tokens[slot]);
    }
  }
  return lines.empty() ? OneValue("NONE") : lines;
}

using Tokens = alarms::AlarmTokens;

Values TextValue(const Shown& shown, std::string_view text, const Tokens& /*tokens*/) {
  return OneValue(text, shown.unit);
}

Values LimitValue(const Shown& shown, std::string_view text, const Tokens& /*tokens*/) {
  return text == std::string_view(&protocol::kDisabledMark, 1) ? OneValue("DISABLED") : OneValue(text, shown.unit);
}

Values AddressValue(const Shown& /*shown*/, std::string_view text, const Tokens& /*tokens*/) {
  if (text.empty()) return std::nullopt;
  return OneValue(std::to_string(static_cast<unsigned char>(text.front()) - link::AddressByte(0)));
}

Values RoundedValue(const Shown& shown, std::string_view text, const Tokens& /*tokens*/) {
  return OneValue(protocol::RoundedText(text), shown.unit);
}

Values FirstHeldValue(const Shown& shown, std::string_view text, const Tokens& /*tokens*/) {
  return WordFor(shown, [text](const Meaning& meaning) { return protocol::Holds(text, meaning.code); });
}

Values ExactValue(const Shown& shown, std::string_view text, const Tokens& /*tokens*/) {
  return WordFor(shown, [text](const Meaning& meaning) { return text == meaning.code; });
}

template <char kFirstLetter>
Values AlarmValues(const Shown& /*shown*/, std::string_view text, const Tokens& tokens) {
  return AlarmList(kFirstLetter, text, tokens);
}

}  // namespace

Shown Text(std::string_view unit) { return {TextValue, unit}; }
Shown Limit(std::string_view unit) { return {LimitValue, unit}; }
Shown Address() { return {AddressValue}; }
Shown Rounded(std::string_view unit) { return {RoundedValue, unit}; }
Shown FirstHeld(std::span<const Meaning> meanings, std::string_view otherwise) {
  return {FirstHeldValue, {}, meanings, otherwise};
}
Shown Exactly(std::span<const Meaning> meanings) { return {ExactValue, {}, meanings, alarms::kUnknownToken}; }
Shown ActiveAlarms() { return {AlarmValues<'A'>}; }
Shown LatchedAlarms() { return {AlarmValues<'a'>}; }

}  // namespace tarnwell::snapshot

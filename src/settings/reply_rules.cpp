#include "settings/reply_rules.h"

#include <algorithm>

#include "protocol/encodings.h"
#include "protocol/readings.h"

namespace tarnwell::settings {

namespace {

constexpr std::array kTempCompChoices = {
    Choice{"C", &frmSettings::optTempCompOn}, Choice{"U", &frmSettings::optTempCompOff},
    Choice{"H", &frmSettings::optTempCompMax}, Choice{"L", &frmSettings::optTempCompMin}};
constexpr std::array kModeChoices = {Choice{"O", &frmSettings::optModeOnline},
                                     Choice{"S", &frmSettings::optModeStandby},
                                     Choice{"M", &frmSettings::optModeMaint}};
constexpr std::array kBeeperChoices = {Choice{"A", &frmSettings::optBeeperOn},
                                       Choice{kAnyText, &frmSettings::optBeeperOff}};

}  // namespace

void Choose(forms::frmSettings& form, std::string_view text, std::span<const Choice> choices) {
  const auto held = [text](const Choice& choice) { return protocol::Holds(text, choice.code); };
  const auto chosen = std::find_if(choices.begin(), choices.end(), held);
  if (chosen != choices.end()) return (form.*chosen->option).Select();
  for (const Choice& choice : choices) (form.*choice.option).TakeBack();
}

void ChooseByStatus(forms::frmSettings& form, std::string_view letters) {
  Choose(form, letters, kTempCompChoices);
  Choose(form, letters, kModeChoices);
  Choose(form, letters, kBeeperChoices);
}

std::optional<int> LimitTenths(std::string_view text) {
  if (protocol::Holds(text, std::string_view(&protocol::kDisabledMark, 1))) return std::nullopt;
  return protocol::Tenths(protocol::LeadingNumber(text));
}

}  // namespace tarnwell::settings

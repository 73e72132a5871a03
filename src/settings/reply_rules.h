#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "forms/frm_settings.h"

namespace tarnwell::settings {

/// A code in a reply, and the option that it selects.
struct Choice {
  std::string_view code;
  forms::OptionButton forms::frmSettings::*option;
};

/// The code of an option that is selected where the reply holds no other.
inline constexpr std::string_view kAnyText;

/// Selects the option of the first code that `text` holds. Where it holds none, what the operator chose meanwhile is
/// taken back. Sends nothing.
void Choose(forms::frmSettings& form, std::string_view text, std::span<const Choice> choices);

/// The three groups that live on the letters of the status.
void ChooseByStatus(forms::frmSettings& form, std::string_view letters);

/// A limit in tenths of a dBm; nothing for a disabled one.
std::optional<int> LimitTenths(std::string_view text);

// The rows in the order in which the codes are looked for. A query and a setting are answered alike but for two groups.
using forms::frmSettings;
inline constexpr std::array kConfigurationChoices = {Choice{"1", &frmSettings::opt7316_11},
                                                     Choice{"2", &frmSettings::opt7316_12}};
inline constexpr std::array kSetConfigurationChoices = {Choice{"1", &frmSettings::opt7316_11},
                                                        Choice{kAnyText, &frmSettings::opt7316_12}};
inline constexpr std::array kPriorityChoices = {Choice{"N", &frmSettings::opt7316None},
                                                Choice{"A", &frmSettings::opt7316PathA},
                                                Choice{"B", &frmSettings::opt7316PathB}};
inline constexpr std::array kSetPriorityChoices = {Choice{"A", &frmSettings::opt7316PathA},
                                                   Choice{"B", &frmSettings::opt7316PathB},
                                                   Choice{kAnyText, &frmSettings::opt7316None}};
inline constexpr std::array kTransceiverChoices = {Choice{"1", &frmSettings::optTxVorel},
                                                   Choice{kAnyText, &frmSettings::optTxOther}};
inline constexpr std::array kShutdownChoices = {Choice{"OFF", &frmSettings::optAmpShutdownOff},
                                                Choice{kAnyText, &frmSettings::optAmpShutdownOn}};
inline constexpr std::array kAlarmStyleChoices = {Choice{"LATCHED", &frmSettings::optAlarmLatching},
                                                  Choice{kAnyText, &frmSettings::optAlarmFleeting}};
inline constexpr std::array kSetAlarmStyleChoices = {Choice{"FLEETING", &frmSettings::optAlarmFleeting},
                                                     Choice{kAnyText, &frmSettings::optAlarmLatching}};
inline constexpr std::array kAuxSenseChoices = {Choice{"LOW", &frmSettings::optAuxLow},
                                                Choice{kAnyText, &frmSettings::optAuxHigh}};
inline constexpr std::array kFanChoices = {Choice{"OFF", &frmSettings::optFanCtrlOff},
                                           Choice{kAnyText, &frmSettings::optFanCtrlOn}};

}  // namespace tarnwell::settings

#pragma once

#include <array>
#include <string_view>

#include "link/sspa_public.h"

namespace tarnwell::alarms {

/// One name an alarm slot, as files write it.
using AlarmTokens = std::array<std::string_view, link::kAlarmSlots>;

/// What a file writes for a word or letter of the device that has no meaning.
inline constexpr std::string_view kUnknownToken = "#UNKNOWN";

/// The names of the connected device's alarms; a slot that its kind doesn't have is kUnknownToken.
AlarmTokens TokensFor(const link::SSPA_Public& device);

}  // namespace tarnwell::alarms

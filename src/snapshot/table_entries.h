#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::snapshot {

/// The entry of a point that couldn't be read or made sense of.
inline constexpr std::string_view kErrorEntry = "(#ERR, #ERR)";

// One entry a point, "(a, b)", from the whole reply; "D" stands for what is disabled.

/// "RT01.-20=1.5": temperature and compensation.
std::optional<std::string> RFCompensationEntry(int index, std::string_view reply);
/// "H01.-20=1.5": the same.
std::optional<std::string> SystemCompensationEntry(int index, std::string_view reply);
/// "H+025=1.5" of firmware class 1: the temperature keeps its sign and zeros.
std::optional<std::string> FixedCompensationEntry(int index, std::string_view reply);
/// "R07=P32V2.27": level, rounded, and volts.
std::optional<std::string> RFLevelEntry(int index, std::string_view reply);
/// "P07=54": index and setting. Nothing: the setting is no 16-bit whole number, and no file may hold it.
std::optional<std::string> PiNEntry(int index, std::string_view reply);

}  // namespace tarnwell::snapshot

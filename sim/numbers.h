#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::sim {

/// A decimal number that fills the whole of `text`, but for blanks ahead of it: " 12.5", "-.5", "+3". Nothing where
/// the text is anything else.
std::optional<double> ParseNumber(std::string_view text);

/// The same without a fraction.
std::optional<int> ParseWhole(std::string_view text);

/// A value with a fixed count of decimals: "43.2".
std::string Decimals(double value, int decimals);

/// A value in as few characters as it takes: "1.5", ".5", "-1".
std::string Shortest(double value);

}  // namespace tarnwell::sim

#pragma once

#include <QString>
#include <optional>

namespace tarnwell::settings {

/// What a field's text comes to at Enter: a number beyond a limit becomes the limit, a "D" anywhere in a field that
/// takes one disables. Nothing: the text can't be converted.

/// Tenths of a dBm, -5 for "D". Not held within limits but those of 16 bits.
std::optional<int> LimitFromEntry(const QString& text);
/// Volts, 0 to 15, or the disabled value.
std::optional<float> VoltsFromEntry(const QString& text);
/// The text that is sent for a DAC value, 0 to 255 or "D". Digits stay as they were typed: "007".
std::optional<QString> DACFromEntry(const QString& text);
/// The text, with two decimals or "D", of a compensation from -10 to 10.
std::optional<QString> CompensationFromEntry(const QString& text);
/// The text of a temperature from -50 to 125 degrees.
std::optional<QString> TemperatureFromEntry(const QString& text);

/// The limits in words, for assistive tools: "0 to 15, D: disabled".
QString VoltsInWords();
QString DACInWords();
QString CompensationInWords();
QString TemperatureInWords();
/// Of a threshold whose spin control ends at `most` and steps by `step` decibels.
QString ThresholdInWords(double most, double step);

}  // namespace tarnwell::settings

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell::vorel_line {

/// A line of the program's on standard error. Control characters, as a file's name may hold, stand as \x and two
/// hexadecimal digits.
void Complain(const std::string& what);

/// Text for a terminal: what isn't plain ASCII, and a backslash, as its code.
std::string Readable(std::string_view bytes);

/// "2026-11-23T18:45:12.345+01:00" of microseconds since 1970 and of minutes that local time is ahead of UTC.
std::string TimeText(std::int64_t at, int offset);

/// "2026-11-23T17:45:12.345Z" of the same moment.
std::string UtcText(std::int64_t at);

/// "18:45:12.345", the local time of day.
std::string ClockText(std::int64_t at, int offset);

/// A JSON string of plain ASCII.
std::string JsonText(std::string_view text);

}  // namespace tarnwell::vorel_line

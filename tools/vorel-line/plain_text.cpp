#include "tools/vorel-line/plain_text.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace tarnwell::vorel_line {

void Complain(const std::string& what) {
  std::string line;
  for (std::size_t i = 0; i < what.size(); ++i) {
    const auto code = static_cast<unsigned char>(what[i]);
    // Those of the second set have two bytes in UTF-8: C2 and 80 to 9F.
    const bool isSecond = i > 0 && what[i - 1] == '\xC2' && code >= 0x80 && code < 0xA0;
    if (isSecond) line.pop_back();
    if (isSecond) line += "\\xC2";
    line += code < ' ' || code == 0x7F || isSecond ? Readable(what.substr(i, 1)) : what.substr(i, 1);
  }
  std::fprintf(stderr, "vorel-line: %s\n", line.c_str());
}

std::string Readable(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\x%02X", static_cast<unsigned char>(byte));
    byte >= ' ' && byte <= '~' && byte != '\\' ? text += byte : text += code.data();
  }
  return text;
}

std::string TimeText(std::int64_t at, int offset) {
  using namespace std::chrono;
  const sys_time<milliseconds> time = floor<milliseconds>(sys_time<microseconds>(microseconds(at)) + minutes(offset));
  const sys_days day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03d%c%02d:%02d",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()),
                offset < 0 ? '-' : '+', std::abs(offset) / 60, std::abs(offset) % 60);
  return text.data();
}

std::string UtcText(std::int64_t at) { return TimeText(at, 0).substr(0, 23) + 'Z'; }

std::string ClockText(std::int64_t at, int offset) { return TimeText(at, offset).substr(11, 12); }

std::string JsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' || c == '\\' ? std::string{'\\', c} : std::string(1, c);
  return quoted + '"';
}

}  // namespace tarnwell::vorel_line

#include "tools/vorel-snapshot/lines.h"

#include <algorithm>
#include <array>

#include "snapshot/snapshot_line.h"

namespace tarnwell::vorel_snapshot {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
/// A copy as text to a system whose own end is CR LF adds a second CR.
constexpr std::string_view kDoubledEnd = "\r\r\n";
constexpr std::array kLongEnds = {kLineEnd, kDoubledEnd};

bool IsControl(char c) { return (c >= 0 && c < ' ') || c == 0x7F; }

std::string CodeText(char c) {
  const std::string code = std::to_string(static_cast<unsigned char>(c));
  return IsControl(c) ? "code " + code : "\"" + std::string(1, c) + "\"";
}

std::string Characters(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " character" : " characters");
}

std::string EndFault(std::string_view end) {
  return end.empty() ? "no line end: the file stops in this line" : "ends in " + EndName(end) + " rather than CR LF";
}

Fault LengthFault(std::size_t size, std::size_t number) {
  const std::string length = std::to_string(snapshot::kLineLength);
  if (size < snapshot::kLineLength) {
    return {number, size + 1, "too short: " + Characters(size) + ", a line has " + length};
  }
  return {number, snapshot::kLineLength + 1, "too long: " + Characters(size) + ", a line has " + length};
}

}  // namespace

std::vector<Line> SplitLines(std::string_view file) {
  std::vector<Line> lines;
  while (!file.empty()) {
    const std::size_t length = std::min(file.find_first_of(kLineEnd), file.size());
    const std::string_view rest = file.substr(length);
    const auto isAhead = [&](std::string_view end) { return rest.starts_with(end); };
    const auto* const known = std::find_if(kLongEnds.begin(), kLongEnds.end(), isAhead);
    const std::size_t end = known != kLongEnds.end() ? known->size() : std::min<std::size_t>(rest.size(), 1);
    lines.push_back({file.substr(0, length), rest.substr(0, end)});
    file = rest.substr(end);
  }
  return lines;
}

std::string_view LineText(const Line& line) {
  // A line that stops in the middle has lost its check character.
  const bool hasCheck = !line.end.empty() || line.body.size() >= snapshot::kLineLength;
  const std::size_t text = line.body.size() - (hasCheck && !line.body.empty() ? 1 : 0);
  const std::string_view padded = line.body.substr(0, std::min(text, snapshot::kTextLength));
  return padded.substr(0, padded.find_last_not_of(' ') + 1);
}

bool Holds(const Line& line) {
  return line.body.size() == snapshot::kLineLength &&
         snapshot::CheckCharacter(line.body.substr(0, snapshot::kTextLength)) == line.body.back();
}

std::vector<Fault> LineFaults(const Line& line, std::size_t number) {
  std::vector<Fault> faults;
  const auto control = std::find_if(line.body.begin(), line.body.end(), IsControl);
  if (control != line.body.end()) {
    const auto column = static_cast<std::size_t>(control - line.body.begin()) + 1;
    faults.push_back({number, column, "control character, " + CodeText(*control)});
  }
  if (line.body.size() != snapshot::kLineLength) {
    faults.push_back(LengthFault(line.body.size(), number));
  } else if (const char due = snapshot::CheckCharacter(line.body.substr(0, snapshot::kTextLength));
             due != line.body.back()) {
    faults.push_back({number, 0, "check character " + CodeText(line.body.back()) + ", for this text " + CodeText(due)});
  }
  if (line.end != kLineEnd) faults.push_back({number, 0, EndFault(line.end)});
  return faults;
}

std::optional<std::string_view> SharedWrongEnd(const std::vector<Line>& lines) {
  if (lines.size() < 2 || lines.front().end == kLineEnd) return std::nullopt;
  const auto same = [&](const Line& line) { return line.end == lines.front().end; };
  const bool all =
      std::all_of(lines.begin(), lines.end() - 1, same) && (same(lines.back()) || lines.back().end.empty());
  return all ? std::optional(lines.front().end) : std::nullopt;
}

std::string EndName(std::string_view end) {
  if (end == "\n") return "LF";
  if (end == "\r") return "CR";
  if (end == kDoubledEnd) return "CR CR LF";
  return end.empty() ? "no line end" : "CR LF";
}

std::string EndCure(std::string_view end) {
  const char* const script = end == "\n" ? R"(s/$/\r/)" : end == "\r" ? R"(s/\r/\r\n/g)" : R"(s/\r\r$/\r/)";
  return "sed '" + std::string(script) + "' FILE >NEW";
}

}  // namespace tarnwell::vorel_snapshot

#include "tools/shared/csv.h"

#include <charconv>

namespace tarnwell::tools {

namespace {

bool IsNumber(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::string CsvCell(std::string_view text) {
  constexpr std::string_view kFormulas = "=+-@\t\r";
  std::string cell(text);
  if (!text.empty() && kFormulas.find(text[0]) != std::string_view::npos && !IsNumber(text)) cell.insert(0, 1, '\'');
  if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
  for (std::size_t at = 0; (at = cell.find('"', at)) != std::string::npos; at += 2) cell.insert(at, 1, '"');
  return '"' + cell + '"';
}

}  // namespace tarnwell::tools

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::sim {

/// A request taken apart: "CT?" is a query, "G= 1.5" a setting with an argument, "LLO" and "Q05" have a name alone.
struct Request {
  enum class Kind { kQuery, kSetting, kVerb };

  std::string_view name;
  Kind kind;
  std::string_view argument;
};

Request ParseRequest(std::string_view command);

/// One request name of a device of class D: what is answered behind "name=", what a setting does, and which devices
/// have it. `set` gives false for an argument that makes no sense; a device with no sense for a request is silent.
/// A value out of range is no nonsense: the device keeps what it had, and says so.
template <class D>
struct Command {
  std::string_view name;
  std::string (*value)(D&);
  bool (*set)(D&, std::string_view argument) = nullptr;
  bool (*has)(const D&) = nullptr;  ///< nullptr: every device of the class
};

/// The reply by a table of commands, or nothing for silence.
template <class Table, class D>
std::optional<std::string> AnswerByTable(const Table& table, D& device, const Request& request) {
  for (const auto& row : table) {
    if (row.name != request.name) continue;
    if (request.kind == Request::Kind::kVerb || (row.has && !row.has(device))) return std::nullopt;
    const bool setting = request.kind == Request::Kind::kSetting;
    if (setting && (!row.set || !row.set(device, request.argument))) return std::nullopt;
    return std::string(row.name) + "=" + row.value(device);
  }
  return std::nullopt;
}

}  // namespace tarnwell::sim

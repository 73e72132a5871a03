#include "sim/request.h"

namespace tarnwell::sim {

Request ParseRequest(std::string_view command) {
  const std::size_t equals = command.find('=');
  if (equals != std::string_view::npos) {
    return {command.substr(0, equals), Request::Kind::kSetting, command.substr(equals + 1)};
  }
  if (command.ends_with('?')) return {command.substr(0, command.size() - 1), Request::Kind::kQuery, {}};
  return {command, Request::Kind::kVerb, {}};
}

}  // namespace tarnwell::sim

#include "sim/controller.h"

namespace tarnwell::sim {

namespace {

std::string OnlineDigits(Controller& controller) {
  std::string digits;
  for (std::size_t i = 0; i < controller.State().online.size(); ++i) {
    if (controller.State().online[i]) digits += static_cast<char>('1' + static_cast<int>(i));
  }
  return digits;
}

bool SetConfiguration(Controller& controller, std::string_view digit) {
  if (digit != "1" && digit != "2") return false;
  controller.State().oneToOne = digit == "1";
  return true;
}

bool SetPriority(Controller& controller, std::string_view letter) {
  if (letter != "N" && letter != "A" && letter != "B") return false;
  controller.State().priority = letter[0];
  return true;
}

bool CommandPath(Controller& controller, char path, std::string_view digit) {
  return !controller.State().automatic && digit.size() == 1 && controller.SelectPath(path, digit[0]);
}

constexpr std::array<Command<Controller>, 5> kCommands{{
    {"CM", [](Controller& c) { return std::string(c.State().oneToOne ? "1" : "2"); }, SetConfiguration},
    {"CP", [](Controller& c) { return std::string(1, c.State().priority); }, SetPriority},
    {"O", OnlineDigits},
    {"PA", [](Controller& c) { return std::string(1, c.State().pathA); },
     [](Controller& c, std::string_view digit) { return CommandPath(c, 'A', digit); }},
    {"PB", [](Controller& c) { return std::string(1, c.State().oneToOne ? '?' : c.State().pathB); },
     [](Controller& c, std::string_view digit) { return CommandPath(c, 'B', digit); }},
}};

}  // namespace

bool Controller::SelectPath(char path, char digit) {
  const bool isA = path == 'A';
  if (digit != '2' && digit != (isA ? '1' : '3')) return false;
  if (!isA && m_state.oneToOne) return false;
  const bool otherHasIt = !m_state.oneToOne && (isA ? m_state.pathB : m_state.pathA) == digit;
  if (otherHasIt) return true;

  char& selected = isA ? m_state.pathA : m_state.pathB;
  if (selected != digit) SetOnline(selected, false);
  selected = digit;
  SetOnline(digit, true);
  return true;
}

void Controller::SetOnline(char digit, bool online) {
  if (digit != '?') m_state.online.at(static_cast<std::size_t>(digit - '1')) = online;
}

std::string Controller::Status() const { return (m_state.automatic ? "A" : "M") + CommsLetter(); }

bool Controller::SetStatus(std::string_view letter) {
  if (letter != "A" && letter != "M") return false;
  m_state.automatic = letter == "A";
  return true;
}

std::optional<std::string> Controller::AnswerOwn(const Request& request) {
  return AnswerByTable(kCommands, *this, request);
}

}  // namespace tarnwell::sim

#include "sim/command_call.h"

namespace tarnwell::sim {

namespace {

using View = std::string_view;

Told SetMode(const Call& call, const std::optional<CommsMode>& mode) {
  if (!mode) return std::nullopt;
  call.TheDevice().SetMode(*mode);
  return "";
}

}  // namespace

Told SetAlarm(const Call& call) {
  const View letter = call.words[0];
  if (letter.size() != 1 || letter[0] < 'A' || letter[0] > 'Z') return std::nullopt;
  if (call.words[1] == "passed") {
    call.TheDevice().Alarms().Pass(letter[0]);
    return "";
  }
  using State = AlarmBoard::State;
  const auto state =
      Choose<State>(call.words[1], {{"active", State::kActive}, {"latched", State::kLatched}, {"off", State::kOff}});
  if (!state) return std::nullopt;
  call.TheDevice().Alarms().Set(letter[0], *state);
  return "";
}

Told Alarms(const Call& call) {
  if (call.words.empty()) return "alarms: " + call.TheDevice().Alarms().Letters() + "\n";
  if (call.words[0] != "off") return std::nullopt;
  for (char letter = 'A'; letter <= 'Z'; ++letter) call.TheDevice().Alarms().Set(letter, AlarmBoard::State::kOff);
  return "";
}

Told Lockout(const Call& call) {
  return SetMode(call, Choose<CommsMode>(call.words[0], {{"on", CommsMode::kRLO}, {"off", CommsMode::kREM}}));
}

Told Comms(const Call& call) {
  return SetMode(
      call,
      Choose<CommsMode>(call.words[0], {{"rem", CommsMode::kREM}, {"llo", CommsMode::kLLO}, {"rlo", CommsMode::kRLO}}));
}

Told SetState(const Call& call) {
  return Put(call.TheAmplifier().State().operating,
             Choose<char>(call.words[0], {{"online", 'O'}, {"standby", 'S'}, {"maint", 'M'}}));
}

Told SetModule(const Call& call) {
  const auto failed = Choose<bool>(call.words[0], {{"fail", true}, {"ok", false}});
  if (!failed) return std::nullopt;
  call.TheAmplifier().SetModuleFailed(*failed);
  return "";
}

Told Mute(const Call& call) {
  AmplifierState& state = call.TheAmplifier().State();
  if (call.words[0] == "on") return Put(state.userMute, std::optional(true));
  if (call.words[0] == "direct") return Put(state.directMute, std::optional(true));
  if (call.words[0] == "module") {
    call.TheAmplifier().SetModuleFailed(true);
    return "";
  }
  if (call.words[0] != "off") return std::nullopt;
  state.userMute = state.directMute = false;
  call.TheAmplifier().SetModuleFailed(false);
  return "";
}

Told Level(const Call& call) {
  const auto dbm = Within(call, call.words[0]);
  if (!dbm) return std::nullopt;
  call.TheAmplifier().SetLevel(*dbm);
  return "";
}

Told Temperature(const Call& call) {
  const auto module = Choose<int>(call.words[0], {{"1", 0}, {"2", 1}});
  const auto degrees = Within(call, call.words[1]);
  if (!module || !degrees) return std::nullopt;
  call.TheAmplifier().SetTemperature(*module, *degrees);
  return "";
}

Told Gain(const Call& call) { return Put(call.TheAmplifier().State().gain, Within(call, call.words[0])); }

Told Automatic(const Call& call) { return Put(call.TheController().State().automatic, std::optional(true)); }
Told Manual(const Call& call) { return Put(call.TheController().State().automatic, std::optional(false)); }

Told Configuration(const Call& call) {
  return Put(call.TheController().State().oneToOne, Choose<bool>(call.words[0], {{"1:1", true}, {"1:2", false}}));
}

Told Path(const Call& call) {
  const View digit = call.words[1];
  if (call.words[0] == "A") {
    return Put(call.TheController().State().pathA, Choose<char>(digit, {{"1", '1'}, {"2", '2'}, {"?", '?'}}));
  }
  if (call.words[0] != "B") return std::nullopt;
  return Put(call.TheController().State().pathB, Choose<char>(digit, {{"3", '3'}, {"2", '2'}, {"?", '?'}}));
}

Told Priority(const Call& call) {
  return Put(call.TheController().State().priority, Choose<char>(call.words[0], {{"N", 'N'}, {"A", 'A'}, {"B", 'B'}}));
}

Told Online(const Call& call) {
  const View digits = call.words.empty() ? View() : call.words[0];
  if (digits.find_first_not_of("123") != View::npos) return std::nullopt;
  for (std::size_t i = 0; i < 3; ++i) {
    call.TheController().State().online[i] = digits.find(static_cast<char>('1' + static_cast<int>(i))) != View::npos;
  }
  return "";
}

}  // namespace tarnwell::sim

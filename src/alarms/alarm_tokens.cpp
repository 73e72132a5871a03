#include "alarms/alarm_tokens.h"

#include <span>

namespace tarnwell::alarms {

namespace {

struct Token {
  char letter;
  std::string_view name;
};

constexpr Token kAmplifierTokens[] = {{'A', "5V_RAIL_LOW"},     {'B', "5V_RAIL_HIGH"},
                                      {'C', "11V_RAIL_LOW"},    {'D', "11V_RAIL_HIGH"},
                                      {'E', "EEPROM"},          {'F', "14V_RAIL_LOW"},
                                      {'G', "14V_RAIL_HIGH"},   {'H', "PS_THERMAL"},
                                      {'I', "INTERNAL"},        {'J', "-10V_RAIL_LOW"},
                                      {'K', "-10V_RAIL_HIGH"},  {'L', "RF_LEVEL_LOW"},
                                      {'M', "RF_LEVEL_HIGH"},   {'N', "REFLECTED_RF_LEVEL_HIGH"},
                                      {'O', "DRIVER_AMP_FAIL"}, {'P', "POWER_AMP1_FAIL"},
                                      {'Q', "POWER_AMP2_FAIL"}, {'R', "11VLC_RAIL_LOW"},
                                      {'S', "11VLC_RAIL_HIGH"}, {'T', "OVER_TEMP_AMP1"},
                                      {'U', "OVER_TEMP_AMP2"},  {'X', "AUXILIARY"},
                                      {'Y', "CE_FAILSAFE"},     {'Z', "SIMULATED"}};

constexpr Token kControllerTokens[] = {{'E', "EEPROM"}, {'S', "SYSTEM"}, {'W', "WAVEGUIDE_1"}, {'X', "WAVEGUIDE_2"}};

constexpr Token kFanToken = {'H', "FAN_ALARM"};
constexpr int kPlatformWithFanAlarm = 4;

void Set(AlarmTokens& tokens, const Token& token) { tokens[static_cast<std::size_t>(token.letter - 'A')] = token.name; }

AlarmTokens Filled(std::span<const Token> named) {
  AlarmTokens tokens;
  tokens.fill(kUnknownToken);
  for (const Token& token : named) Set(tokens, token);
  return tokens;
}

}  // namespace

AlarmTokens TokensFor(const link::SSPA_Public& device) {
  if (device.SSPAType == link::kRedundancyController) return Filled(kControllerTokens);
  AlarmTokens tokens = Filled(kAmplifierTokens);
  if (device.HWPlatform == kPlatformWithFanAlarm) Set(tokens, kFanToken);
  return tokens;
}

}  // namespace tarnwell::alarms

#include "sim/amplifier.h"

#include "protocol/readings.h"

namespace tarnwell::sim {

namespace {

constexpr double kNoRF = -10.0;       // what the detector gives without RF, in dBm
constexpr double kReturnLoss = 18.0;  // dB
constexpr double kCooling = 10.0;     // a module without RF is that much cooler, in degrees Celsius
constexpr char kModuleAlarm = 'P';
constexpr std::array<double, 2> kWarmth{41.0, 44.0};

// What the letters of a status setting change.
struct LetterGroup {
  std::string_view letters;
  char AmplifierState::*place;
};
constexpr LetterGroup kLetterGroups[] = {{"OSM", &AmplifierState::operating}, {"CUHL", &AmplifierState::compensation}};

struct LetterSwitch {
  char off;
  char on;
  bool AmplifierState::*place;
};
constexpr LetterSwitch kLetterSwitches[] = {{'T', 'X', &AmplifierState::userMute}, {'Q', 'A', &AmplifierState::beeper}};

}  // namespace

Amplifier::Amplifier(const DeviceSetup& setup)
    : Device(setup),
      m_kind(*setup.kind),
      m_platformText(setup.platform.empty() ? std::string(setup.kind->platform) : setup.platform),
      m_firmwareClass(protocol::ReadFirmwareClass(Firmware())),
      m_platform(m_firmwareClass == 1 ? 1 : protocol::ReadPlatform(m_platformText)),
      m_twoModules((setup.modules == 0 ? setup.kind->modules : setup.modules) == 2),
      m_moves(setup.seed != 0),
      m_dice(setup.seed),
      m_temperatures(kWarmth) {
  m_state.drive = setup.kind->levelDbm;
  m_state.thresholds[1] = setup.kind->levelDbm + 2.0;
  m_state.warmth = kWarmth;
  m_state.tables = FactoryTables(m_firmwareClass == 1);
}

void Amplifier::SetModuleFailed(bool failed) {
  if (failed == m_state.moduleFailed) return;
  m_state.moduleFailed = failed;
  if (failed) {
    Alarms().Set(kModuleAlarm, AlarmBoard::State::kActive);
  } else {
    Alarms().Pass(kModuleAlarm);
  }
}

bool Amplifier::RadiatesRF() const {
  const bool muted = m_state.userMute || m_state.directMute || m_state.moduleFailed;
  return m_state.operating != 'S' && !muted;
}

double Amplifier::Level() {
  if (!RadiatesRF()) return kNoRF;
  const int attenuation = m_state.operating == 'M' ? m_state.selectedDiode : 0;
  return m_state.drive + m_state.gain - attenuation + Ripple(0.1);
}

double Amplifier::ReflectedLevel() { return RadiatesRF() ? Level() - kReturnLoss : kNoRF; }

double Amplifier::Temperature(int module) {
  const auto index = static_cast<std::size_t>(module);
  const double goal = m_state.warmth[index] - (RadiatesRF() ? 0.0 : kCooling);
  double& temperature = m_temperatures[index];
  if (m_moves) temperature += 0.05 * (goal - temperature) + Ripple(0.1);
  return temperature;
}

void Amplifier::SetTemperature(int module, double degrees) {
  const auto index = static_cast<std::size_t>(module);
  m_state.warmth[index] = degrees + (RadiatesRF() ? 0.0 : kCooling);
  m_temperatures[index] = degrees;
}

double Amplifier::Rail(double nominal) { return nominal + Ripple(0.03); }

double Amplifier::Ripple(double width) { return m_moves ? m_dice.Between(-width, width) : 0.0; }

std::string Amplifier::Status() const {
  std::string letters(1, m_state.operating);
  letters += m_state.userMute || m_state.directMute ? 'X' : 'T';
  if (m_state.directMute) letters += 'D';
  if (m_state.moduleFailed) letters += 'B';
  letters += m_state.beeper ? 'A' : 'Q';
  letters += m_state.compensation;
  letters += m_state.storage ? 'R' : 'F';
  return letters + CommsLetter();
}

bool Amplifier::SetStatus(std::string_view letter) {
  if (letter.size() != 1 || (letter == "M" && m_firmwareClass == 1)) return false;
  for (const LetterGroup& group : kLetterGroups) {
    if (group.letters.find(letter) == std::string_view::npos) continue;
    m_state.*group.place = letter[0];
    return true;
  }
  for (const LetterSwitch& pair : kLetterSwitches) {
    if (letter[0] != pair.off && letter[0] != pair.on) continue;
    m_state.*pair.place = letter[0] == pair.on;
    return true;
  }
  return false;
}

std::optional<std::string> Amplifier::AnswerOwn(const Request& request) {
  if (auto reply = AnswerValue(*this, request)) return reply;
  return AnswerPoint(*this, request);
}

}  // namespace tarnwell::sim

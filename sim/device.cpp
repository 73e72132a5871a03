#include "sim/device.h"

#include <array>

#include "link/frame_codec.h"
#include "link/sspa_public.h"
#include "sim/amplifier.h"
#include "sim/controller.h"

namespace tarnwell::sim {

namespace {

bool SetAddressByte(Device& device, std::string_view argument) {
  if (argument.size() != 1 || argument[0] < link::AddressByte(0)) return false;
  return device.SetAddress(static_cast<std::uint8_t>(argument[0] - link::AddressByte(0)));
}

constexpr std::array<Command<Device>, 5> kCommands{{
    {"CT", [](Device& d) { return d.Model(); }},
    {"CV", [](Device& d) { return d.Firmware(); }},
    {"U", [](Device& d) { return std::string(1, link::AddressByte(d.Address())); }, SetAddressByte},
    {"S", [](Device& d) { return d.Status(); }, [](Device& d, std::string_view a) { return d.SetStatus(a); }},
    {"A", [](Device& d) { return d.Alarms().Letters(); }},
}};

}  // namespace

Device::Device(const DeviceSetup& setup)
    : m_model(setup.kind->model),
      m_firmware(setup.firmware.empty() ? std::string(setup.kind->firmware) : setup.firmware),
      m_address(setup.address) {}

bool Device::SetAddress(std::uint8_t address) {
  if (address > link::kMaxAddress) return false;
  m_address = address;
  return true;
}

std::optional<std::string> Device::Answer(std::string_view command) {
  const Request request = ParseRequest(command);
  if (m_mode == CommsMode::kRLO && request.kind != Request::Kind::kQuery) return std::nullopt;
  if (auto reply = AnswerByTable(kCommands, *this, request)) return reply;
  if (auto reply = AnswerVerb(request)) return reply;
  return AnswerOwn(request);
}

std::optional<std::string> Device::AnswerVerb(const Request& request) {
  if (request.kind != Request::Kind::kVerb) return std::nullopt;
  if (request.name == "ZA" && AllowsClearing()) {
    m_alarms.ClearLatched();
    return "A=" + m_alarms.Letters();
  }
  if (request.name != "LLO" && request.name != "REM") return std::nullopt;
  m_mode = request.name == "LLO" ? CommsMode::kLLO : CommsMode::kREM;
  return "S=" + Status();
}

std::string Device::CommsLetter() const {
  switch (m_mode) {
    case CommsMode::kLLO:
      return "Y";
    case CommsMode::kRLO:
      return "Z";
    case CommsMode::kREM:
      break;
  }
  return {};
}

std::unique_ptr<Device> MakeDevice(const DeviceSetup& setup) {
  if (setup.kind->modules == 0) return std::make_unique<Controller>(setup);
  return std::make_unique<Amplifier>(setup);
}

}  // namespace tarnwell::sim

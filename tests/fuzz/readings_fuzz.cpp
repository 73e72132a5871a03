#include <algorithm>
#include <string>

#include "fuzz.h"
#include "link/sspa_public.h"
#include "protocol/readings.h"

// Whatever a device sends, a reading stays within what the rest of the program branches on; and a code counts wherever
// it stands, so the order of the letters changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarnwell;
  const std::string_view text = protocol::AfterEcho(fuzz::Text(data, size), 2);

  const protocol::Model model = protocol::ReadModel(text);
  fuzz::Require(model.type >= link::kUnknownSSPA && model.type <= link::kRedundancyController);
  if (model.kBand) fuzz::Require(model.type == 4 || model.type == link::kLastAmplifier);
  const int firmwareClass = protocol::ReadFirmwareClass(text);
  fuzz::Require(firmwareClass >= 1 && firmwareClass <= 3);
  const int platform = protocol::ReadPlatform(text);
  fuzz::Require(platform >= 1 && platform <= 4);

  const std::string reversed(text.rbegin(), text.rend());
  const auto sameBackwards = [&](auto... read) { fuzz::Require(((read(text) == read(reversed)) && ...)); };
  using namespace protocol;
  sameBackwards(ReadCommsMode, ReadOperatingState, ReadRFOutput, ReadControllerMode, ReadConfigurationCode,
                ReadPriority);

  const protocol::RFOutput output = protocol::ReadRFOutput(text);
  const bool forced = output == protocol::RFOutput::kMutedDirect || output == protocol::RFOutput::kMutedModuleFailed ||
                      output == protocol::RFOutput::kOnButModuleFailed;
  if (forced) fuzz::Require(protocol::MuteIsForced(text));
  return 0;
}

#include "sim/device.h"

#include <gtest/gtest.h>

#include "protocol/vocabulary.h"
#include "sim/commands.h"

namespace tarnwell::test {
namespace {

/// The console's own idea of what a reply must hold and how long it may be, at the values that take the most room.
TEST(Device, RepliesFitWhatTheConsoleTakes) {
  using namespace protocol;
  sim::Station station(std::get<sim::Options>(
      sim::ParseOptions({"--kind", "c240", "--firmware", "0264C-01 V6.2 (17", "--platform", "0842/0358 12"})));
  for (const char* line : {"level -99.9", "mute direct", "module fail", "temp 1 -99.9"}) {
    EXPECT_TRUE(sim::Execute(station, 0.0, line).ok) << line;
  }
  sim::Device& device = station.Selected();
  for (char letter = 'A'; letter <= 'Z'; ++letter) device.Alarms().Set(letter, sim::AlarmBoard::State::kActive);
  const auto fits = [&device](const Request& request) {
    const std::string reply = device.Answer(request.text).value_or("(none)");
    EXPECT_NE(reply.find(request.expected), std::string::npos) << request.text << " " << reply;
    EXPECT_LE(reply.size(), std::min(request.maxReply, request.snapshotMaxReply)) << reply;
  };
  const auto fit = [&fits](const auto&... requests) { (fits(requests), ...); };
  fit(kModelQuery, kFirmwareQuery, kStatusQuery, kAlarmQuery, kAddressQuery, kGainQuery, kRFLevelQuery, kFanQuery,
      kTemperature1Query, kTemperature2Query, kRail5VQuery, kRail11VQuery, kRail11VLCQuery, kRail14VQuery,
      kRailMinus10VQuery, kPlatformQuery, kPriorityOrDiodeQuery, kTransceiverQuery, kRFMinimumQuery, kRFMaximumQuery,
      kShutdownQuery, kAlarmStyleQuery, kAuxSenseQuery, kLocalLockout, kRemote, kClearAlarms);
  fit(SetGain(-19.8), SetThreshold("T1", 1000), SetShutdown(false), SetFan(false), SetAuxSense(true),
      SetAlarmStyle(false), SetStatus('U'), SetAddress(31), SetRFLevelPoint(25, 14.99), RFLevelPointQuery(25),
      QuickCalibration(25), SetPiNPoint(40, "255"), PiNPointQuery(40), SelectPiNPoint(0),
      SetRFCompensation(3, -50, -9.99), RFCompensationQuery(3), SetSystemCompensation(8, 125, -9.99),
      SystemCompensationQuery(8));
}

}  // namespace
}  // namespace tarnwell::test

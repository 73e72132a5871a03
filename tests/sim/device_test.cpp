#include "sim/device.h"

#include <gtest/gtest.h>

#include "protocol/vocabulary.h"
#include "sim/commands.h"

namespace tarnwell::test {
namespace {

sim::Station MakeStation(const std::vector<std::string>& arguments = {}) {
  return sim::Station(std::get<sim::Options>(sim::ParseOptions(arguments)));
}

/// The console's own idea of what a reply must hold and how long it may be, at the values that take the most room.
TEST(Device, RepliesFitWhatTheConsoleTakes) {
  using namespace protocol;
  sim::Station station =
      MakeStation({"--kind", "c240", "--firmware", "0264C-01 V6.2 (17", "--platform", "0842/0358 12"});
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

TEST(Station, FindsRequestsInWhatComes) {
  const std::string answer = "{AU=A4}";
  const struct {
    const char* name;
    std::vector<std::string> pieces;
    std::string frames;
  } cases[] = {
      {"whole", {"{AU?6}"}, answer},
      {"byte by byte", {"{", "A", "U", "?", "6", "}"}, answer},
      {"two in one", {"{AU?6}{AU?6}"}, answer + answer},
      {"noise ahead", {"\xFF}x{AU?6}"}, answer},
      {"cut off, then whole", {"{AU{AU?6}"}, answer},
      {"never closed", {"{" + std::string(500, 'A'), "{AU?6}"}, answer},
      {"wrong checksum", {"{AU?1}", "{AU?5}"}, ""},
      {"another device", {"{BU?5}"}, "{BU=B6}"},
      {"nobody", {"{CU?4}"}, ""},
      {"address 0, answered from their own", {"{@U?7}"}, "{AU=A4}{BU=B6}"},
      {"the old address answers a new one's setting", {"{AU=C6}", "{AU?6}", "{CU?4}"}, "{AU=C6}{CU=C8}"},
      {"too short", {"{}", "{A}", "{AA}"}, ""},
      {"empty text", {"{A\"}"}, ""},
  };
  for (const auto& row : cases) {
    sim::Station station = MakeStation({"--device", "kind=c60,address=1", "--device", "kind=k40,address=2"});
    for (const std::string& piece : row.pieces) station.Receive(0.0, piece);
    EXPECT_EQ(station.Send(1.0), row.frames) << row.name;
  }
}

}  // namespace
}  // namespace tarnwell::test

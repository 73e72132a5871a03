#include <gtest/gtest.h>

#include "protocol/vocabulary.h"
#include "sim/commands.h"

namespace tarnwell::test {
namespace {

/// At the values that take the most room; the console takes no byte beyond its limit.
TEST(Device, RepliesFitWhatTheConsoleTakes) {
  using namespace protocol;
  sim::Station station(std::get<sim::Options>(
      sim::ParseOptions({"--kind", "c240", "--firmware", "0264C-01 V6.2 (17", "--platform", "0842/0358 12"})));
  for (const char* line : {"level -99.9", "mute direct", "module fail", "temp 1 -99.9"})
    sim::Execute(station, 0.0, line);
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    sim::Execute(station, 0.0, "alarm " + std::string(1, letter) + " active");
  for (const Request& request :
       {kModelQuery, kFirmwareQuery, kStatusQuery, kAlarmQuery, kGainQuery, kRFLevelQuery, kTemperature1Query,
        kRail11VLCQuery, kRailMinus10VQuery, kPlatformQuery, kAlarmStyleQuery, kClearAlarms, SetGain(-19.8),
        SetThreshold("T1", 1000), SetRFLevelPoint(25, 14.99), SetRFCompensation(3, -50, -9.99)}) {
    const std::string reply = station.Selected().Answer(request.text).value_or("(none)");
    EXPECT_NE(reply.find(request.expected), std::string::npos) << request.text << " " << reply;
    EXPECT_LE(reply.size(), std::min(request.maxReply, request.snapshotMaxReply)) << reply;
  }
}

TEST(Station, FindsRequestsInWhatComes) {
  const struct {
    const char* name;
    std::vector<std::string> pieces;
    const char* frames;
    bool echo = false;
  } cases[] = {
      {"byte by byte, then two in one", {"{", "A", "U", "?", "6", "}", "{AU?6}{AU?6}"}, "{AU=A4}{AU=A4}{AU=A4}"},
      {"noise ahead, cut off, then whole", {"\xFF}x{AU{AU?6}"}, "{AU=A4}"},
      {"never closed", {"{" + std::string(500, 'A') + "}", std::string(500, 'A') + "{AU?6}"}, "{AU=A4}"},
      {"wrong checksum, too short, empty, nobody's", {"{AU?1}{BU?6}", "{}{A}{AA}", "{A\"}", "{CU?4}"}, ""},
      {"another device, then all, from their own", {"{BU?5}", "{@U?7}"}, "{BU=B6}{AU=A4}{BU=B6}"},
      {"the old address answers a new one's setting", {"{AU=C6}", "{AU?6}", "{CU?4}"}, "{AU=C6}{CU=C8}"},
      {"an echo comes ahead of the answer", {"{AU?", "6}"}, "{AU?6}{AU=A4}", true},
  };
  for (const auto& row : cases) {
    std::vector<std::string> options{"--device", "kind=c60,address=1", "--device", "kind=k40,address=2"};
    if (row.echo) options.push_back("--echo");
    sim::Station station(std::get<sim::Options>(sim::ParseOptions(options)));
    for (const std::string& piece : row.pieces) station.Receive(0.0, piece);
    EXPECT_EQ(station.Send(1.0), row.frames) << row.name;
  }
}

TEST(SimulatorCommands, AreAcknowledgedOrToldWithTheirRange) {
  sim::Station station(std::get<sim::Options>(sim::ParseOptions({})));
  const std::pair<const char*, const char*> cases[] = {
      {" gain  -3 ", "gain -3"},
      {"", ""},
      {"gain 1", "gain 1: not usable; usage: gain DB (gain adjust; DB from -20 to 0)"},
      {"path A 1", "path A 1: not a controller"},
      {"rain", "rain: unknown; help lists the commands"}};
  for (const auto& [line, told] : cases) {
    const sim::Outcome outcome = sim::Execute(station, 0.0, line);
    EXPECT_EQ(outcome.command + outcome.text, told);
    EXPECT_EQ(outcome.ok, outcome.text.empty()) << line;
  }
}

TEST(SimulatorOptions, WrongOnesAreTold) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"--kind"}, "--kind needs a value"},
      {{"--platform", "a}b"}, "--platform: not usable: a}b ("},
      {{"--device", "kind=c60;address=3"}, "--device: not usable: kind=c60;address=3 ("},
      {{"--device", "address=1", "--device", "kind=k40"}, "two devices have the same address"},
      {{"--device", "kind=c60", "--kind", "k40"}, "give either --device or the options of a single device"},
      {{"--link", "a", "--port", "b"}, "--link goes with a pseudo-terminal, not with --port"},
  };
  for (const auto& [arguments, expected] : cases) {
    const auto parsed = sim::ParseOptions(arguments);
    const auto* error = std::get_if<std::string>(&parsed);
    EXPECT_EQ((error != nullptr ? *error : "taken").substr(0, std::string(expected).size()), expected);
  }
}

}  // namespace
}  // namespace tarnwell::test

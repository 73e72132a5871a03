#include "sim/options.h"

#include <gtest/gtest.h>

namespace tarnwell::test {
namespace {

using Arguments = std::vector<std::string>;

TEST(SimulatorOptions, ReadInBothFormsWithTheirUnits) {
  const auto parsed = sim::ParseOptions({"--kind", "k80", "--address=7", "--modules", "1", "--link=ports/com1",
                                         "--rate", "9600", "--answer-time", "2.5", "--seed", "0", "--trace", "--fault",
                                         "split=0.1", "--faults", "all=.02"});
  const auto* options = std::get_if<sim::Options>(&parsed);
  ASSERT_TRUE(options) << std::get<std::string>(parsed);
  ASSERT_EQ(options->devices.size(), 1u);
  const sim::DeviceSetup& device = options->devices[0];
  EXPECT_EQ(device.kind->model, "80W K-BAND");
  EXPECT_EQ(std::tuple(device.address, device.modules, device.seed), std::tuple(7, 1, 0u));
  EXPECT_EQ(std::tuple(options->link, options->rate, options->trace), std::tuple("ports/com1", 9600, true));
  EXPECT_DOUBLE_EQ(options->answerTime, 0.0025);
  EXPECT_EQ(options->faults, (std::vector<std::pair<std::string, double>>{{"split", 0.1}, {"all", 0.02}}));
}

TEST(SimulatorOptions, WrongOnesAreTold) {
  const std::pair<Arguments, const char*> cases[] = {
      {{"--kind"}, "--kind needs a value"},
      {{"--kind", "c61"}, "--kind: not usable: c61"},
      {{"--address", "32"}, "--address: not usable: 32"},
      {{"--firmware", "a text too long..."}, "--firmware: not usable: a text too long..."},
      {{"--platform", "a}b"}, "--platform: not usable: a}b"},
      {{"--trace=on"}, "unknown option --trace=on"},
      {{"--fault", "drop=2"}, "--fault: not usable: drop=2"},
      {{"--device", "kind=c60;address=3"}, "--device: not usable: kind=c60;address=3"},
      {{"--device", "address=1", "--device", "kind=k40"}, "two devices have the same address"},
      {{"--device", "kind=c60", "--kind", "k40"}, "give either --device or the options of a single device"},
      {{"--link", "a", "--port", "b"}, "--link goes with a pseudo-terminal, not with --port"},
  };
  for (const auto& [arguments, expected] : cases) {
    const auto parsed = sim::ParseOptions(arguments);
    const auto* error = std::get_if<std::string>(&parsed);
    ASSERT_TRUE(error) << expected;
    EXPECT_EQ(*error, expected);
  }
}

}  // namespace
}  // namespace tarnwell::test

#include "protocol/readings.h"

#include <gtest/gtest.h>

namespace tarnwell::protocol {
namespace {

TEST(Readings, ModelTextDecidesKindAndModules) {
  // type, single module, K band
  const std::pair<const char*, std::tuple<int, bool, bool>> cases[] = {
      {"120W C-BAND", {2, true, false}}, {"240W C-BAND", {3, false, false}},
      {"80W K-BAND", {5, false, true}},  {"160W C-120", {1, true, false}},
      {"240W K-BAND", {4, true, true}},  {"7316 C 60", {6, false, false}},
      {"60w c-band", {0, false, false}}, {"", {0, false, false}}};
  for (const auto& [text, expected] : cases) {
    const Model model = ReadModel(text);
    EXPECT_EQ(std::tuple(model.type, model.singleModule, model.kBand), expected) << text;
  }
}

TEST(Readings, FirmwareClassRestsOnOneDigitAheadOfThePoint) {
  const std::pair<const char*, int> cases[] = {{"0264C-01 V6.0", 2}, {"V5.31", 1}, {"V6.01", 3}, {"V10.2", 1},
                                               {"V7.0", 3},          {"V6", 1},    {".60", 1},   {"", 1},
                                               {"6.0", 2},           {"V6.", 2},   {"9.9.9", 3}, {"V6.0 B.7", 2}};
  for (const auto& [text, firmwareClass] : cases) EXPECT_EQ(ReadFirmwareClass(text), firmwareClass) << text;
}

TEST(Readings, PlatformTestsTheLongerNameFirst) {
  const std::pair<const char*, int> cases[] = {{"0712/0358", 1}, {"842", 2},      {"857", 3},  {"857E", 4},
                                               {"857 E", 3},     {"857E/842", 2}, {"857e", 3}, {"", 1}};
  for (const auto& [text, platform] : cases) EXPECT_EQ(ReadPlatform(text), platform) << text;
}

}  // namespace
}  // namespace tarnwell::protocol

#include "platform/input_clock.h"

#include <gtest/gtest.h>

namespace tarnwell::platform {
namespace {

TEST(ServerTime, AnInputIsAsOldAsItsStampSaysAgainstTheQuickestDelivery) {
  constexpr std::uint32_t kStart = 0xFFFF'FC00;  // the stamps run over a second later
  ServerTime server;
  const struct {
    std::uint32_t stamp;
    Moment delivered;
    Moment made;
  } rows[] = {
      {0, 10'000, 10'000},        // nothing to compare with yet
      {500, 10'480, 10'480},      // a quicker delivery
      {1'000, 10'990, 10'980},    // and what it tells of the next
      {2'000, 18'000, 11'980},    // made long ago, the stamps having run over since
      {18'300, 28'280, 28'280},   // on time
      {18'310, 128'300, 28'300},  // no thread is held so long: the clocks are compared anew
      {18'410, 128'500, 128'400},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(server.ToMoment(kStart + row.stamp, row.delivered), row.made) << row.stamp;
  }
}

TEST(ServerTime, ClocksThatDriftApartMakeNoInputOld) {
  ServerTime server;
  for (std::uint32_t hour = 0; hour < 100; ++hour) {
    const Moment now = hour * 3'600'300;  // the server's clock loses a third of a second an hour
    EXPECT_GT(server.ToMoment(hour * 3'600'000, now), now - 200) << hour;
  }
}

}  // namespace
}  // namespace tarnwell::platform

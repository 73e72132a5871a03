#include <cstdio>

#include "link/send_command.h"
#include "sim/device.h"
#include "support/program_test.h"
#include "support/simulated_port.h"

namespace tarnwell::test {
namespace {

sim::DeviceSetup Amplifier() {
  sim::DeviceSetup setup{};
  setup.kind = sim::FindKind("c240");
  setup.address = 1;
  setup.seed = 0;  // what is measured stands still, so that a late reply is as good as a new one
  return setup;
}

/// A line on which every fault strikes, with one amplifier at address 1.
struct FaultyLine {
  explicit FaultyLine(std::uint32_t seed) : faults(seed) {
    server.Attach(*device);
    EXPECT_TRUE(faults.Set("all", 0.02));
  }

  VirtualCounter counter;
  VirtualYielder yielder{counter};
  std::unique_ptr<sim::Device> device = sim::MakeDevice(Amplifier());
  sim::FrameServer server;
  sim::Faults faults;
  SimulatedPort port{counter, server, faults};
};

TEST(Soak, HundredThousandTransactionsTakeOnlyWholeFrames) {
  FaultyLine line(2026);
  line.counter.SetReadTakes(100);
  link::SSPA_Public shared;
  shared.ConnectAddress = line.device->Address();
  link::IntervalTiming timing(line.counter, line.yielder);
  ASSERT_TRUE(timing.InitCounter());
  link::SerialLink serial(shared, timing, line.port);

  const protocol::Request queries[] = {protocol::kRFLevelQuery,        protocol::kStatusQuery,
                                       protocol::kAlarmQuery,          protocol::kTemperature1Query,
                                       protocol::kModelQuery,          protocol::kGainQuery,
                                       protocol::RFLevelPointQuery(7), protocol::SystemCompensationQuery(3),
                                       protocol::kRFMinimumQuery,      protocol::kFirmwareQuery};
  int taken = 0;
  int failed = 0;
  int undetected = 0;
  for (int i = 0; i < 100'000; ++i) {
    const protocol::Request& query = queries[i % std::size(queries)];
    std::string reply;
    if (!protocol::Send(serial, query, reply)) {
      ++failed;
      EXPECT_TRUE(shared.CommsLost);
      continue;
    }
    ++taken;
    // by the tests' own reckoning of a frame, from what was read off the line since the command went out
    ASSERT_EQ(line.port.Read(), Framed(reply, shared.ConnectAddress));
    ASSERT_NE(line.port.Read().find(query.expected), std::string::npos);
    // one checksum character can't tell all damage: what slips through looks like a frame of the device
    if (reply != line.port.TrueReply()) ++undetected;
  }
  std::printf("%d taken, %d failed, %d tries, %d damaged in a way that the checksum can't tell\n", taken, failed,
              line.port.Sent(), undetected);
  EXPECT_GT(taken, 90'000);
  EXPECT_GT(line.port.Sent(), 105'000) << "the faults did strike";
  EXPECT_LT(undetected, taken / 1000);
}

TEST(Soak, AConsoleThatNobodyTouchesOnlyAsks) {
  for (const std::uint32_t seed : {1U, 2U, 3U}) {
    FaultyLine line(seed);
    FakeDesktop desktop;
    app::Program program({line.counter, line.yielder, line.port, desktop});
    ASSERT_TRUE(program.Start());
    forms::frmMain& main = program.MainForm();
    for (int yield = 0; yield < 600; ++yield) {
      line.yielder.OnYield([&] {
        if (line.port.Sent() % 15 == 0) Q_EMIT main.tmrFlasher.Tick();
      });
    }
    line.yielder.OnYield([&] { QTest::mouseClick(&main.cmdConnect, Qt::LeftButton); });
    while (main.cmdConnect.Caption() == QStringLiteral("&Connect") && line.port.Sent() < 600) {
      QTest::mouseClick(&main.cmdConnect, Qt::LeftButton);  // an attempt may meet a fault at every try
    }
    EXPECT_EQ(line.port.TakeOrders(), std::vector<std::string>()) << "seed " << seed;
    EXPECT_GT(line.port.Sent(), 600);
  }
}

}  // namespace
}  // namespace tarnwell::test

#include "platform/alarm_sound.h"

#include <gtest/gtest.h>

#include <QTest>
#include <atomic>
#include <semaphore>
#include <thread>
#include <utility>

namespace tarnwell::platform {
namespace {

/// A sound server that answers when it is told to. The sounder's threads may outlive the test.
struct Server {
  std::counting_semaphore<8> answers{0};
  std::atomic<AlarmSound> answer = AlarmSound::kDesktops;
  std::atomic<int> sounds = 0, looks = 0, beeps = 0;
};

TEST(Sounder, TheSystemBeepsWhereTheServerIsLateOrHasNoSound) {
  const auto server = std::make_shared<Server>();
  const auto caller = std::this_thread::get_id();
  const auto source = [server, caller](bool aloud) {
    if (std::this_thread::get_id() != caller) server->answers.acquire();
    ++(aloud ? server->sounds : server->looks);
    return server->answer.load();
  };
  const auto beep = [server, caller] { server->beeps += std::this_thread::get_id() == caller ? 1 : 100; };
  const auto heard = [&] { return std::pair(server->sounds.load(), server->beeps.load()); };

  Sounder sounder(source, beep);
  sounder.Sound();
  EXPECT_EQ(heard(), std::pair(0, 0)) << "the caller waits for nothing";
  server->answers.release(2);
  EXPECT_TRUE(QTest::qWaitFor([&] { return sounder.HeardAs() == AlarmSound::kDesktops && server->looks == 1; }));
  EXPECT_EQ(heard(), std::pair(1, 0));

  server->answer = AlarmSound::kSystemBeep;
  Sounder late(source, beep);
  late.Sound();
  late.Sound();
  EXPECT_EQ(heard(), std::pair(1, 1)) << "the server hasn't answered yet";
  EXPECT_EQ(late.HeardAs(), AlarmSound::kSystemBeep);
  server->answers.release(2);  // one for the look that waits
  EXPECT_TRUE(QTest::qWaitFor([&] { return heard() == std::pair(2, 2); })) << "it has no sound";
  EXPECT_EQ(late.HeardAs(), AlarmSound::kSystemBeep);
  server->answer = AlarmSound::kDesktops;
  server->answers.release(4);
  EXPECT_TRUE(QTest::qWaitFor([&] { return late.HeardAs() == AlarmSound::kDesktops; })) << "it was looked for again";
}

TEST(Sounder, WithoutASourceTheSystemBeeps) {
  int beeps = 0;
  Sounder sounder({}, [&] { ++beeps; });
  sounder.Sound();
  EXPECT_EQ(beeps, 1);
  EXPECT_EQ(sounder.HeardAs(), AlarmSound::kSystemBeep);
}

}  // namespace
}  // namespace tarnwell::platform

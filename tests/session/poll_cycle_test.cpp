#include "forms/controls/announcement.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class PollCycleTest : public ProgramTest {};

TEST_F(PollCycleTest, LinkLostAndRegained) {
  for (const bool controller : {false, true}) {
    const ReplyTable replies = controller ? ControllerReplies() : AmplifierReplies();
    const std::string device = replies.at("CT?").substr(3);
    Start();
    m_replies = replies;
    std::string titles;
    const QObject scope;
    QObject::connect(&Main(), &QWidget::windowTitleChanged, &scope, [&](const QString& title) {
      titles += m_port.TakeTranscript() + " [" + title.mid(23).toStdString() + "] ";
    });
    const auto story = [&] { return std::exchange(titles, {}) + m_port.TakeTranscript(); };
    m_yielder.OnYieldAfter(1, [&] {
      story();
      m_replies.clear();
    });
    m_yielder.OnYield([&] {
      EXPECT_EQ(story(),
                (controller ? "CM? CM? CM?" : "VR? VR? VR?") + (" [Lost Connection to " + device) + " Retrying...] ");
      EXPECT_EQ(Main().findChild<forms::Announcement*>()->accessibleName(), Main().Title());
      EXPECT_TRUE(controller || CaptionOf("lblRFLevel") == "12.3 dBm") << "the last value stays";
      EXPECT_TRUE(Main().tmrFlasher.Enabled()) << "a flash goes on through a lost link";
      m_replies = replies;
    });
    m_yielder.OnYield([&] {
      EXPECT_EQ(story(), (controller ? "O?" : "A?") + (" [Connected to " + device) + (controller ? "] " : "] G?"));
    });
    Connect(1);
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  }
}

TEST_F(PollCycleTest, WatchdogActsOnTheSecondTickWithoutABeat) {
  Start();
  EXPECT_EQ(HidesAtWatchdog() + HidesAtWatchdog(), 0) << "no session, no watch";
  m_replies = AmplifierReplies();
  m_yielder.OnYield([&] {
    EXPECT_EQ(HidesAtWatchdog(), 0);
    EXPECT_EQ(HidesAtWatchdog(), 1);
    EXPECT_TRUE(Main().isVisible() && !Main().Unloaded());
  });
  m_yielder.OnYield([&] {
    EXPECT_EQ(HidesAtWatchdog(), 0) << "the pass in between was a beat";
    QWidget message;
    message.setWindowModality(Qt::ApplicationModal);
    message.show();
    EXPECT_EQ(HidesAtWatchdog(), 0) << "a message holds the session up";
  });
  Connect(1);
}

}  // namespace
}  // namespace tarnwell::test

#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class PollCycleTest : public ProgramTest {
 protected:
  /// Writes the window's title into the port's story whenever it changes.
  void TellTitles() {
    QObject::connect(&Main(), &QWidget::windowTitleChanged, [this](const QString& title) {
      m_story += '[' + title.mid(QStringLiteral("Vorel Tarnwell v2.01 : ").size()).toStdString() + "] ";
    });
    m_port.AnswerAlways([this](const std::string& command) -> std::optional<std::string> {
      m_story += command + ' ';
      const auto row = m_replies.find(command);
      if (m_silent || row == m_replies.end()) return std::nullopt;
      return row->second;
    });
  }

  std::string m_story;
  bool m_silent = false;
};

TEST_F(PollCycleTest, LinkLostAndRegained) {
  Start();
  m_replies = AmplifierReplies();
  TellTitles();
  m_yielder.SkipYields(1);
  m_yielder.OnYield([this] {
    m_story.clear();
    m_silent = true;
  });
  m_yielder.OnYield([this] {
    EXPECT_EQ(m_story, "VR? VR? VR? [Lost Connection to 240W C-BAND Retrying...] ");
    EXPECT_EQ(EnabledControls(), "cmdConnect fraCommsConnect");
    EXPECT_EQ(CaptionOf("lblRFLevel"), "12.3 dBm") << "the last value stays, greyed";
    EXPECT_TRUE(Main().tmrFlasher.Enabled()) << "a flash goes on through a lost link";
  });
  m_yielder.OnYield([this] {
    m_silent = false;
    m_story.clear();
  });
  m_yielder.OnYield([this] {
    EXPECT_EQ(m_story, "VR? [Connected to 240W C-BAND] G? ");
    EXPECT_TRUE(Find("optOnline").isEnabled() && Find("lblRFLevel").isEnabled());
    EXPECT_FALSE(Find("txtConnectAddress").isEnabled());
  });
  DisconnectAfter(1);
  Connect();
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
}

TEST_F(PollCycleTest, AControllerIsNotAskedForAGainWhenItComesBack) {
  Start();
  m_replies = ControllerReplies();
  TellTitles();
  m_yielder.OnYield([this] { m_silent = true; });
  m_yielder.OnYield([this] {
    m_silent = false;
    m_story.clear();
  });
  m_yielder.OnYield([this] { EXPECT_EQ(m_story, "CM? [Connected to 7316 RCP] "); });
  DisconnectAfter(1);
  Connect();
}

TEST_F(PollCycleTest, LockoutHoldsOverALostLink) {
  Start();
  m_replies = AmplifierReplies();
  m_replies["S?"] = "S=OTZ";
  TellTitles();
  m_yielder.SkipYields(1);
  m_yielder.OnYield([this] { m_silent = true; });
  m_yielder.OnYield([this] { m_silent = false; });
  m_yielder.OnYield([this] {
    EXPECT_EQ(Title(), "Vorel Tarnwell v2.01 : Connected to 240W C-BAND");
    EXPECT_TRUE(Find("lblRFLevel").isEnabled() && Find("cmdViewAlarms").isEnabled());
    EXPECT_FALSE(Find("optOnline").isEnabled() || Find("txtGainAdjust").isEnabled());
  });
  DisconnectAfter(1);
  Connect();
}

TEST_F(PollCycleTest, WatchdogActsOnTheSecondTickWithoutABeat) {
  Start();
  HideCounter hidden(Main());
  const auto tick = [&] {
    Q_EMIT Main().tmrForcePollResume.Tick();
    return hidden.Take();
  };
  EXPECT_EQ(tick() + tick(), 0) << "no session, no watch";
  m_replies = AmplifierReplies();
  m_yielder.OnYield([&] {
    EXPECT_EQ(tick(), 0);
    EXPECT_EQ(tick(), 1);
    EXPECT_TRUE(Main().isVisible() && !Main().Unloaded());
  });
  m_yielder.OnYield([&] { EXPECT_EQ(tick(), 0) << "the pass in between was a beat"; });
  DisconnectAfter(1);
  Connect();
}

}  // namespace
}  // namespace tarnwell::test

#include "forms/controls/announcement.h"
#include "forms/frm_alarms.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class PollCycleTest : public ProgramTest {};

TEST_F(PollCycleTest, LinkLostAndRegainedAtItsPace) {
  const struct {
    ReplyTable replies;
    const char *connected, *lost, *regained;
  } rows[] = {{AmplifierReplies(), "0 CT? 0 [Connected to 240W C-BAND] 50 CV? 50 CP? 50 CH? 50 G? 50 VR? 50 S? 0",
               "50 VR? 2050 VR? 2050 VR? 2050 [Lost Connection to 240W C-BAND Retrying...] 0",
               "50 A? 0 [Connected to 240W C-BAND] 50 G? 0"},
              {ControllerReplies(), "0 CT? 0 [Connected to 7316 RCP] 50 S? 50 CM? 50 A? 50 S? 0",
               "50 CM? 2050 CM? 2050 CM? 2050 [Lost Connection to 7316 RCP Retrying...] 0",
               "50 O? 0 [Connected to 7316 RCP] 0"}};
  for (const auto& row : rows) {
    Start();
    m_replies = row.replies;
    std::string titles;
    const QObject scope;
    QObject::connect(&Main(), &QWidget::windowTitleChanged, &scope,
                     [&](const QString& title) { titles += TakePaces() + " [" + title.mid(23).toStdString() + "] "; });
    const auto expect = [&](const char* story) { EXPECT_EQ(std::exchange(titles, {}) + TakePaces(), story); };
    m_yielder.OnYieldAfter(1, [&] {
      expect(row.connected);
      m_replies.clear();
    });
    m_yielder.OnYield([&] {
      expect(row.lost);
      EXPECT_EQ(Main().findChild<forms::Announcement*>()->accessibleName(), Main().Title());
      EXPECT_TRUE(row.replies.contains("O?") || CaptionOf("lblRFLevel") == "12.3 dBm") << "the last value stays";
      EXPECT_TRUE(Main().tmrFlasher.Enabled()) << "a flash goes on through a lost link";
      m_replies = row.replies;
    });
    m_yielder.OnYield([&] { expect(row.regained); });
    Connect(1);
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  }
}

TEST_F(PollCycleTest, WatchdogActsOnTheSecondTickWithoutABeat) {
  Start();
  EXPECT_EQ(HidesAtWatchdog() + HidesAtWatchdog(), 0) << "no session, no watch";
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

TEST_F(PollCycleTest, FormsOpenAndSendAtTheirPace) {
  m_replies.merge(ReplyTable{{"ZA", "A="}, {"U?", "U=@"}});
  Start();
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"mnuSSPASettings", "cmdExit", "50 CT? 50"}, {"mnuSnapshot", "cmdCancel", "50"}, {"mnuSWOpt", "cmdCancel", "0"}};
  for (const auto& [opener, closer, paces] : rows) {
    const auto open = [this, name = opener] { Choose(name); };
    const auto close = [this, name = closer] { ClickOn(name); };
    EXPECT_EQ(PacesOf([&] { Open(open, close); }), paces) << opener;
  }
  std::string cleared;
  const auto clear = [&] {
    m_yielder.OnYieldAfter(1, [&] {
      cleared = TakePaces();
      ClickOn("cmdClear");
      cleared += " | " + TakePaces();
      ClickOn("cmdExit");
    });
    Q_EMIT dynamic_cast<forms::frmAlarms&>(Front()).tmrStartPolling.Tick();
  };
  const std::string closed = PacesOf([&] { Open([this] { ClickOn("cmdViewAlarms"); }, clear); });
  EXPECT_EQ(cleared + " | " + closed, "100 CT? 0 A? 50 VR? 0 | 50 ZA 100 A? 50 | 50");
}

}  // namespace
}  // namespace tarnwell::test

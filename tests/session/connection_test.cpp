#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class ConnectionTest : public ProgramTest {
 protected:
  /// One session that ends after `polls`; gives the commands that went out.
  std::string CommandsOfSession(int polls) {
    Connect(polls);
    const std::string commands = m_port.Commands();
    EXPECT_GE(m_port.SmallestGap(), 0.02 + 0.05) << "the way to the answer, and the pause";
    m_port.TakeTranscript();
    return commands;
  }
};

TEST_F(ConnectionTest, TrafficOfEachKindOfDevice) {
  Start();
  m_replies = AmplifierReplies();
  EXPECT_EQ(CommandsOfSession(24),
            "CT? CV? CP? CH? G? VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT2? "
            "VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT2?");
  EXPECT_EQ(Shared().HWPlatform, 2);

  m_replies["CT?"] = "CT=120W C-BAND";
  m_replies["CV?"] = "CV=0264C-01 V5.31";
  EXPECT_EQ(CommandsOfSession(12), "CT? CV? G? VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT?");
  EXPECT_EQ(Shared().HWPlatform, 1);

  m_replies = ControllerReplies();
  EXPECT_EQ(CommandsOfSession(14), "CT? S? CM? A? S? CM? O? PA? PB? CP? A? S? CM? O? PA? PB? CP?");
  EXPECT_TRUE(Shared().SingleModule) << "a controller leaves the last amplifier's values";

  m_replies["CM?"] = "CM=1";
  EXPECT_EQ(CommandsOfSession(10), "CT? S? CM? A? S? CM? O? PA? A? S? CM? O? PA?");
}

TEST_F(ConnectionTest, EachUnansweredIdentificationEndsTheAttempt) {
  Start();
  for (const char* silent : {"CT?", "CV?", "CP?", "CH?", "G?"}) {
    m_replies = AmplifierReplies();
    m_replies.erase(silent);
    Connect();
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList(QStringLiteral("(!) Connection Failed"))) << silent;
    const std::string commands = m_port.Commands();
    EXPECT_EQ(commands.substr(commands.rfind(' ') + 1), silent);
    EXPECT_EQ(Title(), "Vorel Tarnwell v2.01 : No Connection");
    EXPECT_EQ(Main().cmdConnect.Caption(), QStringLiteral("&Connect"));
    EXPECT_FALSE(m_port.PortOpen() || m_desktop.Busy()) << silent;
    EXPECT_TRUE(Find("txtConnectAddress").isEnabled()) << silent;
    m_port.TakeTranscript();
  }
}

TEST_F(ConnectionTest, RefusedPortTellsWhy) {
  Start();
  m_port.RefuseOpening("/dev/ttyS0: no such device");
  Connect();
  EXPECT_EQ(m_desktop.TakeMessages(),
            QStringList(QStringLiteral("(i) Unable to open COM1 | /dev/ttyS0: no such device")));
  m_port.RefuseOpening("");
  m_port.RefuseInputMode(true);
  Connect();
  EXPECT_EQ(m_desktop.TakeMessages().size(), 1);
  EXPECT_FALSE(m_port.PortOpen());
  EXPECT_EQ(m_port.Commands(), "");
  EXPECT_EQ(Main().cmdConnect.Caption(), QStringLiteral("&Connect"));
}

TEST_F(ConnectionTest, UnknownModelGoesOnAsAnAmplifierWithTwoModulesUnlessTheProgramEndsBehindTheMessage) {
  Start();
  m_replies = AmplifierReplies();
  m_replies["CT?"] = "CT=<b>TWT</b>";
  m_desktop.OnMessage([this] { EXPECT_FALSE(m_desktop.Busy()); });
  EXPECT_EQ(CommandsOfSession(12), "CT? CV? CP? CH? G? VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT2?");
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList(QStringLiteral("(!) Unknown SSPA Type")));
  EXPECT_EQ(Shared().SSPAType, 0);
  m_desktop.OnMessage([this] { Main().UnloadForm(); });
  Connect();
  EXPECT_EQ(m_port.Commands(), "CT?");
}

TEST_F(ConnectionTest, RtsIsHeldForASessionWithAutomaticHalfDuplex) {
  SaveProperty("RS232", "False");
  Start();
  m_replies = AmplifierReplies();
  Connect(1);
  EXPECT_EQ(m_port.Transcript().substr(0, 33), "PortOpen=1 InputMode=1 RTS=1 CT? ");
  EXPECT_EQ(m_port.Transcript().find("RTS=0"), std::string::npos);
}

TEST_F(ConnectionTest, PanelsFollowTheDevice) {
  Start();
  std::string shown;
  const auto inSession = [&](const ReplyTable& replies) {
    m_replies = replies;
    m_yielder.OnYield([&] {
      shown = Title().substr(23) + ':';
      for (const char* name :
           {"fraRF", "fraState", "fraTemp", "lblMod2", "lblTempMod2", "fra7316Status", "fraAlarms"}) {
        shown += Find(name).isHidden() ? '-' : '+';
      }
      EXPECT_FALSE(Find("updwnConnectAddress").isEnabled() || Find("lblAddress").isEnabled());
      EXPECT_TRUE(Main().tmrFlasher.Enabled());
    });
    Connect(1);
    EXPECT_TRUE(Find("updwnConnectAddress").isEnabled() && !Main().tmrFlasher.Enabled());
    EXPECT_EQ(Title(), "Vorel Tarnwell v2.01 : No Connection");
    return shown;
  };
  ReplyTable single = AmplifierReplies();
  single["CT?"] = "CT=60W C-BAND";
  EXPECT_EQ(inSession(AmplifierReplies()), "Connected to 240W C-BAND:+++++-+");
  EXPECT_EQ(inSession(single), "Connected to 60W C-BAND:+++---+");
  EXPECT_EQ(inSession(ControllerReplies()), "Connected to 7316 RCP:-----++");
  EXPECT_EQ(Main().mnuSnapshot.Caption(), QStringLiteral("&Save Snapshot (Redundancy Controller)"));
  EXPECT_EQ(Main().mnuSSPASettings.Caption(), QStringLiteral("Redundancy Controller &Settings"));
}

TEST_F(ConnectionTest, DisconnectAndConnectWithinOneYield) {
  Start();
  m_replies = AmplifierReplies();
  m_yielder.OnYield([this] {
    ClickOn("cmdConnect");
    m_port.TakeTranscript();
    DisconnectAfter(2);
    ClickOn("cmdConnect");
    EXPECT_EQ(m_port.Commands(), "CT? CV? CP? CH? G? VR? S?");
    m_port.TakeTranscript();
  });
  Connect();
  EXPECT_EQ(m_port.Commands(), "") << "the session below sends nothing more";
  EXPECT_EQ(Main().cmdConnect.Caption(), QStringLiteral("&Connect"));
}

}  // namespace
}  // namespace tarnwell::test

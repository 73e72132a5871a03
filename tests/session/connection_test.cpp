#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class ConnectionTest : public ProgramTest {
 protected:
  void SetUp() override { Start(); }

  /// A session of so many polls, with whom, and what it asks.
  void ExpectSession(int polls, const char* device, const char* traffic) {
    m_yielder.OnYield([&] {
      EXPECT_EQ(Title(), std::string("Vorel Tarnwell v2.01 : Connected to ") + device);
      EXPECT_TRUE(Main().tmrFlasher.Enabled());
    });
    Connect(polls - 1);
    EXPECT_EQ(TakeCommands(), traffic);
    EXPECT_FALSE(Main().tmrFlasher.Enabled());
    EXPECT_EQ(Title(), "Vorel Tarnwell v2.01 : No Connection");
  }

  /// An attempt that ends with that message and leaves nothing open.
  void ExpectFailure(const QString& message, const std::string& lastCommand) {
    Connect();
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList(message));
    const std::string commands = TakeCommands();
    EXPECT_EQ(commands.substr(commands.rfind(' ') + 1), lastCommand);
    EXPECT_EQ(Title(), "Vorel Tarnwell v2.01 : No Connection");
    EXPECT_EQ(Main().cmdConnect.Caption(), QStringLiteral("&Connect"));
    EXPECT_FALSE(m_port.PortOpen() || m_desktop.Busy()) << lastCommand;
    EXPECT_TRUE(Find("txtConnectAddress").isEnabled()) << lastCommand;
  }
};

TEST_F(ConnectionTest, EachKindOfDeviceIsAskedAndShownWhatItHas) {
  ExpectSession(24, "240W C-BAND",
                "CT? CV? CP? CH? G? VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT2? "
                "VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT2?");
  EXPECT_EQ(Shared().HWPlatform, 2);
  m_replies["CT?"] = "CT=120W C-BAND";
  m_replies["CV?"] = "CV=0264C-01 V5.31";
  ExpectSession(12, "120W C-BAND", "CT? CV? G? VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT?");
  EXPECT_EQ(Shared().HWPlatform, 1);
  m_replies = ControllerReplies();
  m_replies.erase("CM?");
  ExpectSession(8, "7316 RCP", "CT? S? CM? CM? CM? A? S? CM? CM? CM? O? PA? PB? CP? A?");
  m_replies = ControllerReplies();
  ExpectSession(14, "7316 RCP", "CT? S? CM? A? S? CM? O? PA? PB? CP? A? S? CM? O? PA? PB? CP?");
  EXPECT_TRUE(Shared().SingleModule) << "a controller leaves the last amplifier's values";
  EXPECT_EQ(Main().mnuSnapshot.Caption(), QStringLiteral("&Save Snapshot (Redundancy Controller)"));
  EXPECT_EQ(Main().mnuSSPASettings.Caption(), QStringLiteral("Redundancy Controller &Settings"));
  m_replies["CM?"] = "CM=1";
  ExpectSession(10, "7316 RCP", "CT? S? CM? A? S? CM? O? PA? A? S? CM? O? PA?");
}

TEST_F(ConnectionTest, AnUnknownModelIsAnAmplifierWithTwoModulesUnlessTheProgramEndsBehindTheMessage) {
  m_port.Expect("CT?").Answer("CT=<b>TWT</b>").Do([this] { EXPECT_TRUE(m_desktop.Busy()); });
  m_replies["CT?"] = "CT=<b>TWT</b>";
  m_desktop.OnMessage([this] { EXPECT_FALSE(m_desktop.Busy()); });
  ExpectSession(12, "<b>TWT</b>", "CT? CV? CP? CH? G? VR? S? VR? A? VR? VT? VR? S? VR? A? VR? VT2?");
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList(QStringLiteral("(!) Unknown SSPA Type")));
  EXPECT_EQ(Shared().SSPAType, 0);
  m_desktop.OnMessage([this] { Main().UnloadForm(); });
  Connect();
  EXPECT_EQ(m_port.Commands(), "CT?");
}

TEST_F(ConnectionTest, AnAttemptThatFailsTellsWhy) {
  for (const char* silent : {"CT?", "CV?", "CP?", "CH?", "G?"}) {
    m_replies = AmplifierReplies();
    m_replies.erase(silent);
    ExpectFailure(QStringLiteral("(!) Connection Failed | COM1 is /dev/ttyS0"), silent);
  }
  ASSERT_TRUE(m_port.SetCommPort(2));
  ExpectFailure(QStringLiteral("(!) Connection Failed"), "G?");
  ASSERT_TRUE(m_port.SetCommPort(1));
  m_port.RefuseOpening("/dev/ttyS0: no such device");
  ExpectFailure(QStringLiteral("(i) Unable to open COM1 | /dev/ttyS0: no such device"), "");
  m_port.RefuseOpening("");
  m_port.Refuse("InputMode");
  ExpectFailure(QStringLiteral("(i) Unable to open COM1"), "");
}

TEST_F(ConnectionTest, AFlashThatIsDarkAtDisconnectStandsLit) {
  const auto sign = [this] {
    return std::string(Find("imgAlarm").isHidden() ? "-" : "A") + (Find("imgOk").isHidden() ? "-" : "O") +
           (forms::Bold(Find("lblAlarm")) ? "b" : "-");
  };
  for (const auto& [reply, ticks, lit] : std::initializer_list<std::tuple<const char*, int, const char*>>{
           {"A=C", 0, "A-b"}, {"A=C", 1, "A-b"}, {"A=C", 2, "A-b"}, {"A=", 0, "---"}, {"A=", 1, "-O-"}}) {
    m_replies["A?"] = reply;
    m_yielder.OnYieldAfter(8, [this, count = ticks] {
      for (int tick = 0; tick < count; ++tick) Q_EMIT Main().tmrFlasher.Tick();
      ClickOn("cmdConnect");
    });
    Connect();
    EXPECT_EQ(sign(), lit) << reply << ' ' << ticks;
  }
}

TEST_F(ConnectionTest, RtsIsHeldForASessionWithAutomaticHalfDuplex) {
  SaveProperty("RS232", "False");
  Start();
  Connect(1);
  EXPECT_EQ(m_port.Transcript().substr(0, 33), "PortOpen=1 InputMode=1 RTS=1 CT? ");
  EXPECT_EQ(m_port.Transcript().find("RTS=0"), std::string::npos);
}

TEST_F(ConnectionTest, DisconnectAndConnectWithinOneYield) {
  m_yielder.OnYield([this] {
    ClickOn("cmdConnect");
    m_port.TakeTranscript();
    DisconnectAfter(2);
    ClickOn("cmdConnect");
    EXPECT_EQ(TakeCommands(), "CT? CV? CP? CH? G? VR? S?");
  });
  Connect();
  EXPECT_EQ(m_port.Commands(), "") << "the session below sends nothing more";
  EXPECT_EQ(Main().cmdConnect.Caption(), QStringLiteral("&Connect"));
}

}  // namespace
}  // namespace tarnwell::test

#include "forms/controls/colours.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class ReadersTest : public ProgramTest {
 protected:
  /// A session in which one reply of the table changes; `look` runs a whole round later.
  void InSession(const char* query, const char* reply, std::function<void()> look) {
    m_replies[query] = reply;
    m_yielder.OnYieldAfter(11, std::move(look));
    Connect(1);
  }
};

TEST_F(ReadersTest, AmplifierStatus) {
  struct Case {
    const char* reply;
    const char* selected;
    const char* mute;
    bool userMayMute;
  };
  m_replies = AmplifierReplies();
  Start();
  for (const Case& c : {Case{"S=OT", "optOnline optREM optRFOn", "RF On", true},
                        Case{"S=STY", "optLLO optRFOn optStandby", "RF On", true},
                        Case{"S=MT", "optMaint optREM optRFOn", "RF On", true},
                        Case{"S=OTB", "optOnline optREM optRFOn", "RF Mute (Amp Module Fail)", false},
                        Case{"S=SXD", "optREM optRFMute optStandby", "RF Mute (Direct I/O)", false},
                        Case{"S=OXB", "optOnline optREM optRFMute", "RF Mute (Amp Module Fail)", false},
                        Case{"S=OXDB", "optOnline optREM optRFMute", "RF Mute (Direct I/O)", false},
                        Case{"S=OX", "optOnline optREM optRFMute", "RF Mute (User)", true},
                        Case{"S=OTX", "optOnline optREM optRFOn", "RF On", true}}) {
    m_replies["S=X"] = c.reply;
    InSession("S?", c.reply, [&] {
      EXPECT_EQ(SelectedOptions(), c.selected) << c.reply;
      EXPECT_EQ(CaptionOf("lblSSPAMute"), c.mute) << c.reply;
      EXPECT_EQ(Find("optRFMute").isEnabled(), c.userMayMute) << c.reply;
      EXPECT_TRUE(Find("optStandby").isEnabled()) << c.reply;
    });
  }
}

TEST_F(ReadersTest, RemoteLockoutTakesTheCommandsAway) {
  m_replies = AmplifierReplies();
  Start();
  InSession("S?", "S=OTZ", [this] {
    EXPECT_EQ(EnabledControls(),
              "cmdConnect cmdViewAlarms fra7316Status fraAlarms fraCommsConnect fraRF fraSSPAMute fraTemp imgAlarm "
              "imgOk lblAlarm "
              "lblMod1 lblMod2 lblRF lblRFLevel lblSSPAMute lblTempMod1 lblTempMod2");
    EXPECT_TRUE(Main().mnuSnapshot.isEnabled());
    m_replies["S?"] = "S=OT";
  });
  InSession("S?", "S=OT", [this] {
    EXPECT_TRUE(Find("optOnline").isEnabled() && Find("optRFMute").isEnabled() && Find("optLLO").isEnabled());
    EXPECT_FALSE(Find("optMaint").isEnabled() || Find("optRLO").isEnabled());
  });
}

TEST_F(ReadersTest, LevelsAndTemperatures) {
  m_replies = AmplifierReplies();
  Start();
  const std::pair<const char*, const char*> levels[] = {
      {"VR=12.34", "12.3 dBm"}, {"VR=0.5", ".5 dBm"}, {"VR=", ".0 dBm"}, {"VR=-3.26", "-3.3 dBm"}, {"VR=x1", ".0 dBm"}};
  for (const auto& [reply, shown] : levels) {
    InSession("VR?", reply, [&, shown = shown] { EXPECT_EQ(CaptionOf("lblRFLevel"), shown); });
  }
  m_replies["VT?"] = "VT=<i>41</i>";
  InSession("VT2?", "VT2=\x01-5.5", [this] {
    EXPECT_EQ(CaptionOf("lblTempMod1"), "<i>41</i>°C") << "taken as it came, as plain text";
    EXPECT_EQ(CaptionOf("lblTempMod2"), "\x01-5.5°C");
    EXPECT_EQ(Find<QLabel>("lblTempMod1").textFormat(), Qt::PlainText);
    EXPECT_TRUE(Find<QLabel>("lblTempMod2").text().startsWith(QChar(QChar::ReplacementCharacter)));
  });
  InSession("G?", "G=0.0", [this] { EXPECT_EQ(Main().txtGainAdjust.Text(), QStringLiteral("0.0")); });
}

TEST_F(ReadersTest, AlarmIndicator) {
  m_replies = AmplifierReplies();
  Start();
  const std::tuple<const char*, const char*, QRgb> cases[] = {{"A=ab", "ALARM", forms::kLatchedColour},
                                                              {"A=Ab", "ALARM", forms::kActiveColour},
                                                              {"A=V", "ALARM", forms::kActiveColour},
                                                              {"A=", "OK", forms::kGoodColour}};
  for (const auto& row : cases) {
    InSession("A?", std::get<0>(row), [&] {
      EXPECT_EQ(std::tuple(CaptionOf("lblAlarm"), Main().lblAlarm.Background().rgb()),
                std::tuple(std::string(std::get<1>(row)), std::get<2>(row)));
    });
  }
}

TEST_F(ReadersTest, FlasherFollowsTheAcknowledgements) {
  m_replies = AmplifierReplies();
  Start();
  // pictures as "alarm ok", bold, and the beeps of the tick
  const auto tick = [this] {
    Q_EMIT Main().tmrFlasher.Tick();
    return std::string(Find("imgAlarm").isHidden() ? "-" : "A") + (Find("imgOk").isHidden() ? "-" : "O") +
           (forms::Bold(Find("lblAlarm")) ? "b" : "-") + std::to_string(m_desktop.TakeBeeps());
  };
  InSession("A?", "A=CZ", [&] {
    EXPECT_EQ(tick() + tick() + tick(), "A-b1---1A-b1");
    Shared().AudibleNotify = false;
    EXPECT_EQ(tick(), "---0");
    Shared().AlarmStatus[2].Acknowledged = true;
    EXPECT_EQ(tick(), "A-b0") << "one of two is not acknowledged";
    Shared().AlarmStatus[25].Acknowledged = true;
    EXPECT_EQ(tick() + tick(), "A-b0A-b0") << "steady, and bold stays";
  });
  InSession("A?", "A=", [&] { EXPECT_EQ(tick(), "-O-0"); });
}

TEST_F(ReadersTest, ControllerDisplay) {
  m_replies = ControllerReplies();
  Start();
  // states, paths, selected options
  const auto shown = [this] {
    std::string text;
    for (const char* label :
         {"lbl7316SSPA1State", "lbl7316SSPA2State", "lbl7316SSPA3State", "lbl7316PathAState", "lbl7316PathBState"}) {
      text += CaptionOf(label) + ' ';
    }
    return text + SelectedOptions();
  };
  const auto frames = [this] {
    return (Main().fra7316PathASelect.Caption() + QLatin1Char('|') + Main().fra7316PathBSelect.Caption()).toStdString();
  };
  InSession("CP?", "CP=B", [&] {
    EXPECT_EQ(shown(), "ONLINE STBY/ALARM ONLINE SSPA1 SSPA3 opt7316Manual opt7316PathA1 opt7316PathB3 optREM");
    EXPECT_EQ(frames(), "Path &A SSPA Selection|Path &B SSPA Selection [Priority]");
    EXPECT_TRUE(Find("opt7316PathB2").isEnabled());
  });
  m_replies["PA?"] = "PA=2";
  m_replies["S?"] = "S=A";
  m_replies["CP?"] = "CP=A";
  InSession("PB?", "PB=?", [&] {
    EXPECT_EQ(frames(), "Path &A SSPA Selection [Priority]|Path &B SSPA Selection");
    EXPECT_EQ(shown(), "ONLINE STBY/ALARM ONLINE SSPA2 UNKNOWN opt7316Auto opt7316PathA2 optREM")
        << "not the last session's path B";
    EXPECT_TRUE(Find("opt7316Manual").isEnabled());
    EXPECT_FALSE(Find("opt7316PathA1").isEnabled() || Find("fra7316PathBSelect").isEnabled());
  });
  m_replies["O?"] = "O=3";
  InSession("CM?", "CM=1", [&] {
    EXPECT_EQ(shown().substr(0, 24), "STBY/ALARM STBY/ALARM   ") << "the third isn't looked at";
    EXPECT_TRUE(Find("fra7316PathBSelect").isHidden() && Find("lbl7316SSPA3").isHidden());
    EXPECT_EQ(frames().substr(0, 23), "Path &A SSPA Selection|");
  });
  InSession("CM?", "CM=2", [&] {
    EXPECT_FALSE(Find("fra7316PathBSelect").isHidden() || Find("lbl7316SSPA3State").isHidden());
    EXPECT_FALSE(Find("fra7316PathBSelect").isEnabled()) << "automatic mode holds";
    EXPECT_EQ(shown().substr(0, 29), "STBY/ALARM STBY/ALARM ONLINE ");
  });
}

TEST_F(ReadersTest, OfTwoAmplifiersInOneReplyTheOneThatIsNotShownIsTaken) {
  m_replies = ControllerReplies();
  m_replies["PB?"] = "PB=23";
  Start();
  std::string shown;
  for (int round = 0; round < 3; ++round) {
    m_yielder.OnYieldAfter(7, [&] { shown += CaptionOf("lbl7316PathBState") + ' '; });
  }
  Connect(1);
  EXPECT_EQ(shown, "SSPA3 SSPA2 SSPA3 ");
}

TEST_F(ReadersTest, AModeThatChangesInTheSessionGreysAndFreesThePaths) {
  m_replies = ControllerReplies();
  Start();
  std::string seen;
  for (const char* mode : {"S=M", "S=A", "S=M"}) {
    m_yielder.OnYield([this, mode] { m_replies["S?"] = mode; });
    m_yielder.OnYieldAfter(7, [&] { seen += Find("opt7316PathA1").isEnabled() ? '+' : '-'; });
  }
  Connect(1);
  EXPECT_EQ(seen, "+-+");
}

TEST_F(ReadersTest, FindingRFMutedSelectsItWhichCommandsTheMuteOnce) {
  m_replies = AmplifierReplies();
  m_replies["S?"] = "S=OX";
  Start();
  Connect(8);
  EXPECT_EQ(m_port.Commands(), "CT? CV? CP? CH? G? VR? S? S=X S? VR? A? VR? VT? VR? S?");
}

}  // namespace
}  // namespace tarnwell::test

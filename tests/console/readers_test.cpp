#include "forms/controls/colours.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class ReadersTest : public ProgramTest {
 protected:
  void SetUp() override { Start(); }

  /// A session in which one reply of the table changes; `look` runs a whole round later.
  void InSession(const std::string& query, const char* reply, std::function<void()> look) {
    m_replies[query] = reply;
    m_yielder.OnYieldAfter(11, std::move(look));
    Connect(1);
  }

  /// A session for each reply to that query, and what `shown` tells in it.
  void ExpectShown(const std::string& query, const std::vector<std::pair<const char*, const char*>>& rows,
                   const std::function<std::string()>& shown) {
    for (const auto& [reply, expected] : rows) {
      InSession(query, reply, [&, reply = reply, expected = expected] { EXPECT_EQ(shown(), expected) << reply; });
    }
  }
};

TEST_F(ReadersTest, AmplifierStatusAndWhatALockoutLeaves) {
  ExpectShown("S?",
              {{"S=OT", "optOnline optREM optRFOn: RF On"},
               {"S=STY", "optLLO optRFOn optStandby: RF On"},
               {"S=MT", "optMaint optREM optRFOn: RF On"},
               {"S=OTB", "optOnline optREM optRFOn: RF Mute (Amp Module Fail), held"},
               {"S=SXD", "optREM optRFMute optStandby: RF Mute (Direct I/O), held"},
               {"S=OXB", "optOnline optREM optRFMute: RF Mute (Amp Module Fail), held"},
               {"S=OXDB", "optOnline optREM optRFMute: RF Mute (Direct I/O), held"},
               {"S=OX", "optOnline optREM optRFMute: RF Mute (User)"},
               {"S=OTX", "optOnline optREM optRFOn: RF On"},
               {"S=OTZ", "optOnline optRFOn optRLO: RF On, held, locked"},
               {"S=MSOT", "optOnline optREM optRFOn: RF On"}},
              [this] {
                EXPECT_FALSE(Find("optMaint").isEnabled() || Find("optRLO").isEnabled());
                return SelectedOptions() + ": " + CaptionOf("lblSSPAMute") +
                       (Find("optRFMute").isEnabled() ? "" : ", held") +
                       (Find("optStandby").isEnabled() && Find("optLLO").isEnabled() ? "" : ", locked");
              });
}

TEST_F(ReadersTest, LevelsAndTemperatures) {
  // the first: what the spin starts with; behind the gain the device's own, where the field can't hold it
  ExpectShown("G?", {{"G=0.0", "0.0 "}, {"G=3.5", "0.0 3.5"}, {"G=-20.1", "-20.0 -20.1"}, {"G=x", "0.0 x"}}, [this] {
    const forms::TextBox& gain = Main().txtGainAdjust;
    return (gain.Text() + QLatin1Char(' ') + gain.toolTip().section(QLatin1Char('"'), 1, 1)).toStdString();
  });
  ExpectShown("VR?", {{"VR=12.34", "12.3 dBm"}, {"VR=", ".0 dBm"}}, [this] { return CaptionOf("lblRFLevel"); });
  m_replies["VT?"] = "VT=<i>41</i>";
  InSession("VT2?", "VT2=\x01-5.5", [this] {
    EXPECT_EQ(CaptionOf("lblTempMod1"), "<i>41</i>°C") << "taken as it came, as plain text";
    EXPECT_EQ(CaptionOf("lblTempMod2"), "\x01-5.5°C");
    EXPECT_EQ(Find<QLabel>("lblTempMod1").textFormat(), Qt::PlainText);
    EXPECT_TRUE(Find<QLabel>("lblTempMod2").text().startsWith(QChar(QChar::ReplacementCharacter)));
  });
}

TEST_F(ReadersTest, AlarmIndicatorAndItsFlasherWhichFollowsTheAcknowledgements) {
  const std::map<QRgb, const char*> colours = {
      {forms::kActiveColour, " active"}, {forms::kLatchedColour, " latched"}, {forms::kGoodColour, " good"}};
  ExpectShown("A?", {{"A=ab", "ALARM latched"}, {"A=Ab", "ALARM active"}, {"A=V", "ALARM active"}, {"A=", "OK good"}},
              [&] { return CaptionOf("lblAlarm") + colours.at(Find<forms::Label>("lblAlarm").Background().rgb()); });
  // pictures as "alarm ok", bold, and the beeps of each tick
  const auto ticks = [this](int count) {
    std::string text;
    for (; count > 0; --count) {
      Q_EMIT Main().tmrFlasher.Tick();
      text += std::string(Find("imgAlarm").isHidden() ? "-" : "A") + (Find("imgOk").isHidden() ? "-" : "O") +
              (forms::Bold(Find("lblAlarm")) ? "b" : "-") + std::to_string(m_desktop.TakeBeeps()) + ' ';
    }
    return text;
  };
  InSession("A?", "A=CZ", [&] {
    EXPECT_EQ(ticks(3), "A-b1 ---1 A-b1 ");
    Shared().AudibleNotify = false;
    EXPECT_EQ(ticks(1), "---0 ");
    Shared().AlarmStatus[2].Acknowledged = true;
    EXPECT_EQ(ticks(1), "A-b0 ") << "one of two is not acknowledged";
    Shared().AlarmStatus[25].Acknowledged = true;
    EXPECT_EQ(ticks(2), "A-b0 A-b0 ") << "steady, and bold stays";
  });
  InSession("A?", "A=CZ", [&] {
    EXPECT_EQ(ticks(1), "A-b0 ") << "a new session knows no acknowledgement";
    Main().hide();
    EXPECT_EQ(ticks(2), "---0 A-b0 ") << "a hidden window flashes too";
    Main().show();
  });
  InSession("A?", "A=", [&] { EXPECT_EQ(ticks(1), "-O-0 "); });
}

TEST_F(ReadersTest, ControllerDisplay) {
  m_replies = ControllerReplies();
  const auto expect = [this](ReplyTable changes, const std::string& states, const std::string& options,
                             const std::string& frames) {
    changes.merge(m_replies);
    m_replies = changes;
    InSession("A?", "A=", [&] {
      std::string shown;
      for (const char* label :
           {"lbl7316SSPA1State", "lbl7316SSPA2State", "lbl7316SSPA3State", "lbl7316PathAState", "lbl7316PathBState"}) {
        shown += Find(label).isHidden() ? "(none) " : CaptionOf(label) + ' ';
        EXPECT_EQ(Find<forms::Label>(label).Background() == forms::kGoodColour, CaptionOf(label) == "ONLINE");
      }
      EXPECT_EQ(shown, states);
      EXPECT_EQ(SelectedOptions(), options);
      shown.clear();
      for (const forms::Frame* path : {&Main().fra7316PathASelect, &Main().fra7316PathBSelect}) {
        if (!path->isHidden()) shown += path->Caption().toStdString() + (path->isEnabled() ? "; " : " (grey); ");
      }
      EXPECT_EQ(shown, frames);
    });
  };
  expect({{"CP?", "CP=B"}}, "ONLINE STBY/ALARM ONLINE SSPA1 SSPA3 ", "opt7316Manual opt7316PathA1 opt7316PathB3 optREM",
         "Path &A SSPA Selection; Path &B SSPA Selection [Priority]; ");
  // not the last session's path B
  expect({{"PA?", "PA=2"}, {"S?", "S=A"}, {"CP?", "CP=A"}, {"PB?", "PB=?"}}, "ONLINE STBY/ALARM ONLINE SSPA2 UNKNOWN ",
         "opt7316Auto opt7316PathA2 optREM",
         "Path &A SSPA Selection [Priority] (grey); Path &B SSPA Selection (grey); ");
  expect({{"O?", "O=3"}, {"CM?", "CM=1"}}, "STBY/ALARM STBY/ALARM (none) SSPA2 (none) ",
         "opt7316Auto opt7316PathA2 optREM", "Path &A SSPA Selection (grey); ");
  expect({{"CM?", "CM=2"}}, "STBY/ALARM STBY/ALARM ONLINE SSPA2 UNKNOWN ", "opt7316Auto opt7316PathA2 optREM",
         "Path &A SSPA Selection [Priority] (grey); Path &B SSPA Selection (grey); ");
}

TEST_F(ReadersTest, EachRoundShowsThePathThatHasChangedAndWhetherItMayBe) {
  m_replies = ControllerReplies();
  m_replies["PB?"] = "PB=23";
  std::string shown;
  for (const char* mode : {"S=M", "S=A", "S=M"}) {
    m_yielder.OnYield([this, mode] { m_replies["S?"] = mode; });
    m_yielder.OnYieldAfter(
        6, [&] { shown += CaptionOf("lbl7316PathBState") + (Find("opt7316PathB2").isEnabled() ? "+ " : "- "); });
  }
  Connect(1);
  EXPECT_EQ(shown, "SSPA3+ SSPA2- SSPA3+ ") << "of two amplifiers in one reply the one that isn't shown";
}

TEST_F(ReadersTest, FindingRFMutedSelectsItWhichCommandsTheMuteOnce) {
  m_replies["S?"] = "S=OX";
  Connect(8);
  EXPECT_EQ(m_port.Commands(), "CT? CV? CP? CH? G? VR? S? S=X S? VR? A? VR? VT? VR? S?");
}

}  // namespace
}  // namespace tarnwell::test

#include "forms/frm_alarms.h"
#include "forms/frm_settings.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

/// A device that leaves one question or command unanswered, while it answers the others.
class AnswersTest : public ProgramTest {
 protected:
  /// A session with that device. `act` is done when everything has been asked once, what is queued with
  /// m_yielder.OnYield() behind it, each when all questions have been asked again.
  void InSession(const ReplyTable& replies, std::function<void()> act) {
    m_replies = replies;
    if (!m_program) Start();
    m_yielder.OnYieldAfter(kRound, std::move(act));
    for (const auto& later : std::exchange(m_later, {})) {
      m_yielder.OnYieldAfter(kRound, later);
    }
    Connect(2);
  }
  void Later(std::function<void()> act) { m_later.push_back(std::move(act)); }

  bool IsOld(const char* name) { return forms::IsOld(Find(name)); }

  /// Arrives at an option as by a click, and lets it act.
  void Choose(forms::OptionButton& option) {
    QTest::mouseClick(&option, Qt::LeftButton);
    QCoreApplication::processEvents();
  }

 private:
  static constexpr int kRound = 13;
  std::vector<std::function<void()>> m_later;
};

TEST_F(AnswersTest, AValueWhoseOwnQuestionIsNotAnsweredIsOldUntilItIs) {
  const struct {
    const char* question;
    std::vector<const char*> controls;
    bool controller = false;
  } rows[] = {{"VR?", {"lblRFLevel"}},
              {"VT?", {"lblTempMod1"}},
              {"VT2?", {"lblTempMod2"}},
              {"A?", {"lblAlarm", "imgOk"}},
              {"S?", {"optOnline", "optRFOn", "optREM", "lblSSPAMute"}},
              {"O?", {"lbl7316SSPA1State", "lbl7316SSPA2State"}, true},
              {"PA?", {"lbl7316PathAState", "opt7316PathA1"}, true},
              {"PB?", {"lbl7316PathBState", "opt7316PathB3"}, true},
              {"CP?", {"fra7316PathASelect"}, true}};
  for (const auto& row : rows) {
    const ReplyTable replies = row.controller ? ControllerReplies() : AmplifierReplies();
    const auto expectOld = [&](bool old) {
      for (const char* control : row.controls) {
        EXPECT_EQ(IsOld(control), old) << control;
        EXPECT_EQ(Find(control).toolTip() == QStringLiteral("No answer since 14:03:22"), old) << control;
      }
    };
    m_timeOfDay.setTime(QTime(14, 3, 22));
    Later([&] {
      expectOld(true);
      m_replies = replies;
    });
    Later([&] { expectOld(false); });
    InSession(replies, [&] {
      expectOld(false);
      m_replies.erase(row.question);
      m_timeOfDay = m_timeOfDay.addSecs(60);
    });
  }
}

TEST_F(AnswersTest, APathShowsTheOptionThatItsLabelNames) {
  ReplyTable replies = ControllerReplies();
  Later([&] {
    EXPECT_TRUE(Main().opt7316PathA1.Value());
    m_replies["PA?"] = "PA=?";
  });
  Later([&] {
    EXPECT_EQ(CaptionOf("lbl7316PathAState"), "UNKNOWN");
    EXPECT_EQ(Main().opt7316PathA1.GroupTabStop(), nullptr) << "Tab would command it";
  });
  InSession(replies, [&] {
    EXPECT_EQ(CaptionOf("lbl7316PathAState"), "SSPA1");
    Choose(Main().opt7316PathA2);
    EXPECT_TRUE(Main().opt7316PathA1.Value()) << "not answered";
    EXPECT_TRUE(IsOld("lbl7316PathAState"));
    Main().opt7316PathA2.Select();  // however it came: the next reading says what is
  });
}

TEST_F(AnswersTest, AnUnansweredGainIsAskedForOnceTheDeviceAnswers) {
  const auto questions = [this] { return QString::fromStdString(m_port.Transcript()).count(QStringLiteral("G?")); };
  Later([&] {
    EXPECT_FALSE(IsOld("txtGainAdjust"));
    EXPECT_EQ(questions(), 1);
    m_replies.erase("G?");
    m_port.TakeTranscript();
    QTest::keyClick(&Main().txtGainAdjust, Qt::Key_Down);
  });
  Later([&] {
    EXPECT_TRUE(IsOld("txtGainAdjust")) << "neither was answered";
    EXPECT_EQ(Main().txtGainAdjust.Text(), QStringLiteral("-3.6")) << "the answer alone may have been lost";
    EXPECT_EQ(questions(), 3) << "one question, three tries";
  });
  InSession(AmplifierReplies(), [&] {
    m_port.TakeTranscript();
    QTest::keyClick(&Main().txtGainAdjust, Qt::Key_Up);
    EXPECT_TRUE(IsOld("txtGainAdjust"));
  });
}

TEST_F(AnswersTest, ANewSessionShowsNothingOfTheFormerDevice) {
  InSession(AmplifierReplies(), [&] { m_replies.erase("VR?"); });
  EXPECT_TRUE(Main().optOnline.Value() && CaptionOf("lblTempMod1") == "41°C") << "a disconnect leaves the last values";
  m_yielder.OnYield([&] { EXPECT_EQ(CaptionOf("lblTempMod1") + CaptionOf("lblSSPAMute"), "  "); });
  m_replies.erase("S?");
  ReplyTable silent = AmplifierReplies();
  silent.erase("S?");
  Later([&] { EXPECT_EQ(SelectedOptions(), ""); });
  InSession(silent, [&] { EXPECT_FALSE(IsOld("lblRFLevel")); });
}

TEST_F(AnswersTest, TheViewerTellsOldFromLiveAndTheMainFormIsOldBehindALostOne) {
  std::string old;
  m_replies = AmplifierReplies();
  Start();
  m_yielder.OnYieldAfter(13, [&] {
    Open([&] { ClickOn("cmdViewAlarms"); },
         [&] {
           auto& form = dynamic_cast<forms::frmAlarms&>(Front());
           const auto tell = [&] {
             for (const QWidget* control : std::initializer_list<const QWidget*>{
                      &form.lblTemp1, &form.lblRF, form.cmdAlarms(3), &Main().lblRFLevel, &Main().lblAlarm}) {
               old += forms::IsOld(*control) ? 'o' : '.';
             }
             old += ' ';
           };
           m_yielder.OnYieldAfter(9, [&] { m_replies.erase("VT?"); });
           m_yielder.OnYieldAfter(10, [&, tell] {
             tell();
             m_replies.clear();
           });
           m_yielder.OnYieldAfter(10, [&, tell] {
             tell();
             m_replies = AmplifierReplies();
             form.cmdExit.click();
           });
           m_yielder.OnYieldAfter(13, [&] { EXPECT_FALSE(IsOld("lblRFLevel") || IsOld("lblAlarm")) << "asked again"; });
           DisconnectAfter(2);
           Q_EMIT form.tmrStartPolling.Tick();
         });
  });
  Connect();
  EXPECT_EQ(old, "o..oo ooooo ");
}

TEST_F(AnswersTest, AnOptionThatTheReplyDoesNotNameIsTakenBack) {
  ReplyTable replies = AmplifierReplies();
  replies["U?"] = "U=A";
  replies["S?"] = "S=OT";
  replies["S=C"] = "S=";
  InSession(replies, [&] {
    Open([&] { Q_EMIT Main().mnuSSPASettings.Click(); },
         [&] {
           auto& form = dynamic_cast<forms::frmSettings&>(Front());
           form.tabSettings.SelectTab(2);
           Q_EMIT form.tabSettings.Click();
           form.fraTempComp.setEnabled(true);
           for (forms::OptionButton* option : {&form.optTempCompOn, &form.optTempCompMin}) option->setEnabled(true);
           form.optTempCompMin.Select();
           m_port.TakeTranscript();
           Choose(form.optTempCompOn);
           EXPECT_NE(m_port.Transcript().find("S=C"), std::string::npos);
           EXPECT_TRUE(form.optTempCompMin.Value());
           form.UnloadForm();
         });
    Main().optOnline.Select();
    m_replies["S=S"] = "S=TQR";
    m_replies["S?"] = "S=TQR";
    Choose(Main().optStandby);
    EXPECT_TRUE(Main().optOnline.Value()) << "a status that tells no state";
  });
}

}  // namespace
}  // namespace tarnwell::test

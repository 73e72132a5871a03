#include "forms/frm_settings.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

/// A device that leaves one question or command unanswered, while it answers the others.
class AnswersTest : public ProgramTest {
 protected:
  void SetUp() override { Start(); }

  /// Next in the coming session, when all questions have been asked, or asked again.
  void Round(std::function<void()> act) { m_yielder.OnYieldAfter(13, std::move(act)); }

  bool IsOld(const char* name) { return forms::IsOld(Find(name)); }
};

TEST_F(AnswersTest, AValueWhoseOwnQuestionIsNotAnsweredIsOldUntilItIs) {
  const struct {
    const char* question;
    std::vector<const char*> controls;
    ReplyTable replies = AmplifierReplies();
  } rows[] = {{"VR?", {"lblRFLevel"}},
              {"VT?", {"lblTempMod1"}},
              {"VT2?", {"lblTempMod2"}},
              {"A?", {"lblAlarm", "imgOk"}},
              {"S?", {"optOnline", "optRFOn", "optRFMute", "optREM", "lblSSPAMute"}},
              {"O?", {"lbl7316SSPA1State", "lbl7316SSPA2State"}, ControllerReplies()},
              {"PA?", {"lbl7316PathAState", "opt7316PathA1"}, ControllerReplies()},
              {"PB?", {"lbl7316PathBState", "opt7316PathB3"}, ControllerReplies()},
              {"CP?", {"fra7316PathASelect"}, ControllerReplies()}};
  for (const auto& row : rows) {
    const auto expectOld = [&](bool old) {
      for (const char* control : row.controls) {
        EXPECT_EQ(IsOld(control), old) << control;
        EXPECT_EQ(Find(control).toolTip() == QStringLiteral("No answer since 14:03:22"), old) << control;
      }
    };
    m_timeOfDay.setTime(QTime(14, 3, 22));
    m_replies = row.replies;
    Round([&] {
      expectOld(false);
      m_replies.erase(row.question);
      m_timeOfDay = m_timeOfDay.addSecs(60);
    });
    Round([&] {
      expectOld(true);
      m_replies = row.replies;
    });
    Round([&] { expectOld(false); });
    Connect(2);
  }
}

TEST_F(AnswersTest, WhatThePollShowsIsOldBehindAnotherFormUntilTheNextAnswers) {
  const auto expectOld = [this](bool old, const char* where) {
    for (const char* name : {m_replies.count("O?") != 0 ? "lbl7316SSPA1State" : "lblRFLevel", "optREM", "imgOk"}) {
      const auto* control = Main().findChild<QWidget*>(QLatin1String(name));
      EXPECT_TRUE(forms::IsOld(*control) == old && control->isEnabled()) << name << ' ' << where;
    }
    EXPECT_FALSE(forms::IsOld(Main().txtGainAdjust)) << "nothing would ask for it";
  };
  const auto close = [&] {
    expectOld(true, "behind it");
    Front().UnloadForm();
  };
  for (const ReplyTable& replies : {AmplifierReplies(), ControllerReplies()}) {
    m_replies = replies;
    for (const char* opener : {"mnuSSPASettings", "mnuSWOpt", "mnuSnapshot", "cmdViewAlarms"}) {
      Round([&, opener] {
        expectOld(false, opener);
        Open([&] { *opener == 'c' ? ClickOn(opener) : Choose(opener); }, close);
        expectOld(true, "on the return");
      });
    }
    Connect(14);
  }
}

TEST_F(AnswersTest, APathShowsTheOptionThatItsLabelNames) {
  m_replies = ControllerReplies();
  Round([&] {
    EXPECT_EQ(CaptionOf("lbl7316PathAState"), "SSPA1");
    Press("opt7316PathA2");
    EXPECT_TRUE(Main().opt7316PathA1.Value()) << "not answered";
    EXPECT_TRUE(IsOld("lbl7316PathAState"));
    Main().opt7316PathA2.Select();  // however it came: the next reading says what is
  });
  Round([&] {
    EXPECT_TRUE(Main().opt7316PathA1.Value());
    m_replies["PA?"] = "PA=?";
  });
  Round([&] {
    EXPECT_EQ(CaptionOf("lbl7316PathAState"), "UNKNOWN");
    EXPECT_EQ(Main().opt7316PathA1.GroupTabStop(), nullptr) << "Tab would command it";
  });
  Connect(2);
}

TEST_F(AnswersTest, AnUnansweredGainIsAskedForOnceTheDeviceAnswers) {
  const auto step = [this](Qt::Key key) {
    m_port.TakeTranscript();
    QTest::keyClick(&Main().txtGainAdjust, key);
    EXPECT_TRUE(IsOld("txtGainAdjust"));
  };
  const auto expect = [this](bool old, const char* shown, int questions) {
    EXPECT_EQ(IsOld("txtGainAdjust"), old);
    EXPECT_EQ(Main().txtGainAdjust.Text().toStdString(), shown);
    EXPECT_EQ(QString::fromStdString(m_port.Commands()).count(QStringLiteral("G?")), questions);
  };
  Round([&] { step(Qt::Key_Up); });
  Round([&] {
    expect(false, "-3.4", 1);
    m_replies.erase("G?");
    step(Qt::Key_Down);
  });
  const auto stillOld = [&](int questions) {
    expect(true, "-3.6", questions);  // the answer alone may have been lost
    m_port.TakeTranscript();
  };
  m_yielder.OnYieldAfter(11, [&] { stillOld(6); });  // at once, and in the next round
  m_yielder.OnYieldAfter(11, [&] { stillOld(3); });
  m_yielder.OnYield([&] { m_replies.clear(); });
  m_yielder.OnYield([&] { m_port.TakeTranscript(); });
  m_yielder.OnYieldAfter(12, [&] {
    expect(true, "-3.6", 0);  // not on a lost link
    m_replies = AmplifierReplies();
  });
  Round([&] {
    expect(false, "-3.4", 1);
    EXPECT_EQ(Find("txtGainAdjust").toolTip(), QStringLiteral("As of 09:26:41; not asked again while connected"));
    m_replies.erase("ZA");
    Open([this] { ClickOn("cmdViewAlarms"); },
         [this] {
           ClickOn("cmdClear");
           EXPECT_TRUE(forms::IsOld(Main().txtGainAdjust)) << "the viewer has lost the link";
           Front().UnloadForm();
         });
  });
  Round([&] { EXPECT_FALSE(IsOld("txtGainAdjust")); });
  Connect(2);
}

TEST_F(AnswersTest, ANewSessionShowsNothingOfTheFormerDevice) {
  std::vector<forms::Label*> readings;
  for (auto* label : Main().findChildren<forms::Label*>()) {
    if (label->Caption() == QStringLiteral(" ")) readings.push_back(label);
  }
  EXPECT_EQ(readings.size(), 10U);
  Round([&] { m_replies.erase("VR?"); });
  Connect(13);
  EXPECT_TRUE(Main().optOnline.Value() && CaptionOf("lblTempMod1") == "41°C") << "a disconnect leaves the last values";
  EXPECT_TRUE(IsOld("lblRFLevel"));
  EXPECT_EQ(Find("txtGainAdjust").toolTip(), QStringLiteral("As of 09:26:41"));
  for (auto* label : readings) {
    label->SetCaption(QStringLiteral("ALARM"));
    label->SetBackground(Qt::red);
  }
  m_replies.erase("S?");
  m_yielder.OnYield([&] {
    EXPECT_TRUE(IsOld("optRFMute") && IsOld("imgOk")) << "the former device's, or nobody's";
    for (auto* label : readings) EXPECT_TRUE(label->Caption() == QStringLiteral(" ") && !label->Background().isValid());
    m_replies["VR?"] = "VR=1";
  });
  Round([&] {
    EXPECT_FALSE(IsOld("lblRFLevel"));
    EXPECT_EQ(SelectedOptions(), "");
  });
  Connect(2);
  m_replies = ControllerReplies();
  m_replies["CP?"] = "CP=B";
  Connect(8);
  m_replies.erase("CP?");
  m_yielder.OnYield([&] { EXPECT_EQ(Main().fra7316PathBSelect.Caption(), QStringLiteral("Path &B SSPA Selection")); });
  Connect(2);
}

TEST_F(AnswersTest, AnOptionThatTheReplyDoesNotNameIsTakenBack) {
  m_replies.merge(ReplyTable{{"U?", "U=A"}, {"S=C", "S="}});
  Round([&] {
    Open([&] { Q_EMIT Main().mnuSSPASettings.Click(); },
         [&] {
           auto& form = dynamic_cast<forms::frmSettings&>(Front());
           form.tabSettings.SelectTab(2);
           Q_EMIT form.tabSettings.Click();
           for (QWidget* control :
                std::initializer_list<QWidget*>{&form.fraTempComp, &form.optTempCompOn, &form.optTempCompMin})
             control->setEnabled(true);
           form.optTempCompMin.Select();
           m_port.TakeTranscript();
           Press("optTempCompOn");
           EXPECT_NE(m_port.Commands().find("S=C"), std::string::npos);
           EXPECT_TRUE(form.optTempCompMin.Value());
           form.UnloadForm();
         });
    m_replies["S=S"] = m_replies["S?"] = "S=TQR";
    Press("optStandby");
    EXPECT_TRUE(Main().optOnline.Value()) << "a status that tells no state";
    Press("optLLO");
    EXPECT_TRUE(IsOld("optLLO")) << "a command that isn't answered";
  });
  Connect(2);
}

}  // namespace
}  // namespace tarnwell::test

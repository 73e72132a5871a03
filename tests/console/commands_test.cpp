#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class CommandsTest : public ProgramTest {
 protected:
  /// The commands that `act` causes in a session, up to the end of the yield in which it happens.
  std::string CommandsOf(std::function<void()> act) {
    m_yielder.SkipYields(1);
    m_yielder.OnYield([this, act = std::move(act)] {
      m_port.TakeTranscript();
      act();
      QCoreApplication::processEvents();
      m_caused = m_port.Commands();
    });
    DisconnectAfter(1);
    Connect();
    return m_caused;
  }

  std::string m_caused;
};

TEST_F(CommandsTest, AClickOnAnOptionSendsAndReadsBack) {
  m_replies = AmplifierReplies();
  Start();
  for (const auto& [option, commands] : std::initializer_list<std::pair<const char*, const char*>>{
           {"optStandby", "S=S S?"}, {"optRFMute", "S=X S?"}, {"optRFOn", "S=T S=T S=T"}, {"optLLO", "LLO LLO LLO"}}) {
    const char* name = option;
    EXPECT_EQ(CommandsOf([this, name] { ClickOn(name); }), commands) << option;
  }
  EXPECT_EQ(SelectedOptions(), "optLLO optOnline optRFOn")
      << "an option that got no answer stands until the next status";

  m_replies = ControllerReplies();
  m_replies["PB=2"] = "PB=2";
  EXPECT_EQ(CommandsOf([this] { ClickOn("opt7316PathB2"); }), "PB=2 PB?");
  EXPECT_EQ(CommandsOf([this] { ClickOn("opt7316Auto"); }), "S=A S=A S=A");
}

TEST_F(CommandsTest, TheDevicesWordStandsWhenTheButtonIsReleased) {
  m_replies = AmplifierReplies();
  m_replies["S=S"] = "S=OT";  // answered, not obeyed
  Start();
  const std::string commands = CommandsOf([this] {
    QWidget& option = Find("optStandby");
    QTest::mousePress(&option, Qt::LeftButton);
    QCoreApplication::processEvents();
    QTest::mouseRelease(&option, Qt::LeftButton);
    EXPECT_TRUE(Find<forms::OptionButton>("optOnline").Value());
    EXPECT_FALSE(Find<forms::OptionButton>("optStandby").Value() || Find<QAbstractButton>("optStandby").isDown());
  });
  EXPECT_EQ(commands, "S=S S?");
}

TEST_F(CommandsTest, GainTypedWithKeys) {
  struct Case {
    const char* keys;
    const char* command;
    const char* shown;
  };
  m_replies = AmplifierReplies();
  m_replies["G=-3.41"] = "G=-3.4";
  m_replies["G=-20"] = "G=-20";
  m_replies["G= 0"] = "G=0";
  m_replies["G=-.2"] = "G=-0.2";
  Start();
  for (const Case& c :
       {Case{"-3.41", "G=-3.41", "-3.41"}, Case{"-25", "G=-20", "-20.0"}, Case{"5", "G= 0", "0.0"},
        Case{"-,2", "G=-.2", "-0.2"}, Case{"-", "", "-3.4"}, Case{"1-2", "", "-3.4"}, Case{"x", "", "-3.4"}}) {
    EXPECT_EQ(CommandsOf([&] {
                QWidget& field = Find("txtGainAdjust");
                field.setFocus();
                QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
                QTest::keyClick(&field, Qt::Key_Backspace);
                QTest::keyClicks(&field, QString::fromLatin1(c.keys));
                QTest::keyClick(&field, Qt::Key_Return);
                EXPECT_EQ(Find<forms::TextBox>("txtGainAdjust").Text(), QString::fromLatin1(c.shown)) << c.keys;
              }),
              c.command)
        << c.keys;
  }
}

TEST_F(CommandsTest, GainByArrowsAndSpin) {
  m_replies = AmplifierReplies();
  m_replies["G?"] = "G=-0.2";
  m_replies["G= 0"] = "G=0";
  Start();
  EXPECT_EQ(CommandsOf([this] {
              QWidget& field = Find("txtGainAdjust");
              field.setFocus();
              QTest::keyClick(&field, Qt::Key_Up);
              QTest::keyClick(&field, Qt::Key_Up);
            }),
            "G= 0")
      << "at the limit the key sends nothing";
  EXPECT_EQ(CommandsOf([this] {
              QWidget& spin = Find("updwnGainAdjust");
              QTest::mousePress(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
              EXPECT_EQ(m_port.Commands(), "") << "nothing goes out while the arrow is held";
              QTest::mouseRelease(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
            }),
            "G= 0");
}

TEST_F(CommandsTest, WhatIsHalfTypedIsNeverSent) {
  m_replies = AmplifierReplies();
  m_replies["G?"] = "G=0";
  m_replies["G= 0"] = "G=0";
  Start();
  const auto type = [this] {
    QWidget& field = Find("txtGainAdjust");
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, QStringLiteral("25"));
    return &field;
  };
  const auto shown = [this] { return Find<forms::TextBox>("txtGainAdjust").Text().toStdString(); };
  EXPECT_EQ(CommandsOf([&] {
              type();
              QWidget& spin = Find("updwnGainAdjust");  // at its limit: the arrow changes nothing
              QTest::mouseClick(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
            }),
            "G= 0");
  EXPECT_EQ(CommandsOf([&] {
              QTest::keyClick(type(), Qt::Key_Escape);
              EXPECT_EQ(shown(), "0.0");
              type();
              Find("cmdConnect").setFocus();
              EXPECT_EQ(shown(), "0.0");
            }),
            "");
}

TEST_F(CommandsTest, DelaysOfAWriter) {
  m_replies = AmplifierReplies();
  m_replies["G=-3.4"] = "G=-3.4";
  Start();
  double before = 0.0;
  double after = 0.0;
  const auto timed = [&](const std::function<void()>& act) {
    CommandsOf([&] {
      before = m_counter.Seconds();
      act();
      QCoreApplication::processEvents();
      after = m_counter.Seconds();
    });
    return after - before;
  };
  // a frame of 7 bytes holds the line for 0.0173 s, one of 6 for 0.0163 s; an answer comes 0.02 s after its request
  const double obeyed = timed([this] { ClickOn("optStandby"); });
  EXPECT_NEAR(obeyed, 0.1 + 0.05 + 0.1 + 2 * 0.02, 0.02);
  const double silent = timed([this] { ClickOn("optLLO"); });
  EXPECT_NEAR(silent, 0.1 + 3 * (0.0173 + 2.0 + 0.05) + 0.1, 0.01) << "the last delay runs also after a failure";
  const double gain = timed([this] {
    Find("txtGainAdjust").setFocus();
    QTest::keyClick(&Find("txtGainAdjust"), Qt::Key_Return);
  });
  EXPECT_NEAR(gain, 0.05 + 0.02 + 0.05, 0.01);
}

}  // namespace
}  // namespace tarnwell::test

#include <QMenu>
#include <QMenuBar>
#include <sstream>

#include "support/program_test.h"

namespace tarnwell::test {
namespace {

/// What an operator does who wants nothing: no frame but the poll's may leave, whatever has the focus.
class IdleOperatorTest : public ProgramTest {
 protected:
  void ExpectOnlyQueries(const char* when) {
    QCoreApplication::processEvents();
    std::istringstream commands(m_port.Commands());
    for (std::string command; commands >> command;) EXPECT_EQ(command.back(), '?') << command << " after " << when;
    m_port.TakeTranscript();
  }

  void LookAround(const char* option) {
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    Main().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Main()));
    ExpectOnlyQueries(option);

    auto* menu = Main().MenuBar().actions().first()->menu();
    menu->popup(Main().mapToGlobal(QPoint(5, 20)));
    QCoreApplication::processEvents();
    menu->close();
    ExpectOnlyQueries(option);

    Main().showMaximized();
    QCoreApplication::processEvents();
    Main().showMinimized();
    QCoreApplication::processEvents();
    Main().showNormal();
    Main().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Main()));
    ExpectOnlyQueries(option);
    Open([this] { Q_EMIT Main().mnuSWOpt.Click(); }, [this] { ClickOn("cmdCancel"); });
    Open([this] { Q_EMIT Main().cmdViewAlarms.Click(); }, [this] { Front().close(); });
    EXPECT_EQ(Main().focusWidget(), &Main().cmdConnect);
    ExpectOnlyQueries(option);
    Find(option).setFocus();
    QCoreApplication::processEvents();
    m_port.TakeTranscript();
    Main().HideAndShow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Main()));
    ExpectOnlyQueries(option);
  }
};

TEST_F(IdleOperatorTest, WindowsAndMenusSendNothing) {
  for (const ReplyTable& replies : {AmplifierReplies(), ControllerReplies()}) {
    m_replies = replies;
    const bool controller = replies.count("O?") != 0;
    Start();
    for (const char* option : controller ? std::vector{"opt7316Auto", "opt7316PathA1", "optLLO"}
                                         : std::vector{"optOnline", "optRFOn", "optRFMute", "optREM"}) {
      m_yielder.OnYield([this, option] {
        ClickOn(option);
        QCoreApplication::processEvents();
        m_port.TakeTranscript();
      });
      m_yielder.SkipYields(12);
      m_yielder.OnYield([this, option] {
        m_port.TakeTranscript();
        LookAround(option);
      });
    }
    DisconnectAfter(1);
    Connect();
  }
}

TEST_F(IdleOperatorTest, AFocusedOptionThatIsGreyedHandsTheFocusToNoOption) {
  m_replies = AmplifierReplies();
  for (const char* option : {"optOnline", "optRFOn", "optLLO"}) {
    Start();
    m_replies["S?"] = "S=OT";
    m_yielder.OnYield([this, option] {
      ClickOn(option);
      QCoreApplication::processEvents();
      m_replies["S?"] = "S=OTZ";  // the device locks the console out
      m_port.TakeTranscript();
    });
    m_yielder.SkipYields(12);
    m_yielder.OnYield([this, option] {
      ExpectOnlyQueries(option);
      m_replies["S?"] = "S=OT";
    });
    m_yielder.SkipYields(12);
    m_yielder.OnYield([this, option] { ExpectOnlyQueries(option); });
    DisconnectAfter(1);
    Connect();
  }
}

TEST_F(IdleOperatorTest, TabReachesAGroupAtItsSelectedOptionAlone) {
  m_replies = AmplifierReplies();
  m_replies["S=O"] = m_replies["S=T"] = m_replies["REM"] = "S=OT";
  Start();
  m_yielder.SkipYields(12);
  m_yielder.OnYield([this] {
    m_port.TakeTranscript();
    for (int i = 0; i < 20; ++i) {
      QTest::keyClick(QApplication::focusWidget(), i < 10 ? Qt::Key_Tab : Qt::Key_Backtab);
      QCoreApplication::processEvents();
    }
    std::istringstream commands(m_port.Commands());
    for (std::string command; commands >> command;) {
      EXPECT_TRUE(command == "S?" || command == "S=O" || command == "S=T" || command == "REM") << command;
    }
    EXPECT_EQ(SelectedOptions(), "optOnline optREM optRFOn");
  });
  DisconnectAfter(1);
  Connect();
}

}  // namespace
}  // namespace tarnwell::test

#include "forms/frm_settings.h"
#include "support/late_input.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

/// An operator who goes on clicking and typing while the thread is held by a question to the device. All that is
/// delivered when the thread is free again.
class HoldTest : public ProgramTest {
 protected:
  HoldTest() {
    m_port.AnswerAlways([this](const std::string& command) -> std::optional<std::string> {
      const auto hold = m_holds.find(command);
      if (hold != m_holds.end()) std::exchange(m_holds, {}).at(command)();
      const auto row = m_replies.find(command);
      return row != m_replies.end() ? std::optional(row->second) : std::nullopt;
    });
  }

  /// The next time that the device is asked `command`.
  void During(const std::string& command, std::function<void()> act) { m_holds[command] = std::move(act); }

  void LaterClick(QWidget& control) {
    Later([&control, made = m_clock.Now()] { DeliverClick(control, made); });
  }
  void LaterKey(QWidget& window, Qt::Key key) {
    Later([&window, key, made = m_clock.Now()] { DeliverKey(window, key, made); });
  }
  void LaterClose(QWidget& window) {
    Later([this, &window, made = m_clock.Now()] { DeliverClose(window, m_clock, made); });
  }

  /// A session with that device; `act` is done when it has been polled once round.
  void InSession(const ReplyTable& replies, std::function<void()> act) {
    m_replies = replies;
    Start();
    m_yielder.SkipYields(13);
    m_yielder.OnYield([this, act = std::move(act)] {
      QCoreApplication::processEvents();
      m_port.TakeTranscript();
      act();
    });
    m_yielder.SkipYields(30);
    m_yielder.OnYield([this] { Main().UnloadForm(); });
    Connect();
    while (!Main().Unloaded()) m_yielder.Yield(0);
    m_port.SetPortOpen(false);
  }

  void InSettings(const std::function<void(forms::frmSettings&)>& act);

  /// What was sent but queries, and "PortOpen=0".
  std::string Orders() {
    QStringList orders;
    for (const QString& word : QString::fromStdString(m_port.Transcript()).split(QLatin1Char(' '))) {
      if (!word.endsWith(QLatin1Char('?'))) orders += word;
    }
    return orders.join(QLatin1Char(' ')).toStdString();
  }

  ManualClock m_clock;

 private:
  /// The window system's events come behind what the program has posted to itself.
  void Later(const std::function<void()>& deliver) {
    QCoreApplication* program = QCoreApplication::instance();
    QMetaObject::invokeMethod(
        program, [=] { QMetaObject::invokeMethod(program, deliver, Qt::QueuedConnection); }, Qt::QueuedConnection);
  }

  std::map<std::string, std::function<void()>> m_holds;
};

TEST_F(HoldTest, AnOptionActsAheadOfWhatWasPressedAfterIt) {
  const struct {
    const char* option;
    const char* pressed;  ///< nothing: the window's frame
    const char* sent;
  } rows[] = {{"optRFMute", "cmdConnect", "S=X PortOpen=0 PortOpen=0"},
              {"optStandby", "updwnGainAdjust", "S=S G=-3.2 PortOpen=0"},
              {"optStandby", nullptr, "S=S PortOpen=0"}};
  for (const auto& row : rows) {
    ReplyTable replies = AmplifierReplies();
    replies["G=-3.2"] = "G=-3.2";
    InSession(replies, [&] {
      During("VR?", [&] {
        LaterClick(Find(row.option));
        row.pressed != nullptr ? LaterClick(Find(row.pressed)) : LaterClose(Main());
      });
    });
    EXPECT_EQ(Orders(), row.sent);
  }
}

/// In a session with a controller: the settings form, read, in which `act` is done.
void HoldTest::InSettings(const std::function<void(forms::frmSettings&)>& act) {
  ReplyTable replies = ControllerReplies();
  replies.merge(ReplyTable{{"CV?", "CV=1"}, {"U?", "U=@"}, {"CM=2", "CM=2"}, {"CP=B", "CP=B"}});
  InSession(replies, [&] {
    Open([this] { Q_EMIT Main().mnuSSPASettings.Click(); },
         [&] {
           auto& form = dynamic_cast<forms::frmSettings&>(Front());
           Q_EMIT form.tmrStartLoad.Tick();
           QCoreApplication::processEvents();
           m_port.TakeTranscript();
           act(form);
         });
  });
}

TEST_F(HoldTest, APathPriorityIsSentAheadOfTheClosingOfItsForm) {
  InSettings([this](forms::frmSettings& form) {
    During("CM=2", [&] {
      LaterClick(form.opt7316PathB);
      LaterClick(form.cmdExit);
    });
    DeliverClick(form.opt7316_12, m_clock.Now());
    for (int turn = 0; turn < 4; ++turn) QCoreApplication::processEvents();
    EXPECT_TRUE(form.Unloaded());
    EXPECT_EQ(Orders(), "CM=2 CP=B");
    form.UnloadForm();
  });
}

TEST_F(HoldTest, NothingActsOnTheFormThatCameToTheFrontMeanwhile) {
  for (const std::string unanswered : {"CM=1", "CP=A"}) {
    InSettings([&](forms::frmSettings& form) {
      During(unanswered, [&] {
        LaterClick(Main().opt7316Auto);
        LaterClick(Main().cmdConnect);
        LaterKey(Main(), Qt::Key_Return);
        LaterClose(Main());
      });
      DeliverClick(unanswered == "CM=1" ? form.opt7316_11 : form.opt7316PathA, m_clock.Now());
    });
    EXPECT_EQ(Orders(), unanswered + ' ' + unanswered + ' ' + unanswered + " PortOpen=0") << "and on to the end";
  }
}

TEST_F(HoldTest, ASecondClickOnConnectDoesNotDisconnectAndADeadLinkIsLeftAtOnce) {
  m_replies = AmplifierReplies();
  During("CT?", [this] { LaterClick(Main().cmdConnect); });
  std::string captions;
  InSession(AmplifierReplies(), [&] {
    captions = Main().cmdConnect.Caption().toStdString();
    m_replies.clear();
    During("VR?", [this] {
      LaterClick(Main().cmdConnect);
      LaterClick(Main().cmdConnect);
    });
  });
  EXPECT_EQ(captions, "Dis&connect");
  EXPECT_EQ(Main().cmdConnect.Caption(), QStringLiteral("&Connect")) << "pressed twice, obeyed once";
}

}  // namespace
}  // namespace tarnwell::test

#include "forms/frm_alarms.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class PausesTest : public ProgramTest {
 protected:
  /// What `act` sends in a session with such a device, and at what pace.
  std::string PacesOf(const ReplyTable& device, const std::function<void()>& act) {
    m_replies = device;
    Start();
    std::string paces;
    m_yielder.OnYieldAfter(1, [&] {
      TakePaces();
      act();
      QCoreApplication::processEvents();
      paces = TakePaces();
      DisconnectAfter(1);
    });
    Connect();
    return paces;
  }
};

TEST_F(PausesTest, EachCommandOfTheConsole) {
  ReplyTable amplifier = AmplifierReplies();
  amplifier.merge(ReplyTable{{"REM", "S=OT"}, {"G=-3.2", "G=-3.2"}});
  ReplyTable controller = ControllerReplies();
  controller.merge(ReplyTable{{"S=A", "S=A"}, {"PB=2", "PB=2"}});
  const std::tuple<const ReplyTable&, const char*, const char*> rows[] = {
      {amplifier, "optStandby", "100 S=S 50 S? 100"},          {amplifier, "optREM", "100 REM 50 S? 100"},
      {amplifier, "optLLO", "100 LLO 2050 LLO 2050 LLO 2150"},  // unanswered
      {amplifier, "updwnGainAdjust", "50 G=-3.2 50"},          {controller, "opt7316Auto", "100 S=A 50 S? 100"},
      {controller, "opt7316PathB2", "100 PB=2 50 PB? 100"}};
  for (const auto& [device, control, paces] : rows) {
    EXPECT_EQ(PacesOf(device, [this, name = control] { ClickOn(name); }), paces) << control;
  }
}

TEST_F(PausesTest, ConnectingPollingAndALinkThatReturns) {
  const auto session = [this](const ReplyTable& device, int polls) {
    m_replies = device;
    Start();
    m_yielder.OnYieldAfter(1, [this] { m_replies.clear(); });
    m_yielder.OnYield([&, this] { m_replies = device; });
    TakePaces();
    Connect(polls);
    return TakePaces();
  };
  EXPECT_EQ(session(AmplifierReplies(), 1),
            "0 CT? 50 CV? 50 CP? 50 CH? 50 G? 50 VR? 50 S? 50 VR? 2050 VR? 2050 VR? 2100 A? 50 G? 50");
  EXPECT_EQ(session(ControllerReplies(), 1), "0 CT? 50 S? 50 CM? 50 A? 50 S? 50 CM? 2050 CM? 2050 CM? 2100 O? 50");
}

TEST_F(PausesTest, EachFormThatOpensAndWhatItSends) {
  ReplyTable device = AmplifierReplies();
  device["ZA"] = "A=";
  device["U?"] = "U=@";
  const std::tuple<const char*, const char*, const char*> rows[] = {{"cmdViewAlarms", "cmdExit", "100 CT? 50"},
                                                                    {"mnuSSPASettings", "cmdExit", "50 CT? 50"},
                                                                    {"mnuSnapshot", "cmdCancel", "50"},
                                                                    {"mnuSWOpt", "cmdCancel", "0"}};
  for (const auto& [opener, closer, paces] : rows) {
    const auto open = [this, name = opener] { *name == 'c' ? ClickOn(name) : Choose(name); };
    const auto close = [this, name = closer] {
      ClickOn(name);
      if (auto* viewer = dynamic_cast<forms::frmAlarms*>(&Front())) Q_EMIT viewer->tmrStartPolling.Tick();
    };
    EXPECT_EQ(PacesOf(device, [&] { Open(open, close); }), paces) << opener;
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
  PacesOf(device, [&] { Open([this] { ClickOn("cmdViewAlarms"); }, clear); });
  EXPECT_EQ(cleared, "100 CT? 0 A? 50 VR? 0 | 50 ZA 100 A? 50");
}

}  // namespace
}  // namespace tarnwell::test

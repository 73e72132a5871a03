#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class EnabledTest : public ProgramTest {
 protected:
  /// Notes the console in a session with such a device, with the link lost, and with its first answer behind that.
  void NoteSession(ReplyTable device, const char* query = "", const char* reply = "") {
    device[query] = reply;
    m_replies = device;
    m_yielder.OnYieldAfter(15, [this] {
      NoteStates(" ");
      m_replies.clear();
    });
    m_yielder.OnYield([this, device] {
      NoteStates();
      m_replies = device;
    });
    m_yielder.OnYield([this] { NoteStates(); });
    Connect(1);
  }
};

TEST_F(EnabledTest, EachControlInEachStateOfASession) {
  Start();
  NoteStates();
  NoteSession(AmplifierReplies());
  NoteSession(AmplifierReplies(), "CT?", "CT=120W C-BAND");
  NoteSession(AmplifierReplies(), "S?", "S=SXD");
  NoteSession(AmplifierReplies(), "S?", "S=OTZ");
  NoteSession(ControllerReplies());
  NoteSession(ControllerReplies(), "S?", "S=A");
  NoteSession(ControllerReplies(), "S?", "S=MZ");
  NoteSession(ControllerReplies(), "CM?", "CM=1");
  NoteStates(" ");
  EXPECT_EQ(NotedStates(),
            "+ --- --- --- --- --- --- --- --- + lblAddress txtConnectAddress updwnConnectAddress\n"
            "- +-+ +-+ +-+ +-+ +-+ +-+ +-+ +-+ - cmdViewAlarms fraAlarms fraSSPAMute lblAlarm lblMod1 lblRF "
            "lblRFLevel lblSSPAMute lblTempMod1 mnuSSPASettings mnuSnapshot\n"
            "- +-+ +-+ +-+ +-+ ... ... ... ... . fraRF fraTemp\n"
            "- +-+ +-+ +-+ --- +-+ +-+ --- +-+ - fra7316Mode fra7316SSPAStatus fraCommsMode lbl7316PathAState "
            "lbl7316SSPA1 lbl7316SSPA1State lbl7316SSPA2 lbl7316SSPA2State lblGainAdjust opt7316Auto "
            "opt7316Manual optLLO optOnline optREM optStandby txtGainAdjust updwnGainAdjust\n"
            "- +-+ +-+ +-+ --- +-+ +-+ --- ... . lbl7316PathBState lbl7316SSPA3 lbl7316SSPA3State\n"
            "- +-+ +-+ +-+ --- +-+ --- --- +-+ - fra7316PathASelect opt7316PathA1 opt7316PathA2\n"
            "- +-+ +-+ +-+ --- +-+ --- --- ... . fra7316PathBSelect opt7316PathB2 opt7316PathB3\n"
            "- +-+ +-+ +-+ --- ... ... ... ... . fraState\n"
            "- +-+ +-+ --+ --- +-+ +-+ --- +-+ - fraUserMute optRFMute optRFOn\n"
            "- +-+ ... +-+ +-+ +-+ +-+ +-+ +-+ - lblMod2 lblTempMod2\n"
            "- --- --- --- --- --- --- --- --- - optMaint optRLO\n"
            ". ... ... ... ... +-+ +-+ +-+ +-+ - fra7316Status\n"
            ". ... ... ... ... ... ... ... ... . imgAlarm imgOk\n");
}

}  // namespace
}  // namespace tarnwell::test

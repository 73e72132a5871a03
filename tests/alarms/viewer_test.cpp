#include "forms/controls/announcement.h"
#include "forms/frm_alarms.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class ViewerTest : public ProgramTest {
 protected:
  forms::frmAlarms& Viewer() { return dynamic_cast<forms::frmAlarms&>(Front()); }

  /// In a session: opens the viewer with `silent` unanswered, runs `act` before its poll, which goes on until something
  /// queued closes it. Gives what was sent.
  std::string View(std::function<void()> act, const char* silent = "") {
    Start();
    std::string traffic;
    m_yielder.OnYieldAfter(12, [&] {
      m_port.TakeTranscript();
      m_replies.erase(silent);
      Open([this] { ClickOn("cmdViewAlarms"); },
           [&] {
             forms::frmAlarms& viewer = Viewer();
             EXPECT_TRUE(viewer.tmrStartPolling.Enabled() && viewer.tmrAlarmBeeper.Enabled());
             EXPECT_FALSE(Main().tmrFlasher.Enabled() || Main().tmrForcePollResume.Enabled() || m_desktop.Busy());
             act();
             if (!viewer.Unloaded()) Q_EMIT viewer.tmrStartPolling.Tick();
             EXPECT_FALSE(viewer.tmrAlarmBeeper.Enabled() || viewer.tmrForcePollResume.Enabled());
           });
      traffic = m_port.Commands();
      EXPECT_TRUE(Main().tmrFlasher.Enabled() && Main().tmrForcePollResume.Enabled());
      DisconnectAfter(1);
    });
    Connect();
    return traffic;
  }

  /// The alarm buttons that aren't plain green: number, state, "A" where acknowledged, "-" where hidden.
  std::string Shown() {
    const auto& buttons = Viewer().fra7316Alarms.isVisible() ? Viewer().cmd7316Alarms : Viewer().cmdAlarms;
    std::string text;
    for (int i = 0; i < buttons.size(); ++i) {
      if (buttons(i) == nullptr) continue;
      const QColor colour = buttons(i)->Background();
      std::string state = colour == forms::kActiveColour ? "red" : colour == forms::kLatchedColour ? "orange" : "";
      state += (buttons(i)->isVisible() ? "" : "-") + buttons(i)->Caption().toStdString();
      if (!state.empty()) text += std::to_string(i) + state + ' ';
    }
    return text;
  }

  /// What one tick of the beeper does.
  int Beeps() {
    Q_EMIT Viewer().tmrAlarmBeeper.Tick();
    return m_desktop.TakeBeeps();
  }
};

TEST_F(ViewerTest, AsksEachAmplifierWhatItHas) {
  const auto expect = [this](ReplyTable replies, const char* missing, const std::string& round, const char* texts) {
    m_replies = std::move(replies);
    m_replies.merge(ReplyTable{{"VR2?", "VR2=29.96"}, {"V5?", "V5=5.006"}, {"V11?", "V11=low"}});
    m_replies.merge(ReplyTable{{"V11LC?", "V11LC=-.5"}, {"V-10?", "V-10=-10"}, {"V14?", "V14=14 V"}});
    m_replies.merge(AmplifierReplies());
    const std::string traffic = View([&] {
      EXPECT_EQ(Shown(), missing);
      EXPECT_EQ(Front().geometry().size(), Main().geometry().size());
      m_yielder.OnYieldAfter(19, [&] {
        std::string shown;
        for (const char* label : {"lblRF", "lblReflected", "lblTemp1", "lblTemp2", "lbl5V", "lbl11V", "lbl11VLC",
                                  "lbl10V", "lbl14V", "lbl11L", "lblPSThermal"}) {
          shown += CaptionOf(label) + '|';
        }
        EXPECT_EQ(shown, texts);
        ClickOn("cmdExit");
      });
    });
    EXPECT_EQ(traffic, "CT? " + round + ' ' + round);
    EXPECT_EQ(m_port.Commands().substr(traffic.size()), " S?") << "the console's poll goes on at its next step";
  };
  expect({}, "13- ", "A? VR? VT? VT2? V5? V11? V11LC? V-10? V14?",
         "12.3 dBm||41°C|43°C|5.01 V|0.00 V|-0.50 V|-10.00 V|14.00 V|11V rail low|Power Supply Thermal|");
  // one module
  expect({{"CT?", "CT=40W K-BAND"}, {"CH?", "CH=857E"}, {"VT?", "VT=hot"}}, "13- 16- 17- 18- 20- ",
         "A? VR? VR2? VT? V5? V11? V-10? V14?",
         "12.3 dBm|30.0 dBm|hot°C||5.01 V|0.00 V||-10.00 V|14.00 V|9.3V rail low|Fan Alarm|");
  // a class that has no platform query
  expect({{"CT?", "CT=60W C-BAND"}, {"CV?", "CV=0264C-01 V5.1"}}, "7- 13- 16- 17- 18- 20- 24- ",
         "A? VR? VT? V5? V11? V-10? V14?",
         "12.3 dBm||41°C||5.01 V|0.00 V||-10.00 V|14.00 V|11V rail low|Power Supply Thermal|");
}

TEST_F(ViewerTest, AcknowledgedUntilTheDeviceDropsTheAlarm) {
  m_replies["A?"] = "A=CTFfu?[`{@?[`{@?[`{@";  // what is latched and active counts as latched; the rest is no alarm
  m_replies["ZA"] = "A=C";                     // not decoded
  View([this] {
    EXPECT_EQ(Shown(), "2red 5orange 13- 19red 20orange ") << "at once, from what the console knows";
    for (const char* button : {"cmdAlarms(0)", "cmdAlarms(2)", "cmdAlarms(5)", "cmdAlarms(19)", "cmdAlarms(19)"})
      ClickOn(button);
    EXPECT_EQ(Shown(), "2redA 5orangeA 13- 19red 20orange ") << "a second click takes it back; green takes none";
    EXPECT_FALSE(Find("cmdAlarms(20)").isEnabled());
    EXPECT_EQ(Beeps(), 1);
    Shared().AudibleNotify = false;
    EXPECT_EQ(Beeps(), 0);
    Shared().AudibleNotify = true;
    m_yielder.OnYield([this] {
      m_replies["A?"] = "A=cF";
      m_port.TakeTranscript();
      ClickOn("cmdClear");
      EXPECT_EQ(m_port.Commands(), "ZA A?");
      EXPECT_EQ(Shown(), "2orangeA 5redA 13- ");
      EXPECT_EQ(Beeps(), 0) << "all are acknowledged";
      m_replies["A?"] = "A=F";
    });
    m_yielder.OnYieldAfter(9, [this] {
      EXPECT_EQ(Shown(), "5redA 13- ");
      m_replies["A?"] = "A=CF";
    });
    m_yielder.OnYieldAfter(9, [this] {
      EXPECT_EQ(Shown(), "2red 5redA 13- ") << "one that comes again is new";
      m_replies.erase("ZA");
      m_port.TakeTranscript();
      ClickOn("cmdClear");
      EXPECT_EQ(m_port.Commands(), "ZA ZA ZA");
      EXPECT_EQ(Title().substr(0, 17), "SSPA Alarms: Lost") << "at once";
      ClickOn("cmdExit");
    });
  });
  EXPECT_TRUE(Shared().AlarmStatus[5].Acknowledged) << "it stands in the console too";
}

TEST_F(ViewerTest, ClearingNeedsManualModeAndNoLockoutBeforeAndBehindALostLink) {
  const auto expect = [this](const ReplyTable& replies, const char* status, const char* message,
                             const std::string& traffic) {
    const bool controller = replies.count("O?") != 0;
    const std::string device = replies.at("CT?").substr(3);
    const std::string who = controller ? "Redundancy Controller Alarms: " : "SSPA Alarms: ";
    m_replies = replies;
    m_replies["S?"] = status;
    m_replies["A?"] = "A=eX";
    m_replies["ZA"] = "A=";
    const std::string sent = View([&, this] {
      EXPECT_EQ(m_desktop.TakeMessages().join(QLatin1Char(' ')).toStdString(), message);
      EXPECT_NE(Viewer().fraAlarms.isVisible(), Viewer().fra7316Alarms.isVisible());
      EXPECT_EQ(Shown(), controller ? "4orange 23red " : "4orange 13- 23red ");
      EXPECT_EQ(Title(), who + "Connected to " + device);
      NoteStates(" ");
      if (traffic.find("ZA") != std::string::npos) {
        ClickOn("cmd7316Alarms(23)");
        ClickOn("cmd7316ClearAlarms");
        EXPECT_EQ(Shown(), "4orange 23redA ");
      }
      m_yielder.OnYield([this] { m_replies.clear(); });
      m_yielder.OnYield([&, this] {
        EXPECT_EQ(Title(), who + "Lost Connection to " + device + " Retrying...");
        EXPECT_EQ(Viewer().findChild<forms::Announcement*>()->accessibleName().toStdString(), Title());
        NoteStates();
        EXPECT_EQ(forms::IsOld(*Viewer().cmdAlarms(4)), controller) << "asked last; of an amplifier it's the level";
        EXPECT_EQ(forms::IsOld(Viewer().lblRF), !controller);
        m_replies = replies;
        m_replies["CT?"] = "CT=ANOTHER";
      });
      // behind a step that an amplifier without the measurement passes over
      m_yielder.OnYieldAfter(1, [&, this] {
        EXPECT_EQ(Title(), who + "Connected to " + device) << "as it was read at load";
        NoteStates();
        EXPECT_FALSE(forms::IsOld(*Viewer().cmdAlarms(4)));
        ClickOn("cmdExit");
      });
    });
    EXPECT_EQ(sent, traffic);
  };
  expect(AmplifierReplies(), "S=OT", "", "CT? A? VR? VR? VR? VT?");
  expect(AmplifierReplies(), "S=OTZ", "", "CT? A? VR? VR? VR? VT?");
  expect(ControllerReplies(), "S=M", "", "CT? ZA A? A? A? A? A? A? A?");
  expect(ControllerReplies(), "S=A", "To Clear Alarms 7316 must be in manual mode", "CT? A? A? A? A? A? A?");
  expect(ControllerReplies(), "S=MZ", "", "CT? A? A? A? A? A? A?");
  EXPECT_EQ(NotedStates(),
            " +-+ +-+ +-+ +-+ +-+ cmd7316ExAck cmd7316ExAct cmd7316ExOk cmdExAck cmdExAct cmdExLatch cmdExOk "
            "fra7316Legend fraLegend lbl10H lbl10L lbl10V lbl11H lbl11L lbl11LCH lbl11LCL lbl11V lbl11VLC lbl14H "
            "lbl14L lbl14V lbl5H lbl5L lbl5V lbl7316EEPROM lbl7316ExAck lbl7316ExAct lbl7316ExOk lbl7316System "
            "lbl7316WGuide1 lbl7316WGuide2 lblAux lblCEFailSafe lblDriverAmp lblEEPROM lblExAck lblExAct "
            "lblExLatch lblExOk lblInternal lblPSThermal lblPowerAmp1 lblPowerAmp2 lblRF lblRFH lblRFL "
            "lblSimulated lblTemp1 lblTemp1H lblTemp2 lblTemp2H\n"
            " +-+ +-+ ... ... ... fraAlarms\n"
            " +-+ --- +-+ +-+ --- cmdClear\n"
            " +-+ --- +-+ --- --- cmd7316ClearAlarms\n"
            " --- --- --- --- --- cmdAlarms(20)\n"
            " ... ... +++ +++ +++ cmdAlarms(13)\n"
            " ... ... +-+ +-+ +-+ fra7316Alarms lblReflected lblReflectedH\n");
}

TEST_F(ViewerTest, ClosedItAsksNothingMore) {
  EXPECT_EQ(View([this] { ClickOn("cmdExit"); }), "CT?");
  EXPECT_EQ(View([this] { Front().close(); }), "CT?");
  EXPECT_EQ(View([this] { m_yielder.OnYield([this] { Front().close(); }); }), "CT? A?");
  EXPECT_EQ(View([this] { EXPECT_EQ(Title(), "SSPA Alarms: Lost Connection"); }, "CT?"), "CT? CT? CT?");
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
}

TEST_F(ViewerTest, AStalledPollIsShownAnewUntilItIsClosed) {
  const std::string traffic = View([this] {
    m_yielder.OnYield([this] {
      EXPECT_EQ(HidesAtWatchdog(), 0) << "a pass has ended since";
      EXPECT_EQ(HidesAtWatchdog(), 1);
      EXPECT_TRUE(Viewer().isVisible() && Viewer().tmrForcePollResume.Enabled());
      ClickOn("cmdExit");
    });
  });
  EXPECT_EQ(traffic, "CT? A?");
}

}  // namespace
}  // namespace tarnwell::test

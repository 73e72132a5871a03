#include "forms/frm_alarms.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class ViewerTest : public ProgramTest {
 protected:
  forms::frmAlarms& Viewer() { return dynamic_cast<forms::frmAlarms&>(Front()); }

  /// In a session: opens the viewer, runs `act` before its poll, which goes on until something queued closes it.
  void View(std::function<void()> act) {
    Start();
    m_yielder.OnYieldAfter(12, [this, act = std::move(act)] {
      m_port.TakeTranscript();
      if (m_beforeOpening) m_beforeOpening();
      Open([this] { ClickOn("cmdViewAlarms"); },
           [this, act] {
             forms::frmAlarms& viewer = Viewer();
             act();
             if (!viewer.Unloaded()) Q_EMIT viewer.tmrStartPolling.Tick();
           });
      m_traffic = m_port.Commands();
      EXPECT_TRUE(Main().tmrFlasher.Enabled() && Main().tmrForcePollResume.Enabled());
      DisconnectAfter(1);
    });
    Connect();
  }
  void CloseAfter(int passes) {
    m_yielder.OnYieldAfter(passes - 1, [this] {
      m_texts.clear();
      for (const char* label : {"lblRF", "lblReflected", "lblTemp1", "lblTemp2", "lbl5V", "lbl11V", "lbl11VLC",
                                "lbl10V", "lbl14V", "lbl11L", "lblPSThermal"}) {
        m_texts += (m_texts.empty() ? "" : "|") + CaptionOf(label);
      }
      ClickOn("cmdExit");
    });
  }

  /// Numbers of the amplifier's buttons that are shown.
  std::string ShownButtons() {
    std::string numbers;
    for (int i = 0; i < forms::frmAlarms::AlarmButtons::size(); ++i) {
      const forms::CommandButton* button = Viewer().cmdAlarms(i);
      if (button != nullptr && button->isVisible()) numbers += std::to_string(i) + ' ';
    }
    return numbers;
  }

  /// Buttons that aren't plain green: number, state, "A" where acknowledged.
  std::string Shown(const forms::frmAlarms::AlarmButtons& buttons) {
    std::string text;
    for (int i = 0; i < buttons.size(); ++i) {
      if (buttons(i) == nullptr) continue;
      const QColor colour = buttons(i)->Background();
      std::string state = colour == forms::kActiveColour ? "red" : colour == forms::kLatchedColour ? "orange" : "";
      state += buttons(i)->Caption().toStdString();
      if (!state.empty()) text += std::to_string(i) + state + ' ';
    }
    return text;
  }
  std::string Shown() { return Shown(Viewer().cmdAlarms); }

  /// What one tick of the beeper does.
  int Beeps() {
    Q_EMIT Viewer().tmrAlarmBeeper.Tick();
    return m_desktop.TakeBeeps();
  }

  std::function<void()> m_beforeOpening;
  std::string m_traffic;
  std::string m_texts;
};

TEST_F(ViewerTest, AsksEachAmplifierWhatItHas) {
  struct Case {
    ReplyTable identity;
    const char* round;
    const char* buttons;
    const char* texts;
  };
  // the last rows: one module, and a class that has no platform query
  const Case cases[] = {
      {{},
       "A? VR? VT? VT2? V5? V11? V11LC? V-10? V14?",
       "0 1 2 3 4 5 6 7 8 9 10 11 12 14 15 16 17 18 19 20 23 24 25 ",
       "12.3 dBm||41°C|43°C|5.01 V|0.00 V|-0.50 V|-10.00 V|14.00 V|11V rail low|Power Supply Thermal"},
      {{{"CH?", "CH=857E"}},
       "A? VR? VR2? VT? VT2? V5? V11? V-10? V14?",
       "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 19 20 23 24 25 ",
       "12.3 dBm|30.0 dBm|41°C|43°C|5.01 V|0.00 V||-10.00 V|14.00 V|11V rail low|Fan Alarm"},
      {{{"CT?", "CT=40W K-BAND"}, {"CH?", "CH=857E"}, {"VT?", "VT=hot"}},
       "A? VR? VR2? VT? V5? V11? V-10? V14?",
       "0 1 2 3 4 5 6 7 8 9 10 11 12 14 15 19 23 24 25 ",
       "12.3 dBm|30.0 dBm|hot°C||5.01 V|0.00 V||-10.00 V|14.00 V|9.3V rail low|Fan Alarm"},
      {{{"CT?", "CT=60W C-BAND"}, {"CV?", "CV=0264C-01 V5.1"}},
       "A? VR? VT? V5? V11? V-10? V14?",
       "0 1 2 3 4 5 6 8 9 10 11 12 14 15 19 23 25 ",
       "12.3 dBm||41°C||5.01 V|0.00 V||-10.00 V|14.00 V|11V rail low|Power Supply Thermal"}};
  for (const Case& c : cases) {
    m_replies = c.identity;
    m_replies.merge(ReplyTable{{"VR2?", "VR2=29.96"},
                               {"V5?", "V5=5.006"},
                               {"V11?", "V11=low"},
                               {"V11LC?", "V11LC=-.5"},
                               {"V-10?", "V-10=-10"},
                               {"V14?", "V14=14 V"}});
    m_replies.merge(AmplifierReplies());
    View([&] {
      EXPECT_EQ(ShownButtons(), c.buttons);
      EXPECT_EQ(Front().geometry().size(), Main().geometry().size());
      CloseAfter(20);
    });
    EXPECT_EQ(m_traffic, "CT? " + std::string(c.round) + " " + c.round);
    EXPECT_EQ(m_port.Commands().substr(m_traffic.size()), " S?") << "the console's poll goes on at its next step";
    EXPECT_EQ(m_texts, c.texts);
  }
}

TEST_F(ViewerTest, AcknowledgedUntilTheDeviceDropsTheAlarm) {
  m_replies = AmplifierReplies();
  m_replies["A?"] = "A=CTfu";
  m_replies["ZA"] = "A=C";  // not decoded
  View([this] {
    EXPECT_EQ(Shown(), "2red 5orange 19red 20orange ") << "shown at once, from what the console knows";
    for (const char* button : {"cmdAlarms(0)", "cmdAlarms(2)", "cmdAlarms(5)", "cmdAlarms(19)", "cmdAlarms(19)"}) {
      ClickOn(button);
    }
    EXPECT_EQ(Shown(), "2redA 5orangeA 19red 20orange ") << "a second click takes it back; green takes none";
    EXPECT_FALSE(Find("cmdAlarms(20)").isEnabled());
    EXPECT_EQ(Beeps(), 1);
    m_yielder.OnYield([this] {
      m_replies["A?"] = "A=cF";
      m_port.TakeTranscript();
      ClickOn("cmdClear");
      EXPECT_EQ(m_port.Commands(), "ZA A?");
      EXPECT_EQ(Shown(), "2orangeA 5redA ");
      EXPECT_EQ(Beeps(), 0) << "all are acknowledged";
      m_replies["A?"] = "A=F";
    });
    m_yielder.OnYieldAfter(9, [this] {
      EXPECT_EQ(Shown(), "5redA ");
      m_replies["A?"] = "A=CF";
    });
    m_yielder.OnYieldAfter(9, [this] {
      EXPECT_EQ(Shown(), "2red 5redA ");
      EXPECT_EQ(Beeps(), 1);
      Shared().AudibleNotify = false;
      EXPECT_EQ(Beeps(), 0);
      m_replies.erase("ZA");
      m_port.TakeTranscript();
      ClickOn("cmdClear");
      EXPECT_EQ(m_port.Commands(), "ZA ZA ZA");
      EXPECT_EQ(Title().substr(0, 17), "SSPA Alarms: Lost") << "at once";
    });
    CloseAfter(1);
  });
  EXPECT_TRUE(Shared().AlarmStatus[5].Acknowledged) << "it stands in the console too";
  EXPECT_EQ(CaptionOf("lblAlarm"), "ALARM");
}

TEST_F(ViewerTest, ClearingNeedsManualModeAndNoLockout) {
  const struct {
    ReplyTable replies;
    const char* status;
    const char* message;
    bool mayClear;
    bool mayClearController;
  } cases[] = {{AmplifierReplies(), "S=OT", "", true, true},
               {AmplifierReplies(), "S=OTZ", "", false, false},
               {ControllerReplies(), "S=M", "", true, true},
               {ControllerReplies(), "S=A", "To Clear Alarms 7316 must be in manual mode", true, false},
               {ControllerReplies(), "S=MZ", "", false, false}};
  for (const auto& c : cases) {
    m_replies = c.replies;
    m_replies["S?"] = c.status;
    m_replies["A?"] = "A=eW";
    const bool controller = m_replies.count("O?") != 0;
    View([&] {
      EXPECT_EQ(m_desktop.TakeMessages().join(QLatin1Char(' ')).toStdString(), c.message);
      EXPECT_EQ(Viewer().cmdClear.isEnabled(), c.mayClear) << c.status;
      EXPECT_EQ(Viewer().cmd7316ClearAlarms.isEnabled(), c.mayClearController) << c.status;
      EXPECT_NE(Viewer().fraAlarms.isVisible(), Viewer().fra7316Alarms.isVisible());
      EXPECT_EQ(Viewer().fra7316Alarms.isVisible(), controller);
      EXPECT_EQ(Shown(Viewer().cmd7316Alarms), "4orange 22red ");
      CloseAfter(3);
    });
    EXPECT_EQ(m_traffic, controller ? "CT? A? A? A?" : "CT? A? VR?");
  }
}

TEST_F(ViewerTest, LinkLostAndRegained) {
  for (const auto& [replies, who] : {std::pair{AmplifierReplies(), "SSPA Alarms: "},
                                     std::pair{ControllerReplies(), "Redundancy Controller Alarms: "}}) {
    m_replies = replies;
    const std::string name = m_replies["CT?"].substr(3);
    View([&, this] {
      EXPECT_EQ(Title(), who + ("Connected to " + name));
      const std::string connected = EnabledControls();
      m_yielder.OnYield([this] { m_replies.clear(); });
      m_yielder.OnYield([&, this] {
        EXPECT_EQ(Title(), who + ("Lost Connection to " + name + " Retrying..."));
        EXPECT_EQ(EnabledControls(), "cmdExit");
        EXPECT_EQ(Front().focusWidget()->objectName(), QStringLiteral("cmdExit"));
        m_replies = replies;
        m_replies["CT?"] = "CT=ANOTHER";
      });
      // behind a step that an amplifier without the measurement passes over
      m_yielder.OnYieldAfter(1, [&, connected, this] {
        EXPECT_EQ(Title(), who + ("Connected to " + name)) << "as it was read at load";
        EXPECT_EQ(EnabledControls(), connected);
      });
      CloseAfter(1);
    });
  }
}

TEST_F(ViewerTest, EveryWayOfClosingIt) {
  const std::tuple<const char*, std::function<void()>, const char*> cases[] = {
      {"no answer at load", [this] { EXPECT_EQ(Title(), "SSPA Alarms: Lost Connection"); }, "CT? CT? CT?"},
      {"button before the poll", [this] { ClickOn("cmdExit"); }, "CT?"},
      {"frame before the poll", [this] { Front().close(); }, "CT?"},
      {"frame in the poll",
       [this] {
         m_yielder.OnYield([this] {
           forms::frmAlarms& viewer = Viewer();
           viewer.close();
           EXPECT_FALSE(viewer.tmrAlarmBeeper.Enabled() || viewer.tmrForcePollResume.Enabled());
         });
       },
       "CT? A?"}};
  for (const auto& [way, close, traffic] : cases) {
    m_replies = AmplifierReplies();
    m_beforeOpening = [&, silent = traffic == std::string("CT? CT? CT?")] {
      if (silent) m_replies.erase("CT?");
    };
    View([&, act = close] {
      EXPECT_FALSE(Main().tmrFlasher.Enabled() || Main().tmrForcePollResume.Enabled() || m_desktop.Busy());
      act();
    });
    EXPECT_EQ(m_traffic, traffic) << way;
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  }
}

TEST_F(ViewerTest, AStalledPollIsShownAnewAndOnlyThen) {
  m_replies = AmplifierReplies();
  View([this] {
    m_yielder.OnYield([this] {
      HideCounter hidden(Front());
      const auto tick = [&] {
        Q_EMIT Viewer().tmrForcePollResume.Tick();
        return hidden.Take();
      };
      EXPECT_EQ(tick(), 0) << "a pass has ended since";
      EXPECT_EQ(tick(), 1);
      EXPECT_TRUE(Front().isVisible());
      ClickOn("cmdExit");
      EXPECT_EQ(tick(), 0);
    });
  });
}

}  // namespace
}  // namespace tarnwell::test

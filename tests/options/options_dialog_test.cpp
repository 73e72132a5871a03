#include <QTabBar>

#include "forms/controls/plain_controls.h"
#include "support/file_limit.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class OptionsTest : public ProgramTest {
 protected:
  /// Opens the dialog by its menu entry, runs `act` and gives what the port was told up to the closing.
  std::string Choose(std::function<void()> act) {
    m_port.TakeTranscript();
    Open([this] { Q_EMIT Main().mnuSWOpt.Click(); },
         [this, act = std::move(act)] {
           act();
           if (&Front() != &Main()) Press("cmdCancel");
         });
    return m_port.TakeTranscript();
  }

  /// A key to what has the focus.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Front().focusWidget(), key, modifiers);
    QCoreApplication::processEvents();
  }

  void ClickTab(int index) {
    auto* tabs = Find("tabOptions").findChild<QTabBar*>();
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
  }

  /// Picks an entry of a list with keys.
  void Pick(const char* list, const char* entry) {
    auto& box = Find<forms::ComboBox>(list);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Home);
    for (int i = 0; i < box.count() && box.currentText() != QLatin1String(entry); ++i) {
      QTest::keyClick(&box, Qt::Key_Down);
    }
    EXPECT_EQ(box.currentText().toStdString(), entry);
  }

  /// What the lists show, the selected options, and which of the two frames is free.
  std::string Shown() {
    std::string text;
    for (const char* list : {"cboPort", "cboSpeed", "cboParity", "cboDataBits", "cboStopBits"}) {
      text += Find<forms::ComboBox>(list).currentText().toStdString() + ' ';
    }
    text += SelectedOptions() + ';';
    for (const char* frame : {"fraFlow", "fraRS485"}) {
      const bool options = Find<QWidget>(frame).findChild<forms::OptionButton*>()->isEnabled();
      EXPECT_EQ(Find(frame).isEnabled(), options) << frame;
      if (options) text += std::string(" ") + frame;
    }
    return text;
  }

  std::string Stored() {
    QStringList values;
    for (const char* key : {"Settings", "CommPort", "Handshaking", "AudibleNotify", "Engineer", "RS232", "RS485Control",
                            "ConnectAddress"}) {
      values += StoredProperty(key);
    }
    return values.join(QLatin1Char('|')).toStdString();
  }
};

constexpr const char* kAllRewritten = "Settings=9600,N,8,1 Handshaking=0";

TEST_F(OptionsTest, ShowsWhatIsInForceAndRewritesItAll) {
  Start();
  EXPECT_EQ(Choose([this] {
              EXPECT_EQ(Title(), "Software Options: Tarnwell v2.01");
              EXPECT_EQ(Shown(), "Com1 9600 None 8 1 opt485Control(0) optAudibleOn optFlow(0) optRS232; fraFlow");
              EXPECT_FALSE(Find("fraLevels").isVisible());
              Press("cmdOK");
            }),
            kAllRewritten);
  EXPECT_FALSE(Main().tmrFlasher.Enabled()) << "no session, no flash";
  EXPECT_EQ(Stored(), "9600,n,8,1|1|0|True|False|True|0|") << "the address is none of its business";

  SaveProperty("Settings", "300,o,7,2");
  SaveProperty("CommPort", "3");
  SaveProperty("Handshaking", "2");
  SaveProperty("AudibleNotify", "False");
  SaveProperty("RS485Control", "1");
  Start();
  Choose([this] {
    EXPECT_EQ(Shown(), "Com3 300 Odd 7 2 opt485Control(1) optAudibleOff optFlow(1) optRS232; fraFlow");
    Press("optRS4xx");
    EXPECT_EQ(Shown(), "Com3 300 Odd 7 2 opt485Control(1) optAudibleOff optFlow(0) optRS4xx; fraRS485");
    Press("optRS232");
    EXPECT_EQ(Shown(), "Com3 300 Odd 7 2 opt485Control(1) optAudibleOff optFlow(0) optRS232; fraFlow");
  });
  EXPECT_EQ(Stored(), "300,o,7,2|3|2|False|False|True|1|") << "cancelled";
}

TEST_F(OptionsTest, ChoicesByKeysGoToThePortAndTheStore) {
  Start();
  EXPECT_EQ(Choose([this] {
              Pick("cboPort", "Com2");
              Pick("cboSpeed", "2400");
              Pick("cboParity", "Even");
              Pick("cboDataBits", "7");
              Pick("cboStopBits", "2");
              ClickTab(1);
              EXPECT_TRUE(Find("fraGeneral").isEnabled() && !Find("fraCommunications").isEnabled());
              Press("optAudibleOff");
              ClickTab(0);
              Press("optRS4xx");
              Key(Qt::Key_O, Qt::AltModifier);
            }),
            "CommPort=2 PortOpen=1 PortOpen=0 Settings=2400,E,7,2 Handshaking=0 RTS=1");
  EXPECT_EQ(Choose([this] { Press("opt485Control(1)"); }), "RTS=1") << "cancelled";
  EXPECT_EQ(Choose([this] {
              Press("opt485Control(1)");
              Press("cmdOK");
            }),
            "Settings=2400,E,7,2 Handshaking=0")
      << "where each frame drives it RTS rests";
  EXPECT_EQ(Stored(), "2400,e,7,2|2|0|False|False|False|1|");
  EXPECT_FALSE(Shared().AudibleNotify || Shared().PortRS232);
}

TEST_F(OptionsTest, OnSoundsWhenTheOperatorChoosesItAndTellsAsWhat) {
  Start();
  Choose([this] {
    const auto told = [this] { return Find("optAudibleOn").toolTip().toStdString(); };
    EXPECT_EQ(told(), "Heard as the system beep, where the system has one");
    m_desktop.heard = platform::AlarmSound::kOwn;
    ClickTab(1);
    EXPECT_EQ(told(), "Heard as the console's own alarm sound") << "it was found out meanwhile";
    Find("optAudibleOn").setFocus(Qt::TabFocusReason);
    Press("optAudibleOff");
    EXPECT_EQ(m_desktop.TakeBeeps(), 0) << "it was On from the start, and was passed by";
    Key(Qt::Key_Up);
    EXPECT_EQ(SelectedOptions().find("optAudibleOff"), std::string::npos);
    EXPECT_EQ(m_desktop.TakeBeeps(), 1);
    Press("optAudibleOn");
    EXPECT_EQ(m_desktop.TakeBeeps(), 1) << "once more, to hear it";
  });
}

TEST_F(OptionsTest, ARefusalIsToldAndStoresNothing) {
  const struct {
    const char* refused;
    const char* port;
    const char* message;
    const char* told;
  } cases[] = {{"", "Com3", "(i) Unable to use COM3 | no such device",
                "CommPort=3 PortOpen=1(refused) CommPort=1 Settings=300,N,8,1 Handshaking=2"},
               {"Settings", "Com2", "(i) Unable to use data format or data rate",
                "CommPort=2 PortOpen=1 PortOpen=0 Settings=300,N,8,1(refused) Settings=300,N,8,1 Handshaking=2"},
               {"Handshaking", "Com2", "(i) Unable to use handshaking",
                "Settings=300,N,8,1 Handshaking=2(refused) Settings=300,N,8,1 Handshaking=2"}};
  m_port.RefuseOpening("no such device", 3);
  for (const auto& c : cases) {
    Start();
    const std::string before = Stored();
    const std::string told = Choose([&] {
      m_port.Refuse(c.refused);
      Pick("cboPort", c.port);
      Pick("cboSpeed", "300");
      Press("optFlow(1)");
      Find<forms::OptionButton>("optAudibleOff").Select();
      Press("cmdOK");
      EXPECT_EQ(m_desktop.TakeMessages().join(QLatin1Char(' ')).toStdString(), c.message);
      EXPECT_NE(&Front(), &Main()) << "the dialog stays open";
      EXPECT_EQ(Stored(), before);
      EXPECT_TRUE(Shared().AudibleNotify);
      m_port.Refuse("");
      if (c.port == std::string("Com3")) Pick("cboPort", "Com1");
      Press("cmdOK");
    });
    EXPECT_EQ(told, c.told);
    SaveProperty("AudibleNotify", "True");
  }
}

TEST_F(OptionsTest, InASessionThePortChangesUnderTheStandingPoll) {
  m_replies = AmplifierReplies();
  m_replies["S=O"] = "S=OT";
  const auto choose = [this](const char* port) {
    return Choose([&] {
      EXPECT_FALSE(Main().tmrFlasher.Enabled() || Main().tmrForcePollResume.Enabled());
      Pick("cboPort", port);
      Press("cmdOK");
    });
  };
  for (const char* next : {"Com2", "Com3"}) {
    Start();
    m_port.SetCommPort(1);
    m_yielder.OnYieldAfter(12, [&] {
      Main().optOnline.setFocus();
      QCoreApplication::processEvents();
      EXPECT_EQ(choose("Com2"), "PortOpen=0 CommPort=2 PortOpen=1 Settings=9600,N,8,1 Handshaking=0");
      EXPECT_TRUE(Main().tmrFlasher.Enabled() && Main().tmrForcePollResume.Enabled());
      QCoreApplication::processEvents();
      EXPECT_EQ(Main().focusWidget(), &Main().cmdConnect) << "an option that got it back would command";
      EXPECT_EQ(m_port.Commands(), "");
      m_port.RefuseOpening("gone", 4);
      EXPECT_EQ(choose("Com4"), "PortOpen=0 CommPort=4 PortOpen=1(refused) CommPort=2 PortOpen=1") << "the old one";
      m_port.RefuseOpening("gone");
      choose("Com4");
      EXPECT_EQ(m_desktop.TakeMessages().join(QLatin1Char(';')).toStdString(),
                "(i) Unable to use COM4 | gone;(i) Unable to use COM4 | gone;(i) Unable to use COM2 | gone");
      m_port.RefuseOpening("");
      choose(next);
      EXPECT_TRUE(m_port.PortOpen()) << "a session that lost its port gets the next that opens: " << next;
      DisconnectAfter(1);
    });
    Connect();
  }
}

TEST_F(OptionsTest, HandEditedValuesOutsideTheListsAreShownAndKept) {
  SaveProperty("Settings", "19200,m,5,1");
  SaveProperty("CommPort", "7");
  Start();
  EXPECT_EQ(Choose([this] {
              EXPECT_EQ(Shown().substr(0, 16), "Com7 19200  5 1 ");
              Press("cmdOK");
              EXPECT_EQ(m_desktop.TakeMessages().size(), 1) << "a parity that isn't offered must be chosen anew";
              Pick("cboParity", "Odd");
              Press("cmdOK");
            }),
            "Settings=19200,,5,1(refused) Settings=19200,O,5,1 Handshaking=0");
}

TEST_F(OptionsTest, EscapeAndEnterWhateverHasTheFocus) {
  Start();
  // the last: the page that goes behind takes its focus with it
  for (const auto& [focused, tab, told] : {std::tuple{"cmdCancel", 0, ""},
                                           {"optRS232", 0, kAllRewritten},
                                           {"cboSpeed", 0, kAllRewritten},
                                           {"cboSpeed", 1, kAllRewritten}}) {
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
      EXPECT_EQ(Choose([&, name = focused, page = tab] {
                  Find(name).setFocus();
                  ClickTab(page);
                  Key(key);
                  EXPECT_EQ(&Front(), &Main()) << name;
                }),
                key == Qt::Key_Return ? told : "");
    }
  }
}

TEST_F(OptionsTest, WhatWasChangedAndCanNotBeStoredIsToldOnceAndHolds) {
  SaveProperty("ConnectAddress", "5");
  const FileLimit full(0);
  const auto told = [this] {
    QCoreApplication::processEvents();
    return m_desktop.TakeMessages().join(QLatin1Char('+')).toStdString();
  };
  const auto chooseAudible = [&](const char* option) {
    Choose([&] {
      ClickTab(1);
      Press(option);
      Press("cmdOK");
    });
    return told();
  };
  Start();
  ClickOn("txtConnectAddress");
  QTest::keyClick(&Find("txtConnectAddress"), Qt::Key_Tab);
  EXPECT_EQ(told() + chooseAudible("optAudibleOn"), "") << "nothing was changed";
  const std::string options = chooseAudible("optAudibleOff");
  EXPECT_FALSE(Shared().AudibleNotify);
  EXPECT_EQ(options.find("(i) The options could not be stored"), 0) << options;
  EXPECT_NE(options.find(console::kApplicationTitle.toStdString() + ".conf: "), std::string::npos) << options;
  EXPECT_EQ(options.find('+'), std::string::npos) << options;
  Choose([&] {
    Pick("cboPort", "Com2");
    for (const char* refused : {"Settings", ""}) {
      m_port.Refuse(refused);
      Press("cmdOK");
    }
  });
  EXPECT_NE(told().find("+(i) The options could not be stored"), std::string::npos) << "the first OK took the port";
  for (const int address : {6, 7, 8}) Main().updwnConnectAddress.SetValue(address);
  EXPECT_EQ(told().find("(i) The connection address 6 could not be stored. The next"), 0);
  Main().updwnConnectAddress.SetValue(9);
  EXPECT_EQ(told(), "") << "not at each step";
  EXPECT_EQ(Shared().ConnectAddress, 9);
}

}  // namespace
}  // namespace tarnwell::test

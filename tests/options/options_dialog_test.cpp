#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTabBar>

#include "forms/frm_options.h"
#include "support/program_test.h"

namespace tarnwell::test {
namespace {

class OptionsTest : public ProgramTest {
 protected:
  forms::frmOptions& Dialog() { return dynamic_cast<forms::frmOptions&>(Front()); }

  /// Opens the dialog by its menu entry, runs `act` and gives what the port was told up to the closing.
  std::string Choose(std::function<void()> act) {
    m_port.TakeTranscript();
    Open([this] { Q_EMIT Main().mnuSWOpt.Click(); },
         [this, act = std::move(act)] {
           act();
           if (&Front() != &Main()) Click("cmdCancel");
         });
    return m_port.TakeTranscript();
  }

  /// A click, and what comes of it when the mouse event is over.
  void Click(const char* name) {
    ClickOn(name);
    QCoreApplication::processEvents();
  }

  void Press(QWidget& receiver, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&receiver, key, modifiers);
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

  std::string Shown() {
    std::string text;
    for (const char* list : {"cboPort", "cboSpeed", "cboParity", "cboDataBits", "cboStopBits"}) {
      text += Find<forms::ComboBox>(list).currentText().toStdString() + ' ';
    }
    return text + SelectedOptions();
  }

  std::string Stored() {
    QStringList values;
    for (const char* key : {"Settings", "CommPort", "Handshaking", "AudibleNotify", "Engineer", "RS232", "RS485Control",
                            "ConnectAddress"}) {
      values += StoredProperty(key);
    }
    return values.join(QLatin1Char('|')).toStdString();
  }

  std::string m_told;
};

constexpr const char* kAllRewritten = "Settings=9600,N,8,1 Handshaking=0";

TEST_F(OptionsTest, ShowsWhatIsInForceAndRewritesItAll) {
  Start();
  EXPECT_EQ(Choose([this] {
              EXPECT_EQ(Title(), "Software Options: Tarnwell v2.01");
              EXPECT_EQ(Shown(), "Com1 9600 None 8 1 opt485Control(0) optAudibleOn optFlow(0) optRS232");
              EXPECT_TRUE(Find("fraFlow").isEnabled() && Find("optFlow(1)").isEnabled());
              EXPECT_FALSE(Find("fraRS485").isEnabled() || Find("opt485Control(1)").isEnabled());
              EXPECT_FALSE(Find("fraLevels").isVisible());
              Click("cmdOK");
            }),
            kAllRewritten);
  EXPECT_EQ(Stored(), "9600,n,8,1|1|0|True|False|True|0|") << "the address is none of its business";

  SaveProperty("Settings", "300,o,7,2");
  SaveProperty("CommPort", "3");
  SaveProperty("Handshaking", "2");
  SaveProperty("AudibleNotify", "False");
  SaveProperty("RS485Control", "1");
  Start();
  Choose([this] {
    EXPECT_EQ(Shown(), "Com3 300 Odd 7 2 opt485Control(1) optAudibleOff optFlow(1) optRS232");
    Click("optRS4xx");
    EXPECT_EQ(Shown(), "Com3 300 Odd 7 2 opt485Control(1) optAudibleOff optFlow(0) optRS4xx");
    EXPECT_FALSE(Find("fraFlow").isEnabled() || Find("optFlow(0)").isEnabled());
    EXPECT_TRUE(Find("fraRS485").isEnabled() && Find("opt485Control(0)").isEnabled());
    Click("optRS232");
    EXPECT_TRUE(Find("fraFlow").isEnabled() && !Find("fraRS485").isEnabled());
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
              Click("optAudibleOff");
              ClickTab(0);
              EXPECT_TRUE(!Find("fraGeneral").isEnabled() && Find("fraCommunications").isEnabled());
              Click("optRS4xx");
              Press(Front(), Qt::Key_O, Qt::AltModifier);
            }),
            "CommPort=2 PortOpen=1 PortOpen=0 Settings=2400,E,7,2 Handshaking=0 RTS=1");
  EXPECT_EQ(Stored(), "2400,e,7,2|2|0|False|False|False|0|");
  EXPECT_FALSE(Shared().AudibleNotify || Shared().PortRS232);
}

TEST_F(OptionsTest, ARefusalIsToldAndStoresNothing) {
  struct Case {
    std::function<void()> refuse;
    const char* port;
    const char* message;
    const char* told;
  };
  const Case cases[] = {
      {[this] { m_port.RefuseOpening("no such device", 3); }, "Com3", "(i) Unable to use COM3 | no such device",
       "CommPort=3 PortOpen=1(refused) CommPort=1 Settings=300,N,8,1 Handshaking=2"},
      {[this] { m_port.RefuseSettings(true); }, "Com1", "(i) Unable to use data format or data rate",
       "Settings=300,N,8,1(refused) Settings=300,N,8,1 Handshaking=2"},
      {[this] { m_port.RefuseSettings(true); }, "Com2", "(i) Unable to use data format or data rate",
       "CommPort=2 PortOpen=1 PortOpen=0 Settings=300,N,8,1(refused) Settings=300,N,8,1 Handshaking=2"},
      {[this] { m_port.RefuseHandshaking(true); }, "Com2", "(i) Unable to use handshaking",
       "Settings=300,N,8,1 Handshaking=2(refused) Settings=300,N,8,1 Handshaking=2"},
  };
  for (const Case& c : cases) {
    Start();
    const std::string before = Stored();
    const bool audible = Shared().AudibleNotify;
    const std::string told = Choose([&] {
      c.refuse();
      Pick("cboPort", c.port);
      Pick("cboSpeed", "300");
      Click("optFlow(1)");
      Find<forms::OptionButton>("optAudibleOff").Select();
      Click("cmdOK");
      EXPECT_EQ(m_desktop.TakeMessages().join(QLatin1Char(' ')).toStdString(), c.message);
      EXPECT_NE(&Front(), &Main()) << "the dialog stays open";
      EXPECT_EQ(Stored(), before);
      EXPECT_EQ(Shared().AudibleNotify, audible);
      m_port.RefuseOpening("");
      m_port.RefuseSettings(false);
      m_port.RefuseHandshaking(false);
      if (c.port == std::string("Com3")) Pick("cboPort", "Com1");
      Click("cmdOK");
    });
    EXPECT_EQ(told, c.told);
    SaveProperty("AudibleNotify", "True");
  }
}

TEST_F(OptionsTest, InASessionThePortChangesUnderTheStandingPoll) {
  m_replies = AmplifierReplies();
  Start();
  const auto inSession = [this](const char* port, bool refused) {
    std::string told;
    m_yielder.SkipYields(12);
    m_yielder.OnYield([&] {
      if (refused) m_port.RefuseOpening("gone", 4);
      told = Choose([&] {
        EXPECT_FALSE(Main().tmrFlasher.Enabled() || Main().tmrForcePollResume.Enabled());
        Pick("cboPort", port);
        Click("cmdOK");
      });
      EXPECT_TRUE(Main().tmrFlasher.Enabled() && Main().tmrForcePollResume.Enabled());
      EXPECT_EQ(Main().focusWidget(), &Main().cmdConnect);
      DisconnectAfter(1);
    });
    Connect();
    return told;
  };
  EXPECT_EQ(inSession("Com2", false), "PortOpen=0 CommPort=2 PortOpen=1 Settings=9600,N,8,1 Handshaking=0");
  EXPECT_EQ(inSession("Com4", true), "PortOpen=0 CommPort=4 PortOpen=1(refused) CommPort=2 PortOpen=1")
      << "the old port is open again";
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList(QStringLiteral("(i) Unable to use COM4 | gone")));
}

TEST_F(OptionsTest, ASessionThatLostItsPortGetsTheNextOneThatOpens) {
  m_replies = AmplifierReplies();
  for (const char* next : {"Com1", "Com3"}) {
    Start();
    m_yielder.OnYield([&] {
      m_port.RefuseOpening("gone");
      Choose([&] {
        Pick("cboPort", "Com2");
        Click("cmdOK");
        EXPECT_EQ(m_desktop.TakeMessages().join(QLatin1Char(';')).toStdString(),
                  "(i) Unable to use COM2 | gone;(i) Unable to use COM1 | gone");
        m_port.RefuseOpening("");
        Pick("cboPort", next);
        Click("cmdOK");
      });
      EXPECT_TRUE(m_port.PortOpen()) << next;
      DisconnectAfter(1);
    });
    Connect();
    m_port.SetCommPort(1);
  }
}

TEST_F(OptionsTest, AnotherKindOfLineIsInForceFromTheNextCommand) {
  m_replies = AmplifierReplies();
  Start();
  const auto choose = [this](const char* line, const char* control) {
    m_yielder.OnYield([=, this] {
      Choose([=, this] {
        Click(line);
        Click(control);
        Click("cmdOK");
      });
    });
    m_yielder.OnYield([this] { m_told += m_port.TakeTranscript() + '|'; });
  };
  choose("optRS4xx", "opt485Control(1)");
  choose("optRS232", "optFlow(1)");
  m_yielder.OnYield([this] {
    m_port.SetCTSHolding(false);
    m_port.TakeTranscript();
  });
  m_yielder.OnYield([this] {
    EXPECT_EQ(m_port.Commands(), "") << "a device that doesn't clear to send is sent nothing";
    EXPECT_TRUE(Title().find("Lost Connection to") != std::string::npos);
  });
  DisconnectAfter(1);
  Connect();
  EXPECT_EQ(m_told, "RTS=1 S? RTS=0|A?|");
}

TEST_F(OptionsTest, WithoutASessionTheFlasherStaysOff) {
  Start();
  Choose([] {});
  EXPECT_FALSE(Main().tmrFlasher.Enabled());
  EXPECT_TRUE(Main().tmrForcePollResume.Enabled());
}

TEST_F(OptionsTest, HandEditedValuesOutsideTheListsAreShownAndKept) {
  SaveProperty("Settings", "19200,m,5,1");
  SaveProperty("CommPort", "7");
  SaveProperty("RS232", "False");
  SaveProperty("RS485Control", "5");
  Start();
  EXPECT_EQ(Choose([this] {
              EXPECT_EQ(Shown(), "Com7 19200  5 1 opt485Control(0) optAudibleOn optFlow(0) optRS4xx");
              Click("cmdOK");
              EXPECT_EQ(m_desktop.TakeMessages().size(), 1) << "a parity that isn't offered must be chosen anew";
              Pick("cboParity", "Odd");
              Click("cmdOK");
            }),
            "Settings=19200,,5,1(refused) Settings=19200,O,5,1 Handshaking=0 RTS=1");
  EXPECT_EQ(Stored(), "19200,o,5,1|7|0|True|False|False|0|");
}

TEST_F(OptionsTest, EscapeAndEnterWhateverHasTheFocus) {
  Start();
  for (const char* focused : {"cmdCancel", "cboSpeed", "optRS232"}) {
    EXPECT_EQ(Choose([&] {
                Find(focused).setFocus();
                Press(*Front().focusWidget(), Qt::Key_Escape);
                EXPECT_EQ(&Front(), &Main()) << focused;
              }),
              "");
    EXPECT_EQ(Choose([&] {
                Find(focused).setFocus();
                Press(*Front().focusWidget(), Qt::Key_Return);
              }),
              focused == std::string("cmdCancel") ? "" : kAllRewritten);
  }
  EXPECT_EQ(Choose([&] {
              Find("cboSpeed").setFocus();
              ClickTab(1);
              Press(*Front().focusWidget(), Qt::Key_Return);
            }),
            kAllRewritten)
      << "the page that went behind took its focus with it";
}

TEST_F(OptionsTest, WhatCanNotBeStoredIsToldOnceAndHolds) {
  Start();
  const QString path =
      QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tarnwell"), console::kApplicationTitle)
          .fileName();
  QFile::remove(path);
  ASSERT_TRUE(QDir().mkpath(path)) << "a folder in the file's place";
  const bool audible = Shared().AudibleNotify;
  Choose([&] {
    ClickTab(1);
    Click(audible ? "optAudibleOff" : "optAudibleOn");
    Click("cmdOK");
  });
  EXPECT_EQ(Shared().AudibleNotify, !audible);
  QStringList told = m_desktop.TakeMessages();
  ASSERT_EQ(told.size(), 1);
  EXPECT_TRUE(told[0].startsWith(QStringLiteral("(i) The options could not be stored"))) << told[0].toStdString();
  EXPECT_TRUE(told[0].contains(path));
  for (const int address : {5, 6, 7}) Main().updwnConnectAddress.SetValue(address);
  QCoreApplication::processEvents();
  EXPECT_EQ(m_desktop.TakeMessages().size(), 1) << "not at each step";
  EXPECT_EQ(Shared().ConnectAddress, 7);
  QDir().rmdir(path);
}

}  // namespace
}  // namespace tarnwell::test

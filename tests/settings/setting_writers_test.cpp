#include "settings_test.h"

namespace tarnwell::test {
namespace {

class WritersTest : public SettingsTest {
 protected:
  /// Opens the form on the page of the tab, unlocked, and does `act` with nothing sent so far.
  void OpenOn(int tab, const std::function<void()>& act) {
    Start();
    OpenSettings([&] {
      SelectTab(tab);
      if (tab != 1) Press("cmdUnlock");
      TakeCommands();
      act();
    });
    m_replies.clear();
  }

  forms::OptionButton& Option(const char* name) { return Find<forms::OptionButton>(name); }

  /// What the operator sees of the option's group, which is on the page in front.
  std::string GroupOf(const char* option) {
    const std::string page = Page();
    const std::string name = Option(option).parentWidget()->objectName().mid(3).toStdString() + ": ";
    const std::size_t from = page.find(name);
    return from == std::string::npos ? "" : page.substr(from, page.find(';', from) - from);
  }
};

struct OptionCase {
  const char* kind;
  int tab;
  const char* option;
  const char* paces;    ///< its command, what follows it, and the pauses
  const char* refusal;  ///< an answer that says otherwise
  const char* refused;  ///< the group then
};

const OptionCase kOptions[] = {
    {"controller", 1, "opt7316_11", "50 CM=1 50", "CM=2", "7316Config: 1:1 *1:2"},
    {"controller", 1, "opt7316_12", "50 CM=2 0 CP? 100", "CM=1", "7316Config: *1:1 1:2"},
    {"controller", 1, "opt7316None", "50 CP=N 50", "CP=A", "7316Priority: None *Path A Path B"},
    {"controller", 1, "opt7316PathA", "50 CP=A 50", "CP=B", "7316Priority: None Path A *Path B"},
    {"controller", 1, "opt7316PathB", "50 CP=B 50", "CP=?", "7316Priority: *None Path A Path B"},
    {"c240", 1, "optTxVorel", "50 TX=1 50", "TX=0", "Transceiver: Vorel *Generic"},
    {"c240", 1, "optTxOther", "50 TX=0 50", "TX=1", "Transceiver: *Vorel Generic"},
    {"c240", 2, "optAmpShutdownOn", "50 CS=E 50", "CS=OFF", "Shutdown: On *Off"},
    {"c240", 2, "optAmpShutdownOff", "50 CS=D 50", "CS=?", "Shutdown: *On Off"},
    {"c240", 3, "optFanCtrlOn", "50 CF=E 50", "CF=OFF", "FanCtrl: On *Off"},
    {"c240", 3, "optFanCtrlOff", "50 CF=D 50", "CF=ON", "FanCtrl: *On Off"},
    {"c240", 2, "optAuxHigh", "50 CX=H 50", "CX=LOW", "AuxSense: *Low High"},
    {"c240", 2, "optAuxLow", "50 CX=L 50", "CX=HIGH", "AuxSense: Low *High"},
    {"c240", 2, "optAlarmFleeting", "50 CA=F 50", "CA=?", "AlarmStyle: Fleeting *Latching"},
    {"c240", 2, "optAlarmLatching", "50 CA=L 50", "CA=FLEETING", "AlarmStyle: *Fleeting Latching"},
    {"c240", 2, "optTempCompOn", "50 S=C 50", "S=OTU", "TempComp: On *Off Min Max"},
    {"c240", 2, "optTempCompOff", "50 S=U 50", "S=OTHU", "TempComp: On *Off Min Max"},
    {"c240", 2, "optTempCompMax", "50 S=H 50", "S=OTL", "TempComp: On Off *Min Max"},
    {"c240", 2, "optTempCompMin", "50 S=L 50", "S=OTH", "TempComp: On Off Min *Max"},
    {"c60", 2, "optBeeperOn", "50 S=A 50", "S=OT", "Beeper: On *Off"},
    {"c60", 2, "optBeeperOff", "50 S=Q 50", "S=OTA", "Beeper: *On Off"},
    {"c240", 3, "optModeOnline", "50 S=O 50", "S=SM", "Mode: Online *Stby Maint"},
    {"c240", 3, "optModeStandby", "50 S=S 50", "S=OT", "Mode: *Online Stby Maint"},
    {"c240", 3, "optModeMaint", "50 S=M 100 P00? 50", "S=OT", "Mode: *Online Stby Maint"},
};

TEST_F(WritersTest, EachOptionWritesOnEveryArrivalAndShowsTheDevicesWord) {
  for (const OptionCase& c : kOptions) {
    const std::string command = QString::fromLatin1(c.paces).section(QLatin1Char(' '), 1, 1).toStdString();
    Attach(c.kind);
    OpenOn(c.tab, [&] {
      Press(c.option);
      EXPECT_EQ(TakePaces(), c.paces) << "by mouse";
      EXPECT_TRUE(Option(c.option).Value()) << c.option;
      KeyTo(Option(c.option), Qt::Key_Right);
      const std::string neighbour = TakeCommands();
      EXPECT_TRUE(!neighbour.empty() && neighbour.substr(0, command.size()) != command) << neighbour;
      KeyTo(*QApplication::focusWidget(), Qt::Key_Left);
      EXPECT_EQ(TakePaces(), c.paces) << "by arrow key";
      KeyTo(*QApplication::focusWidget(), Qt::Key_Tab);
      TakeCommands();
      KeyTo(*QApplication::focusWidget(), Qt::Key_Backtab);
      EXPECT_EQ(TakePaces(), c.paces) << "by Tab, selected as it is";

      Form().cmdExit.setFocus();
      m_replies[command] = c.refusal;
      Press(c.option);
      EXPECT_EQ(GroupOf(c.option), c.refused) << c.refusal;
    });
    EXPECT_EQ(m_linkAfter + m_saidAtClose, "up up ");

    OpenOn(c.tab, [&] {
      m_silent = true;
      Press(c.option);
      EXPECT_EQ(TakeCommands(), command + ' ' + command + ' ' + command) << c.option;
      EXPECT_FALSE(IsOpen());
    });
    EXPECT_EQ(m_linkAfter, "lost up ") << c.option;
    const std::string device = command[1] == 'M' || command[1] == 'P' ? "Redundancy Controller" : "SSPA";
    EXPECT_EQ(m_saidAtClose, device + " Settings closed: no answer") << c.option;
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  }
}

TEST_F(WritersTest, ConfigurationBringsAndTakesThePriorityGroup) {
  Attach("controller");
  Tell("priority A");
  OpenOn(1, [&] {
    Press("opt7316_11");
    EXPECT_EQ(Page() + " | " + TakeCommands(), "Address: 1; 7316Config: *1:1 1:2 | CM=1");
    Press("opt7316_12");
    EXPECT_EQ(Page() + " | " + TakeCommands(),
              "Address: 1; 7316Config: 1:1 *1:2; 7316Priority: None *Path A Path B | CM=2 CP?");
    m_onCommand = [this](const std::string& command) {
      if (command == "CP?") m_silent = true;
    };
    Form().cmdExit.setFocus();
    Press("opt7316_12");
    EXPECT_FALSE(IsOpen()) << "the second transaction failed";
  });
  EXPECT_EQ(m_linkAfter, "lost up ");
}

TEST_F(WritersTest, LimitsBySpinShowTheDevicesWord) {
  const std::array<const char*, 4> cases[] = {
      {"updwnRFMin", "T1=12.34", "50 T1= 0 50", "Address: 1; Thresholds: 49.8 12.3; ReflectedThreshold: D"},
      {"updwnRFMax", "T2=D", "50 T2= 50.3 50", "Address: 1; Thresholds: D D; ReflectedThreshold: D"},
      {"updwnReflectedMax", "T3=x", "50 T3= 0 50", "Address: 1; Thresholds: 49.8 D; ReflectedThreshold: 0.0?"},
  };
  for (const auto& row : cases) {
    Attach("c60");
    OpenOn(1, [&] {
      const auto [name, reply, paces, shown] = row;
      m_replies[QString::fromLatin1(paces).section(QLatin1Char(' '), 1, -2).toStdString()] = reply;
      auto& spin = Find<forms::UpDown>(name);
      QTest::mouseClick(&spin, Qt::LeftButton, {}, QPoint(5, 3));
      EXPECT_EQ(TakePaces(), paces);
      EXPECT_EQ(Page(), shown) << paces;
      m_silent = true;
      QTest::mouseClick(&spin, Qt::LeftButton, {}, QPoint(5, 3));
      EXPECT_FALSE(IsOpen());
    });
    EXPECT_EQ(m_linkAfter, "lost up ");
  }
}

class AddressTest : public WritersTest {
 protected:
  /// A device that hears requests to its own address alone, and from there on at the new one.
  void AttachAt(int address, bool moves) {
    SaveProperty("ConnectAddress", std::to_string(address).c_str());
    Attach("c240");
    m_port.SetAddress(static_cast<std::uint8_t>(address));
    m_onCommand = [this, moves](const std::string& command) {
      if (!command.starts_with("U=")) return;
      m_port.SetAddress(static_cast<std::uint8_t>(command[2] - '@'));
      m_silent = !moves;
    };
  }

  std::string Addresses() {
    return std::to_string(Shared().ConnectAddress) + ' ' + Main().txtConnectAddress.Text().toStdString() + ' ' +
           StoredProperty("ConnectAddress").toStdString();
  }
};

TEST_F(AddressTest, TheConsoleFollowsTheDevice) {
  // an answer from the new address is none, and ends with the pause behind a failed try
  const std::tuple<int, const char*, const char*, const char*> cases[] = {{1, "31", "50 U=_ 100 U? 50", "31 31 31"},
                                                                          {5, "0", "50 U=@ 100 U? 50", "0 0 0"}};
  for (const auto& row : cases) {
    AttachAt(std::get<0>(row), true);
    m_replies["U?"] = "U=`";
    OpenOn(1, [&] {
      Form().txtSSPAAddress.selectAll();
      Form().txtSSPAAddress.insert(QString::fromLatin1(std::get<1>(row)));
      KeyTo(Form().txtSSPAAddress, Qt::Key_Return);
      EXPECT_EQ(TakePaces(), std::get<2>(row));
      EXPECT_EQ(Addresses(), std::get<3>(row));
      EXPECT_FALSE(forms::IsOld(Form().txtSSPAAddress)) << "it stood beyond what can be set";
    });
    EXPECT_EQ(m_linkAfter, "up up ") << "polled at the new address";
  }
}

TEST_F(AddressTest, AFailedChangeIsToldAndTakenBack) {
  AttachAt(7, false);
  OpenOn(1, [&] {
    m_desktop.OnMessage([this] {
      m_silent = false;
      m_onCommand = {};
      m_port.SetAddress(7);
      EXPECT_TRUE(IsOpen());
    });
    forms::frmSettings* form = &Form();
    QObject::connect(form, &forms::Form::Unload, form, [form] { EXPECT_EQ(form->updwnSSPAAddress.Value(), 7); });
    KeyTo(form->txtSSPAAddress, Qt::Key_Up);
    EXPECT_EQ(TakeCommands(), "U=B U? U? U?");
    EXPECT_FALSE(IsOpen());
  });
  EXPECT_EQ(m_desktop.TakeMessages(), QStringList(QStringLiteral("(!) Address Change Failed")));
  EXPECT_EQ(Addresses(), "7 7 7");
  EXPECT_EQ(m_linkAfter + m_saidAtClose, "up up SSPA Settings closed: no answer");
}

TEST_F(AddressTest, ChangedInTheMiddleOfTheReadBackItGoesOnAtTheNewAddress) {
  AttachAt(1, true);
  Start();
  OpenSettings(
      [&] {
        EXPECT_EQ(TakeCommands(), WithAllPoints("CT? CV? U? CH? TX? T1? T2? CS? CA? CX? S? CF? RT01?..RT03? H01?..H08? "
                                                "R00?..R02? U=B U? R03?..R25? P00?..P40?"));
      },
      [&] { m_yielder.OnYieldAfter(26, [&] { KeyTo(Form().txtSSPAAddress, Qt::Key_Up); }); });
  EXPECT_EQ(Addresses(), "2 2 2");
}

}  // namespace
}  // namespace tarnwell::test

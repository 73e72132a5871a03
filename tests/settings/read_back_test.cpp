#include <algorithm>

#include "forms/controls/reading_order.h"
#include "settings_test.h"
#include "sim/commands.h"

namespace tarnwell::test {
namespace {

class ReadBackTest : public SettingsTest {
 protected:
  bool AnyEnabled(QWidget& page) {
    const std::vector<QWidget*> controls = forms::ReadingOrder(page);
    return std::any_of(controls.begin(), controls.end(), [](auto* control) { return control->isEnabled(); });
  }

  void ExpectClosed(const std::string& when) {
    EXPECT_FALSE(IsOpen() || m_desktop.Busy()) << when;
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << when;
    EXPECT_NE(Main().tmrForcePollResume.Enabled(), Main().Unloaded()) << when;
  }
};

struct OpeningCase {
  const char* kind;
  const char* firmware;
  const char* platform;
  const char* command;  ///< typed to the simulator ahead of the opening
  const char* commands;
  const char* platformShown;
  const char* standard;
  const char* advanced;  ///< as it is when unlocked
  const char* factory;
};

constexpr const char* kClass1 = "0264C-01 V5.4";
constexpr const char* kClass2 = "0264C-01 V6.0";
constexpr const char* kClass3 = "0264C-01 V6.2";
#define CLASS_2_POINTS "RT01?..RT03? H01?..H08? R00?..R25? P00?..P40?"
#define CLASS_2_TABLES \
  "RFTable: 0.80 1 of 26; PINTable: 12 1 of 41; TCPoints: -40 2.5 1 of 8; RFTCPoints: -20 1.5 1 of 3; Mode: *Online "
#define FREE_GROUPS "AuxSense: *Low High; TempComp: *On Off Min Max; Shutdown: On *Off"

const OpeningCase kOpenings[] = {
    {"k40", kClass1, "", "state standby",
     "CT? CV? U? T1? T2? CS? CA? CX? S? H-050? H-025? H+000? H+025? H+050? H+075? H+100? H+125? R00?..R25?",
     "0712/0358", "Address: 1; Thresholds: 48.0 D",
     "AlarmStyle: (Fleeting) (*Latching); Beeper: On *Off; AuxSense: (*Low) (High); TempComp: *On Off Min Max; "
     "Shutdown: (On) (*Off)",
     "RFTable: 0.80 1 of 26; TCPoints: (-50) 2.5 1 of 8; Mode: Online *Stby (Maint)"},
    {"c120", kClass2, "0842", "state maint", "CT? CV? U? CH? TX? T1? T2? CS? CA? CX? S? " CLASS_2_POINTS " P00?",
     "0842", "Address: 1; Transceiver: *Vorel Generic; Thresholds: 52.8 D",
     "AlarmStyle: Fleeting *Latching; " FREE_GROUPS,
     "RFTable: 0.80 1 of 26; PINTable: 12 1 of 41; TCPoints: -40 2.5 1 of 8; RFTCPoints: -20 1.5 1 of 3; "
     "Mode: Online Stby *Maint"},
    {"c240", kClass3, "0712/0358", "gain 0", "CT? CV? U? CH? T1? T2? CS? CA? CX? S? " CLASS_2_POINTS, "0712/0358",
     "Address: 1; Thresholds: 55.8 D", "AlarmStyle: Fleeting *Latching; Beeper: On *Off; " FREE_GROUPS,
     CLASS_2_TABLES "Stby Maint"},
    {"c240", kClass3, "0842", "gain 0", "CT? CV? U? CH? TX? T1? T2? CS? CA? CX? S? CF? " CLASS_2_POINTS, "0842",
     "Address: 1; Transceiver: *Vorel Generic; Thresholds: 55.8 D", "AlarmStyle: Fleeting *Latching; " FREE_GROUPS,
     CLASS_2_TABLES "Stby Maint; FanCtrl: *On Off"},
    {"c240", kClass3, "0857E", "gain 0", "CT? CV? U? CH? T1? T2? T3? CS? CA? CX? S? " CLASS_2_POINTS, "0857E",
     "Address: 1; Thresholds: 55.8 D; ReflectedThreshold: D",
     "AlarmStyle: Fleeting *Latching; Beeper: On *Off; " FREE_GROUPS, CLASS_2_TABLES "Stby Maint"},
    {"k80", kClass3, "0857E", "gain 0", "CT? CV? U? CH? T1? T2? CS? CA? CX? S? " CLASS_2_POINTS, "0857E",
     "Address: 1; Thresholds: 51.0 D", "AlarmStyle: Fleeting *Latching; Beeper: On *Off; " FREE_GROUPS,
     CLASS_2_TABLES "Stby Maint"},
    {"controller", "", "", "config 1:1", "CT? CV? U? CM?", "", "Address: 1; 7316Config: *1:1 1:2", "", ""},
    {"controller", "", "", "priority B", "CT? CV? U? CM? CP?", "",
     "Address: 1; 7316Config: 1:1 *1:2; 7316Priority: None Path A *Path B", "", ""},
};

TEST_F(ReadBackTest, EachDeviceIsAskedForWhatItHasAndShowsIt) {
  for (const OpeningCase& c : kOpenings) {
    const std::string name = std::string(c.kind) + ' ' + c.firmware + ' ' + c.platform;
    const bool controller = c.firmware[0] == '\0';
    Attach(c.kind, c.firmware, c.platform);
    Tell(c.command);
    Start();
    OpenSettings(
        [&] {
          EXPECT_GE(m_port.SmallestGap(), 0.02 + 0.05) << name;
          EXPECT_EQ(TakeCommands(), WithAllPoints(c.commands));
          EXPECT_FALSE(Form().tmrForcePollResume.Enabled());
          EXPECT_EQ(Form().lblHWPlatform.isVisible() ? Form().lblHWPlatform.Caption().toStdString() : "",
                    c.platformShown);
          EXPECT_FALSE(Form().cmdUnlock.isVisible());
          EXPECT_EQ(Page(), c.standard) << name;
          for (const auto& [tab, page] : {std::pair{2, c.advanced}, std::pair{3, c.factory}}) {
            SelectTab(tab);
            EXPECT_EQ(Form().cmdUnlock.isVisible(), !controller) << name;
            EXPECT_FALSE(AnyEnabled(tab == 2 ? Form().fraAdvanced : Form().fraFactory)) << name;
            if (!controller) Press("cmdUnlock");
            EXPECT_EQ(Page(), page) << name;
            if (!controller) Press("cmdUnlock");
          }
          SelectTab(1);
          EXPECT_EQ(Page(), c.standard) << name << ": the lock doesn't touch these";
          EXPECT_FALSE(Form().cmdUnlock.isVisible());
          EXPECT_EQ(TakeCommands(), "") << "tabs and lock send nothing";
        },
        [&] {
          EXPECT_TRUE(Form().pos() == Main().pos() && Form().size() == Main().size());
          EXPECT_FALSE(AnyEnabled(Form().fra7316Config) || AnyEnabled(Form().fra7316Priority)) << "not read yet";
          for (const auto* spin : Form().findChildren<forms::UpDown*>()) {
            EXPECT_FALSE(spin->isEnabled()) << spin->objectName().toStdString() << " would send what was never read";
          }
        });
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
    ExpectClosed(name);
  }
}

TEST_F(ReadBackTest, RemoteLockoutShowsAllAndLocksAll) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"c240", "SSPA", "Address: (1); Transceiver: (*Vorel) (Generic); Thresholds: (55.8) (D)"},
      {"controller", "Redundancy Controller",
       "Address: (1); 7316Config: (1:1) (*1:2); 7316Priority: (*None) (Path A) (Path B)"}};
  for (const auto& row : cases) {
    const QString message =
        QStringLiteral("(i) View settings only, %1 in RLO mode.").arg(QLatin1String(std::get<1>(row)));
    Attach(std::get<0>(row));
    Tell("lockout on");
    Start();
    m_desktop.OnMessage([this] { EXPECT_TRUE(m_desktop.Busy() && (IsOpen() || TakeCommands().empty())); });
    const auto nothingEnabled = [&] {
      for (forms::Frame* page : {&Form().fraStandard, &Form().fraAdvanced, &Form().fraFactory}) {
        EXPECT_FALSE(AnyEnabled(*page)) << std::get<0>(row) << ' ' << page->objectName().toStdString();
      }
    };
    OpenSettings(
        [&] {
          m_desktop.OnMessage({});
          EXPECT_EQ(m_desktop.TakeMessages(), QStringList(message)) << "once, ahead of the reads";
          for (const int tab : {3, 2, 1}) {
            SelectTab(tab);
            const bool locked = Form().cmdUnlock.isVisible();
            if (locked) Press("cmdUnlock");
            EXPECT_EQ(m_desktop.TakeMessages().join(QString()), locked && tab == 3 ? message : QString());
            nothingEnabled();
          }
          EXPECT_EQ(Page(), std::get<2>(row));
        },
        nothingEnabled);
  }
}

TEST_F(ReadBackTest, WhatAReplySelects) {
  for (const std::string row :
       {"U=_ -> Address: 31", "U=@ -> Address: 0", "U=` -> Address: 31?", "T1=D -> 55.8 D", "T2=12.25 -> 12.2 D",
        "T1=-12.5 -> 55.8 D?", "T1= .5 -> 55.8 0.5", "T2=120.5 -> 100.0? D", "T2= -> 0.0? D", "TX=0 -> Vorel *Generic",
        "TX= -> Vorel *Generic", "CS=? -> Shutdown: *On Off", "CA=? -> *Fleeting Latching", "CX=HIGH -> Low *High",
        "CF=OFF -> FanCtrl: On *Off", "S=HSULC -> TempComp: *On", "S=LHS -> On Off Min *Max",
        "S=MSU -> Mode: Online *Stby Maint", "S=T -> Mode: Online Stby Maint"}) {
    const std::string reply = row.substr(0, row.find(" -> "));
    const std::string request = reply.substr(0, reply.find('=')) + '?';
    Attach("c240");
    Start();
    std::string pages;
    OpenSettings(
        [&] {
          for (const int tab : {1, 2, 3}) {
            SelectTab(tab);
            if (tab == 2) Press("cmdUnlock");
            pages += Page() + '\n';
          }
          for (const auto* field : {&Form().txtRFMin, &Form().txtRFMax}) {
            const std::string own = '"' + reply.substr(3) + '"';
            EXPECT_EQ(field->toolTip().toStdString().find(own) != std::string::npos, forms::IsOld(*field)) << row;
          }
        },
        [&] {
          m_replies = {{request, reply}};
        });
    EXPECT_NE(pages.find(row.substr(reply.size() + 4)), std::string::npos) << reply << " gives\n" << pages;
    m_replies.clear();
  }
}

/// Pauses of the full read-back, one ahead of all.
constexpr int kPauses = 91;

TEST_F(ReadBackTest, UnlockedInTheMiddleOfTheReadBackWhatHasBeenReadIsFree) {
  Attach("c240");
  Start();
  std::string then;
  OpenSettings([&] { EXPECT_EQ(Page(), CLASS_2_TABLES "Stby Maint; FanCtrl: *On Off"); },
               [&] {
                 SelectTab(3);
                 m_yielder.OnYieldAfter(29, [&] {
                   Press("cmdUnlock");
                   then = Page();
                 });
               });
  EXPECT_EQ(then,
            "RFTable: () (); PINTable: () (); TCPoints: -40 2.5 1 of 8; RFTCPoints: -20 1.5 1 of 3; Mode: *Online Stby "
            "Maint; FanCtrl: *On Off");
}

TEST_F(ReadBackTest, ClosedInAnyPauseItSendsNothingMore) {
  for (int pause = 1; pause <= kPauses; ++pause) {
    for (const bool programEnds : {false, true}) {
      if (programEnds && pause % 15 != 1) continue;
      Attach("c240");
      Start();
      std::string sent;
      OpenSettings({}, [&] {
        forms::frmSettings* form = &Form();
        QObject::connect(form, &forms::Form::Unload, form,
                         [form] { EXPECT_FALSE(form->tmrForcePollResume.Enabled() || form->tmrStartLoad.Enabled()); });
        m_yielder.OnYieldAfter(pause - 1, [&] {
          sent = m_port.Commands();
          programEnds ? Main().UnloadForm() : Press("cmdExit");
        });
      });
      EXPECT_EQ(m_sentAtClose, sent);
      ExpectClosed("pause " + std::to_string(pause));
    }
  }
}

TEST_F(ReadBackTest, TheWatchdogShowsAStalledFormAgain) {
  Attach("c240");
  Start();
  OpenSettings([&] { EXPECT_TRUE(Form().isVisible()); },
               [&] {
                 m_yielder.OnYieldAfter(1, [this] {
                   EXPECT_TRUE(Form().tmrForcePollResume.Enabled());
                   EXPECT_EQ(HidesAtWatchdog(), 0) << "the pause has just begun";
                   EXPECT_EQ(HidesAtWatchdog(), 1) << "no pause has come since the last tick";
                 });
                 m_yielder.OnYield([this] { EXPECT_EQ(HidesAtWatchdog(), 0) << "the read-back moves on"; });
               });
}

TEST_F(ReadBackTest, ADevicePulledAtAnyTransactionClosesTheFormAndComesBack) {
  for (int transaction = 0; transaction <= 89; ++transaction) {  // the first is the form's own, ahead of the read-back
    const std::string when = "transaction " + std::to_string(transaction);
    Attach("c240");
    Start();
    m_onCommand = [this, left = transaction](const std::string&) mutable {
      if (IsOpen() && left-- == 0) m_silent = true;
    };
    OpenSettings({}, [&] { EXPECT_EQ(m_desktop.Busy(), transaction == 0) << when; });
    ExpectClosed(when);
    EXPECT_EQ(m_linkAfter + m_saidAtClose, "lost up SSPA Settings closed: no answer") << when;
    EXPECT_EQ(m_desktop.TakeMessages(), QStringList());
  }
}

}  // namespace
}  // namespace tarnwell::test

#include <QComboBox>
#include <QPointer>
#include <QTabBar>
#include <QTemporaryDir>
#include <random>

#include "forms/frm_alarms.h"
#include "forms/frm_save_snapshot.h"
#include "forms/frm_settings.h"
#include "platform/posted_call.h"
#include "sim/device.h"
#include "support/late_input.h"
#include "support/program_test.h"
#include "support/simulated_port.h"

namespace tarnwell::test {
namespace {

/// TARNWELL_SOAK_SECONDS makes it longer.
double VirtualSeconds() {
  const int wanted = qEnvironmentVariableIntValue("TARNWELL_SOAK_SECONDS");
  return wanted > 0 ? wanted : 20 * 60;
}

/// What an act on a control may send: the beginnings of the commands. A control without an entry may send nothing.
const char* const kPowers =
    "optOnline S=O; optStandby S=S; optRFOn S=T; optRFMute S=X; opt7316Auto S=A; opt7316Manual S=M; optLLO LLO; "
    "optREM REM; opt7316PathA1 PA=1; opt7316PathA2 PA=2; opt7316PathB2 PB=2; opt7316PathB3 PB=3; txtGainAdjust "
    "G=; updwnGainAdjust G=; cmd7316ClearAlarms ZA; cmdClear ZA; opt7316_11 CM=1; opt7316_12 CM=2; opt7316None "
    "CP=N; opt7316PathA CP=A; opt7316PathB CP=B; optTxVorel TX=1; optTxOther TX=0; optAmpShutdownOn CS=E; "
    "optFanCtrlOn CF=E; optFanCtrlOff CF=D; optAuxHigh CX=H; optAmpShutdownOff CS=D; optAuxLow CX=L; "
    "optBeeperOn S=A; optBeeperOff S=Q; optAlarmFleeting CA=F; optTempCompOn S=C; optTempCompOff S=U; "
    "optTempCompMax S=H; optAlarmLatching CA=L; optModeOnline S=O; optModeStandby S=S; optModeMaint S=M; "
    "optTempCompMin S=L; txtRFMin T1=; updwnRFMin T1=; txtRFMax T2=; updwnRFMax T2=; txtReflectedMax T3=; "
    "txtSSPAAddress U=; updwnSSPAAddress U=; updwnReflectedMax T3=; txtRFTCComp RT; txtRFTCTemp RT; txtTCComp "
    "H; txtTCTemp H; txtRFVolts R0 R1 R2; txtPiNDAC P0 P1 P2 P3 P4";

bool MaySend(const QStringList& controls, const std::string& order) {
  static const QStringList kRows = QString::fromLatin1(kPowers).split(QStringLiteral("; "));
  return std::any_of(kRows.begin(), kRows.end(), [&](const QString& row) {
    QStringList words = row.split(QLatin1Char(' '));
    const auto begins = [&](const QString& word) { return order.starts_with(word.toStdString()); };
    return controls.contains(words.takeFirst()) && std::any_of(words.begin(), words.end(), begins);
  });
}

/// An operator who does anything at all, at any moment that a form gives him.
class RandomOperator final : public platform::Yielder {
 public:
  static constexpr int kSeed = 7316;

  explicit RandomOperator(VirtualCounter& counter) : m_counter(counter), m_random(kSeed) {}

  /// Done at each yield: what somebody at the device does who notices that it isn't found any more.
  std::function<void()> mend;
  /// Done before a snapshot is saved: an answer for the file dialog.
  std::function<void()> chooseFile;

  void Watch(forms::frmMain& main, SimulatedPort& port) {
    m_main = &main;
    port.OnOutput([this](const std::string& command) {
      const bool mayBeTold = command == "S=X";  // a mute that the device tells is sent on
      if (command.back() != '?') m_orders.push_back({command, mayBeTold || MaySend(m_late, command)});
      if (Chance(6)) ActInHold();
      // As while the device is awaited: the windows are drawn, and what is due waits until the thread is free.
      EXPECT_FALSE(std::exchange(m_holds, true)) << command << " in the middle of another";
      m_drawing.LetDraw();
      m_holds = false;
    });
    for (const auto* timer : main.findChildren<forms::Timer*>()) {
      QObject::connect(timer, &forms::Timer::Tick, &main, [this] { EXPECT_FALSE(m_holds) << "a tick"; });
    }
  }

  void Yield(std::int64_t deadline) override {
    // the writer of this one yields, perhaps behind another act that was due
    Judge(m_underWay + QStringList(QStringLiteral("opt7316_12")), "a poll");
    if (mend) mend();
    if (m_main != nullptr && Chance(3)) Act();
    QCoreApplication::processEvents();
    m_counter.AdvanceTo(deadline);
  }

  /// One act, and the judgement of what it sent.
  void Act() {
    if (Ended()) return EndAll();
    Settle();  // what was done in a hold comes first
    const int kind = Pick(10);
    kind < 5 ? Click() : kind < 9 ? PressKey() : LookAway();
  }

  bool Ended() const { return m_counter.Seconds() > m_end; }

  /// What was done; `behind` are acts while the thread is held, on a form that isn't in front.
  struct {
    int orders, forms, snapshots, behind;
  } done = {};

 private:
  bool Chance(int oneIn) { return Pick(oneIn) == 0; }
  int Pick(int below) { return static_cast<int>(m_random() % static_cast<std::uint32_t>(below)); }

  forms::Form& Front() {
    auto* modal = qobject_cast<forms::Form*>(QApplication::activeModalWidget());
    return modal != nullptr ? *modal : *m_main;
  }

  /// Orders that none of the controls may have sent are a fault.
  void Judge(const QStringList& controls, const char* what) {
    for (const auto& [order, allowed] : std::exchange(m_orders, {})) {
      ++done.orders;
      EXPECT_TRUE(allowed || MaySend(controls, order))
          << order << " after " << what << " on " << controls.join(QLatin1Char(' ')).toStdString();
    }
  }

  QString Focused() { return Front().focusWidget() != nullptr ? Front().focusWidget()->objectName() : QString(); }

  void Click() {
    QList<QWidget*> reachable;
    for (QWidget* control : Front().Inner().findChildren<QWidget*>()) {
      const bool pops = qobject_cast<QComboBox*>(control) != nullptr;  // its list would stay open
      if (!control->objectName().isEmpty() && control->isVisible() && control->isEnabled() && !pops)
        reachable += control;
    }
    // the way into the forms is one button of many
    if (&Front() == m_main && m_main->cmdViewAlarms.isEnabled() && Chance(8)) reachable = {&m_main->cmdViewAlarms};
    if (&Front() == m_main && OpenByMenu()) return;
    if (reachable.isEmpty()) return;
    QWidget* control = reachable[Pick(static_cast<int>(reachable.size()))];
    if (control == &m_main->cmdConnect && !Chance(10)) return;
    const QPoint at(Pick(std::max(1, control->width())), Pick(std::max(1, control->height())));
    m_clicked = HitBy(*control, at);
    const QStringList hit{m_clicked->objectName()};
    const QStringList outer = std::exchange(m_underWay, m_underWay + hit);
    const auto click = [=, this] {
      Chance(20) ? QTest::mouseClick(control, Qt::RightButton, {}, at) : DeliverClick(*control, m_clock.Now(), at);
    };
    control == &m_main->cmdViewAlarms ? OpenForm(click) : click();
    Settle();
    // a click into a field or on a tab also takes the focus from where it was
    Judge(hit, "a click");
    m_underWay = outer;
  }

  /// What the operator does on any form while the thread is held. Only the form in front may act on it.
  void ActInHold() {
    QWidgetList forms;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (qobject_cast<forms::Form*>(window) != nullptr && window->isVisible()) forms += window;
    }
    if (forms.isEmpty()) return;
    QPointer<QWidget> form = forms[Pick(static_cast<int>(forms.size()))];
    done.behind += form == &Front() ? 0 : 1;
    const platform::Moment made = m_clock.Now();
    const int kind = Pick(8);
    if (kind == 0 && form != m_main) return Later(form, [=, this] { DeliverClose(*form, m_clock, made); });
    kind < 3 ? KeyInHold(form, made) : ClickInHold(form, made);
  }

  /// What a click there hits: a part of `control`, or what covers it.
  static QWidget* HitBy(QWidget& control, QPoint at) {
    QWidget& window = *control.window();
    return window.childAt(control.mapTo(&window, at));
  }

  void ClickInHold(const QPointer<QWidget>& form, platform::Moment made) {
    QWidgetList targets;
    for (QWidget* control : form->findChildren<QWidget*>()) {
      const bool spared = control == &m_main->cmdConnect || control == &m_main->cmdViewAlarms ||
                          qobject_cast<QComboBox*>(control) != nullptr || control->objectName().isEmpty();
      if (!spared && control->isVisible() && HitBy(*control, control->rect().center()) == control) targets += control;
    }
    if (targets.isEmpty()) return;
    QPointer<QWidget> control = targets[Pick(static_cast<int>(targets.size()))];
    const bool acts = form == &Front() && control->isEnabled();
    if (acts) m_clicked = control;
    Later(form, [this, control, made, acts] {
      if (control == nullptr || !control->isVisible()) return;
      if (acts) MayAct(*control);
      DeliverClick(*control, made);
    });
  }

  void KeyInHold(const QPointer<QWidget>& form, platform::Moment made) {
    static constexpr Qt::Key kKeys[] = {Qt::Key_Space, Qt::Key_Return, Qt::Key_Down, Qt::Key_Left};
    const QPointer<QWidget> focused = form == &Front() ? form->focusWidget() : nullptr;
    if (focused == &m_main->cmdConnect || focused == &m_main->cmdViewAlarms) return;
    Later(form, [this, form, made, focused, clicked = m_clicked, key = kKeys[Pick(std::size(kKeys))]] {
      for (const auto& control : {focused, clicked}) {
        if (control != nullptr && control->window() == form) MayAct(*control);
      }
      // a window that isn't active gets no key
      if (form->isActiveWindow() && form->windowHandle()->focusObject() != nullptr) DeliverKey(*form, key, made);
    });
  }

  /// An act on that control is delivered now; what it sends may be found out a little later. A key that follows may
  /// arrive at the others of its group.
  void MayAct(const QWidget& control) {
    constexpr int kRemembered = 40;
    m_late = (GroupOf(control) + m_late).mid(0, kRemembered);
  }

  static QStringList GroupOf(const QWidget& control) {
    QStringList names{control.objectName()};
    for (const QObject* option : control.parent()->findChildren<forms::OptionButton*>(Qt::FindDirectChildrenOnly)) {
      names += option->objectName();
    }
    return names;
  }

  /// When the thread is free. The toolkit itself keeps from a form what is meant for it while another is modal.
  void Later(const QPointer<QWidget>& form, const std::function<void()>& deliver) {
    platform::PostCall(*qApp, [=, this] {
      EXPECT_FALSE(m_holds) << "input";
      const QWidget* modal = QApplication::activeModalWidget();
      if (form != nullptr && form->isVisible() && (modal == nullptr || modal == form)) deliver();
    });
  }

  /// An arrival may wait for the one ahead of it, and that for an answer.
  static void Settle() {
    for (int turn = 0; turn < 4; ++turn) QCoreApplication::processEvents();
  }

  bool OpenByMenu() {
    for (const auto& [entry, oneIn] :
         {std::pair{&m_main->mnuSSPASettings, 12}, {&m_main->mnuSWOpt, 40}, {&m_main->mnuSnapshot, 60}}) {
      if (!entry->isEnabled() || !Chance(oneIn)) continue;
      OpenForm([menu = entry] { Q_EMIT menu->Click(); });
      return true;
    }
    return false;
  }

  void OpenForm(const std::function<void()>& open) {
    ++done.forms;
    platform::PostCall(*qApp, [this] { InForm(); });
    open();
    Judge({}, "opening and closing a form");
  }

  void InForm() {
    if (&Front() == m_main) return;
    QPointer<forms::Form> form = &Front();
    if (auto* viewer = dynamic_cast<forms::frmAlarms*>(form.data())) Q_EMIT viewer->tmrStartPolling.Tick();
    if (auto* snapshot = dynamic_cast<forms::frmSaveSnapshot*>(form.data())) {
      snapshot->txtSnapShotID.SetText(QStringLiteral("soak"));
      chooseFile();
      snapshot->cmdOk.click();
      ++done.snapshots;
    }
    if (auto* settings = dynamic_cast<forms::frmSettings*>(form.data())) InSettings(*settings);
    for (int i = Pick(30); i > 0 && form != nullptr && !form->Unloaded(); --i) Act();
    if (form != nullptr) form->UnloadForm();
  }

  /// A page and its lock are small targets among all that can be clicked.
  void InSettings(forms::frmSettings& form) {
    auto* tabs = form.tabSettings.findChild<QTabBar*>();
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(Pick(3)).center());
    if (form.cmdUnlock.isVisible()) QTest::mouseClick(&form.cmdUnlock, Qt::LeftButton);
    Q_EMIT form.tmrStartLoad.Tick();
  }

  void PressKey() {
    static constexpr Qt::Key kKeys[] = {Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Up,    Qt::Key_Down,   Qt::Key_Left,
                                        Qt::Key_Right, Qt::Key_Space,   Qt::Key_Enter, Qt::Key_Escape, Qt::Key_1,
                                        Qt::Key_Minus, Qt::Key_Comma,   Qt::Key_A,     Qt::Key_S};
    QWidget* receiver = Front().focusWidget();
    if (receiver == nullptr || (receiver == &m_main->cmdConnect && !Chance(10))) return;
    QStringList reached = GroupOf(*receiver);
    const Qt::Key key = kKeys[Pick(std::size(kKeys))];
    const bool opens = receiver == &m_main->cmdViewAlarms && (key == Qt::Key_Space || key == Qt::Key_Enter);
    const QStringList outer = std::exchange(m_underWay, m_underWay + reached);
    const auto press = [&] { QTest::keyClick(receiver, key); };
    opens ? OpenForm(press) : press();
    reached << Focused();
    Settle();
    Judge(reached << Focused(), "a key");
    m_underWay = outer;
  }

  void LookAway() {
    QWidget other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    Front().activateWindow();
    QCoreApplication::processEvents();
    if (Chance(2)) m_main->HideAndShow();
    if (Chance(3)) m_main->showMaximized();
    if (Chance(3)) m_main->showNormal();
    QCoreApplication::processEvents();
    Judge({}, "looking away");
  }

  void EndAll() {
    if (&Front() != m_main) {
      Front().UnloadForm();
    } else if (m_main->cmdConnect.Caption() == QStringLiteral("Dis&connect")) {
      QTest::mouseClick(&m_main->cmdConnect, Qt::LeftButton);
    }
  }

  VirtualCounter& m_counter;
  ManualClock m_clock;
  QPointer<QWidget> m_clicked;  ///< last; a key made after that may go there, though the focus isn't there yet
  QStringList m_underWay;       ///< the controls of the acts that haven't been judged yet
  QStringList m_late;           ///< the controls that were acted on in the last holds, while they were in front
  std::mt19937 m_random;
  forms::frmMain* m_main = nullptr;
  platform::MonotonicCounter m_realTime;
  platform::EventLoopYielder m_drawing{m_realTime};
  bool m_holds = false;
  std::vector<std::pair<std::string, bool>> m_orders;  ///< and whether an act in a hold may have sent each
  const double m_end = m_counter.Seconds() + VirtualSeconds();
};

class OperatorSoak : public testing::TestWithParam<const char*> {};

TEST_P(OperatorSoak, NothingIsSentThatNobodyAskedFor) {
  VirtualCounter counter;
  counter.SetReadTakes(100);
  RandomOperator hands(counter);
  const std::unique_ptr<sim::Device> device = sim::MakeDevice({sim::FindKind(GetParam()), 0, {}, {}, 0, 5});
  sim::FrameServer server;
  server.Attach(*device);
  sim::Faults faults(11);
  ASSERT_TRUE(faults.Set("all", 0.01));
  SimulatedPort port(counter, server, faults);
  FakeDesktop desktop;
  app::Program program({counter, hands, port, desktop});
  ASSERT_TRUE(program.Start() && QTest::qWaitForWindowActive(&program.MainForm()));
  hands.Watch(program.MainForm(), port);
  device->SetAddress(program.Shared().ConnectAddress);  // that another run left
  hands.mend = [&] {                                    // an address change that the console took for failed
    if (program.Shared().CommsLost) device->SetAddress(program.Shared().ConnectAddress);
  };
  const QTemporaryDir folder;
  hands.chooseFile = [&] { desktop.AnswerSave(folder.filePath(QStringLiteral("soak.txt"))); };
  while (!hands.Ended()) {
    if (program.MainForm().cmdConnect.Caption() == QStringLiteral("&Connect")) {
      QTest::mouseClick(&program.MainForm().cmdConnect, Qt::LeftButton);
    }
    hands.Act();
  }
  const auto [orders, forms, snapshots, behind] = hands.done;
  EXPECT_TRUE(orders > 50 && forms > 20 && snapshots > 0 && behind > 100) << "too little was tried";
}

INSTANTIATE_TEST_SUITE_P(Kinds, OperatorSoak, testing::Values("c60", "c240", "k80", "controller"),
                         [](const auto& kind) { return std::string(kind.param); });

}  // namespace
}  // namespace tarnwell::test

#include "support/program_test.h"

#include <QAction>
#include <QSettings>
#include <QTimer>
#include <QWindow>

#include "forms/controls/input_gate.h"

namespace tarnwell::test {

namespace {

QSettings Store() {
  return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Tarnwell"), QStringLiteral("Tarnwell v2.01")};
}

QString PropertyPath(const char* key) { return QStringLiteral("Properties/") + QString::fromLatin1(key); }

}  // namespace

void FakeDesktop::ShowMessage(const platform::Message& message) {
  if (EndAsked()) return;
  const char* icons[] = {"", "(i) ", "(!) ", "(X) "};
  QString text = QString::fromLatin1(icons[static_cast<int>(message.icon)]) + message.text;
  if (!message.details.isEmpty()) text += QLatin1String(" | ") + message.details;
  m_messages += text;
  if (m_onMessage) m_onMessage();
}

std::optional<QString> FakeDesktop::ChooseSaveFile(const platform::SaveDialog& dialog) {
  m_saveDialogs.push_back(dialog);
  const QString answer = m_saveAnswers.value(0);
  if (!m_saveAnswers.isEmpty()) m_saveAnswers.removeFirst();
  return answer.isNull() ? std::nullopt : std::make_optional(answer);
}

ReplyTable AmplifierReplies() {
  return {{"CT?", "CT=240W C-BAND"}, {"CV?", "CV=0264C-01 V6.01"}, {"CP?", "CP=PIN 3"}, {"CH?", "CH=842"},
          {"G?", "G=-3.4"},          {"VR?", "VR=12.34"},          {"S?", "S=OT"},      {"A?", "A="},
          {"VT?", "VT=41"},          {"VT2?", "VT2=42.5"},         {"S=X", "S=OX"},     {"S=S", "S=ST"}};
}

ReplyTable ControllerReplies() {
  return {{"CT?", "CT=7316 RCP"}, {"S?", "S=M"},   {"CM?", "CM=2"}, {"A?", "A="},
          {"O?", "O=13"},         {"PA?", "PA=1"}, {"PB?", "PB=3"}, {"CP?", "CP=N"}};
}

ProgramTest::ProgramTest() {
  Store().clear();
  m_port.AnswerAlways([this](const std::string& command) -> std::optional<std::string> {
    const auto row = m_replies.find(command);
    if (row == m_replies.end()) return std::nullopt;
    return row->second;
  });
}

void ProgramTest::SaveProperty(const char* key, const char* text) {
  Store().setValue(PropertyPath(key), QString::fromLatin1(text));
}

QString ProgramTest::StoredProperty(const char* key) { return Store().value(PropertyPath(key)).toString(); }

void ProgramTest::Start() {
  m_program.emplace(app::Machine{m_counter, m_yielder, m_port, m_desktop, [this] { return m_timeOfDay; }});
  ASSERT_TRUE(m_program->Start() && QTest::qWaitForWindowActive(&Main()));
  m_port.TakeTranscript();
}

forms::Form& ProgramTest::Front() {
  auto* modal = qobject_cast<forms::Form*>(QApplication::activeModalWidget());
  return modal != nullptr ? *modal : Main();
}

void ProgramTest::Open(const std::function<void()>& open, std::function<void()> act) {
  QTimer::singleShot(0, [this, act = std::move(act)] {
    ASSERT_NE(&Front(), &Main()) << "no form has opened";
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Front()));
    act();
  });
  open();
}

void ProgramTest::Choose(const char* entry) {
  auto* action = Main().findChild<QAction*>(QString::fromUtf8(entry));
  ASSERT_TRUE(action != nullptr && action->isEnabled());
  action->trigger();
  QCoreApplication::sendPostedEvents(&forms::InputGate::Instance());
}

void ProgramTest::ClickOn(const char* name) {
  QWidget& control = Find(name);
  ASSERT_TRUE(control.isVisible() && control.isEnabled()) << name << " can't be reached";
  QTest::mouseClick(&control, Qt::LeftButton);
}

void ProgramTest::DisconnectAfter(int polls) {
  m_yielder.OnYieldAfter(polls - 1, [this] { ClickOn("cmdConnect"); });
}

std::string ProgramTest::PacesOf(const std::function<void()>& act) {
  std::string paces;
  m_yielder.OnYieldAfter(1, [&] {
    TakePaces();
    act();
    QCoreApplication::processEvents();
    paces = TakePaces();
    DisconnectAfter(1);  // whatever yields meanwhile, a form's own poll as well
  });
  Connect();
  return paces;
}

int ProgramTest::HidesAtWatchdog() {
  int hides = 0;
  const QObject scope;
  QObject::connect(Front().windowHandle(), &QWindow::visibleChanged, &scope,
                   [&](bool shown) { hides += shown ? 0 : 1; });
  Q_EMIT Find<forms::Timer>("tmrForcePollResume").Tick();
  return hides;
}

void ProgramTest::NoteStates(const char* ahead) {
  const auto note = [&](const QObject& thing, char state) {
    if (!thing.objectName().isEmpty() && !thing.objectName().startsWith(QLatin1String("qt_")))
      m_states[thing.objectName()] += QLatin1String(ahead) + QLatin1Char(state);
  };
  for (const QWidget* control : Front().findChildren<QWidget*>()) {
    const bool enabled = control->isEnabledTo(control->parentWidget());
    note(*control, control->isHidden() ? '.' : enabled ? '+' : '-');
  }
  for (const QAction* entry : Front().findChildren<QAction*>()) note(*entry, entry->isEnabled() ? '+' : '-');
}

std::string ProgramTest::NotedStates() {
  std::map<QString, QString> sets;
  for (const auto& [name, states] : m_states) sets[states] += QLatin1Char(' ') + name;
  QString text;
  for (const auto& [states, names] : sets) {
    if (states.contains(QLatin1Char('-')) || states.contains(QLatin1Char('.')))
      text += states + names + QLatin1Char('\n');
  }
  return text.toStdString();
}

std::string ProgramTest::SelectedOptions() {
  QStringList names;
  for (const auto* option : Front().Inner().findChildren<forms::OptionButton*>()) {
    if (option->Value()) names += option->objectName();
  }
  names.sort();
  return names.join(QLatin1Char(' ')).toStdString();
}

}  // namespace tarnwell::test

#include "settings_test.h"

#include <regex>

#include "forms/controls/reading_order.h"
#include "sim/commands.h"

namespace tarnwell::test {

namespace {

std::string ValueOf(const QWidget& control) {
  if (const auto* box = qobject_cast<const forms::TextBox*>(&control)) return box->Text().toStdString();
  if (const auto* label = qobject_cast<const forms::Label*>(&control)) return label->Caption().toStdString();
  const auto* option = qobject_cast<const forms::OptionButton*>(&control);
  return (option->Value() ? "*" : "") + option->Caption().toStdString();
}

/// The group's values; an arrow button that doesn't go with its box is told by its name.
std::string ValuesOf(const QWidget& frame) {
  std::string text;
  bool boxesEnabled = false;
  for (const QWidget* control : forms::ReadingOrder(frame)) {
    if (control->isHidden() || qobject_cast<const forms::CommandButton*>(control) != nullptr) continue;
    const std::string value = ValueOf(*control);
    text += " " + (control->isEnabled() ? value : "(" + value + ")");
    boxesEnabled = control->isEnabled();
  }
  for (const auto* spin : frame.findChildren<forms::UpDown*>()) {
    if (spin->isEnabled() != boxesEnabled) text += " !" + spin->objectName().toStdString();
  }
  return text;
}

}  // namespace

void SettingsTest::Attach(const char* kind, const char* firmware, const char* platform) {
  sim::Options options;
  options.devices.push_back({sim::FindKind(kind), 1, firmware, platform, 0, 0});
  m_station.emplace(options);
  m_port.AnswerAlways([this](const std::string& command) -> std::optional<std::string> {
    if (m_onCommand) m_onCommand(command);
    if (m_silent) return std::nullopt;
    const auto told = m_replies.find(command);
    return told != m_replies.end() ? told->second : m_station->Selected().Answer(command);
  });
}

void SettingsTest::Tell(const char* command) { ASSERT_TRUE(sim::Execute(*m_station, 0.0, command).ok) << command; }

void SettingsTest::OpenSettings(const std::function<void()>& atEnd, const std::function<void()>& atStart) {
  // after a whole round of the poll the console knows the device
  m_yielder.OnYieldAfter(13, [&] {
    m_port.TakeTranscript();
    auto* entry = Main().findChild<QAction*>(QStringLiteral("mnuSSPASettings"));
    ASSERT_TRUE(entry != nullptr && entry->isEnabled());
    Open([&] { entry->trigger(); },
         [&] {
           atStart();
           Q_EMIT Form().tmrStartLoad.Tick();
           EXPECT_EQ(IsOpen(), static_cast<bool>(atEnd));
           if (IsOpen()) atEnd();
           if (IsOpen()) Press("cmdExit");
         });
    m_sentAtClose = m_port.Commands();
    m_linkAfter.clear();
    if (Main().Unloaded()) return;
    const auto noteLink = [this] { m_linkAfter += Title().find("Lost") == std::string::npos ? "up " : "lost "; };
    m_yielder.OnYield([this, noteLink] {
      noteLink();
      m_silent = false;
      m_onCommand = {};
    });
    m_yielder.OnYield(noteLink);
    DisconnectAfter(1);
  });
  Connect();
}

void SettingsTest::Press(const char* name) {
  ClickOn(name);
  QCoreApplication::processEvents();
}

void SettingsTest::SelectTab(int tab) {
  auto* tabs = Form().tabSettings.findChild<QTabBar*>();
  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab - 1).center());
}

void SettingsTest::KeyTo(QWidget& control, Qt::Key key) {
  QTest::keyClick(&control, key);
  QCoreApplication::processEvents();
}

std::string SettingsTest::TakeCommands() {
  const std::string commands = m_port.Commands();
  m_port.TakeTranscript();
  return commands;
}

std::string SettingsTest::WithAllPoints(const std::string& commands) {
  static const std::regex kRun("([A-Z]+)(\\d\\d)\\?\\.\\.[A-Z]+(\\d\\d)\\?");
  std::smatch run;
  if (!std::regex_search(commands, run, kRun)) return commands;
  std::string points;
  for (int point = std::stoi(run[2]); point <= std::stoi(run[3]); ++point) {
    points += (points.empty() ? "" : " ") + run[1].str() + (point < 10 ? "0" : "") + std::to_string(point) + '?';
  }
  return run.prefix().str() + points + WithAllPoints(run.suffix());
}

std::string SettingsTest::Page() {
  forms::frmSettings& f = Form();
  std::string text;
  forms::Frame& page = *std::array{&f.fraStandard, &f.fraAdvanced, &f.fraFactory}.at(
      static_cast<std::size_t>(f.tabSettings.SelectedTab() - 1));
  EXPECT_TRUE(page.isEnabled());
  std::vector<const QWidget*> frames;
  for (const QWidget* control : forms::ReadingOrder(page)) {
    const QWidget* frame = control->parentWidget();
    if (frame->isHidden() || std::find(frames.begin(), frames.end(), frame) != frames.end()) continue;
    frames.push_back(frame);
    text += (text.empty() ? "" : "; ") + frame->objectName().mid(3).toStdString() + ":" + ValuesOf(*frame);
  }
  return text;
}

}  // namespace tarnwell::test

#pragma once

#include <QRegularExpression>
#include <QTabBar>
#include <optional>

#include "forms/controls/announcement.h"
#include "forms/controls/answers.h"
#include "forms/controls/reading_order.h"
#include "forms/frm_settings.h"
#include "sim/commands.h"
#include "sim/station.h"
#include "support/program_test.h"

namespace tarnwell::test {

inline std::string ValueOf(const QWidget& control) {
  if (const auto* box = qobject_cast<const forms::TextBox*>(&control)) return box->Text().toStdString();
  if (const auto* label = qobject_cast<const forms::Label*>(&control)) return label->Caption().toStdString();
  const auto* option = qobject_cast<const forms::OptionButton*>(&control);
  return (option->Value() ? "*" : "") + option->Caption().toStdString();
}

/// The group's values, "!" ahead of one that alone the frame greys, "?" behind one that is doubtful; an arrow button
/// that doesn't go with its box is told by its name.
inline std::string ValuesOf(const QWidget& frame) {
  std::string text;
  bool boxesEnabled = false;
  for (const QWidget* control : forms::ReadingOrder(frame)) {
    if (control->isHidden() || qobject_cast<const forms::CommandButton*>(control) != nullptr) continue;
    const std::string value = ValueOf(*control) + (forms::IsOld(*control) ? "?" : "");
    if (!control->isEnabled() && control->isEnabledTo(&frame)) text += " !";
    text += " " + (control->isEnabled() ? value : "(" + value + ")");
    boxesEnabled = control->isEnabled();
  }
  for (const auto* spin : frame.findChildren<forms::UpDown*>()) {
    if (spin->isEnabled() != boxesEnabled) text += " !" + spin->objectName().toStdString();
  }
  return text;
}

/// The program in a session with a simulated device that stands still, and its settings form.
class SettingsTest : public ProgramTest {
 protected:
  SettingsTest() { m_replies.clear(); }

  /// Puts a device of that kind on the line; empty texts stand for what the kind has. A row of m_replies goes before
  /// its own answer.
  void Attach(const char* kind, const char* firmware = "", const char* platform = "") {
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

  /// A command to the simulator.
  void Tell(const char* command) { ASSERT_TRUE(sim::Execute(*m_station, 0.0, command).ok) << command; }

  /// Opens the settings form in a session, does `atStart` when it has been loaded, has it read, does `atEnd`, closes
  /// it, and ends the session. With no `atEnd` the form must have closed by itself. Actions that were queued for the
  /// yield run in the pauses of the read-back.
  void OpenSettings(
      const std::function<void()>& atEnd, const std::function<void()>& atStart = [] {}) {
    // after a whole round of the poll the console knows the device
    m_yielder.OnYieldAfter(13, [&] {
      m_port.TakeTranscript();
      Open([&] { Choose("mnuSSPASettings"); },
           [&] {
             EXPECT_TRUE(Form().tmrStartLoad.Enabled());
             atStart();
             Q_EMIT Form().tmrStartLoad.Tick();
             EXPECT_EQ(IsOpen(), static_cast<bool>(atEnd));
             if (IsOpen()) atEnd();
             if (IsOpen()) Press("cmdExit");
           });
      m_sentAtClose = m_port.Commands();
      Q_EMIT Main().Activate();
      m_saidAtClose = Main().findChild<forms::Announcement*>()->accessibleName().toStdString();
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

  /// The form that is open.
  forms::frmSettings& Form() { return dynamic_cast<forms::frmSettings&>(Front()); }
  bool IsOpen() { return Shared().SettingsOpen; }

  // What the operator does, and what follows from it.
  void KeyTo(QWidget& control, Qt::Key key) {
    QTest::keyClick(&control, key);
    QCoreApplication::processEvents();
  }
  void SelectTab(int tab) {
    auto* tabs = Form().tabSettings.findChild<QTabBar*>();
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab - 1).center());
  }

  /// "R00?..R25?" stands for all the points between.
  static std::string WithAllPoints(const std::string& commands) {
    static const QRegularExpression kRun(QStringLiteral("([A-Z]+)(\\d\\d)\\?\\.\\.[A-Z]+(\\d\\d)\\?"));
    QString all = QString::fromStdString(commands);
    for (auto run = kRun.match(all); run.hasMatch(); run = kRun.match(all)) {
      QStringList points;
      for (int point = run.captured(2).toInt(); point <= run.captured(3).toInt(); ++point) {
        points += run.captured(1) + QStringLiteral("%1?").arg(point, 2, 10, QLatin1Char('0'));
      }
      all.replace(run.capturedStart(), run.capturedLength(), points.join(QLatin1Char(' ')));
    }
    return all.toStdString();
  }

  /// The groups on the page that is in front: "Beeper: On *Off; Address: 1". A star marks what is selected, "(...)"
  /// what can't be changed.
  std::string Page() {
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

  std::optional<sim::Station> m_station;
  std::function<void(const std::string& command)> m_onCommand;  ///< comes ahead of each answer
  bool m_silent = false;      ///< the device hears nothing, until the console has polled it once more
  std::string m_linkAfter;    ///< what the main form said after one poll and after two: "lost up "
  std::string m_sentAtClose;  ///< all that was sent when the form had closed, but for what was taken
  std::string m_saidAtClose;  ///< what the main form had said by then to a screen reader
};

}  // namespace tarnwell::test

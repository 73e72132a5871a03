#pragma once

#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <map>

#include "forms/frm_main.h"
#include "protocol/vocabulary.h"
#include "settings/field_entry.h"
#include "support/scripted_port.h"
#include "support/virtual_counter.h"

namespace tarnwell::test {

/// The settings form with its tables and fields, everything enabled, on a device that answers by its table, or obeys:
/// a setting is answered by itself, for an RF level with 40 dBm. In view are RF level point 5, disabled; PiN point 7;
/// the second RF and the third system compensation point; limits of 10.0; address 7.
class SettingsRig {
 public:
  explicit SettingsRig(int firmwareClass = 3) {
    m_shared.FirmwareClass = firmwareClass;
    m_timing.InitCounter();
    m_port.SetPortOpen(true);
    m_port.AnswerAlways([this](const std::string& command) { return Answer(command); });
    m_fields.Connect();
    m_form.Show();
    for (QWidget* control : m_form.Inner().findChildren<QWidget*>()) control->setEnabled(true);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_form));
    m_tables.ReadRFLevelPoint(5);
    m_tables.ReadPiNPoint(7);
    m_tables.ReadRFTempCompPoint(1);
    m_tables.ReadTempCompPoint(2);
    for (const auto& [spin, value] : {std::pair{"updwnRFLevel", 5},
                                      {"updwnPiNLevel", 7},
                                      {"updwnRFTempComp", 1},
                                      {"updwnTempComp", 2},
                                      {"updwnRFMin", 100},
                                      {"updwnRFMax", 100},
                                      {"updwnReflectedMax", 100},
                                      {"updwnSSPAAddress", 7}}) {
      Find<forms::UpDown>(spin).SetValue(value);
    }
    m_port.TakeTranscript();
  }

  template <typename Control>
  Control& Find(const char* name) {
    auto* control = m_form.findChild<Control*>(QLatin1String(name));
    if (control == nullptr) ADD_FAILURE() << "no control " << name;
    return *control;
  }

  /// Types into a field that is emptied first unless an arrow key comes first: "^" is Up, "v" Down.
  void Type(const char* field, const char* keys) {
    static const std::map<char, Qt::Key> kKeys = {
        {'^', Qt::Key_Up}, {'v', Qt::Key_Down}, {'\r', Qt::Key_Return}, {'\x1b', Qt::Key_Escape}, {'\t', Qt::Key_Tab}};
    auto& box = Find<forms::TextBox>(field);
    box.setFocus();
    if (!box.isReadOnly() && *keys != '^' && *keys != 'v') box.SetText({});
    for (const char* key = keys; *key != 0; ++key) {
      const auto special = kKeys.find(*key);
      special != kKeys.end() ? QTest::keyClick(&box, special->second) : QTest::keyClick(&box, *key);
      QCoreApplication::processEvents();
    }
  }

  /// What the controls show or hold, in order, joined by "|".
  std::string Shown(const char* names) {
    QStringList shown;
    for (const QString& name : QString::fromLatin1(names).split(QLatin1Char(' '))) {
      const auto& control = Find<QWidget>(name.toLatin1().constData());
      const char* property = control.inherits("tarnwell::forms::UpDown") ? "value" : "text";
      shown += control.property(property).toString();
    }
    return shown.join(QLatin1Char('|')).toStdString();
  }

  std::string TakeCommands() {
    const std::string commands = m_port.Commands();
    m_port.TakeTranscript();
    return commands;
  }

  VirtualCounter m_counter;
  VirtualYielder m_yielder{m_counter};
  ScriptedPort m_port{m_counter};
  bool m_silent = false;
  std::map<std::string, std::string> m_replies = {{"R05?", "R05=D"},
                                                  {"P07?", "P07=100"},
                                                  {"RT02?", "RT02.25=1.5"},
                                                  {"H03?", "H03.40=0.5"},
                                                  {"H+000?", "H+000=0.5"}};
  link::SSPA_Public m_shared;
  link::IntervalTiming m_timing{m_counter, m_yielder};
  link::SerialLink m_line{m_shared, m_timing, m_port};
  forms::frmMain m_main;
  forms::frmSettings m_form{m_main.lblRFLevel};
  settings::CalibrationTables m_tables{m_form, m_shared, m_line, m_timing};
  settings::FieldEntry m_fields{
      m_form, m_tables, {[this](std::string_view tag) { WriteThreshold(tag); }, [this] { WriteSSPAAddress(); }}};

 private:
  std::optional<std::string> Answer(std::string text) const {
    if (m_silent) return std::nullopt;
    if (const auto row = m_replies.find(text); row != m_replies.end()) return row->second;
    std::erase(text, ' ');
    if (text.back() == '?') text.back() = '=';
    const bool level = text[0] == 'R' && text[1] != 'T' && text.back() != 'D';
    return level ? text.replace(3, 1, "=P40V") : text;
  }

  void WriteThreshold(std::string_view tag) {
    std::map<std::string_view, forms::UpDown*> spins = {
        {"T1", &m_form.updwnRFMin}, {"T2", &m_form.updwnRFMax}, {"T3", &m_form.updwnReflectedMax}};
    protocol::Send(m_line, protocol::SetThreshold(tag, spins.at(tag)->Value()), m_reply);
  }
  void WriteSSPAAddress() {
    const auto address = static_cast<std::uint8_t>(m_form.updwnSSPAAddress.Value());
    protocol::Send(m_line, protocol::SetAddress(address), m_reply);
  }

  std::string m_reply;
};

}  // namespace tarnwell::test

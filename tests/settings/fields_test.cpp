#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <map>

#include "forms/controls/announcement.h"
#include "forms/controls/answers.h"
#include "forms/frm_main.h"
#include "platform/text_encoding.h"
#include "protocol/vocabulary.h"
#include "settings/field_entry.h"
#include "support/scripted_port.h"
#include "support/virtual_counter.h"

namespace tarnwell::test {
namespace {

/// The settings form with its tables and fields, everything enabled, on a device that answers by its table, or obeys:
/// a setting is answered by itself, for an RF level with 40 dBm. In view are RF level point 5, disabled; PiN point 7;
/// the second RF and the third system compensation point; limits of 10.0; address 7.
class SettingsRig {
 public:
  explicit SettingsRig(int firmwareClass = 3) {
    m_shared.FirmwareClass = firmwareClass;
    m_shared.PortRS232 = true;
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
    m_form.updwnRFLevel.SetValue(5);
    m_form.updwnPiNLevel.SetValue(7);
    m_form.updwnRFTempComp.SetValue(1);
    m_form.updwnTempComp.SetValue(2);
    for (auto* spin : {&m_form.updwnRFMin, &m_form.updwnRFMax, &m_form.updwnReflectedMax}) spin->SetValue(100);
    m_form.updwnSSPAAddress.SetValue(7);
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
  settings::Opening m_opening{m_form, m_main, m_shared, m_timing};
  settings::CalibrationTables m_tables{m_opening, m_line};
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
    const char* spin = tag == "T1" ? "updwnRFMin" : tag == "T2" ? "updwnRFMax" : "updwnReflectedMax";
    protocol::Send(m_line, protocol::SetThreshold(tag, Find<forms::UpDown>(spin).Value()), m_reply);
  }
  void WriteSSPAAddress() {
    const auto address = static_cast<std::uint8_t>(m_form.updwnSSPAAddress.Value());
    protocol::Send(m_line, protocol::SetAddress(address), m_reply);
  }

  std::string m_reply;
};

constexpr const char* kRFLevel = "lblRFLevel txtRFVolts txtRFLevelPoint";
constexpr const char* kPiN = "lblPiNLevel txtPiNDAC txtPiNLevelPoint";
constexpr const char* kRF = "txtRFTCTemp txtRFTCComp txtRFTempCompPoint";
constexpr const char* kSystem = "txtTCTemp txtTCComp txtTempCompPoint";

struct Written {
  int firmwareClass;
  const char* field;  ///< nothing: the quick calibration
  const char* keys;
  const char* command;
  const char* reply;
  const char* shownBy;
  const char* shown;
};

constexpr Written kWritten[] = {
    {3, "txtRFVolts", "2.35\r", "R05= 2.35", "R05=P12V2.345", kRFLevel, "12|2.35|6 of 26"},
    {3, "txtRFVolts", "2.35\r", "R05= 2.35", "R05=2.35", kRFLevel, "D|D|6 of 26"},
    {1, nullptr, "", "Q05", "R05=P43V8", kRFLevel, "43|8.00|6 of 26"},
    {3, "txtPiNDAC", "100\r", "P07=100", "P07=9", kPiN, "7|9|8 of 41"},
    {2, "txtRFTCComp", "1.5\r", "RT02.25= 1.5", "RT02.-50=0.35", kRF, "-50|0.4|2 of 3"},
    {3, "txtTCTemp", "7\r", "H03.7= .5", "H03.7=-9.96", kSystem, "7|-10.0|3 of 8"},
    {1, "txtTCComp", "1\r", "H+000= 1", "H+000=1.25", kSystem, "0|1.3|3 of 8"},
};

void Write(SettingsRig& rig, const Written& row) {
  row.field != nullptr ? rig.Type(row.field, row.keys) : rig.m_tables.cmdQuickCal_Click();
}

TEST(CalibrationTables, TheReplyIsStoredAndDrawnAndSilenceClosesTheForm) {
  for (const Written& row : kWritten) {
    SettingsRig rig(row.firmwareClass);
    rig.m_replies[row.command] = row.reply;
    Write(rig, row);
    EXPECT_EQ(rig.m_port.Paces(), std::string("50 ") + row.command + " 50");
    EXPECT_EQ(rig.Shown(row.shownBy), row.shown) << row.reply;

    SettingsRig silent(row.firmwareClass);
    silent.m_form.optModeMaint.Select();
    silent.m_silent = true;
    Write(silent, row);
    const std::string once = row.command;
    EXPECT_EQ(silent.TakeCommands(), once + ' ' + once + ' ' + once) << "and no query of the PiN point in view";
    EXPECT_TRUE(silent.m_form.Unloaded()) << once;
    Q_EMIT silent.m_main.Activate();
    const QString said = silent.m_main.findChild<forms::Announcement*>()->accessibleName();
    EXPECT_EQ(said, QStringLiteral("SSPA Settings closed: no answer")) << once;
  }
}

// What a reply doesn't tell leaves the point as it was: for these RF level point 5, PiN point 7, and the second and the
// third compensation point. What isn't known is doubtful, and nothing that Enter sends by itself.
TEST(CalibrationTables, WhatReadRepliesSay) {
  const std::tuple<const char*, std::vector<const char*>, const char*, const char*, bool> cases[] = {
      {"R05?", {"R05=P12V2.35", "R05= P 12 V 2.35", "R05=P12.5V2.35x"}, kRFLevel, "12|2.35|6 of 26", true},
      {"R05?", {"R05=P0V1", "R05=1P0V1"}, kRFLevel, "0|1.00|6 of 26", true},
      {"R05?", {"R05=PV<b>", "R05=P0V", "R05=PV0"}, kRFLevel, "0|0.00|6 of 26", false},
      {"R05?", {"R05=D"}, kRFLevel, "D|D|6 of 26", true},
      {"R05?", {"R05=V2P3", "R05=P12", "R05=P256V1", "R05=P-1V1", "R05="}, kRFLevel, "D|D|6 of 26", false},
      {"P07?", {"P07=128", "P07= 0128"}, kPiN, "7|128|8 of 41", true},
      {"P07?", {"P07=3.5", "P07=4.5"}, kPiN, "7|4|8 of 41", true},
      {"P07?", {"P07=9x", "P07=32768", "P07=\xB2", "P07="}, kPiN, "7|100|8 of 41", false},
      {"RT02?", {"RT02.-5=1.25", "RT02.-5= 1.25x"}, kRF, "-5|1.3|2 of 3", true},
      {"RT02?", {"RT02=D", "RT02.0=D"}, kRF, "0|D|2 of 3", true},
      {"RT02?", {"RT02=1.5", "RT0225=1", "RT02.9", "RT02.x=1", "RT02.99999=1"}, kRF, "25|1.5|2 of 3", false},
  };
  for (const auto& [query, replies, shownBy, shown, known] : cases) {
    for (const char* reply : replies) {
      SettingsRig rig;
      rig.m_replies[query] = reply;
      rig.m_tables.ReadRFLevelPoint(5);
      rig.m_tables.ReadPiNPoint(7);
      rig.m_tables.ReadRFTempCompPoint(1);
      rig.m_tables.DrawRFLevelPoint();
      rig.m_tables.DrawPiNPoint();
      rig.m_tables.DrawRFTempCompPoint();
      EXPECT_EQ(rig.Shown(shownBy), shown) << reply;
      auto& field = rig.Find<forms::TextBox>(QByteArray(shownBy).split(' ')[1]);
      EXPECT_EQ(forms::IsOld(field), !known) << reply;
      const QString told = platform::FromDevice(reply).toHtmlEscaped();
      EXPECT_EQ(field.toolTip().contains(QLatin1String("answered")), !known);
      EXPECT_TRUE(known || field.toolTip().contains(told));
      EXPECT_EQ(field.toolTip().contains(QLatin1String("here too")), !known && shownBy == kRF);
      rig.TakeCommands();
      QTest::keyClick(&field, Qt::Key_Return);
      EXPECT_EQ(rig.TakeCommands().empty(), !known) << reply;
      rig.Type(field.objectName().toLatin1(), "1\r");
      EXPECT_NE(rig.TakeCommands(), "") << reply;
      EXPECT_FALSE(forms::IsOld(field)) << "the answer to a setting is an answer";
    }
  }
}

TEST(CalibrationTables, MaintenanceAsksForThePiNPointInView) {
  for (const std::string row :
       {"txtPiNDAC 9\r -> P07=9 P07?", "txtPiNDAC 9\x1b -> P07?", "txtPiNDAC 9\t -> P07?", "txtPiNDAC \r -> P07?",
        "txtPiNDAC 9 -> ", "txtPiNLevelPoint ^ -> P08?", "txtPiNLevelPoint \r\x1b\t -> ",
        "txtPiNLevelPoint vvvvvvvv -> P06? P05? P04? P03? P02? P01? P00?", "txtRFLevelPoint ^ -> ",
        "txtRFVolts 9\x1b -> ", "txtTCComp 9\t -> "}) {
    const std::string field = row.substr(0, row.find(' '));
    const std::size_t arrow = row.find(" -> ");
    SettingsRig rig;
    rig.m_form.optModeMaint.Select();
    rig.Type(field.c_str(), row.substr(field.size() + 1, arrow - field.size() - 1).c_str());
    EXPECT_EQ(rig.TakeCommands(), row.substr(arrow + 4)) << row;
  }
  SettingsRig rig;
  rig.m_form.optModeMaint.Select();
  rig.Type("txtPiNDAC", "9");
  QTest::mousePress(&rig.m_form.updwnPiNLevel, Qt::LeftButton, {}, QPoint(5, 3));
  EXPECT_EQ(rig.TakeCommands(), "P08?") << "the spin draws its own field";
  rig.m_silent = true;
  rig.m_tables.DrawPiNPoint();
  EXPECT_TRUE(rig.m_shared.CommsLost && !rig.m_form.Unloaded());
}

/// Entries are "keys -> what is sent: what is shown". `also` stands beside the field in what is shown.
void Expect(const char* field, std::initializer_list<std::string> entries, const char* also = nullptr,
            int firmwareClass = 3) {
  for (const std::string& entry : entries) {
    const std::size_t arrow = entry.find(" -> ");
    const std::size_t colon = entry.find(": ", arrow + 4);
    SettingsRig rig(firmwareClass);
    rig.Type(field, entry.substr(0, arrow).c_str());
    EXPECT_EQ(rig.TakeCommands(), entry.substr(arrow + 4, colon - arrow - 4)) << field << ": " << entry;
    const std::string controls = field + (also != nullptr ? std::string(" ") + also : "");
    EXPECT_EQ(rig.Shown(controls.c_str()), entry.substr(colon + 2)) << field << ": " << entry;
  }
}

TEST(FieldEntry, LimitsAndAddress) {
  Expect("txtRFMin",
         {"12,35\r -> T1= 12.4: 12.4|124", "12.3\r^ -> T1= 12.3 T1= 12.8: 12.8|128",
          "12.3\rv -> T1= 12.3 T1= 11.8: 11.8|118", "10.04\r -> T1= 10: 10.0|100", "d\r^ -> T1=D T1= 0: 0.0|0",
          "0\rvv -> T1= 0 T1=D: D|-5", "77^ -> T1= 10.5: 10.5|105", "1x-2\b -> : 1|100"},
         "updwnRFMin");
  Expect("txtRFMax",
         {"5d -> : 5D|100", "5d\r -> T2=D: D|-5", "200\r^ -> T2= 100: 100.0|1000", "3276.7\r -> T2= 100: 100.0|1000"},
         "updwnRFMax");
  Expect("txtReflectedMax", {"v -> T3= 9.5: 9.5|95", "1.5\r -> T3= 1.5: 1.5|15"}, "updwnReflectedMax");
  Expect("txtSSPAAddress", {"99\r^ -> U=_: 31|31", "0\rv^ -> U=@ U=A: 1|1", "1.d,2 -> : 12|7"}, "updwnSSPAAddress");
}

TEST(FieldEntry, TablePoints) {
  Expect("txtRFVolts",
         {"11\r -> R05= 11: 11.00|40", "2,35\r -> R05= 2.35: 2.35|40", "20\r -> R05= 15: 15.00|40",
          "3d\r -> R05=D: D|D", "-3^ -> : 3|D"},
         "lblRFLevel");
  Expect("txtPiNDAC",
         {"256\r -> P07=255: 255|7", "0\r -> P07=0: 0|7", "007\r -> P07=007: 7|7", "1d\r -> P07=D: D|7",
          "5.-,5 -> : 55|7"},
         "lblPiNLevel");
  Expect("txtRFTCComp",
         {"1,25\r -> RT02.25= 1.25: 1.3|25", "-1.256\r -> RT02.25=-1.26: -1.3|25", "99\r -> RT02.25= 10: 10.0|25",
          "-99\r -> RT02.25=-10: -10.0|25", "-d\r -> RT02.25=D: D|25"},
         "txtRFTCTemp");
  Expect("txtTCTemp", {"-60\r -> H03.-50= .5: -50|0.5", "200\r -> H03.125= .5: 125|0.5", "-d.7 -> : -7|0.5"},
         "txtTCComp");
  Expect("txtRFTCTemp", {"-9\r -> RT02.-9= 1.5: -9|1.5"}, "txtRFTCComp");
  Expect("txtTCComp", {"d\r -> H03.40=D: D|40"}, "txtTCTemp");
  Expect("txtTCComp", {"1\r -> H+000= 1: 1.0|0"}, "txtTCTemp", 1);
}

TEST(FieldEntry, WhatIsNotSentIsDropped) {
  const std::tuple<const char*, std::string, std::vector<std::string>> cases[] = {
      {"txtRFMin", "10.0", {"1.2.3\r", "3276.8\r", "999999\r"}},
      {"txtRFMax", "10.0", {",\r"}},
      {"txtReflectedMax", "10.0", {"..\r"}},
      {"txtSSPAAddress", "7", {}},
      {"txtRFVolts", "D", {".\r", "1,2,3\r"}},
      {"txtPiNDAC", "100", {}},
      {"txtRFTCComp", "1.5", {"-\r", "1-2\r"}},
      {"txtRFTCTemp", "25", {"99999\r"}},
      {"txtTCComp", "0.5", {"--1\r"}},
      {"txtTCTemp", "40", {"1-\r"}}};
  for (const auto& [field, stored, notNumbers] : cases) {
    Expect(field, {"\r -> : " + stored, "7\x1b -> : " + stored, "7\t -> : " + stored});
    for (const std::string& keys : notNumbers) Expect(field, {keys + " -> : " + stored});
  }
}

TEST(FieldEntry, PositionsStepWithoutTraffic) {
  Expect("txtRFLevelPoint", {"^^v -> : 7 of 26|0.00", "1\r\x1b -> : 6 of 26|D"}, "txtRFVolts");
  Expect("txtRFTempCompPoint", {"^^^ -> : 3 of 3|2"}, "updwnRFTempComp");
  Expect("txtTempCompPoint", {"vvvv -> : 1 of 8|0"}, "updwnTempComp");
}

TEST(FieldEntry, WhatIsPastedIsHeldToTheSameLimits) {
  for (const auto& [text, sent] : {std::pair{"1e2", "P07=100"}, {"2.5", "P07=2"}, {"-4", "P07=0"}, {"x", ""}}) {
    SettingsRig rig;
    rig.m_form.txtPiNDAC.SetText(QLatin1String(text));
    QTest::keyClick(&rig.m_form.txtPiNDAC, Qt::Key_Return);
    EXPECT_EQ(rig.TakeCommands(), sent) << text;
  }
}

TEST(FieldEntry, SpinsByMouse) {
  // the field that is half typed, the spin and where it stands, what is sent and what the field shows then
  const std::tuple<const char*, const char*, int, const char*, const char*> cases[] = {
      {"txtRFMin", "updwnRFMin", 100, "T1= 10.5", "10.5"},
      {"txtRFMax", "updwnRFMax", 1000, "T2= 100", "100.0"},
      {"txtReflectedMax", "updwnReflectedMax", -5, "T3= 0", "0.0"},
      {"txtSSPAAddress", "updwnSSPAAddress", 30, "U=_", "31"},
      {"txtRFVolts", "updwnRFLevel", 5, "", "0.00"},
      {"txtPiNDAC", "updwnPiNLevel", 7, "", "0"},
      {"txtRFTCTemp", "updwnRFTempComp", 1, "", "0"},
      {"txtTCComp", "updwnTempComp", 2, "", "0.0"},
      {"txtRFVolts", "updwnPiNLevel", 7, "", "D"},
      {"txtPiNDAC", "updwnRFMin", 100, "T1= 10.5", "100"}};
  for (const auto& [field, spinName, value, sent, shown] : cases) {
    SettingsRig rig;
    auto& spin = rig.Find<forms::UpDown>(spinName);
    spin.SetValue(value);
    rig.Type(field, "77");
    QTest::mousePress(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
    EXPECT_EQ(rig.TakeCommands(), "") << "nothing goes out while the arrow is held";
    QTest::mouseRelease(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
    EXPECT_EQ(rig.TakeCommands(), sent) << spinName;
    EXPECT_EQ(rig.Shown(field), shown) << "what was half typed is gone: " << field;
  }
}

}  // namespace
}  // namespace tarnwell::test

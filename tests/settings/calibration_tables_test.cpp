#include "settings/calibration_tables.h"

#include "settings/settings_rig.h"

namespace tarnwell::test {
namespace {

using Tables = settings::CalibrationTables;

TEST(CalibrationTables, QueriesOfEachTable) {
  struct Case {
    int firmwareClass;
    void (Tables::*read)(int);
    std::vector<int> points;
    const char* commands;
  };
  for (const Case& c : {Case{2, &Tables::ReadRFLevelPoint, {0, 25}, "R00? R25?"},
                        {2, &Tables::ReadPiNPoint, {0, 40}, "P00? P40?"},
                        {2, &Tables::ReadRFTempCompPoint, {0, 2}, "RT01? RT03?"},
                        {3, &Tables::ReadTempCompPoint, {0, 7}, "H01? H08?"},
                        {1, &Tables::ReadTempCompPoint, {0, 1, 2, 3, 7}, "H-050? H-025? H+000? H+025? H+125?"}}) {
    SettingsRig rig(c.firmwareClass);
    for (const int point : c.points) (rig.m_tables.*c.read)(point);
    EXPECT_EQ(rig.TakeCommands(), c.commands);
    rig.m_silent = true;
    (rig.m_tables.*c.read)(0);
    EXPECT_TRUE(rig.m_shared.CommsLost && !rig.m_form.Unloaded()) << "who reads decides what a lost link means";
  }
}

struct Writer {
  int firmwareClass;
  const char* shownOf;
  void (*act)(Tables&, forms::frmSettings&);
  const char* command;
};
const char* const kRFLevel = "lblRFLevel txtRFVolts txtRFLevelPoint";
const char* const kSystem = "txtTCTemp txtTCComp txtTempCompPoint";
const Writer kVolts{3, kRFLevel, [](auto& t, auto&) { t.WriteRFLevelPoint(2.35F); }, "R05= 2.35"};
const Writer kDisabledVolts{1, kRFLevel, [](auto& t, auto&) { t.WriteRFLevelPoint(-100); }, "R05=D"};
const Writer kQuickCal{1, kRFLevel, [](auto& t, auto&) { t.cmdQuickCal_Click(); }, "Q05"};
const Writer kPiN{3, "lblPiNLevel txtPiNDAC txtPiNLevelPoint", [](auto& t, auto&) { t.WritePiNPoint(); }, "P07=100"};
const Writer kRF{2, "txtRFTCTemp txtRFTCComp txtRFTempCompPoint", [](auto& t, auto&) { t.WriteRFTempCompPoint(); },
                 "RT02.25= 1.5"};
const Writer kIndexed{3, kSystem, [](auto& t, auto&) { t.WriteTempCompPoint(); }, "H03.40= .5"};
const Writer kFixed{1, kSystem,
                    [](auto& t, auto& f) {
                      f.txtTCTemp.SetText(QStringLiteral("99"));  // not used
                      t.WriteTempCompPoint();
                    },
                    "H+000= .5"};
const Writer kFixedBelowZero{1, kSystem,
                             [](auto& t, auto& f) {
                               f.updwnTempComp.SetValue(0);
                               f.txtTCComp.SetText(QStringLiteral("d"));
                               t.WriteTempCompPoint();
                             },
                             "H-050=D"};

TEST(CalibrationTables, TheReplyIsStoredAndDrawn) {
  struct Case {
    const Writer& writer;
    const char* reply;
    const char* shown;
  };
  for (const Case& c : {Case{kVolts, "R05=P12V2.345", "12|2.35|6 of 26"},
                        {kVolts, "R05=2.35", "D|D|6 of 26"},
                        {kDisabledVolts, "R05=D", "D|D|6 of 26"},
                        {kQuickCal, "R05=P43V8", "43|8.00|6 of 26"},
                        {kPiN, "P07=9", "7|9|8 of 41"},
                        {kPiN, "P07=D", "7|D|8 of 41"},
                        {kPiN, "P07=", "7|100|8 of 41"},
                        {kRF, "RT02.-50=0.35", "-50|0.4|2 of 3"},
                        {kRF, "RT02.30=D", "30|D|2 of 3"},
                        {kIndexed, "H03.7=-9.96", "7|-10.0|3 of 8"},
                        {kIndexed, "H03.x=1", "40|0.5|3 of 8"},
                        {kFixed, "H+000=1.25", "0|1.3|3 of 8"},
                        {kFixed, "000=1", "0|0.5|3 of 8"},
                        {kFixedBelowZero, "H-050=D", "-50|D|1 of 8"}}) {
    SettingsRig rig(c.writer.firmwareClass);
    rig.m_replies[c.writer.command] = c.reply;
    const double before = rig.m_counter.Seconds();
    c.writer.act(rig.m_tables, rig.m_form);
    EXPECT_EQ(rig.TakeCommands(), c.writer.command);
    EXPECT_EQ(rig.Shown(c.writer.shownOf), c.shown) << c.reply;
    // 0.02 s to the answer's first byte
    EXPECT_NEAR(rig.m_counter.Seconds() - before, 0.05 + 0.02 + 0.05, 0.01) << c.reply;
  }
}

TEST(CalibrationTables, AnUnansweredWriteClosesTheForm) {
  for (const Writer& writer : {kVolts, kQuickCal, kPiN, kRF, kIndexed, kFixed}) {
    SettingsRig rig(writer.firmwareClass);
    rig.m_form.optModeMaint.Select();
    rig.m_form.txtPiNDAC.setFocus();  // the closing form takes the focus from it
    rig.m_silent = true;
    writer.act(rig.m_tables, rig.m_form);
    const std::string once = writer.command;
    EXPECT_EQ(rig.TakeCommands(), once + ' ' + once + ' ' + once) << "and no query of the PiN point in view";
    EXPECT_TRUE(rig.m_form.Unloaded()) << once;
  }
}

TEST(CalibrationTables, MaintenanceAsksForThePiNPointInView) {
  struct Case {
    const char* field;
    const char* keys;
    const char* commands;
  };
  for (const Case& c : {Case{"txtPiNDAC", "9\r", "P07=9 P07?"},
                        {"txtPiNDAC", "9\x1b", "P07?"},
                        {"txtPiNDAC", "9\t", "P07?"},
                        {"txtPiNDAC", "\r", "P07?"},
                        {"txtPiNDAC", "9", ""},
                        {"txtPiNLevelPoint", "^", "P08?"},
                        {"txtPiNLevelPoint", "\r\x1b\t", ""},
                        {"txtPiNLevelPoint", "vvvvvvvv", "P06? P05? P04? P03? P02? P01? P00?"},
                        {"txtRFLevelPoint", "^", ""},
                        {"txtRFVolts", "9\x1b", ""},
                        {"txtTCComp", "9\t", ""}}) {
    SettingsRig rig;
    rig.m_form.optModeMaint.Select();
    rig.Type(c.field, c.keys);
    EXPECT_EQ(rig.TakeCommands(), c.commands) << c.field << ' ' << c.keys;
  }
  SettingsRig rig;
  rig.m_form.optModeMaint.Select();
  rig.m_silent = true;
  rig.m_tables.DrawPiNPoint();
  EXPECT_TRUE(rig.m_shared.CommsLost && !rig.m_form.Unloaded());
}

}  // namespace
}  // namespace tarnwell::test

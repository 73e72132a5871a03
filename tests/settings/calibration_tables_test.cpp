#include "settings/calibration_tables.h"

#include "settings/settings_rig.h"

namespace tarnwell::test {
namespace {

const char* const kRFLevel = "lblRFLevel txtRFVolts txtRFLevelPoint";
const char* const kPiN = "lblPiNLevel txtPiNDAC txtPiNLevelPoint";
const char* const kRF = "txtRFTCTemp txtRFTCComp txtRFTempCompPoint";
const char* const kSystem = "txtTCTemp txtTCComp txtTempCompPoint";

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
    {1, "txtRFVolts", "d\r", "R05=D", "R05=D", kRFLevel, "D|D|6 of 26"},
    {1, nullptr, "", "Q05", "R05=P43V8", kRFLevel, "43|8.00|6 of 26"},
    {3, "txtPiNDAC", "100\r", "P07=100", "P07=9", kPiN, "7|9|8 of 41"},
    {3, "txtPiNDAC", "100\r", "P07=100", "P07=", kPiN, "7|100|8 of 41"},
    {2, "txtRFTCComp", "1.5\r", "RT02.25= 1.5", "RT02.-50=0.35", kRF, "-50|0.4|2 of 3"},
    {2, "txtRFTCTemp", "30\r", "RT02.30= 1.5", "RT02.30=D", kRF, "30|D|2 of 3"},
    {3, "txtTCTemp", "7\r", "H03.7= .5", "H03.7=-9.96", kSystem, "7|-10.0|3 of 8"},
    {3, "txtTCTemp", "7\r", "H03.7= .5", "H03.x=1", kSystem, "40|0.5|3 of 8"},
    {1, "txtTCComp", "1\r", "H+000= 1", "H+000=1.25", kSystem, "0|1.3|3 of 8"},
    {1, "txtTCComp", "1\r", "H+000= 1", "000=1", kSystem, "0|0.5|3 of 8"},
};

void Write(SettingsRig& rig, const Written& row) {
  row.field != nullptr ? rig.Type(row.field, row.keys) : rig.m_tables.cmdQuickCal_Click();
}

TEST(CalibrationTables, TheReplyIsStoredAndDrawnAndSilenceClosesTheForm) {
  for (const Written& row : kWritten) {
    SettingsRig rig(row.firmwareClass);
    rig.m_replies[row.command] = row.reply;
    const double before = rig.m_counter.Seconds();
    Write(rig, row);
    EXPECT_EQ(rig.TakeCommands(), row.command);
    EXPECT_EQ(rig.Shown(row.shownBy), row.shown) << row.reply;
    EXPECT_NEAR(rig.m_counter.Seconds() - before, 0.05 + 0.02 + 0.05, 0.01) << "two pauses and the way to the answer";

    SettingsRig silent(row.firmwareClass);
    silent.m_form.optModeMaint.Select();
    silent.m_silent = true;
    Write(silent, row);
    const std::string once = row.command;
    EXPECT_EQ(silent.TakeCommands(), once + ' ' + once + ' ' + once) << "and no query of the PiN point in view";
    EXPECT_TRUE(silent.m_form.Unloaded()) << once;
  }
}

// What a reply doesn't tell leaves the point as it was: for these RF level point 5, PiN point 7, and the second and the
// third compensation point.
TEST(CalibrationTables, WhatReadRepliesSay) {
  const std::tuple<const char*, std::vector<const char*>, const char*, const char*> cases[] = {
      {"R05?", {"R05=P12V2.35", "R05= P 12 V 2.35", "R05=P12.5V2.35x"}, kRFLevel, "12|2.35|6 of 26"},
      {"R05?", {"R05=P0V1", "R05=1P0V1"}, kRFLevel, "0|1.00|6 of 26"},
      {"R05?", {"R05=D", "R05=V2P3", "R05=P12", "R05=P256V1", "R05=P-1V1", "R05="}, kRFLevel, "D|D|6 of 26"},
      {"P07?", {"P07=128", "P07= 0128"}, kPiN, "7|128|8 of 41"},
      {"P07?", {"P07=3.5", "P07=4.5"}, kPiN, "7|4|8 of 41"},
      {"P07?", {"P07=9x", "P07=32768", "P07=\xB2", "P07="}, kPiN, "7|100|8 of 41"},
      {"RT02?", {"RT02.-5=1.25", "RT02.-5= 1.25x"}, kRF, "-5|1.3|2 of 3"},
      {"RT02?", {"RT02=D", "RT02.0=D"}, kRF, "0|D|2 of 3"},
      {"RT02?", {"RT02=1.5", "RT0225=1", "RT02.9", "RT02.x=1", "RT02.99999=1"}, kRF, "25|1.5|2 of 3"},
  };
  for (const auto& [query, replies, shownBy, shown] : cases) {
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
  rig.m_silent = true;
  rig.m_tables.DrawPiNPoint();
  EXPECT_TRUE(rig.m_shared.CommsLost && !rig.m_form.Unloaded());
}

}  // namespace
}  // namespace tarnwell::test

#include "alarms/alarm_table.h"

#include <gtest/gtest.h>

namespace tarnwell::alarms {
namespace {

/// The table as letters: capital active, small latched, with "!" behind an acknowledged one.
std::string Shown(const link::AlarmTable& table) {
  std::string text;
  for (int i = 0; i < link::kAlarmSlots; ++i) {
    const link::AlarmSlot& slot = table[i];
    EXPECT_FALSE(slot.Active && slot.Latched) << i;
    if (slot.Active) text += static_cast<char>('A' + i);
    if (slot.Latched) text += static_cast<char>('a' + i);
    if (slot.Acknowledged) text += '!';
  }
  return text;
}

TEST(AlarmTable, DecodesLettersAnywhere) {
  const std::pair<const char*, const char*> cases[] = {{"", ""},       {"A", "A"},       {"aA", "a"},       {"Aa", "a"},
                                                       {"ZbA", "AbZ"}, {"??A A;;", "A"}, {"EeZz[`{@", "ez"}};
  for (const auto& [reply, shown] : cases) {
    link::AlarmTable table;
    DecodeAlarmReply(reply, table);
    EXPECT_EQ(Shown(table), shown) << reply;
  }
}

TEST(AlarmTable, TellsWhatItFoundInThisReplyAlone) {
  link::AlarmTable table;
  DecodedAlarms found = DecodeAlarmReply("Ab", table);
  EXPECT_TRUE(found.anyActive && found.anyLatched);
  found = DecodeAlarmReply("b", table);
  EXPECT_TRUE(!found.anyActive && found.anyLatched);
  found = DecodeAlarmReply("", table);
  EXPECT_TRUE(!found.anyActive && !found.anyLatched);
}

TEST(AlarmTable, AcknowledgementLivesAsLongAsTheAlarm) {
  link::AlarmTable table;
  DecodeAlarmReply("CD", table);
  table[2].Acknowledged = true;
  DecodeAlarmReply("cD", table);
  EXPECT_EQ(Shown(table), "c!D");
  AlarmSummary summary = GetAlarmSummary(table);
  EXPECT_TRUE(summary.AckedPresent && summary.UnackedPresent);
  DecodeAlarmReply("D", table);
  EXPECT_EQ(Shown(table), "D");
  summary = GetAlarmSummary(table);
  EXPECT_TRUE(!summary.AckedPresent && summary.UnackedPresent);
  table[3].Acknowledged = true;
  summary = GetAlarmSummary(table);
  EXPECT_TRUE(summary.AckedPresent && !summary.UnackedPresent);
  ResetAlarmTable(table);
  EXPECT_EQ(Shown(table), "");
}

}  // namespace
}  // namespace tarnwell::alarms

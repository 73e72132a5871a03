#include "alarms/alarm_table.h"

#include <gtest/gtest.h>

namespace tarnwell::alarms {
namespace {

/// The slots that a reply leaves: capital active, small latched, "!" behind an acknowledged one; then what is told.
std::string Shown(std::string_view reply, link::AlarmTable& table) {
  const DecodedAlarms found = DecodeAlarmReply(reply, table);
  std::string text;
  for (int i = 0; i < link::kAlarmSlots; ++i) {
    if (table[i].Active) text += static_cast<char>('A' + i);
    if (table[i].Latched) text += static_cast<char>('a' + i);
    if (table[i].Acknowledged) text += '!';
  }
  const AlarmSummary summary = GetAlarmSummary(table);
  text += found.anyActive ? " active" : "";
  text += found.anyLatched ? " latched" : "";
  text += summary.UnackedPresent ? " new" : "";
  text += summary.AckedPresent ? " known" : "";
  return text;
}

TEST(AlarmTable, EachReplyStandsAloneAndAnAcknowledgementLivesAsLongAsItsAlarm) {
  // what is acknowledged ahead of the reply, the reply, and what is shown then
  const std::tuple<char, const char*, const char*> rows[] = {{0, "??A A;;", "A active new"},
                                                             {0, "", ""},
                                                             {0, "aA", "a latched new"},
                                                             {0, "ZbA", "AbZ active latched new"},
                                                             {0, "EeZz[`{@", "ez latched new"},
                                                             {0, "CD", "CD active new"},
                                                             {'C', "cD", "c!D active latched new known"},
                                                             {0, "D", "D active new"},
                                                             {'D', "D", "D! active known"}};
  link::AlarmTable table;
  for (const auto& [acknowledged, reply, shown] : rows) {
    if (acknowledged != 0) table[acknowledged - 'A'].Acknowledged = true;
    EXPECT_EQ(Shown(reply, table), shown) << reply;
  }
}

}  // namespace
}  // namespace tarnwell::alarms

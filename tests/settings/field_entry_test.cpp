#include "settings/field_entry.h"

#include "settings/settings_rig.h"

namespace tarnwell::test {
namespace {

struct Entry {
  const char* field;
  const char* keys;
  const char* sent;
  const char* shown;
};

/// `also` stands beside the field in what is shown.
void Expect(std::initializer_list<Entry> entries, const char* also = nullptr, int firmwareClass = 3) {
  for (const Entry& entry : entries) {
    SettingsRig rig(firmwareClass);
    rig.Type(entry.field, entry.keys);
    EXPECT_EQ(rig.TakeCommands(), entry.sent) << entry.field << ": " << entry.keys;
    const std::string controls = entry.field + (also != nullptr ? std::string(" ") + also : "");
    EXPECT_EQ(rig.Shown(controls.c_str()), entry.shown) << entry.field << ": " << entry.keys;
  }
}

TEST(FieldEntry, LimitsAndAddress) {
  const char* const field = "txtRFMin";
  Expect({{field, "12.25\r", "T1= 12.2", "12.2|122"},
          {field, "12,35\r", "T1= 12.4", "12.4|124"},
          {field, "12.3\r^", "T1= 12.3 T1= 12.8", "12.8|128"},
          {field, "12.3\rv", "T1= 12.3 T1= 11.8", "11.8|118"},
          {field, "10.04\r", "T1= 10", "10.0|100"},
          {field, "d\r^", "T1=D T1= 0", "0.0|0"},
          {field, "0\rvv", "T1= 0 T1=D", "D|-5"},
          {field, "77^", "T1= 10.5", "10.5|105"},
          {field, "1x-2\b", "", "1|100"}},
         "updwnRFMin");
  const char* const maximum = "txtRFMax";
  Expect({{maximum, "5d", "", "5D|100"},
          {maximum, "5d\r", "T2=D", "D|-5"},
          {maximum, "200\r^", "T2= 100", "100.0|1000"},
          {maximum, "3276.7\r", "T2= 100", "100.0|1000"}},
         "updwnRFMax");
  Expect({{"txtReflectedMax", "v", "T3= 9.5", "9.5|95"}, {"txtReflectedMax", "1.5\r", "T3= 1.5", "1.5|15"}},
         "updwnReflectedMax");
  const char* const address = "txtSSPAAddress";
  Expect({{address, "99\r^", "U=_", "31|31"}, {address, "0\rv^", "U=@ U=A", "1|1"}, {address, "1.d,2", "", "12|7"}},
         "updwnSSPAAddress");
}

TEST(FieldEntry, TablePoints) {
  const char* const volts = "txtRFVolts";
  Expect({{volts, "11\r", "R05= 11", "11.00|40"},
          {volts, "2,35\r", "R05= 2.35", "2.35|40"},
          {volts, "20\r", "R05= 15", "15.00|40"},
          {volts, "3d\r", "R05=D", "D|D"},
          {volts, "-3^", "", "3|D"}},
         "lblRFLevel");
  const char* const dac = "txtPiNDAC";
  Expect({{dac, "256\r", "P07=255", "255|7"},
          {dac, "0\r", "P07=0", "0|7"},
          {dac, "007\r", "P07=007", "7|7"},
          {dac, "1d\r", "P07=D", "D|7"},
          {dac, "5.-,5", "", "55|7"}},
         "lblPiNLevel");
  const char* const compensation = "txtRFTCComp";
  Expect({{compensation, "1,25\r", "RT02.25= 1.25", "1.3|25"},
          {compensation, "-1.256\r", "RT02.25=-1.26", "-1.3|25"},
          {compensation, "99\r", "RT02.25= 10", "10.0|25"},
          {compensation, "-99\r", "RT02.25=-10", "-10.0|25"},
          {compensation, "-d\r", "RT02.25=D", "D|25"}},
         "txtRFTCTemp");
  const char* const temperature = "txtTCTemp";
  Expect({{temperature, "-60\r", "H03.-50= .5", "-50|0.5"},
          {temperature, "200\r", "H03.125= .5", "125|0.5"},
          {temperature, "-d.7", "", "-7|0.5"}},
         "txtTCComp");
  Expect({{"txtRFTCTemp", "-9\r", "RT02.-9= 1.5", "-9|1.5"}}, "txtRFTCComp");
  Expect({{"txtTCComp", "d\r", "H03.40=D", "D|40"}}, "txtTCTemp");
  Expect({{"txtTCComp", "1\r", "H+000= 1", "1.0|0"}}, "txtTCTemp", 1);
}

TEST(FieldEntry, WhatIsNotSentIsDropped) {
  struct Case {
    const char* field;
    const char* stored;
    std::vector<const char*> notNumbers;
  };
  for (const Case& c : {Case{"txtRFMin", "10.0", {"1.2.3\r", "3276.8\r", "999999\r"}},
                        {"txtRFMax", "10.0", {",\r"}},
                        {"txtReflectedMax", "10.0", {"..\r"}},
                        {"txtSSPAAddress", "7", {}},
                        {"txtRFVolts", "D", {".\r", "1,2,3\r"}},
                        {"txtPiNDAC", "100", {}},
                        {"txtRFTCComp", "1.5", {"-\r", "1-2\r"}},
                        {"txtRFTCTemp", "25", {"99999\r"}},
                        {"txtTCComp", "0.5", {"--1\r"}},
                        {"txtTCTemp", "40", {"1-\r"}}}) {
    std::vector<const char*> entries = {"\r", "7\x1b", "7\t"};
    entries.insert(entries.end(), c.notNumbers.begin(), c.notNumbers.end());
    for (const char* keys : entries) Expect({{c.field, keys, "", c.stored}});
  }
}

TEST(FieldEntry, PositionsStepWithoutTraffic) {
  Expect({{"txtRFLevelPoint", "^^v", "", "7 of 26|0.00"}, {"txtRFLevelPoint", "1\r\x1b", "", "6 of 26|D"}},
         "txtRFVolts");
  Expect({{"txtRFTempCompPoint", "^^^", "", "3 of 3|2"}}, "updwnRFTempComp");
  Expect({{"txtTempCompPoint", "vvvv", "", "1 of 8|0"}}, "updwnTempComp");
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
  struct Case {
    const char* field;
    const char* spin;
    int value;
    const char* sent;
    const char* shown;
  };
  for (const Case& c : {Case{"txtRFMin", "updwnRFMin", 100, "T1= 10.5", "10.5"},
                        {"txtRFMax", "updwnRFMax", 1000, "T2= 100", "100.0"},
                        {"txtReflectedMax", "updwnReflectedMax", -5, "T3= 0", "0.0"},
                        {"txtSSPAAddress", "updwnSSPAAddress", 30, "U=_", "31"},
                        {"txtRFVolts", "updwnRFLevel", 5, "", "0.00"},
                        {"txtPiNDAC", "updwnPiNLevel", 7, "", "0"},
                        {"txtRFTCTemp", "updwnRFTempComp", 1, "", "0"},
                        {"txtTCComp", "updwnTempComp", 2, "", "0.0"}}) {
    SettingsRig rig;
    auto& spin = rig.Find<forms::UpDown>(c.spin);
    spin.SetValue(c.value);
    rig.Type(c.field, "77");
    QTest::mousePress(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
    EXPECT_EQ(rig.TakeCommands(), "") << "nothing goes out while the arrow is held";
    QTest::mouseRelease(&spin, Qt::LeftButton, {}, QPoint(spin.width() / 2, 3));
    EXPECT_EQ(rig.TakeCommands(), c.sent) << c.spin;
    EXPECT_EQ(rig.Shown(c.field), c.shown) << "what was half typed is gone: " << c.field;
  }
}

}  // namespace
}  // namespace tarnwell::test

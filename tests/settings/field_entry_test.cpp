#include "settings/field_entry.h"

#include "settings/settings_rig.h"

namespace tarnwell::test {
namespace {

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
         {"12.25\r -> T1= 12.2: 12.2|122", "12,35\r -> T1= 12.4: 12.4|124", "12.3\r^ -> T1= 12.3 T1= 12.8: 12.8|128",
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

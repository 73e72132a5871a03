#include "settings/calibration_points.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tarnwell::settings {
namespace {

template <typename... Numbers>
std::string Joined(Numbers... numbers) {
  std::ostringstream text;
  ((text << numbers << ' '), ...);
  return text.str();
}

// Each takes a line into a point that holds 7.5 and 42, or 7 and 42.
std::string RFLevel(const char* line) {
  RFLevelPoint point{7.5, 42};
  TakeRFLevel(line, point);
  return Joined(point.Volts, point.Level);
}
std::string PiN(const char* line) {
  PiNPoint point{7, 42};
  TakePiN(line, point);
  return Joined(point.DAC, int{point.Level});
}
std::string Fixed(const char* line) {
  CompensationPoint point{7.5, 42};
  TakeFixedCompensation(line, 25, point);
  return Joined(point.Comp, point.Temp);
}
template <void (*take)(std::string_view, CompensationPoint&)>
std::string Compensation(const char* line) {
  CompensationPoint point{7.5, 42};
  take(line, point);
  return Joined(point.Comp, point.Temp);
}

TEST(CalibrationPoints, WhatRepliesSay) {
  const auto query = Compensation<TakeCompensation>;
  const auto set = Compensation<TakeSetCompensation>;
  struct Case {
    std::string (*take)(const char*);
    const char* point;
    std::vector<const char*> lines;
  };
  const Case cases[] = {
      {RFLevel, "2.35 12 ", {"R05=P12V2.35", "R05= P 12 V 2.35", "R05=P12.5V2.35x"}},
      {RFLevel, "0.5 255 ", {"R25=P255V.5", "R25=1P255V.5"}},
      {RFLevel, "0 0 ", {"R05=PV"}},
      {RFLevel, "-100 -100 ", {"R05=D", "R05=P12D"}},
      {RFLevel, "7.5 42 ", {"R05=V2P3", "R05=P12", "R05=12V1", "R05=P256V1", "R05=P-1V1", "R05=", "R0"}},
      {PiN, "128 42 ", {"P07=128", "P07= 0128"}},
      {PiN, "4 42 ", {"P07=3.5", "P07=4.5"}},
      {PiN, "-100 42 ", {"P07=D"}},
      {PiN, "7 42 ", {"P07=9x", "P07=32768", "P07=\xB2", "P07=", ""}},
      {query, "1.5 25 ", {".25=1.5", ".25= 1.5", ".25=1.5x"}},
      {query, "-100 0 ", {"=D", ".0=D"}},
      {query, "7.5 42 ", {"=1.5", "25=1", ".25", ""}},
      {set, "-1.25 -10 ", {"-10=-1.25"}},
      {set, "-100 40 ", {"40=D"}},
      {set, "7.5 42 ", {"25", "=1", "2x=1", "99999=1", "=D"}},
      {Fixed, "-2 25 ", {"H+025=-2", "H-025=-2"}},
      {Fixed, "-100 25 ", {"H+025=D", "025=D"}},
      {Fixed, "7.5 25 ", {"H+0251.5", "025=1.5", "H+025"}},
  };
  for (const Case& c : cases) {
    for (const char* line : c.lines) EXPECT_EQ(c.take(line), c.point) << line;
  }
}

}  // namespace
}  // namespace tarnwell::settings

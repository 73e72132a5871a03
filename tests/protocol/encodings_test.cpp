#include "protocol/encodings.h"

#include <gtest/gtest.h>

#include "protocol/vocabulary.h"

namespace tarnwell::protocol {
namespace {

TEST(NumberText, IsWhatTheDeviceTakes) {
  const std::pair<double, const char*> cases[] = {{12.5, " 12.5"},    {0.5, " .5"},           {-3, "-3"},
                                                  {-0.0, " 0"},       {-0.5, "-.5"},          {100, " 100"},
                                                  {0.1 + 0.2, " .3"}, {9.99999999, " 10"},    {1234567.8, " 1234568"},
                                                  {-1e-5, "-.00001"}, {16777216, " 16777216"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(NumberText(value), text) << value;
}

TEST(LeadingNumber, ReadsNoMoreThanADecimalNumber) {
  const std::pair<const char*, double> cases[] = {{" -3.26 dBm", -3.26}, {"-.5", -.5}, {"+7", 7},    {"5.", 5},
                                                  {"1.2.3", 1.2},        {"1e3", 1},   {"12,5", 12}, {"007", 7}};
  for (const auto& [text, value] : cases) EXPECT_EQ(LeadingNumber(text), value) << '"' << text << '"';
  for (const char* none : {"-", ".", "0x1F", "nan", "-inf", "- 5", "--5", "+-5", "P255V1.5", "\t8"}) {
    EXPECT_EQ(LeadingNumber(none), 0) << '"' << none << '"';
  }
  EXPECT_EQ(LeadingNumber(std::string(400, '9')), 0) << "a number that no double holds is none";
}

TEST(Tenths, TieGoesToTheEvenNeighbour) {
  EXPECT_EQ(Tenths(12.5), 125);
  EXPECT_EQ(Tenths(0.25), 2);
  EXPECT_EQ(Tenths(0.75), 8);
  EXPECT_EQ(Tenths(-3.41), -34);
  EXPECT_EQ(Tenths(1e30), std::numeric_limits<int>::max());
}

TEST(FixedText, RoundsAndKeepsItsDecimals) {
  const std::tuple<double, int, LeadingZero, const char*> cases[] = {
      {12.34, 1, LeadingZero::kNone, "12.3"},  {0.5, 1, LeadingZero::kNone, ".5"},
      {-0.04, 1, LeadingZero::kNone, ".0"},    {-0.5, 1, LeadingZero::kNone, "-.5"},
      {0.96, 1, LeadingZero::kNone, "1.0"},    {-0.2, 1, LeadingZero::kAlways, "-0.2"},
      {0, 1, LeadingZero::kAlways, "0.0"},     {-10.005, 2, LeadingZero::kAlways, "-10.01"},
      {1.005, 2, LeadingZero::kAlways, "1.01"}};
  for (const auto& [value, decimals, zero, text] : cases) EXPECT_EQ(FixedText(value, decimals, zero), text) << value;
}

TEST(SetFixedCompensation, NamesThePointByItsTemperatureAndNotByItsHeadInTheReply) {
  const std::tuple<int, double, const char*, const char*> cases[] = {
      {-50, -1.25, "H-050=-1.25", "-050="}, {-25, kDisabledValue, "H-025=D", "-025="}, {0, 1, "H+000= 1", "000="}};
  for (const auto& [degrees, value, text, expected] : cases) {
    const Request request = SetFixedCompensation(degrees, value);
    EXPECT_EQ(request.text + ' ' + request.expected, std::string(text) + ' ' + expected);
  }
}

TEST(WholeNumber, IsTheWholeTextOrNothing) {
  const std::pair<const char*, std::optional<int>> cases[] = {{"128", 128},     {" 007 ", 7},  {"-10", -10}, {"2.5", 2},
                                                              {"32767", 32767}, {"1e2", {}},   {"1,5", {}},  {"", {}},
                                                              {"12 V", {}},     {"32768", {}}, {"nan", {}}};
  for (const auto& [text, value] : cases) EXPECT_EQ(WholeNumber(text), value) << text;
}

}  // namespace
}  // namespace tarnwell::protocol

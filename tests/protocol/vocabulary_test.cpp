#include "protocol/vocabulary.h"

#include <gtest/gtest.h>

#include "protocol/encodings.h"

namespace tarnwell::protocol {
namespace {

struct Composed {
  Request request;
  const char* text;
  const char* expected;
  int maxReply;
};

// The bytes as they go out: a slip here would reach a transmitter.
TEST(Vocabulary, ComposedRequests) {
  const Composed cases[] = {
      {SetStatus('X'), "S=X", "S=", 20},
      {SetConfiguration('2'), "CM=2", "CM=", 15},
      {SetPriority('N'), "CP=N", "CP=", 15},
      {SetPath("A=1"), "PA=1", "PA=", 20},
      {SetPath("B=3"), "PB=3", "PB=", 20},
      {SetGain(1.5), "G= 1.5", "G=", 15},
      {SetGain(-0.5), "G=-.5", "G=", 15},
      {SetTransceiver(true), "TX=1", "TX=", 15},
      {SetThreshold("T1", 0), "T1= 0", "T1=", 15},
      {SetThreshold("T3", -5), "T3=D", "T3=", 15},
      {SetThreshold("T2", 1000), "T2= 100", "T2=", 15},
      {SetShutdown(true), "CS=E", "CS=", 20},
      {SetFan(false), "CF=D", "CF=", 20},
      {SetAuxSense(true), "CX=H", "CX=", 20},
      {SetAlarmStyle(false), "CA=F", "CA=", 20},
      {RFLevelPointQuery(7), "R07?", "R07=", 20},
      {SetRFLevelPoint(25, 11), "R25= 11", "R25=", 20},
      {SetRFLevelPoint(0, kDisabledValue), "R00=D", "R00=", 20},
      {QuickCalibration(4), "Q04", "R04=", 20},
      {PiNPointQuery(40), "P40?", "P40=", 20},
      {SetPiNPoint(7, "007"), "P07=007", "P07=", 20},
      {SelectPiNPoint(7), "P07?", "P", 20},
      {RFCompensationQuery(1), "RT01?", "RT01", 20},
      {SetRFCompensation(3, -50, 0.25), "RT03.-50= .25", "RT03.", 20},
      {SystemCompensationQuery(8), "H08?", "H08", 20},
      {SetSystemCompensation(5, 25, kDisabledValue), "H05.25=D", "H05.", 20},
      {FixedCompensationQuery(-50), "H-050?", "H-050", 15},
      {FixedCompensationQuery(0), "H+000?", "H+000", 15},
      {SetFixedCompensation(0, -1), "H+000=-1", "000=", 15},
      {SetFixedCompensation(-50, kDisabledValue), "H-050=D", "-050=", 15},
  };
  for (const Composed& c : cases) {
    EXPECT_EQ(c.request.text, c.text);
    EXPECT_EQ(c.request.expected, c.expected) << c.text;
    EXPECT_EQ(c.request.maxReply, c.maxReply) << c.text;
    EXPECT_EQ(c.request.tries, 3) << c.text;
  }
}

TEST(Vocabulary, AddressSettingHasOneTry) {
  EXPECT_EQ(SetAddress(3).text, "U=C");
  EXPECT_EQ(SetAddress(31).text, "U=_");
  EXPECT_EQ(SetAddress(0).tries, 1);
}

TEST(Vocabulary, SnapshotHasItsOwnLimits) {
  EXPECT_EQ(kPlatformQuery.ForSnapshot().maxReply, 15);
  EXPECT_EQ(kGainQuery.ForSnapshot().maxReply, 20);
  EXPECT_EQ(kAlarmQuery.ForSnapshot().maxReply, 35);
}

}  // namespace
}  // namespace tarnwell::protocol

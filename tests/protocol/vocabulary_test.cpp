#include "protocol/vocabulary.h"

#include <gtest/gtest.h>

#include "protocol/encodings.h"

namespace tarnwell::protocol {
namespace {

/// Of each request its text, what the reply must hold and how long that may be.
std::string Told(const std::vector<Request>& requests) {
  std::string told;
  for (const Request& request : requests) {
    told += request.text + '|' + request.expected + '|' + std::to_string(request.maxReply) + "; ";
    EXPECT_EQ(request.tries, request.text.starts_with("U=") ? 1 : 3) << "what moves the device away is sent once";
  }
  return told;
}

// The bytes as they go out: a slip here would reach a transmitter.
TEST(Vocabulary, ComposedRequests) {
  EXPECT_EQ(Told({SetStatus('X'), SetGain(1.5), SetGain(-0.5), SetAddress(31), SetAddress(0)}),
            "S=X|S=|20; G= 1.5|G=|15; G=-.5|G=|15; U=_|U=|20; U=@|U=|20; ");
  EXPECT_EQ(Told({SetPath("A=1"), SetThreshold("T1", 0), SetThreshold("T3", -5), SetThreshold("T2", 1000)}),
            "PA=1|PA=|20; T1= 0|T1=|15; T3=D|T3=|15; T2= 100|T2=|15; ");
  EXPECT_EQ(Told({RFLevelPointQuery(7), SetRFLevelPoint(25, 11), SetRFLevelPoint(0, kDisabledValue),
                  QuickCalibration(4), PiNPointQuery(40), SetPiNPoint(7, "007"), SelectPiNPoint(7)}),
            "R07?|R07=|20; R25= 11|R25=|20; R00=D|R00=|20; Q04|R04=|20; P40?|P40=|20; P07=007|P07=|20; P07?|P|20; ");
  EXPECT_EQ(Told({RFCompensationQuery(1), SetRFCompensation(3, -50, 0.25), SystemCompensationQuery(8),
                  SetSystemCompensation(5, 25, kDisabledValue)}),
            "RT01?|RT01|20; RT03.-50= .25|RT03.|20; H08?|H08|20; H05.25=D|H05.|20; ");
  EXPECT_EQ(Told({FixedCompensationQuery(-50), FixedCompensationQuery(0), SetFixedCompensation(0, -1),
                  SetFixedCompensation(-50, kDisabledValue)}),
            "H-050?|H-050|15; H+000?|H+000|15; H+000=-1|000=|15; H-050=D|-050=|15; ");
  EXPECT_EQ(Told({kPlatformQuery.ForSnapshot(), kGainQuery.ForSnapshot(), kAlarmQuery.ForSnapshot()}),
            "CH?|CH=|15; G?|G=|20; A?|A=|35; ");
}

}  // namespace
}  // namespace tarnwell::protocol

#include "link/send_command.h"

#include <gtest/gtest.h>

#include "support/scripted_port.h"

namespace tarnwell::link {
namespace {

using namespace test;

class SendCommandTest : public testing::Test {
 protected:
  SendCommandTest() {
    EXPECT_TRUE(m_timing.InitCounter());
    m_port.SetPortOpen(true);
    m_port.TakeTranscript();
  }

  /// One exchange of "S?"; the seconds that it took are in m_took.
  bool Send(std::uint8_t tries = 3, std::uint8_t maxReply = 15) {
    const double start = m_counter.Seconds();
    const bool valid = m_link.SendCommand("S?", m_reply, tries, maxReply, "S=");
    m_took = m_counter.Seconds() - start;
    EXPECT_EQ(m_shared.CommsLost, !valid);
    EXPECT_EQ(m_yielder.Yields(), 0) << "an exchange lets nothing in";
    return valid;
  }

  SSPA_Public m_shared;
  VirtualCounter m_counter;
  VirtualYielder m_yielder{m_counter};
  IntervalTiming m_timing{m_counter, m_yielder};
  ScriptedPort m_port{m_counter};
  SerialLink m_link{m_shared, m_timing, m_port};
  std::string m_reply;
  double m_took = 0.0;
};

constexpr double kWindow = 0.01625;  // of a frame of 6 bytes at 9600,n,8,1
constexpr double kLook = 0.002;      // what the gate's look at an empty line may take

TEST(TransmitTime, FollowsSpeedAndFormat) {
  EXPECT_NEAR(TransmitTime("9600,n,8,1", 6), 0.01625, 1e-9);
  EXPECT_NEAR(TransmitTime("1200,e,7,2", 6), 0.065, 1e-9);
  EXPECT_NEAR(TransmitTime("2400,o,7,1", 10), 10 * 10 / 2400. + 0.01, 1e-9);
  EXPECT_NEAR(TransmitTime("4800,n,8,1", 6), 10 * 6 / 9600. + 0.01, 1e-9) << "another speed counts as 9600";
}

TEST_F(SendCommandTest, AReplyComesBackAtOnceButNotBeforeTheTransmitWindowEnds) {
  m_port.Expect("S?").Answer("S=OT").After(0.05);
  EXPECT_TRUE(Send());
  EXPECT_EQ(m_reply, "S=OT");
  EXPECT_NEAR(m_took, 0.002 + 0.05, kLook) << "no delay behind a valid reply";

  m_port.Expect("S?").Answer("S=OT").After(0.003);
  EXPECT_TRUE(Send());
  EXPECT_NEAR(m_took, kWindow, kLook);
}

TEST_F(SendCommandTest, Rs485UnderControlHasRtsAroundEachTry) {
  const std::tuple<bool, int, const char*> cases[] = {
      {true, 0, "S? S?"}, {true, 1, "S? S?"}, {false, 0, "S? S?"}, {false, 1, "RTS=1 S? RTS=0 RTS=1 S? RTS=0"}};
  for (const auto& [rs232, control, transcript] : cases) {
    m_shared.PortRS232 = rs232;
    m_shared.RS485Control = control;
    m_port.TakeTranscript();
    for (int i = 0; i < 2; ++i) m_port.Expect("S?");
    EXPECT_FALSE(Send(2));
    EXPECT_EQ(m_port.Transcript(), transcript);
  }
  const std::vector<double> gaps = m_port.Gaps(false);
  EXPECT_NEAR(gaps[0], 0.002, 0.0001);
  EXPECT_NEAR(gaps[0] + gaps[1], kWindow, 0.0001);
}

// A query's copy is never its answer. A setting's may be its confirmation: what comes behind it tells, or one query.
TEST_F(SendCommandTest, TheEchoOfATwoWireLineIsNoAnswer) {
  const std::string asked = Framed("S?"), set = Framed("CM=1"), answer = Framed("S=OT");
  const std::string here = Framed("U=@"), echoed = Framed("U?") + here;
  const struct {
    const char* name;
    bool rs232;
    std::vector<std::string> queries;  ///< what comes with each "S?"
    std::string setting;               ///< what comes with each try of "CM=1"
    double after;                      ///< how long behind both; 0.003 is within the window
    bool queried, confirmed;
    std::optional<std::string> told = {};  ///< what comes with the query that is to tell
    double rest = 0;                       ///< between the queries and the setting
  } cases[] = {
      {"echo and answer", false, {asked + answer}, set + set, 0.003, true, true},
      {"an echo alone", false, {asked}, set, 0.003, false, false, echoed},
      {"two echoes", false, {asked + asked + answer}, set + asked, 0.003, false, false},
      {"half an echo", false, {asked.substr(3) + answer}, set.substr(3), 0.003, false, false},
      {"a late echo alone", false, {asked + answer}, set, 0.05, true, false, echoed},
      {"a late echo and its answer", false, {asked + answer}, set + set, 0.05, true, true},
      {"a late echo, and one was lost", false, {asked + answer, answer, answer}, set, 0.05, true, false, echoed},
      {"a line without an echo by now", false, {asked + answer, answer, answer, answer}, set, 0.05, true, true},
      {"an echo on a line that told nothing", false, {""}, set, 0.003, false, false, echoed},
      {"a confirmation where there is no echo", false, {answer}, set, 0.05, true, true},
      {"a quick confirmation where there is no echo", false, {answer}, set, 0.003, true, true, here},
      {"a line that begins to echo", false, {answer}, set + set, 0.003, true, true},
      {"and the device keeps silent", false, {answer}, set, 0.003, true, false, echoed},
      {"and to the query as well", false, {answer}, set, 0.003, true, false, ""},
      {"a line that no longer echoes", false, {asked + answer}, set, 0.05, true, true, here},
      {"an old answer ahead of each echo", false, {answer + asked}, set, 0.003, true, false, here + Framed("U?")},
      {"a line that begins to echo late", false, {answer}, set, 0.05, true, false, echoed, 5},
      {"a confirmation long after the query", false, {answer}, set, 0.05, true, true, here, 5},
      {"one that isn't long after it", false, {answer}, set, 0.05, true, true, {}, 4.9},
      {"RS-232", true, {asked + answer}, set, 0.003, false, true},
  };
  for (const auto& row : cases) {
    SerialLink line{m_shared, m_timing, m_port};
    m_shared.PortRS232 = row.rs232;
    for (const std::string& came : row.queries) {
      m_port.Expect("S?").AnswerBytes(came).After(row.after);
      EXPECT_EQ(line.SendCommand("S?", m_reply, 1, 20, "S="), row.queried) << row.name;
    }
    m_timing.DelayBlocking(row.rest);
    m_port.Expect("CM=1").AnswerBytes(row.setting).After(row.after);
    if (row.told) m_port.Expect("U?").AnswerBytes(*row.told).After(row.after);
    if (!row.confirmed) m_port.Expect("CM=1").AnswerBytes(row.setting).After(row.after);
    EXPECT_EQ(line.SendCommand("CM=1", m_reply, 2, 15, "CM="), row.confirmed) << row.name;
    EXPECT_TRUE(!row.confirmed || m_reply == "CM=1") << row.name << m_reply;
  }
}

TEST_F(SendCommandTest, OnlyBehindACopyAsQuickAsTheDeviceTheQueryComesAheadOfTheWindowsEnd) {
  m_shared.PortRS232 = false;
  for (const auto& [answered, copied, waited] :
       {std::tuple{0.05, 0.003, 2.0}, {0.003, 0.003, 0.05}, {0.05, 0.05, 0.086}}) {
    m_port.Expect("S?").Answer("S=OT").After(answered);
    EXPECT_TRUE(Send());
    m_timing.DelayBlocking(kWithoutHolds);
    m_port.Expect("S=O").Answer("S=O").After(copied);
    m_port.Expect("U?").Answer("U=@");
    m_port.TakeTranscript();
    EXPECT_TRUE(m_link.SendCommand("S=O", m_reply, 3, 20, "S="));
    EXPECT_NEAR(m_port.SmallestGap(), kWindow + 0.001 + waited + 0.05, 2 * kLook);
  }
  m_port.Expect("S?").Answer("S=OT").After(0.003);
  EXPECT_TRUE(Send());
  const double sent = m_counter.Seconds();
  m_port.Expect("U=A").Answer("U=A").After(0.003);
  EXPECT_FALSE(m_link.SendCommand("U=A", m_reply, 1, 20, "U=")) << "the device isn't at this address any more";
  EXPECT_LT(m_counter.Seconds() - sent, 0.2) << "and no other answer of it is to be awaited";
  for (const auto& [request, expected] : {std::pair{"RT02?", "RT02"}, {"ZA", "A="}}) {
    m_port.Expect(request).AnswerBytes(Framed(request) + Framed(expected)).After(0.05);
    EXPECT_TRUE(m_link.SendCommand(request, m_reply, 1, 35, expected));
    EXPECT_EQ(m_reply, expected) << "no copy of it can be its answer";
  }
}

TEST_F(SendCommandTest, ASilentDeviceIsAskedAsOftenAsToldAndThenLost) {
  for (int i = 0; i < 3; ++i) m_port.Expect("S?");
  EXPECT_FALSE(Send());
  EXPECT_NEAR(m_took, 3 * (kWindow + 2.0 + 0.05), 0.01);
  EXPECT_FALSE(Send(0)) << "no try at all";
  EXPECT_LT(m_took, 0.001);
}

TEST_F(SendCommandTest, CommsLostKeepsTheLastVerdictDuringACall) {
  m_shared.CommsLost = true;
  std::string during;
  const auto note = [&] { during += m_shared.CommsLost ? "lost " : "up "; };
  m_port.Expect("S?").Do(note);
  m_port.Expect("S?").Do(note).Answer("S=OT");
  EXPECT_TRUE(Send()) << "a second try that succeeds";
  for (int i = 0; i < 2; ++i) m_port.Expect("S?").Do(note);
  EXPECT_FALSE(Send(2));
  EXPECT_EQ(during, "lost lost up up ");
}

TEST_F(SendCommandTest, OneBadReplyIsOneFailedTry) {
  constexpr double kAtOnce = 0.022;
  // a wrong checksum, another command's reply, a frame cut in two, no closing brace, too long, noise without end
  const std::pair<std::string, double> cases[] = {{"{@S=OTV}", kAtOnce},
                                                  {Framed("A=0"), kAtOnce},
                                                  {"@S=OTT}", kAtOnce},
                                                  {"{@S=OTT", kWindow + 2.0},
                                                  {"{@S=0123456789ABCDEFGHIJ}", kAtOnce},
                                                  {std::string(500, '~'), kAtOnce}};
  for (const auto& [bytes, seconds] : cases) {
    m_port.Expect("S?").AnswerBytes(bytes);
    m_port.Expect("S?").Answer("S=OT");
    EXPECT_TRUE(Send()) << bytes;
    EXPECT_EQ(m_reply, "S=OT") << bytes;
    EXPECT_NEAR(m_took, seconds + 0.05 + 0.022, 0.004) << bytes;
  }
}

TEST_F(SendCommandTest, TheLargestReplyFitsAndOneByteMoreDoesNot) {
  m_port.Expect("S?").Answer("S=0123456789ABC");
  EXPECT_TRUE(Send(1, 15));
  m_port.Expect("S?").Answer("S=0123456789ABCD");
  EXPECT_FALSE(Send(1, 15));
  EXPECT_EQ(m_port.InBufferCount(), 0) << "the rest of it doesn't stay in the port";
}

TEST_F(SendCommandTest, PiecesAreOneReplyInAWindowThatOpensWhenTheFrameHasGone) {
  m_port.Expect("S?").Answer("S=OT").After(0.3).WithGaps(0.2);
  EXPECT_TRUE(Send(1));
  EXPECT_NEAR(m_took, 0.002 + 0.3 + 7 * 0.2, 0.01);

  // The request goes out 0.002 s into the transmit window; the reply window is the 2 s behind that.
  const double last = kWindow - 0.002 + 2.0 - 7 * 0.2;
  m_port.Expect("S?").Answer("S=OT").After(last - 0.005).WithGaps(0.2);
  EXPECT_TRUE(Send(1));
  m_port.Expect("S?").Answer("S=OT").After(last + 0.005).WithGaps(0.2);
  EXPECT_FALSE(Send(1));
  m_port.DiscardInput();
}

TEST_F(SendCommandTest, WhatLayUnreadIsNotTakenForTheReply) {
  m_port.Expect("S?").Answer("S=ON").After(2.03);  // within the pause between the tries
  m_port.Expect("S?").AnswerBytes(Framed("S=OT") + "{@S=");
  EXPECT_TRUE(Send());
  EXPECT_EQ(m_reply, "S=OT") << "what comes behind the brace waits for the next command";
  m_port.Expect("S?").Answer("S=OF");
  EXPECT_TRUE(Send());
  EXPECT_EQ(m_reply, "S=OF");
}

TEST_F(SendCommandTest, OnlyRs232WithHandshakingWaitsForClearToSend) {
  m_port.SetCTSHolding(false);
  for (const auto& [rs232, handshaking] : {std::pair{true, 2}, {true, 0}, {false, 2}, {false, 0}}) {
    const bool sends = !rs232 || handshaking == 0;
    m_shared.PortRS232 = rs232;
    m_port.SetHandshaking(handshaking);
    if (sends) m_port.Expect("S?").Answer("S=OT");
    EXPECT_EQ(Send(), sends) << rs232 << handshaking;
    EXPECT_NEAR(m_took, sends ? 0.022 : 3 * (0.1 + 0.05), 0.01);
  }
}

TEST_F(SendCommandTest, AStuckOutputAndAPulledAdapterAreFailedTries) {
  m_port.HoldOutput(6);
  m_port.Expect("S?").Answer("S=OT");
  EXPECT_TRUE(Send()) << "the first try empties the buffer, the second goes out";
  EXPECT_NEAR(m_took, 0.05 + 0.022, 0.003);

  m_port.SetDevicePresent(false);
  EXPECT_FALSE(Send());
  EXPECT_NEAR(m_took, 3 * 0.05, 0.01);
}

}  // namespace
}  // namespace tarnwell::link

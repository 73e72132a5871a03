#include <gtest/gtest.h>

#include <algorithm>

#include "link/frame_codec.h"
#include "sim/commands.h"
#include "sim/faults.h"
#include "sim/outbox.h"

namespace tarnwell::test {
namespace {

constexpr const char* kFrame = "{AS=OTU}";

sim::Station MakeStation(const std::vector<std::string>& arguments = {}) {
  return sim::Station(std::get<sim::Options>(sim::ParseOptions(arguments)));
}

TEST(Station, FindsRequestsInWhatComes) {
  const std::string answer = "{AU=A4}";
  const struct {
    const char* name;
    std::vector<std::string> pieces;
    std::string frames;
  } cases[] = {
      {"whole", {"{AU?6}"}, answer},
      {"byte by byte", {"{", "A", "U", "?", "6", "}"}, answer},
      {"two in one", {"{AU?6}{AU?6}"}, answer + answer},
      {"noise ahead", {"\xFF}x{AU?6}"}, answer},
      {"cut off, then whole", {"{AU{AU?6}"}, answer},
      {"never closed", {"{" + std::string(500, 'A'), "{AU?6}"}, answer},
      {"wrong checksum", {"{AU?1}", "{AU?5}"}, ""},
      {"another device", {"{BU?5}"}, "{BU=B6}"},
      {"nobody", {"{CU?4}"}, ""},
      {"address 0, answered from their own", {"{@U?7}"}, "{AU=A4}{BU=B6}"},
      {"the old address answers a new one's setting", {"{AU=C6}", "{AU?6}", "{CU?4}"}, "{AU=C6}{CU=C8}"},
      {"too short", {"{}", "{A}", "{AA}"}, ""},
      {"empty text", {"{A\"}"}, ""},
  };
  for (const auto& row : cases) {
    sim::Station station = MakeStation({"--device", "kind=c60,address=1", "--device", "kind=k40,address=2"});
    for (const std::string& piece : row.pieces) station.Receive(0.0, piece);
    EXPECT_EQ(station.Send(1.0), row.frames) << row.name;
  }
}

TEST(Station, AnswersAfterTheLineAndTheAnswerTime) {
  // 6 + 7 bytes at 1000 bits per second, and 5 ms between them
  sim::Station station = MakeStation({"--rate", "1000"});
  EXPECT_EQ(station.Receive(2.0, "{AU?6}"), (std::vector<std::string>{"2.000 A > U?", "2.000 A < U=A"}));
  ASSERT_TRUE(station.NextDue());
  EXPECT_NEAR(*station.NextDue(), 2.075, 1e-9);
  EXPECT_EQ(station.Send(2.0651), "");
  EXPECT_EQ(station.Send(2.0751), "{");
  EXPECT_EQ(station.Send(2.2), "AU=A4}");
}

TEST(Station, SilenceHearsNothingAndEndsByItself) {
  sim::Station station = MakeStation();
  sim::Execute(station, 1.0, "silence 2.5");
  EXPECT_EQ(station.Receive(3.4, "{AS=XI}"), std::vector<std::string>{"3.400 A > S=X"});
  EXPECT_EQ(station.NextDue(), 3.5);
  station.Receive(3.5, "{AS?0}");
  EXPECT_EQ(station.Send(3.6), "{AS=OTQCR;}");

  sim::Execute(station, 4.0, "silence");
  EXPECT_EQ(station.Receive(4e6, "{AU?6}").size(), 1u);
  sim::Execute(station, 4e6, "talk");
  EXPECT_EQ(station.Receive(4e6, "{AU?6}").size(), 2u);
}

TEST(Station, TheTraceTellsWhatWasSpoilt) {
  sim::Station station = MakeStation({"--fault", "drop=1"});
  EXPECT_EQ(station.Receive(0.0, "{AU?6}").back(), "0.000 A < U=A (lost)");
  sim::Execute(station, 0.0, "fault drop 0");
  sim::Execute(station, 0.0, "fault unclosed 1");
  EXPECT_EQ(station.Receive(0.0, "{AU?6}").back(), "0.000 A < U=A (spoilt)");
  sim::Execute(station, 0.0, "fault all 0");
  EXPECT_EQ(station.Receive(0.0, "{AU?6}").back(), "0.000 A < U=A");
}

TEST(Outbox, ALateReplyHoldsUpTheNext) {
  sim::Outbox outbox(1000);  // 0.01 s a byte
  outbox.Add(1.0, {{0.5, "ab"}, {0.1, "c"}});
  outbox.Add(1.0, {{0.0, "d"}});
  EXPECT_EQ(outbox.Take(1.505), "");
  EXPECT_EQ(outbox.Take(1.6), "ab");
  EXPECT_EQ(outbox.Take(1.6301), "c");
  EXPECT_EQ(outbox.Take(9.0), "d");
}

using Pieces = std::vector<sim::Piece>;

std::string Joined(const Pieces& pieces) {
  std::string bytes;
  for (const sim::Piece& piece : pieces) bytes += piece.bytes;
  return bytes;
}

bool Passes(const Pieces& pieces, std::uint8_t address = 1) {
  return link::CheckReplyFrame(Joined(pieces), address, "S=");
}

/// Each fault by itself, many times: what it does, and that it does nothing else.
TEST(Faults, EachDoesItsOwn) {
  const struct {
    const char* name;
    bool (*holds)(const Pieces&);
  } cases[] = {
      {"drop", [](const Pieces& p) { return p.empty(); }},
      {"address", [](const Pieces& p) { return !Passes(p) && Passes(p, 0); }},
      {"oversized", [](const Pieces& p) { return Passes(p) && Joined(p).size() > 35 + 4; }},
      {"corrupt", [](const Pieces& p) { return Joined(p) != kFrame && Joined(p).size() == 8 && !Passes(p); }},
      {"unclosed", [](const Pieces& p) { return Joined(p) == "{AS=OTU"; }},
      {"noise", [](const Pieces& p) { return Joined(p).size() > 8 && Joined(p).ends_with(kFrame); }},
      {"delay", [](const Pieces& p) { return Joined(p) == kFrame && p[0].delay >= 0.2 && p[0].delay < 3.0; }},
      {"split",
       [](const Pieces& p) {
         const bool apart = std::all_of(p.begin() + 1, p.end(), [](const auto& piece) { return piece.delay > 0.0; });
         return p.size() >= 2 && p.size() <= 4 && Joined(p) == kFrame && apart;
       }},
  };
  for (const auto& row : cases) {
    sim::Faults faults(5);
    ASSERT_TRUE(faults.Set(row.name, 1.0)) << row.name;
    for (int i = 0; i < 200; ++i) EXPECT_TRUE(row.holds(faults.Apply(kFrame))) << row.name << " " << i;
  }
}

TEST(Faults, TheSeedDecides) {
  const auto history = [](std::uint32_t seed) {
    sim::Faults faults(seed);
    faults.Set("all", 0.3);
    std::string all;
    for (int i = 0; i < 100; ++i) {
      for (const sim::Piece& piece : faults.Apply(kFrame)) all += std::to_string(piece.delay) + piece.bytes;
    }
    return all;
  };
  EXPECT_EQ(history(3), history(3));
  EXPECT_NE(history(3), history(4));
}

}  // namespace
}  // namespace tarnwell::test

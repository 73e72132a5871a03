#include <map>

#include "steps.h"
#include "tools/vorel-line/direction.h"
#include "tools/vorel-line/replay.h"

namespace tarnwell::vorel_line {
namespace {

const std::string kAnyBytes("\0{}\xFF", 4);

/// A file of four records, where each ends and what time it bears.
struct FourRecords {
  std::string file = Encoder::Header();
  std::vector<std::size_t> ends;
  std::vector<std::int64_t> times;

  // a long rest, a clock set back, within a record as well, bytes of every kind
  FourRecords() {
    Encoder encoder;
    for (const std::int64_t at : {0ll, 1'000'000ll, 4'000'000'000ll, 3'000'000'000ll}) {
      file += encoder.Encode({Kind::kDevice, kStart + at, at == 0 ? -1500 : 1500, kAnyBytes, 0});
      ends.push_back(file.size());
      times.push_back(kStart + at);
    }
  }
};

/// The times of the records of a file that comes in pieces, and how many bytes were passed over.
std::pair<std::vector<std::int64_t>, std::uint64_t> Read(const std::string& file) {
  Decoder decoder;
  std::vector<std::int64_t> times;
  for (std::size_t at = 0; at < file.size(); at += 7) {
    decoder.Feed(file.substr(at, 7));
    Record record;
    for (Decoder::Result result; (result = decoder.Next(record)) != Decoder::Result::kEnd;) {
      if (result != Decoder::Result::kRecord) {
        decoder.PassOver();
        continue;
      }
      times.push_back(record.at);
      EXPECT_TRUE(record.lasted == (record.at == kStart ? 0 : 1500) && record.bytes == kAnyBytes);
    }
  }
  return {times, decoder.Unreadable()};
}

TEST(Recording, EveryWholeRecordOfACutFileIsReadAndNothingOfItIsDamaged) {
  const auto [file, ends, times] = FourRecords();
  for (std::size_t length = Encoder::Header().size(); length <= file.size(); ++length) {
    const auto whole = std::upper_bound(ends.begin(), ends.end(), length) - ends.begin();
    EXPECT_EQ(Read(file.substr(0, length)), std::pair(std::vector(times.begin(), times.begin() + whole), 0ul))
        << length;
  }
}

TEST(Recording, OfADamagedFileAllUpToItAndFromTheNextTimeOfDayIsRead) {
  const auto [file, ends, times] = FourRecords();
  // A time of day stands ahead of the first, the third and the fourth.
  const std::vector<std::size_t> clocks{Encoder::Header().size(), ends[1], ends[2], file.size()};
  for (std::size_t at = clocks[0]; at < file.size(); ++at) {
    std::string damaged = file;
    damaged[at] = static_cast<char>(damaged[at] ^ 4);
    const std::size_t goesOn = *std::upper_bound(clocks.begin(), clocks.end(), at);
    std::vector<std::int64_t> expected;
    for (std::size_t i = 0; i < ends.size(); ++i) {
      if (ends[i] <= at || ends[i] > goesOn) expected.push_back(times[i]);
    }
    EXPECT_EQ(Read(damaged).first, expected) << at;
  }
}

TEST(Direction, IsHeldForTheFramesBitsAndTheMarginAndForPiecesBehindOneAnother) {
  // ten bits a byte at 9600: 10.4 ms for ten bytes
  Direction direction;
  direction.Raise(1'000'000);
  EXPECT_TRUE(direction.IsRaised() && direction.Due() == 1'002'000);
  EXPECT_TRUE(!direction.MaySend(1'001'999) && direction.MaySend(1'002'000));
  direction.Sent(1'002'000, "9600,n,8,1", 10);
  EXPECT_EQ(direction.Due(), 1'000'000 + 10'000 + 10'416);
  direction.Sent(1'005'000, "9600,n,8,1", 10);
  EXPECT_EQ(direction.Due(), 1'000'000 + 10'000 + 2 * 10'416) << "behind what is still on the line";
  EXPECT_TRUE(!direction.ReleaseDue(1'030'831) && direction.ReleaseDue(1'030'832));
  direction.Release();
  direction.Raise(2'000'000);
  direction.Sent(2'040'000, "9600,n,8,1", 10);
  EXPECT_EQ(direction.Due(), 2'040'000 + 8'000 + 10'416) << "sent late, and whole all the same";
}

TEST(Turns, TellWhatTheConsoleTookACopyFor) {
  const std::map<What, const char*> names{
      {What::kEcho, "echo "}, {What::kAnswer, "answer "}, {What::kSilence, "silence "}, {What::kDropped, "dropped "}};
  const struct {
    const char* steps;
    const char* told;  ///< with the request, a try's number where it isn't the first
  } cases[] = {
      {"1>G? 1.05<G? 1.1<G=-3.5 2>G=-3.5 2.05<G=-3.5 2.1<G=-3.5", "echo G? answer G? echo G=-3.5 answer G=-3.5 "},
      {"1>G? 1.005<G? 1.1<G=-3.5 3-recording_started 4>G=-3.5 4.1<G=-3.5", "echo G? answer G? answer G=-3.5 "},
      {"1>G=-3.5 1.005<G=-3.5 3.1>U? 3.2<U=A 4>G=-3.5 4.1<G=-3.5", "answer U? answer G=-3.5 answer G=-3.5 "},
      {"1>G=-3.5 1.005<G=-3.5 3.1>U? 3.105<U? 3.2<U=A 3.3>G=-3.5 3.305<G=-3.5 6>G? 6.005<G? 6.1<G=-3.5",
       "echo U? answer U? echo G=-3.5 silence G=-3.5 echo G=-3.5 try 2 silence G=-3.5 try 2 echo G? answer G? "},
      {"1>G=-3.5 1.005<G=-3.5 1.1>U? 3.2>G=-3.5 3.205<G=-3.5 3.3>G=-3.5 5.4>U=B 5.405<U=B 5.5>VR? 5.6<VR=1",
       "silence U? echo G=-3.5 silence G=-3.5 echo G=-3.5 try 2 dropped G=-3.5 try 2 silence G=-3.5 try 3 answer U=B "
       "answer VR? "},
      {"1>VR? 1.1<VR=1 9>G=-3.5 9.1<G=-3.5 9.2>U? 9.205<U? 9.3<U=A 9.4>G=-3.5 9.405<G=-3.5 9.5<G=-3.5",
       "answer VR? echo U? answer U? echo G=-3.5 dropped G=-3.5 echo G=-3.5 try 2 answer G=-3.5 try 2 "},
      {"1>G=-3.5 1.005<G=-3.5 1.1>G=-3.5 1.2<G=-3.5", "answer G=-3.5 answer G=-3.5 "},
      {"1>G=-3.5 1.005<G=-3.5", "echo G=-3.5 dropped G=-3.5 "},
      {"1>G=-3.5 1.005<G=-3.5 9>VR? 9.005<VR=1 10>G=-3.5 10.005<G=-3.5 19-recording_ended",
       "answer G=-3.5 answer VR? answer G=-3.5 "},
      {"1>G=-3.5 1.005<G=-3.5 2-device_gone 9>U=B 9.005<U=B 14>VR? 14.1<VR=1",
       "echo G=-3.5 silence G=-3.5 echo U=B silence U=B answer VR? "},
  };
  for (const auto& [steps, expected] : cases) {
    std::string told;
    Turns turns([&](const Turn& turn) {
      const auto name = names.find(turn.what);
      if (name == names.end()) return;
      told += name->second + turn.request + (turn.attempt > 1 ? " try " + std::to_string(turn.attempt) : "") + " ";
    });
    Feed(turns, StepsOf(steps));
    EXPECT_EQ(told, expected);
  }
}

TEST(Turns, WhatStoodWhereNothingCouldBeReadIsNoSilence) {
  const std::string anew = "recording begun anew: the file was ";
  for (const std::string& gap : {std::string("9 bytes unreadable"), std::string("records lost: 3 (disk full)"),
                                 anew + "shortened", anew + "renamed", std::string("device back")}) {
    bool silence = false;
    Turns turns([&](const Turn& turn) { silence |= turn.what == What::kSilence; });
    Feed(turns, {{1, '>', Framed("VR?", 1)}, {600, '-', gap}, {601, '<', Framed("VR=1", 1)}});
    EXPECT_EQ(silence, gap == "device back" || gap == anew + "renamed") << gap;
  }
}

TEST(Script, PlaysWhatCameWhenItCameAndTellsWhatWasNotRecorded) {
  Script script;
  const std::string ask = Framed("VR?", 1), set = Framed("S=X", 5), level = Framed("VR=1", 1);
  const std::string where = Framed("U?", 5), here = Framed("U=E", 5);
  Feed(script, StepsOf("-3>" + Framed("CT?", 2) + " 0>VR? .1<VR=1 1>" + set + " 4>VR? 4.2<{A 4.5<x} 5>VR? 7.2<VR=1 8>" +
                       set + " 9>" + set + " 9.005<" + set + " 11.1>" + where + " 11.2<" + here));
  const auto played = [&](const std::string& frame) {
    const auto reply = script.Next(frame);
    std::string text = reply ? reply->taken + "|" : "not recorded";
    if (!reply) return text;
    for (const Script::Piece& piece : reply->pieces) text += std::to_string(piece.after / 1000) + piece.bytes + " ";
    return text + (reply->last ? "again" : "");
  };
  EXPECT_EQ(script.Addresses(), (std::vector<int>{1, 5})) << "and not 2, which was asked in vain";
  EXPECT_EQ(played(ask), level + "|100" + level + " ");
  EXPECT_EQ(played(ask), "{Ax}|200{A 500x} ") << "in its pieces";
  EXPECT_EQ(played(ask), "|2200" + level + " ") << "too late then, and too late now";
  EXPECT_EQ(played(ask), "|2200" + level + " again") << "one more than the recording has";
  EXPECT_EQ(played(set), "|") << "silence is recorded too";
  EXPECT_EQ(played(set), set + "|5" + set + " ") << "confirmed by its copy, as the query behind it told";
  EXPECT_EQ(played(where), here + "|100" + here + " ");
  EXPECT_EQ(played(set), set + "|5" + set + " again");
  EXPECT_EQ(played(Framed("VT?", 1)), "not recorded");
}

}  // namespace
}  // namespace tarnwell::vorel_line

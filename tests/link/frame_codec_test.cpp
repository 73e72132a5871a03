#include "link/frame_codec.h"

#include <gtest/gtest.h>

namespace tarnwell::link {
namespace {

// Recorded from the wire, or reckoned by hand; never by the code under test.
const struct {
  std::uint8_t address;
  std::string text;
  std::string bytes;
} kFrames[] = {
    {1, "S?", "\x7B\x41\x53\x3F\x30\x7D"},
    {31, "A?", "\x7B\x5F\x41\x3F\x3C\x7D"},
    {1, "S=OT", "\x7B\x41\x53\x3D\x4F\x54\x55\x7D"},
    {3, "PA=1", "\x7B\x43\x50\x41\x3D\x31\x23\x7D"},
    {0, "", "{@!}"},
};

TEST(FrameCodec, BuildsAndReadsTheWorkedFrames) {
  for (const auto& frame : kFrames) {
    EXPECT_EQ(BuildRequestFrame(frame.text, frame.address), frame.bytes);
    EXPECT_TRUE(CheckReplyFrame(frame.bytes, frame.address, frame.text)) << frame.bytes;
    EXPECT_EQ(ReplyPayload(frame.bytes), frame.text);
  }
}

TEST(FrameCodec, TheChecksumFoldsTheLowEightBits) {
  EXPECT_EQ(ChecksumCharacter("@CT?"), '6');  // 0x116
  EXPECT_EQ(ChecksumCharacter("\xFF"), '\x5C');
  EXPECT_EQ(ChecksumCharacter("\xFF\xFF\xFF\xFF\xFF"), 'X');  // 0x4FB
}

TEST(FrameCodec, ChecksRepliesByTheirBytes) {
  const std::string whole = "{AS=OTU}";
  // anywhere in the frame, also with the address byte, the checksum and the brace
  for (const char* expected : {"S=", "=O", "AS=", "TU}"}) EXPECT_TRUE(CheckReplyFrame(whole, 1, expected)) << expected;
  for (const char* expected : {"A=", "s="}) EXPECT_FALSE(CheckReplyFrame(whole, 1, expected)) << expected;
  EXPECT_TRUE(CheckReplyFrame(whole, 0, "S=")) << "any address answers to 0";
  EXPECT_FALSE(CheckReplyFrame(whole, 2, "S="));
  // another's address with its checksum right, a wrong checksum, no brace, another byte for one, noise, cut, two in one
  for (const char* received :
       {"{BS=OTT}", "{AS=OTV}", "AS=OTU}", "{AS=OTU)", "~{AS=OTU}", "{AS=}", "{AS=OTU{AS=OTU}"}) {
    EXPECT_FALSE(CheckReplyFrame(received, 1, "S=")) << received;
  }
  for (const char* received : {"{@}", "}", ""}) EXPECT_FALSE(CheckReplyFrame(received, 0, "")) << received;
  // no byte is special in the text
  for (const std::string& received : {std::string("{@S=\0", 5) + "3}", std::string("{@S=\xFF,}")}) {
    EXPECT_TRUE(CheckReplyFrame(received, 0, "S=")) << received;
  }
}

}  // namespace
}  // namespace tarnwell::link

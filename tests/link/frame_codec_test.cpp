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
    {0, "CT?", "\x7B\x40\x43\x54\x3F\x36\x7D"},
    {5, "S=O", "\x7B\x45\x53\x3D\x4F\x44\x7D"},
    {31, "A?", "\x7B\x5F\x41\x3F\x3C\x7D"},
    {1, "S=OT", "\x7B\x41\x53\x3D\x4F\x54\x55\x7D"},
    {3, "PA=1", "\x7B\x43\x50\x41\x3D\x31\x23\x7D"},
    {0, "S?", "{@S?1}"},
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
  EXPECT_EQ(ChecksumCharacter("\x16"), '6');  // 0x16
  EXPECT_EQ(ChecksumCharacter("\xFF"), '\x5C');
  EXPECT_EQ(ChecksumCharacter("\xFF\xFF\xFF\xFF\xFF"), 'X');  // 0x4FB
  for (int sum = 0; sum < 256; ++sum) {
    const int checksum = ChecksumCharacter(std::string(1, static_cast<char>(sum)));
    EXPECT_TRUE(checksum >= 0x20 && checksum <= 0x5F) << sum;
  }
}

TEST(FrameCodec, ChecksRepliesByTheirBytes) {
  const struct {
    const char* what;
    std::string received;
    std::uint8_t address;
    std::string expected;
    bool valid;
  } cases[] = {
      {"as asked", "{AS=OTU}", 1, "S=", true},
      {"any address to 0", "{AS=OTU}", 0, "S=", true},
      {"another address", "{AS=OTU}", 2, "S=", false},
      {"the address of another frame, checksum right", "{BS=OTT}", 1, "S=", false},
      {"a wrong checksum", "{AS=OTV}", 1, "S=", false},
      {"another reply", "{AS=OTU}", 1, "A=", false},
      {"the expected text in the middle", "{AS=OTU}", 1, "=O", true},
      {"the expected text with the address byte", "{AS=OTU}", 1, "AS=", true},
      {"the expected text with the checksum and the brace", "{AS=OTU}", 1, "TU}", true},
      {"exact as to case", "{AS=OTU}", 1, "s=", false},
      {"no opening brace", "AS=OTU}", 1, "S=", false},
      {"another byte for the closing brace", "{AS=OTU)", 1, "S=", false},
      {"noise in front", "~{AS=OTU}", 1, "S=", false},
      {"cut short", "{AS=}", 1, "S=", false},
      {"two frames in one", "{AS=OTU{AS=OTU}", 1, "S=", false},
      {"the shortest", "{@!}", 0, "", true},
      {"three bytes", "{@}", 0, "", false},
      {"a brace alone", "}", 0, "", false},
      {"a zero byte in the text", std::string("{@S=\0", 5) + "3}", 0, "S=", true},
      {"bytes above 127, checksum right", "{@S=\xFF,}", 0, "S=", true},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(CheckReplyFrame(row.received, row.address, row.expected), row.valid) << row.what;
  }
}

}  // namespace
}  // namespace tarnwell::link

// SPDX-License-Identifier: MIT
// Reading a reply with a one-byte command from the port: what lands in the caller's buffer.
#include "reply.h"

namespace {

using test::kName;
using test::kUntouched;
using test::LegacyReply;
using ::testing::Each;

TEST_F(LegacyReply, LandsByteByByteWithTheTerminatorInTheBuffersLastCharacter) {
  Send("FF 55 07 00 08 5A 6F C3 AB 00 BA");
  EXPECT_EQ(Extract(0x08, 9), 1);
  EXPECT_EQ(Text(10), "5A 6F C3 AB 0 7777 7777 7777 0 7777");
}

TEST_F(LegacyReply, IsReadInTheTimeItNeedsOnTheLine) {
  Send(kName);
  world_.Record({"ReadFile", "Sleep"});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x08), 1); }), 1389);  // 8 bytes at 57600 baud
  EXPECT_THAT(world_.DrainRecord(), Each("ReadFile(port1, 1)"));
}

TEST_F(LegacyReply, StartsAtTheOffsetAndRunsOnIntoTheChecksumAndZeros) {
  Send("FF 55 07 00 08 41 42 43 44 00 E7");
  EXPECT_EQ(Extract(0x08, 20, 2), 1);
  EXPECT_EQ(Text(6), "43 44 0 E7 0 7777");
}

TEST_F(LegacyReply, ThatFillsTheCapacityIsCutAndEndsWithATerminator) {
  Send("FF 55 08 00 08 41 42 43 44 45 46 5B");
  EXPECT_EQ(Extract(0x08, 4), 1);
  EXPECT_EQ(Text(5), "41 42 43 0 7777");
}

TEST_F(LegacyReply, AsLongAsTheCapacityLosesItsLastCharacter) {
  Send(kName);
  EXPECT_EQ(Extract(0x08, 2), 1);
  EXPECT_EQ(Text(3), "41 0 7777");
  Send(kName);
  EXPECT_EQ(Extract(0x08, 3), 1);
  EXPECT_EQ(Text(4), "41 42 0 7777");
}

TEST_F(LegacyReply, IntoACapacityOfOneIsATerminator) {
  Send(kName);
  EXPECT_EQ(Extract(0x08, 1), 1);
  EXPECT_EQ(Text(2), "0 7777");
}

TEST_F(LegacyReply, WithoutRoomIsTakenAndTouchesNothing) {
  Send(kName);
  EXPECT_EQ(Extract(0x08, 0), 1);
  EXPECT_EQ(Text(2), "7777 7777");
  Send(kName);
  EXPECT_EQ(legacy_.extractdatafrompacket(0x08, nullptr, 20, 0, 0), 1);
}

TEST_F(LegacyReply, WithoutPayloadIsATerminatorAlone) {
  Send("FF 55 02 00 08 F6");
  EXPECT_EQ(Extract(0x08, 3), 1);
  EXPECT_EQ(Text(4), "7777 7777 0 7777");
}

// The lingo alone: what lies at the command's place is the checksum.
TEST_F(LegacyReply, ShorterThanItsHeaderCopiesNothing) {
  Send("FF 55 01 08 F7");
  EXPECT_EQ(Extract(0xF7, 3), 1);
  EXPECT_EQ(Text(4), "7777 7777 0 7777");
}

// The command's place holds the low length byte.
TEST_F(LegacyReply, InTheLargeFormCopiesNothing) {
  Send("FF 55 00 00 05 04 00 1D 41 42 57");
  EXPECT_EQ(Extract(0x05, 3), 1);
  EXPECT_EQ(Text(4), "7777 7777 0 7777");
}

TEST_F(LegacyReply, OfTheLongestKindStaysInsideBothBuffers) {
  test::Bytes frame = test::Hex("FF 55 FC 00 08");
  for (int i = 1; i <= 250; ++i) frame.push_back(static_cast<std::uint8_t>(i));
  frame.push_back(0x6D);
  ipod_.Send(frame);
  EXPECT_EQ(Extract(0x08, 255), 1);
  EXPECT_EQ(text_[0], 1);
  EXPECT_EQ(text_[249], 250);
  EXPECT_EQ(text_[250], kUntouched);
  EXPECT_EQ(text_[254], 0);
  EXPECT_EQ(text_[255], kUntouched);
}

TEST_F(LegacyReply, FromTheFarthestOffsetReadsZeros) {
  Send("FF 55 07 00 08 41 42 43 44 00 E7");
  EXPECT_EQ(Extract(0x08, 20, 255), 1);
  EXPECT_EQ(Text(6), "0 0 0 0 0 7777");
}

TEST_F(LegacyReply, IgnoresTheLastArgument) {
  Send(kName);
  EXPECT_EQ(legacy_.extractdatafrompacket(0x08, text_.data(), 20, 0, 12345), 1);
  EXPECT_EQ(Text(3), "41 42 7777");
}

}  // namespace

// SPDX-License-Identifier: MIT
// Reading a reply with a two-byte command from the port as text: what lands in the buffer, which
// reply is taken, and what fails.
#include "extended_reply.h"

#include <ostream>

namespace {

using test::kAcceptingAck;
using test::kRefusingAck;
using test::kStatus;
using test::kUntouched;
using test::LegacyExtendedReply;
using ::testing::Each;
using ::testing::IsEmpty;

// ---- What lands in the buffer

// The length byte less 2 is one more than the payload: the checksum lands behind it.
TEST_F(LegacyExtendedReply, LandsWithItsChecksumAndTheTerminatorInTheBuffersLastCharacter) {
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 8), 1);
  EXPECT_EQ(Text(9), "41 42 43 44 CE 7777 7777 0 7777");
}

TEST_F(LegacyExtendedReply, StartsAtTheOffset) {
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 8, 2), 1);
  EXPECT_EQ(Text(9), "43 44 CE 0 0 7777 7777 0 7777");
}

TEST_F(LegacyExtendedReply, ThatFillsTheCapacityIsCutAndEndsWithATerminator) {
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 5), 1);
  EXPECT_EQ(Text(6), "41 42 43 44 0 7777");
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 2), 1);
  EXPECT_EQ(Text(2), "41 0");
}

TEST_F(LegacyExtendedReply, IntoACapacityOfOneIsATerminator) {
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 1), 1);
  EXPECT_EQ(Text(2), "0 7777");
}

TEST_F(LegacyExtendedReply, WithoutRoomIsTakenAndTouchesNothing) {
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 0), 1);
  EXPECT_EQ(Text(2), "7777 7777");
  Send(kStatus);
  EXPECT_EQ(legacy_.ExtractDataFromPacketExtended(0x1D, nullptr, 20, 0, 0), 1);
}

TEST_F(LegacyExtendedReply, WithoutPayloadLandsAsItsChecksum) {
  Send("FF 55 03 04 00 1D DC");
  EXPECT_EQ(Extract(0x1D, 4), 1);
  EXPECT_EQ(Text(4), "DC 7777 7777 0");
}

TEST_F(LegacyExtendedReply, InTheLargeFormCopiesNothing) {
  // The command's two places hold the low length byte and the lingo: 5 x 10 + 4.
  Send("FF 55 00 00 05 04 00 1D 41 42 57");
  EXPECT_EQ(Extract(0x36, 3), 1);
  EXPECT_EQ(Text(4), "7777 7777 0 7777");
}

TEST_F(LegacyExtendedReply, OfTheLongestKindStaysInsideBothBuffers) {
  test::Bytes frame = test::Hex("FF 55 FC 04 00 1D");
  for (int i = 1; i <= 249; ++i) frame.push_back(static_cast<std::uint8_t>(i));
  frame.push_back(0x4E);
  ipod_.Send(frame);
  EXPECT_EQ(Extract(0x1D, 255), 1);
  EXPECT_EQ(text_[0], 1);
  EXPECT_EQ(text_[248], 249);
  EXPECT_EQ(text_[249], 0x4E);
  EXPECT_EQ(text_[250], kUntouched);
  EXPECT_EQ(text_[254], 0);
  EXPECT_EQ(text_[255], kUntouched);
}

TEST_F(LegacyExtendedReply, FromTheFarthestOffsetReadsZeros) {
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D, 20, 255), 1);
  EXPECT_EQ(Text(6), "0 0 0 0 0 7777");
}

TEST_F(LegacyExtendedReply, IgnoresTheLastArgument) {
  Send(kStatus);
  EXPECT_EQ(legacy_.ExtractDataFromPacketExtended(0x1D, text_.data(), 4, 0, 12345), 1);
  EXPECT_EQ(Text(4), "41 42 43 0");
}

// ---- Which reply is taken

struct CommandRow {
  const char* name;
  unsigned short expected;
  const char* frame;
  int taken;
};

std::ostream& operator<<(std::ostream& out, const CommandRow& row) { return out << row.name; }

class WeighedCommand : public LegacyExtendedReply,
                       public ::testing::WithParamInterface<CommandRow> {};

// The high byte counts ten, in 8 bits.
INSTANTIATE_TEST_SUITE_P(
    Of, WeighedCommand,
    ::testing::Values(CommandRow{"TheReply", 0x1D, kStatus, 1},
                      CommandRow{"TenAndTheRest", 0x1D, "FF 55 07 04 01 13 41 42 43 44 D7", 1},
                      CommandRow{"TheSameLowByte", 0x1D, "FF 55 07 04 01 1D 41 42 43 44 CD", 0},
                      // 26 x 10 + 0x19 = 0x11D
                      CommandRow{"Past8Bits", 0x1D, "FF 55 05 04 1A 19 41 42 41", 1},
                      CommandRow{"AnotherLingo", 0x1D, "FF 55 05 09 00 1D 41 42 52", 1},
                      CommandRow{"AnotherCommand", 0x1C, kStatus, 0},
                      // A number above 255 is never met, not even by its own reply.
                      CommandRow{"ALargeNumber", 0x11D, "FF 55 07 04 01 1D 41 42 43 44 CD", 0}),
    test::RowName());

TEST_P(WeighedCommand, DecidesWhetherAReplyIsTaken) {
  Send(GetParam().frame);
  EXPECT_EQ(Extract(GetParam().expected), GetParam().taken);
  if (GetParam().taken == 0) {
    EXPECT_THAT(text_, Each(kUntouched));
  } else {
    EXPECT_EQ(Text(2), "41 42");
  }
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(LegacyExtendedReply, ThatDoesNotMatchIsConsumedAndNoOtherAwaited) {
  Send("FF 55 07 04 01 1D 41 42 43 44 CD");
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(Extract(0x1D), 1);
  EXPECT_EQ(Text(4), "41 42 43 44");
}

TEST_F(LegacyExtendedReply, IsAwaitedOnceMoreAfterAnAcceptingAck) {
  Send(kAcceptingAck);
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 1);
  EXPECT_EQ(Text(4), "41 42 43 44");
}

TEST_F(LegacyExtendedReply, IsNotAwaitedAfterASecondAck) {
  Send(kAcceptingAck);
  Send(kAcceptingAck);
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(Extract(0x1D), 1);
}

TEST_F(LegacyExtendedReply, IsNotAwaitedAfterARefusingAck) {
  Send(kRefusingAck);
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(Extract(0x1D), 1);
}

TEST_F(LegacyExtendedReply, ThatIsAnAckIsTakenWhereItIsExpected) {
  Send(kAcceptingAck);
  EXPECT_EQ(Extract(0x01), 1);
  EXPECT_EQ(Text(4), "0 0 1C D9");
  Send(kRefusingAck);
  EXPECT_EQ(Extract(0x01), 1);
  EXPECT_EQ(Text(4), "4 0 1C D5");
}

TEST_F(LegacyExtendedReply, DoesNotAnswerRequests) {
  Send("FF 55 03 00 27 09 CD");
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

// ---- Failures

TEST_F(LegacyExtendedReply, ThatDoesNotComeIsToldAndPurged) {
  world_.Record({"PurgeComm"});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x1D), 0); }), test::kEmptyReadsUs);
  ExpectReadErrorAndPurge();
  EXPECT_THAT(text_, Each(kUntouched));
}

TEST_F(LegacyExtendedReply, OfFewerThanSevenBytesIsToldAndPurged) {
  world_.Record({"PurgeComm"});
  Send("FF 55 02 00 02 FC");
  EXPECT_EQ(Extract(0x02), 0);
  ExpectReadErrorAndPurge();
  Send("FF 55 07 04 00 1D");
  EXPECT_EQ(Extract(0x1D), 0);
  ExpectReadErrorAndPurge();
  EXPECT_THAT(text_, Each(kUntouched));
}

TEST_F(LegacyExtendedReply, OfFewerThanSevenBytesTakesWhatFollowsWithIt) {
  Send("FF 55 02 00 02 FC");
  Send(kStatus);
  world_.Advance(100 * test::kMillisecond);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x1D), 0); }), test::kEmptyReadsUs);
}

TEST_F(LegacyExtendedReply, WithABadChecksumFailsSilentlyAndPurgesNothing) {
  world_.Record({"PurgeComm"});
  Send("FF 55 07 04 00 1D 41 42 43 44 00");
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_THAT(text_, Each(kUntouched));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_EQ(Extract(0x1D), 1);
}

TEST_F(LegacyExtendedReply, ThatDoesNotComeAfterAnAckIsToldAndPurged) {
  world_.Record({"PurgeComm"});
  Send(kAcceptingAck);
  EXPECT_EQ(Extract(0x1D), 0);
  ExpectReadErrorAndPurge();
}

TEST_F(LegacyExtendedReply, WithABadChecksumAfterAnAckFailsSilently) {
  world_.Record({"PurgeComm"});
  Send(kAcceptingAck);
  Send("FF 55 07 04 00 1D 41 42 43 44 00");
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(LegacyExtendedReply, AckWithABadChecksumIsTheEnd) {
  Send("FF 55 06 04 00 01 00 00 1C 00");
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(Extract(0x1D), 1);
}

}  // namespace

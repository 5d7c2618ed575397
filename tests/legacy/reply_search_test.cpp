// SPDX-License-Identifier: MIT
// Reading a reply with a one-byte command from the port: what is passed over on the way to it, and
// which requests of the iPod are answered meanwhile.
#include "reply.h"

namespace {

using test::kName;
using test::kSecond;
using test::kUntouched;
using test::LegacyReply;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ---- What is passed over

TEST_F(LegacyReply, IsTakenWhateverItsLingo) {
  Send("FF 55 05 33 08 41 42 00 3D");
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 0");
}

struct PassedOverRow {
  const char* name;
  const char* frame;
};

class PassedOver : public LegacyReply, public ::testing::WithParamInterface<PassedOverRow> {};

INSTANTIATE_TEST_SUITE_P(
    Is, PassedOver,
    ::testing::Values(PassedOverRow{"GeneralAck", "FF 55 04 00 02 00 07 F3"},
                      PassedOverRow{"RefusingGeneralAck", "FF 55 04 00 02 04 07 EF"},
                      PassedOverRow{"SportsAck", "FF 55 04 09 00 00 01 F2"},
                      PassedOverRow{"OtherCommand", "FF 55 05 00 0A 01 02 03 EB"},
                      PassedOverRow{"BadChecksum", "FF 55 04 00 08 58 58 00"},
                      PassedOverRow{"LargeFrame", "FF 55 00 00 05 04 00 1D 41 42 57"},
                      PassedOverRow{"Noise", "00 08 55 41 08"}),
    test::RowName());

TEST_P(PassedOver, OnTheWayToTheReply) {
  Send(GetParam().frame);
  Send(kName);
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 7777");
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_P(PassedOver, AsOftenAsItComes) {
  for (int i = 0; i < 10; ++i) Send(GetParam().frame);
  Send(kName);
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 7777");
}

TEST_F(LegacyReply, ThatIsAnAckIsTakenWhereItIsExpected) {
  Send("FF 55 04 00 02 04 07 EF");
  EXPECT_EQ(Extract(0x02), 1);
  EXPECT_EQ(Text(3), "4 7 7777");
}

TEST_F(LegacyReply, ThatIsASportsAckIsTakenWhereItIsExpected) {
  Send("FF 55 04 09 00 00 01 F2");
  EXPECT_EQ(Extract(0x00), 1);
  EXPECT_EQ(Text(3), "0 1 7777");
}

TEST_F(LegacyReply, ThatDoesNotComeFailsAfterFiveEmptyReads) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x08), 0); }), test::kEmptyReadsUs);
  EXPECT_THAT(text_, Each(kUntouched));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(LegacyReply, ThatDoesNotComeAfterOtherFramesFailsToo) {
  Send("FF 55 04 00 02 00 07 F3");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x08), 0); }), test::kEmptyReadsUs + 1389);
  EXPECT_THAT(text_, Each(kUntouched));
}

TEST_F(LegacyReply, IsAwaitedForAsLongAsOtherFramesKeepComing) {
  const std::int64_t start_us = world_.now_us();
  for (int half_seconds = 1; half_seconds <= 120; ++half_seconds) {
    ipod_.SendAt(start_us + half_seconds * kSecond / 2,
                 test::Hex("FF 55 08 04 00 27 04 00 00 01 00 C8"));
  }
  EXPECT_GT(Elapsed([&] { EXPECT_EQ(Extract(0x08), 0); }), 60 * kSecond + 3 * kSecond);
}

// Its checksum fails, and the next read brings nothing.
TEST_F(LegacyReply, CutShortIsPassedOver) {
  Send("FF 55 04 00 08 41");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x08), 0); }), 6 * kSecond + 1042);
  EXPECT_THAT(text_, Each(kUntouched));
}

TEST_F(LegacyReply, CutInItsHeaderIsPassedOver) {
  for (const char* beginning : {"FF", "FF 55", "FF 55 04", "FF 55 04 00", "FF 55 00 00"}) {
    Send(beginning);
    EXPECT_EQ(Extract(0x08), 0) << beginning;
  }
  EXPECT_THAT(text_, Each(kUntouched));
}

// Its command would be the byte behind what came.
TEST_F(LegacyReply, CutBeforeItsCommandIsNoCommand0) {
  for (const char* beginning : {"FF", "FF 55", "FF 55 00"}) {
    Send(beginning);
    EXPECT_EQ(Extract(0x00), 0) << beginning;
  }
  EXPECT_THAT(text_, Each(kUntouched));
}

// Longer than the frame buffer: its checksum stays in the port.
TEST_F(LegacyReply, LongerThanTheFrameBufferIsPassedOver) {
  test::Bytes frame = test::Hex("FF 55 FF 00 08");
  for (int i = 1; i <= 253; ++i) frame.push_back(static_cast<std::uint8_t>(i));
  frame.push_back(0x76);
  ipod_.Send(frame);
  Send(kName);
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 7777");
}

TEST_F(LegacyReply, OnAClosedPortFailsAtOnce) {
  legacy_.closeport();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x08), 0); }), 0);
}

// ---- Requests of the iPod

struct RequestRow {
  const char* name;
  const char* request;
  const char* answer;
};

class AnsweredRequest : public LegacyReply, public ::testing::WithParamInterface<RequestRow> {};

INSTANTIATE_TEST_SUITE_P(
    For, AnsweredRequest,
    ::testing::Values(
        RequestRow{"AccessoryInfo", "FF 55 03 00 27 09 CD", "FF 55 05 00 28 09 00 E0 EA"},
        // The type is taken where it would stand; the checksum does.
        RequestRow{"AccessoryInfoWithoutAType", "FF 55 02 00 27 D7", "FF 55 03 00 28 D7 FE"},
        RequestRow{"AccessoryInfoWithABadChecksum", "FF 55 03 00 27 09 00",
                   "FF 55 05 00 28 09 00 E0 EA"},
        RequestRow{"SportsCapabilities", "FF 55 02 09 03 F2", "FF 55 05 09 04 02 00 00 EC"},
        RequestRow{"SportsVersion", "FF 55 02 09 01 F4", "FF 55 04 09 02 01 00 F0"}),
    test::RowName());

TEST_P(AnsweredRequest, IsAnsweredWhileTheReplyIsAwaited) {
  Send(GetParam().request);
  Send(kName);
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 7777");
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().answer));
}

TEST_P(AnsweredRequest, IsAnsweredAsOftenAsItComes) {
  Send(GetParam().request);
  Send(GetParam().request);
  EXPECT_EQ(Extract(0x08), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().answer, GetParam().answer));
}

TEST_F(LegacyReply, IsNeverTheRequestForAccessoryInfo) {
  Send("FF 55 03 00 27 09 CD");
  EXPECT_EQ(Extract(0x27), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 00 28 09 00 E0 EA"));
}

TEST_F(LegacyReply, IsNeverTheRequestForSportsCapabilities) {
  Send("FF 55 02 09 03 F2");
  EXPECT_EQ(Extract(0x03), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 09 04 02 00 00 EC"));
}

TEST_F(LegacyReply, MayBeTheRequestForTheSportsVersion) {
  Send("FF 55 03 09 01 41 B2");
  EXPECT_EQ(Extract(0x01), 1);
  EXPECT_EQ(Text(2), "41 7777");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 02 01 00 F0"));
}

TEST_F(LegacyReply, UnderTheNumberOfAnotherLingosRequestIsNotAnswered) {
  Send("FF 55 03 09 27 09 C4");
  EXPECT_EQ(Extract(0x27), 1);
  Send("FF 55 02 00 03 FB");
  EXPECT_EQ(Extract(0x03), 1);
  Send("FF 55 02 00 01 FD");
  EXPECT_EQ(Extract(0x01), 1);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(LegacyReply, ComesThroughARequestAnAckAndABadFrame) {
  Send("FF 55 03 00 27 09 CD");     // GetAccessoryInfo
  Send("FF 55 04 00 02 00 07 F3");  // ACK
  Send("FF 55 04 00 08 58 58 00");  // bad checksum
  Send("FF 55 05 33 08 41 42 00 3D");
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(4), "41 42 0 7777");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 00 28 09 00 E0 EA"));
}

TEST_F(LegacyReply, LeavesWhatFollowsItInThePort) {
  Send(kName);
  Send("FF 55 05 33 08 41 42 00 3D");
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 7777");
  EXPECT_EQ(Extract(0x08), 1);
  EXPECT_EQ(Text(3), "41 42 0");
}

}  // namespace

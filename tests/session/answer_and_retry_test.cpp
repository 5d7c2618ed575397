// SPDX-License-Identifier: MIT
// Waiting for an answer and retrying: the result of every course that an exchange can take, and
// the virtual time that it takes. The port has no read thread in the tests of exact times, so
// nobody else holds its lock.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::Packet;
using test::SessionTest;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int64_t kWrite = 20 * kMillisecond;
constexpr std::int64_t kWait = kSecond;

class Exchange : public SessionTest {
 protected:
  // Asks for the iPod's name, with `retries` attempts.
  tagIPOD_COMM_ERROR AskName(std::int32_t retries = 3) {
    tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, 0};
    read_.expected_command = 0x08;
    read_.buffer = buffer_;
    read_.size = sizeof buffer_;
    read_.retries = retries;
    return session_.WriteReadCommand(&write, &read_);
  }
  // Asks for the number of tracks.
  tagIPOD_COMM_ERROR AskCount() {
    const unsigned char data[] = {0x05};
    tagIPOD_WRITE_PARAMS write = {0x0018, 0x04, data, 1};
    read_.expected_command = 0x0019;
    read_.buffer = buffer_;
    read_.size = 4;
    read_.retries = 3;
    return session_.WriteReadCommand(&write, &read_);
  }
  tagIPOD_COMM_ERROR Read(std::uint16_t expected) {
    read_.expected_command = expected;
    read_.buffer = buffer_;
    read_.size = sizeof buffer_;
    return session_.ReadCommand(&read_);
  }
  void Queue(const char* frame) { CIpodCommPeer::Responses(session_).Append(Packet(frame)); }
  void OpenWithoutReadThread() {
    EXPECT_EQ(CIpodCommPeer::Serial(session_).Open(false), 0);
    world_.Advance(2 * kSecond);
  }

  tagIPOD_READ_PARAMS read_ = {};
  unsigned char buffer_[8] = {};
};

TEST_F(Exchange, SilentIpodIsAskedThreeTimesInThreeSeconds) {
  OpenWithoutReadThread();
  TurnOnTransactionIds(0x0FFF);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), IPOD_COMM_RETRIES_EXHAUSTED); }),
            3 * (kWrite + kWait));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 07 0F FF E7", "FF 55 04 00 07 10 00 E5",
                                       "FF 55 04 00 07 10 01 E4"));
  EXPECT_EQ(read_.stored, 0U);
  EXPECT_EQ(read_.size, 8);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Exchange, WithTheReadThreadAWriteWaitsForItsReadOfTwoMillisecondsAtMost) {
  const auto elapsed_us = Elapsed([&] { AskName(); });
  EXPECT_GE(elapsed_us, 3 * (kWrite + kWait));
  EXPECT_LE(elapsed_us, 3 * (kWrite + 2 * kMillisecond + kWait));
}

TEST_F(Exchange, NothingIsSentWithoutAttempts) {
  for (const std::int32_t retries : {0, -1, -2147483647}) {
    EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(retries), IPOD_COMM_RETRIES_EXHAUSTED); }), 0);
  }
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Exchange, AnswerEndsItAtOnce) {
  Answer("FF 55 02 00 07 F7", "FF 55 05 00 08 41 42 00 70");
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(AskName(), IPOD_COMM_OK); });
  EXPECT_LT(elapsed_us, kWrite + 50 * kMillisecond);
  EXPECT_EQ(read_.stored, 3U);
  EXPECT_EQ(read_.size, 3);
  EXPECT_EQ(read_.received_command, 0x08);
  EXPECT_EQ(read_.lingo, 0x00);
  EXPECT_EQ(test::ToHex(buffer_, 4), "41 42 00 00");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7"));
}

TEST_F(Exchange, LostAnswerIsAskedForAgain) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 04 00 07 00 11 E4", "FF 55 06 00 08 00 11 41 00 A0");
  EXPECT_EQ(AskName(), IPOD_COMM_OK);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 07 00 10 E5", "FF 55 04 00 07 00 11 E4"));
  EXPECT_EQ(test::ToHex(buffer_, 2), "41 00");
}

TEST_F(Exchange, LargeAnswerIsTaken) {
  Answer("FF 55 02 00 07 F7", "FF 55 00 00 05 00 08 41 42 00 70");
  EXPECT_EQ(AskName(), IPOD_COMM_OK);
  EXPECT_EQ(test::ToHex(buffer_, 4), "41 42 00 00");
}

TEST_F(Exchange, LongerAnswerIsCutToTheBuffer) {
  Answer("FF 55 02 00 07 F7", "FF 55 0C 00 08 41 42 43 44 45 46 47 48 49 4A 35");
  EXPECT_EQ(AskName(), IPOD_COMM_OK);
  EXPECT_EQ(read_.size, 8);
  EXPECT_EQ(read_.stored, 8U);
  EXPECT_EQ(test::ToHex(buffer_, 8), "41 42 43 44 45 46 47 48");
}

TEST_F(Exchange, SimpleRemoteCommandSucceedsOnceItIsWritten) {
  OpenWithoutReadThread();
  Queue("FF 55 03 02 01 05 F5");
  const unsigned char data[] = {0x01};
  tagIPOD_WRITE_PARAMS write = {0x00, 0x02, data, 1};
  tagIPOD_READ_PARAMS read = {};
  read.retries = 3;
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_OK); }),
            kWrite);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 02 00 01 FA"));
  EXPECT_EQ(session_.PeekNextReadPacket(), 0x01);
}

TEST_F(Exchange, SimpleRemoteCommandIsRetriedWhileItCannotBeWritten) {
  world_.FailOnce("WriteFile", 1, 31);
  tagIPOD_WRITE_PARAMS write = {0x00, 0x02, nullptr, 0};
  tagIPOD_READ_PARAMS read = {};
  read.retries = 2;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_OK);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 02 00 FC"));
}

TEST_F(Exchange, SimpleRemoteCommandNeedsAnAttempt) {
  tagIPOD_WRITE_PARAMS write = {0x00, 0x02, nullptr, 0};
  tagIPOD_READ_PARAMS read = {};
  EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_RETRIES_EXHAUSTED);
}

TEST_F(Exchange, FailedWritesCostNoWait) {
  OpenWithoutReadThread();
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), IPOD_COMM_RETRIES_EXHAUSTED); }), 0);
  EXPECT_EQ(world_.call_count("WriteFile"), 1U + 3U);  // the wake-up byte, three attempts
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Exchange, FailedWriteIsFollowedByTheNextAttempt) {
  world_.FailOnce("WriteFile", 1, 31);
  Answer("55 02 00 07 F7", "FF 55 04 00 08 41 00 B3");
  EXPECT_EQ(AskName(), IPOD_COMM_OK);
}

TEST_F(Exchange, FailedWriteKeepsTheResultOfTheAttemptBefore) {
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 04 04 00 1B 00 DD");  // not the answer
  world_.FailFrom("WriteFile", 3, 31);                           // the second attempt's
  EXPECT_EQ(AskCount(), IPOD_COMM_UNEXPECTED);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 18 05 DB"));
}

TEST_F(Exchange, OnlyUnexpectedPacketsEveryTimeGiveUnexpected) {
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 04 04 00 1B 00 DD");
  EXPECT_EQ(AskCount(), IPOD_COMM_UNEXPECTED);
  EXPECT_THAT(DrainSent(), SizeIs(3));
}

TEST_F(Exchange, SilenceInTheLastAttemptCountsNotTheUnexpectedBefore) {
  OpenWithoutReadThread();
  Queue("FF 55 04 04 00 1B 00 DD");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskCount(), IPOD_COMM_RETRIES_EXHAUSTED); }),
            3 * (kWrite + kWait));
}

TEST_F(Exchange, UnexpectedPacketsAreDroppedUntilTheAnswerComes) {
  Answer("FF 55 04 04 00 18 05 DB",
         "FF 55 04 04 00 1B 00 DD FF 55 03 0C 11 00 E0 FF 55 03 03 13 00 E7 FF 55 07 04 00 19 00 "
         "00 00 2A B2");
  EXPECT_EQ(AskCount(), IPOD_COMM_OK);
  EXPECT_EQ(test::ToHex(buffer_, 4), "00 00 00 2A");
  EXPECT_EQ(read_.lingo, 0x04);
}

TEST_F(Exchange, PacketsOfOtherLingoesAreDroppedWithoutAResult) {
  for (const char* frame :
       {"FF 55 03 01 08 00 F4", "FF 55 03 02 08 00 F3", "FF 55 03 05 08 00 F0",
        "FF 55 03 0A 08 00 EB", "FF 55 03 0D 08 00 E8", "FF 55 03 FF 08 00 F6"}) {
    Queue(frame);
    EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(0x08), IPOD_COMM_NO_ANSWER); }), kWait) << frame;
    Queue(frame);
    Queue("FF 55 03 00 08 41 B4");
    EXPECT_EQ(Read(0x08), IPOD_COMM_OK) << frame;
  }
}

TEST_F(Exchange, OtherLingoIsRecordedAsTheLastLookedAt) {
  Queue("FF 55 03 0A 08 00 EB");
  Read(0x08);
  EXPECT_EQ(read_.lingo, 0x0A);
}

TEST_F(Exchange, LingoOfTheLargeFormIsItsSixthByte) {
  Queue("FF 55 00 00 03 0C 08 00 E9");
  EXPECT_EQ(Read(0x08), IPOD_COMM_OK);
  EXPECT_EQ(read_.lingo, 0x0C);
}

TEST_F(Exchange, AnswersOfEveryLingoReachTheirDecoder) {
  for (const char* frame :
       {"FF 55 03 00 08 41 B4", "FF 55 03 03 08 41 B1", "FF 55 04 04 00 08 41 AF",
        "FF 55 03 09 08 41 AB", "FF 55 03 0C 08 41 A8"}) {
    Queue(frame);
    EXPECT_EQ(Read(0x08), IPOD_COMM_OK) << frame;
    EXPECT_EQ(read_.stored, 1U);
  }
}

TEST_F(Exchange, ReadEndsOneSecondAfterTheLastPacket) {
  Queue("FF 55 04 04 00 1B 00 DD");
  Queue("FF 55 04 04 00 1B 01 DC");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(0x0019), IPOD_COMM_UNEXPECTED); }), kWait);
}

TEST_F(Exchange, EveryUnexpectedPacketStartsTheWaitOver) {
  const std::int64_t start_us = world_.now_us();
  ipod_.SendAt(start_us + 900 * kMillisecond, test::Hex("FF 55 04 04 00 1B 00 DD"));
  ipod_.SendAt(start_us + 1800 * kMillisecond, test::Hex("FF 55 04 04 00 1B 00 DD"));
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Read(0x0019), IPOD_COMM_UNEXPECTED); });
  EXPECT_GE(elapsed_us, 2800 * kMillisecond);
  EXPECT_LE(elapsed_us, 2840 * kMillisecond);
}

// The last packet decides: an unexpected General one counts as success, one of another lingo does
// not.
TEST_F(Exchange, LastDecodersValueIsTheResult) {
  Queue("FF 55 04 04 00 1B 00 DD");
  Queue("FF 55 05 00 0A 01 02 03 EB");
  EXPECT_EQ(Read(0x0019), IPOD_COMM_OK);
  EXPECT_EQ(read_.stored, 0U);
  Queue("FF 55 05 00 0A 01 02 03 EB");
  Queue("FF 55 04 04 00 1B 00 DD");
  EXPECT_EQ(Read(0x0019), IPOD_COMM_UNEXPECTED);
  Queue("FF 55 05 00 0A 01 02 03 EB");
  Queue("FF 55 04 05 00 1B 00 DC");
  EXPECT_EQ(Read(0x0019), IPOD_COMM_OK);
}

TEST_F(Exchange, UnexpectedGeneralPacketAndSilenceReportSuccessWithNothingStored) {
  Answer("FF 55 02 00 07 F7", "FF 55 05 00 0A 01 02 03 EB");
  EXPECT_EQ(AskName(), IPOD_COMM_OK);
  EXPECT_EQ(read_.stored, 0U);
  EXPECT_EQ(read_.received_command, 0x0A);
  EXPECT_THAT(buffer_, Each(0));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7"));
}

// An iPod that refuses a request names the command sent, not the one awaited.
TEST_F(Exchange, RefusalOfTheCommandSentReportsSuccessAndSetsTheAckFlag) {
  OpenWithoutReadThread();
  Queue("FF 55 04 00 02 04 07 EF");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), IPOD_COMM_OK); }), kWrite + kWait);
  EXPECT_NE(read_.ack_received, 0);
  EXPECT_EQ(read_.stored, 0U);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7"));
}

TEST_F(Exchange, RefusalOfTheAwaitedCommandIsRetried) {
  Answer("FF 55 02 00 07 F7", "FF 55 04 00 02 04 08 EE");
  EXPECT_EQ(AskName(), IPOD_COMM_RETRIES_EXHAUSTED);
  EXPECT_NE(read_.ack_received, 0);
  EXPECT_THAT(DrainSent(), SizeIs(3));
}

TEST_F(Exchange, WhatWasQueuedBeforeIsReadFirst) {
  Queue("FF 55 03 00 08 58 9D");
  EXPECT_EQ(AskName(), IPOD_COMM_OK);
  EXPECT_EQ(buffer_[0], 0x58);
}

TEST_F(Exchange, SportsVersionIsAnsweredDuringTheWaitWhichGoesOn) {
  Answer("FF 55 02 0C 01 F1", "FF 55 02 09 01 F4 FF 55 03 0C 02 2A C5");
  tagIPOD_WRITE_PARAMS write = {0x01, 0x0C, nullptr, 0};
  read_.expected_command = 0x02;
  read_.buffer = buffer_;
  read_.size = sizeof buffer_;
  read_.retries = 3;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read_), IPOD_COMM_OK);
  EXPECT_EQ(buffer_[0], 0x2A);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 0C 01 F1", "FF 55 04 09 02 01 01 EF"));
}

TEST_F(Exchange, SportsCapsAreAnsweredDuringTheWaitWhichGoesOn) {
  Answer("FF 55 02 09 83 72", "FF 55 02 09 03 F2 FF 55 05 09 84 00 03 00 6B");
  tagIPOD_WRITE_PARAMS write = {0x83, 0x09, nullptr, 0};
  read_.expected_command = 0x84;
  read_.buffer = buffer_;
  read_.size = 3;
  read_.retries = 3;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read_), IPOD_COMM_OK);
  EXPECT_EQ(test::ToHex(buffer_, 3), "00 03 00");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 09 83 72", "FF 55 05 09 04 02 00 00 EC"));
}

TEST_F(Exchange, ServedRequestAndSilenceAreNoAnswer) {
  Queue("FF 55 02 09 01 F4");
  EXPECT_EQ(Read(0x84), IPOD_COMM_NO_ANSWER);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 02 01 01 EF"));
}

// The answer to the iPod takes the next identifier, so the awaited answer is not known any more by
// its own and keeps it in the data.
TEST_F(Exchange, AnswerBehindAServedRequestKeepsItsIdentifier) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 04 0C 01 00 10 DF", "FF 55 04 09 01 00 01 F1 FF 55 05 0C 02 00 10 2A B3");
  tagIPOD_WRITE_PARAMS write = {0x01, 0x0C, nullptr, 0};
  read_.expected_command = 0x02;
  read_.buffer = buffer_;
  read_.size = sizeof buffer_;
  read_.retries = 3;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read_), IPOD_COMM_OK);
  EXPECT_EQ(test::ToHex(buffer_, 3), "00 10 2A");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 0C 01 00 10 DF", "FF 55 06 09 02 00 11 01 01 DC"));
}

TEST_F(Exchange, CommandOnAClosedPortFailsAtOnce) {
  session_.Close();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), IPOD_COMM_RETRIES_EXHAUSTED); }), 0);
}

}  // namespace

// SPDX-License-Identifier: MIT
// The General decoder: its identifiers, its ACKs, and the pending ACK that fetches a further
// packet.
#include <cstring>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::kMillisecond;
using test::kSecond;
using test::Packet;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GeneralDecoding : public SessionTest {
 protected:
  GeneralDecoding() {
    read_.expected_command = 0x08;
    read_.buffer = buffer_;
    read_.size = sizeof buffer_;
  }
  tagIPOD_COMM_ERROR Decode(const char* text) {
    Bytes frame = test::Hex(text);
    keep_ = 7;
    return session_.ProcessLingoGeneralReadCommand(frame.data(), frame.size(), &read_, &keep_);
  }
  void Queue(const char* frame) { CIpodCommPeer::Responses(session_).Append(Packet(frame)); }
  std::string Taken() const { return test::ToHex(buffer_, read_.stored); }
  std::string Ack() const {
    unsigned char ack[2] = {};
    std::memcpy(ack, &read_.ack, 2);
    return test::ToHex(ack, 2);
  }

  tagIPOD_READ_PARAMS read_ = {};
  unsigned char buffer_[8] = {};
  int keep_ = 7;
};

TEST_F(GeneralDecoding, IdentifierIsAlwaysSkippedWhateverItIs) {
  TurnOnTransactionIds(0x1235);
  EXPECT_EQ(Decode("FF 55 05 00 08 55 AA 41 B3"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "41");
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 00 00 05 00 08 55 AA 41 B3"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "41");
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 04 00 08 55 AA F5"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "");
}

TEST_F(GeneralDecoding, HalfAnIdentifierIsNoData) {
  TurnOnTransactionIds(0x1235);
  EXPECT_EQ(Decode("FF 55 03 00 08 55 A0"), IPOD_COMM_OK);
  EXPECT_EQ(read_.stored, 0U);
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 02 00 08 F6"), IPOD_COMM_OK);
  EXPECT_EQ(read_.stored, 0U);
}

TEST_F(GeneralDecoding, AckOfTwoBytesCarriesNoIdentifier) {
  TurnOnTransactionIds(1);
  read_.expected_command = 0x02;
  EXPECT_EQ(Decode("FF 55 04 00 02 00 38 C2"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "00 38");
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 00 00 04 00 02 00 38 C2"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "00 38");
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 06 00 02 00 07 00 38 B9"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "00 38");
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 05 00 02 00 07 38 BA"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "38");
}

TEST_F(GeneralDecoding, AnotherCommandCountsAsSuccessAndKeepsReading) {
  for (const char* frame :
       {"FF 55 05 00 0A 01 02 03 EB", "FF 55 00 00 05 00 0A 01 02 03 EB", "FF 55 02 00 00 FE"}) {
    EXPECT_EQ(Decode(frame), IPOD_COMM_OK) << frame;
    EXPECT_EQ(keep_, 1) << frame;
    EXPECT_EQ(read_.stored, 0U);
    EXPECT_EQ(read_.size, 8);
    EXPECT_EQ(read_.ack_received, 0);
  }
}

struct RefusalRow {
  const char* name;
  int final_command;
  const char* ack;
  int result;
  int keep_reading;
};

class Refusal : public GeneralDecoding, public ::testing::WithParamInterface<RefusalRow> {};

TEST_P(Refusal, IsTakenByWhatItNames) {
  read_.final_command = static_cast<std::uint8_t>(GetParam().final_command);
  EXPECT_EQ(Decode(GetParam().ack), GetParam().result);
  EXPECT_EQ(keep_, GetParam().keep_reading);
  EXPECT_EQ(read_.ack_received, 1);
  EXPECT_EQ(read_.received_command, 0x02);
  EXPECT_EQ(read_.stored, 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Ack, Refusal,
    ::testing::Values(
        RefusalRow{"OfTheAwaitedCommand", 0x00, "FF 55 04 00 02 04 08 EE", IPOD_COMM_NO_ANSWER, 1},
        RefusalRow{"OfTheAwaitedAndFinalCommand", 0x08, "FF 55 04 00 02 04 08 EE",
                   IPOD_COMM_NO_ANSWER, 0},
        RefusalRow{"OfTheAwaitedCommandWithStatusZero", 0x00, "FF 55 04 00 02 00 08 F2",
                   IPOD_COMM_NO_ANSWER, 1},
        RefusalRow{"OfTheCommandSent", 0x00, "FF 55 04 00 02 04 07 EF", IPOD_COMM_OK, 1},
        RefusalRow{"OfTheCommandSentWhichIsFinal", 0x07, "FF 55 04 00 02 04 07 EF", IPOD_COMM_OK,
                   1},
        RefusalRow{"OfNothing", 0x00, "FF 55 02 00 02 FC", IPOD_COMM_OK, 1},
        RefusalRow{"InTheLargeForm", 0x08, "FF 55 00 00 04 00 02 04 08 EE", IPOD_COMM_NO_ANSWER,
                   0}),
    test::RowName());

TEST_F(GeneralDecoding, RefusalBehindAnIdentifierIsTheSame) {
  TurnOnTransactionIds(1);
  EXPECT_EQ(Decode("FF 55 06 00 02 00 01 04 08 EB"), IPOD_COMM_NO_ANSWER);
  EXPECT_EQ(keep_, 1);
  EXPECT_EQ(Decode("FF 55 06 00 02 00 08 04 07 E5"), IPOD_COMM_OK);
}

TEST_F(GeneralDecoding, RefusalIsKeptAsFarAsTheSizeSays) {
  read_.ack = 0xCCCC;
  read_.size = 2;
  Decode("FF 55 04 00 02 04 07 EF");
  EXPECT_EQ(Ack(), "04 07");
  read_.ack = 0xCCCC;
  read_.size = 1;
  Decode("FF 55 04 00 02 04 07 EF");
  EXPECT_EQ(Ack(), "04 CC");
  read_.ack = 0xCCCC;
  read_.size = 3;
  Decode("FF 55 04 00 02 04 07 EF");
  EXPECT_EQ(Ack(), "CC CC");
}

TEST_F(GeneralDecoding, AcceptedAckEndsTheWaitWhateverItNames) {
  read_.accept_ack = 1;
  read_.size = 2;
  EXPECT_EQ(Decode("FF 55 04 00 02 04 08 EE"), IPOD_COMM_OK);
  EXPECT_EQ(keep_, 0);
  EXPECT_EQ(read_.ack_received, 1);
  EXPECT_EQ(Ack(), "04 08");
}

// A pending ACK: one more packet is fetched.

TEST_F(GeneralDecoding, PendingAckWaitsOneSecondForAFurtherPacket) {
  read_.expected_command = 0x02;
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK); }), kSecond);
  EXPECT_EQ(Taken(), "06 03");
}

TEST_F(GeneralDecoding, OtherAcksFetchNothing) {
  read_.expected_command = 0x02;
  for (int status = 0; status < 256; ++status) {
    if (status == 0x06) continue;
    unsigned char frame[] = {0xFF, 0x55, 0x04, 0x00, 0x02, static_cast<unsigned char>(status),
                             0x03, 0x00};
    read_.size = 2;
    EXPECT_EQ(Elapsed([&] {
                session_.ProcessLingoGeneralReadCommand(frame, sizeof frame, &read_, &keep_);
              }),
              0);
  }
}

TEST_F(GeneralDecoding, OtherCommandsWithSixFetchNothing) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 04 00 08 06 03 EB"), IPOD_COMM_OK); }), 0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 04 00 0A 06 03 E9"), IPOD_COMM_OK); }), 0);
  // Byte 5 of the large form is the lingo.
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 00 00 04 00 02 06 03 F1"), IPOD_COMM_OK); }), 0);
}

TEST_F(GeneralDecoding, FinalAckReplacesThePendingOne) {
  read_.expected_command = 0x02;
  Queue("FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK); }), 0);
  EXPECT_EQ(keep_, 0);
  EXPECT_EQ(Taken(), "00 03");
}

// Position and length of the data stay the first packet's.
TEST_F(GeneralDecoding, FinalAckIsCopiedOverTheCallersFrame) {
  read_.expected_command = 0x02;
  Queue("FF 55 04 00 02 00 03 F7");
  Bytes frame = test::Hex("FF 55 04 00 02 06 03 F1");
  session_.ProcessLingoGeneralReadCommand(frame.data(), frame.size(), &read_, nullptr);
  EXPECT_EQ(test::ToHex(frame.data(), frame.size()), "FF 55 04 00 02 00 03 F7");
}

TEST_F(GeneralDecoding, FinalAckIsCopiedAsFarAsTheCallersFrameGoes) {
  read_.expected_command = 0x02;
  Queue("FF 55 06 00 02 00 03 04 05 EC");
  Bytes frame = test::Hex("FF 55 04 00 02 06 03 F1 77 77");
  session_.ProcessLingoGeneralReadCommand(frame.data(), 8, &read_, nullptr);
  EXPECT_EQ(test::ToHex(frame.data(), frame.size()), "FF 55 06 00 02 00 03 04 77 77");
}

TEST_F(GeneralDecoding, FinalAckIsReadWithThePendingOnesLength) {
  read_.expected_command = 0x02;
  Queue("FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(Decode("FF 55 08 00 02 06 03 00 00 00 C8 25"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "00 03 F7 00 00 C8");  // F7 is the second packet's checksum
  Queue("FF 55 08 00 02 00 03 11 22 33 44 49");
  read_.size = sizeof buffer_;
  EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "00 03");
}

TEST_F(GeneralDecoding, FurtherPacketOfAnotherKindIsLost) {
  read_.expected_command = 0x02;
  Queue("FF 55 03 00 08 41 B4");
  EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "06 03");
  EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF);
}

TEST_F(GeneralDecoding, FinalAckIsNotTakenWhereAnotherCommandIsAwaited) {
  Queue("FF 55 04 00 02 00 07 F3");
  EXPECT_EQ(Decode("FF 55 04 00 02 06 08 EC"), IPOD_COMM_NO_ANSWER);  // the pending one decides
  EXPECT_EQ(keep_, 1);
  EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF);
}

// The time that a second pending ACK names starts with its status 06, so it is 100 million
// milliseconds at least and is never waited for.
TEST_F(GeneralDecoding, SecondPendingAcksTimeIsNeverWaitedFor) {
  read_.expected_command = 0x02;
  for (const char* second : {"FF 55 06 00 02 06 00 00 01 F1", "FF 55 03 00 02 06 F5",
                             "FF 55 08 00 02 06 03 00 00 00 64 89"}) {
    Queue(second);
    read_.size = 2;
    world_.Record({"Sleep", "ClearCommError"});
    EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK); }), 0);
    EXPECT_THAT(world_.DrainCalls().Of("host").text(), IsEmpty());
    EXPECT_EQ(keep_, 0);
  }
  EXPECT_EQ(buffer_[0], 0x06);
}

// The bytes 00 00 00 05 would be five milliseconds.
TEST_F(GeneralDecoding, FinalAckIsNoTimeToWait) {
  read_.expected_command = 0x02;
  Queue("FF 55 06 00 02 00 00 00 05 F3");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK); }), 0);
  EXPECT_EQ(Taken(), "00 00");
}

// The status is looked for at its place without an identifier, so an identifier 06xx passes for
// a pending ACK.
TEST_F(GeneralDecoding, IdentifierThatBeginsWithSixFetchesAFurtherPacket) {
  TurnOnTransactionIds(0x0601);
  read_.expected_command = 0x02;
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 06 00 02 06 00 00 03 EF"), IPOD_COMM_OK); }),
            kSecond);
  EXPECT_EQ(Taken(), "00 03");
}

TEST_F(GeneralDecoding, PendingAckBehindAnIdentifierIsAnOrdinaryOne) {
  TurnOnTransactionIds(0x0101);
  read_.expected_command = 0x02;
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Decode("FF 55 06 00 02 01 00 06 03 EE"), IPOD_COMM_OK); }), 0);
  EXPECT_EQ(Taken(), "06 03");
}

// Any packet with 02 in the command's place passes for the further ACK.
TEST_F(GeneralDecoding, FurtherPacketsLingoIsNotLookedAt) {
  read_.expected_command = 0x02;
  Queue("FF 55 04 03 02 00 77 80");
  EXPECT_EQ(Decode("FF 55 04 00 02 06 03 F1"), IPOD_COMM_OK);
  EXPECT_EQ(Taken(), "00 77");
}

TEST_F(GeneralDecoding, PendingAckOnTheLineIsFollowedByItsFinalOne) {
  Answer("FF 55 02 00 03 FB", "FF 55 08 00 02 06 03 00 00 00 C8 25");
  tagIPOD_WRITE_PARAMS write = {0x03, 0x00, nullptr, 0};
  read_.expected_command = 0x02;
  read_.retries = 3;
  ipod_.SendAt(world_.now_us() + 300 * kMillisecond, test::Hex("FF 55 04 00 02 00 03 F7"));
  EXPECT_EQ(session_.WriteReadCommand(&write, &read_), IPOD_COMM_OK);
  EXPECT_EQ(Taken().substr(0, 5), "00 03");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 03 FB"));
}

}  // namespace

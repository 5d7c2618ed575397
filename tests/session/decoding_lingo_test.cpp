// SPDX-License-Identifier: MIT
// What the Extended and the Sports decoder do of their own: 16-bit commands, and the iPod's
// requests served while an answer is awaited.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ExtendedDecoding : public SessionTest {
 protected:
  tagIPOD_COMM_ERROR Decode(const char* text) {
    Bytes frame = test::Hex(text);
    return session_.ProcessLingoExtendedReadCommand(frame.data(), frame.size(), &read_, nullptr);
  }
  tagIPOD_READ_PARAMS read_ = {};
};

TEST_F(ExtendedDecoding, ComparesAllSixteenBitsOfTheCommand) {
  read_.expected_command = 0x0133;
  EXPECT_EQ(Decode("FF 55 03 04 00 33 C6"), IPOD_COMM_UNEXPECTED);
  EXPECT_EQ(read_.received_command, 0x0033);
  EXPECT_EQ(Decode("FF 55 03 04 01 33 C5"), IPOD_COMM_OK);
}

// The decoder that was called decides how wide the command is, not the frame's lingo.
TEST_F(ExtendedDecoding, ReadsFramesOfAnyLingoWithATwoByteCommand) {
  unsigned char buffer[4] = {};
  read_.expected_command = 0x0033;
  read_.buffer = buffer;
  for (const char* frame : {"FF 55 05 09 00 33 AA BB 5A", "FF 55 00 00 05 00 00 33 AA BB 63"}) {
    read_.size = 4;
    EXPECT_EQ(Decode(frame), IPOD_COMM_OK) << frame;
    EXPECT_EQ(test::ToHex(buffer, read_.stored), "AA BB");
  }
}

TEST_F(ExtendedDecoding, TakesCommandTwoOnlyForAnAck) {
  read_.expected_command = 0x0033;
  read_.accept_ack = 1;
  EXPECT_EQ(Decode("FF 55 05 04 01 02 00 00 F4"), IPOD_COMM_UNEXPECTED);
  EXPECT_EQ(Decode("FF 55 05 04 02 00 00 00 F5"), IPOD_COMM_UNEXPECTED);
  EXPECT_EQ(Decode("FF 55 06 04 00 01 00 00 33 C2"), IPOD_COMM_UNEXPECTED);
  EXPECT_EQ(read_.ack_received, 0);
  EXPECT_EQ(Decode("FF 55 05 04 00 02 00 00 F5"), IPOD_COMM_OK);
  EXPECT_EQ(read_.ack_received, 1);
}

TEST_F(ExtendedDecoding, ReadsNoIdentifierFromASingleByte) {
  TurnOnTransactionIds(0x0011);
  unsigned char buffer[4] = {};
  read_.expected_command = 0x002D;
  read_.buffer = buffer;
  read_.size = 4;
  EXPECT_EQ(Decode("FF 55 04 04 00 2D 01 CA"), IPOD_COMM_OK);
  EXPECT_EQ(test::ToHex(buffer, read_.stored), "01");
}

class SportsDecoding : public SessionTest {
 protected:
  tagIPOD_COMM_ERROR Decode(const char* text) {
    Bytes frame = test::Hex(text);
    return session_.ProcessLingoSportsReadCommand(frame.data(), frame.size(), &read_, &keep_);
  }
  tagIPOD_READ_PARAMS read_ = {};
  int keep_ = 7;
};

using Decoder = tagIPOD_COMM_ERROR (CIpodComm::*)(unsigned char*, unsigned long,
                                                  tagIPOD_READ_PARAMS*, int*);

class OneByteDecoding : public SessionTest, public ::testing::WithParamInterface<Decoder> {};

TEST_P(OneByteDecoding, ReadsExtendedFramesWithAOneByteCommand) {
  for (const char* text : {"FF 55 04 04 33 AA BB 60", "FF 55 00 00 04 04 33 AA BB 60"}) {
    Bytes frame = test::Hex(text);
    unsigned char buffer[4] = {};
    tagIPOD_READ_PARAMS read = {};
    read.expected_command = 0x33;
    read.buffer = buffer;
    read.size = sizeof buffer;
    EXPECT_EQ((session_.*GetParam())(frame.data(), frame.size(), &read, nullptr), IPOD_COMM_OK);
    EXPECT_EQ(test::ToHex(buffer, read.stored), "AA BB");
  }
}

INSTANTIATE_TEST_SUITE_P(Decoders, OneByteDecoding,
                         ::testing::Values(&CIpodComm::ProcessLingoGeneralReadCommand,
                                           &CIpodComm::ProcessLingoDisplayRemoteReadCommand,
                                           &CIpodComm::ProcessLingoSportsReadCommand,
                                           &CIpodComm::ProcessLingoStorageReadCommand));

TEST_F(SportsDecoding, CapabilityRequestIsServedAndTheWaitGoesOn) {
  read_.expected_command = 0x84;
  EXPECT_EQ(Decode("FF 55 02 09 03 F2"), IPOD_COMM_NO_ANSWER);
  EXPECT_EQ(keep_, 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 09 04 02 00 00 EC"));
  EXPECT_EQ(Decode("FF 55 00 00 02 09 03 F2"), IPOD_COMM_NO_ANSWER);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 09 04 02 00 00 EC"));
}

TEST_F(SportsDecoding, VersionRequestIsServedAndTheWaitGoesOn) {
  read_.expected_command = 0x84;
  EXPECT_EQ(Decode("FF 55 02 09 01 F4"), IPOD_COMM_NO_ANSWER);
  EXPECT_EQ(keep_, 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 02 01 01 EF"));
}

TEST_F(SportsDecoding, ServesUnderIdentifiersToo) {
  TurnOnTransactionIds(0x1234);
  CIpodCommPeer::IpodTransactionIds(session_)[9] = 0xABCD;
  read_.expected_command = 0x84;
  Decode("FF 55 04 09 03 00 07 E9");
  Decode("FF 55 04 09 01 00 08 EA");
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 07 09 04 AB CD 02 00 00 72", "FF 55 06 09 02 12 35 01 01 A6"));
}

TEST_F(SportsDecoding, ServedRequestThatCannotBeAnsweredLooksTheSame) {
  session_.Close();
  read_.expected_command = 0x84;
  EXPECT_EQ(Decode("FF 55 02 09 03 F2"), IPOD_COMM_NO_ANSWER);
  EXPECT_EQ(keep_, 1);
}

TEST_F(SportsDecoding, AwaitedCommandIsAnAnswerNotARequest) {
  read_.expected_command = 0x01;
  EXPECT_EQ(Decode("FF 55 02 09 01 F4"), IPOD_COMM_OK);
  EXPECT_EQ(keep_, 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(SportsDecoding, NoOtherCommandIsServed) {
  read_.expected_command = 0x100;
  for (int command = 0; command < 256; ++command) {
    if (command == 0x01 || command == 0x03) continue;
    unsigned char frame[] = {0xFF, 0x55, 0x02, 0x09, static_cast<unsigned char>(command), 0x00};
    EXPECT_EQ(session_.ProcessLingoSportsReadCommand(frame, sizeof frame, &read_, &keep_),
              IPOD_COMM_UNEXPECTED);
  }
  EXPECT_THAT(DrainSent(), IsEmpty());
}

}  // namespace

// SPDX-License-Identifier: MIT
// Sending one packet of tokens: what goes out, what counts as taken, and what is logged.
#include "identify/identification.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kRequest = "FF 55 09 00 39 01 05 00 03 01 00 01 B3";
constexpr const char* kTaken = "FF 55 06 00 3A 01 02 00 03 BA";
constexpr const char* kRefusalLog =
    "CIpodComm::Command_SetFIDTokenValue: Set FID Token Failed =  0\r\n";

class SetTokenValues : public SessionTest {
 protected:
  bool Send() { return Send(test::Hex("01 05 00 03 01 00 01")); }
  bool Send(test::Bytes payload) {
    return (session_.*CIpodCommPeer::kCommand_SetFIDTokenValue)(payload.data(), payload.size());
  }
};

TEST_F(SetTokenValues, SucceedsOnTheAnswer) {
  Answer(kRequest, kTaken);
  EXPECT_TRUE(Send());
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(SetTokenValues, LongerAnswersThanTheBufferAreCut) {
  std::string longest = "00 3A " + test::Repeated("A5", 253);
  Answer(kRequest, test::Frame(longest));
  EXPECT_TRUE(Send());
}

TEST_F(SetTokenValues, SilenceFailsAfterThreeAttemptsWithoutALog) {
  EXPECT_FALSE(Send());
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest, kRequest, kRequest));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(SetTokenValues, AckOfTheAwaitedCommandIsLoggedOnceAsAFailure) {
  // Nothing was stored, so byte 8 of the reply is 0 whatever status the ACK carries.
  Answer(kRequest, "FF 55 04 00 02 07 3A B9");
  EXPECT_FALSE(Send());
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest, kRequest, kRequest));
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kRefusalLog));
}

TEST_F(SetTokenValues, AnswerBehindAnAckOfTheAwaitedCommandSucceeds) {
  Answer(kRequest, "FF 55 04 00 02 07 3A B9 FF 55 06 00 3A 01 02 00 03 BA");
  EXPECT_TRUE(Send());
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(SetTokenValues, AckOfTheSentCommandPassesForSuccessAfterTheSilence) {
  Answer(kRequest, "FF 55 04 00 02 04 39 BD");
  EXPECT_TRUE(Send());
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(SetTokenValues, PayloadOf253BytesFillsTheFrame) {
  const std::string data = test::Repeated("00", 253);
  Answer(test::Frame("00 39 " + data), kTaken);
  EXPECT_TRUE(Send(test::Hex(data)));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 FF 00 39 " + data + " C8"));
}

TEST_F(SetTokenValues, PayloadOf254BytesIsRefusedUnsent) {
  bool sent = true;
  const std::int64_t elapsed_us = Elapsed([&] { sent = Send(test::Bytes(254)); });
  EXPECT_FALSE(sent);
  EXPECT_EQ(elapsed_us, 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(SetTokenValues, IdentifierTakesTwoBytesOfThePayload) {
  TurnOnTransactionIds(7);
  const std::string data = test::Repeated("00", 251);
  Answer(test::Frame("00 39", 7, data), test::Frame("00 3A", 7, "00"));
  EXPECT_TRUE(Send(test::Bytes(251)));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 FF 00 39 00 07 " + data + " C1"));
  EXPECT_FALSE(Send(test::Bytes(252)));
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 8) << "a refused payload takes none";
}

TEST_F(SetTokenValues, ClosedPortFailsWithoutALog) {
  session_.Close();
  EXPECT_FALSE(Send());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

}  // namespace

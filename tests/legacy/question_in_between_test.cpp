// SPDX-License-Identifier: MIT
// What the iPod asks while a reply with a two-byte command is awaited.
#include "extended_reply.h"

namespace {

using test::kRefusingAck;
using test::kStatus;
using test::LegacyExtendedReply;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct QuestionRow {
  const char* name;
  const char* question;
  const char* answer;
};

class QuestionInBetween : public LegacyExtendedReply {
 protected:
  void Choose(const tagIPOD_LEGACY_CONDUCT& conduct) { EXPECT_EQ(legacy_.SetConduct(&conduct), 1); }
};

class Asked : public QuestionInBetween, public ::testing::WithParamInterface<QuestionRow> {};

INSTANTIATE_TEST_SUITE_P(For, Asked,
                         ::testing::Values(QuestionRow{"AccessoryInfo", "FF 55 03 00 27 09 CD",
                                                       "FF 55 05 00 28 09 00 E0 EA"},
                                           QuestionRow{"SportsCapabilities", "FF 55 02 09 03 F2",
                                                       "FF 55 05 09 04 02 00 00 EC"},
                                           QuestionRow{"SportsVersion", "FF 55 02 09 01 F4",
                                                       "FF 55 04 09 02 01 00 F0"}),
                         test::RowName());

TEST_P(Asked, IsAnsweredAndTheReplyReadBehindItUnderRobustAndFast) {
  for (const auto& conduct : {IPOD_LEGACY_CONDUCT_ROBUST, IPOD_LEGACY_CONDUCT_FAST}) {
    Choose(conduct);
    Send(GetParam().question);
    Send(GetParam().question);
    Send(kStatus);
    EXPECT_EQ(Extract(0x1D), 1);
    EXPECT_EQ(Text(4), "41 42 43 44");
    EXPECT_THAT(DrainSent(), ElementsAre(GetParam().answer, GetParam().answer));
  }
}

TEST_P(Asked, IsAnsweredWhileAnAckIsAwaitedUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  Send(GetParam().question);
  Send(kRefusingAck);
  EXPECT_EQ(Extract(0x01), 1);
  EXPECT_EQ(Text(3), "4 0 1C");
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().answer));
}

TEST_P(Asked, IsAnsweredBeforeARawReplyUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  Send(GetParam().question);
  Send(kStatus);
  std::array<unsigned char, 4> bytes = {};
  EXPECT_EQ(legacy_.ExtractDataFromPacketExtendedRaw(0x1D, bytes.data(), 4), 1);
  EXPECT_EQ(test::ToHex(bytes.data(), 4), "41 42 43 44");
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().answer));
}

TEST_P(Asked, IsTakenForTheReplyAndNotAnsweredByDefault) {
  Send(GetParam().question);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

// The question is longer than the reply, and is read into the same place.
TEST_F(QuestionInBetween, LeavesNothingOfItselfInTheReply) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  Send("FF 55 05 00 27 09 41 42 48");
  Send("FF 55 03 04 00 1D DC");
  EXPECT_EQ(Extract(0x1D, 4, 1), 1);
  EXPECT_EQ(Text(4), "0 7777 7777 0");
}

TEST_F(QuestionInBetween, ThatIsDamagedIsNoneUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  Send("FF 55 03 00 27 09 00");
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(QuestionInBetween, ThatIsDamagedEndsTheWaitAndLeavesWhatFollowsUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  Send("FF 55 03 00 27 09 00");
  Send(kStatus);
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(Extract(0x1D), 1);
  EXPECT_EQ(Text(4), "41 42 43 44");
}

TEST_F(QuestionInBetween, ThatDoesNotComeIsAwaitedNoLongerUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Extract(0x1D), 0); }), test::kEmptyReadsUs);
}

TEST_F(QuestionInBetween, WithoutEndEndsTheWaitAllTheSameUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  for (int i = 0; i < 40; ++i) Send("FF 55 02 09 03 F2");
  EXPECT_EQ(Extract(0x1D), 0);
  EXPECT_EQ(DrainSent().size(), 32U);
}

// The wait ends in the silence behind it, and not before.
TEST_F(QuestionInBetween, WithoutAReplyBehindItEndsInSilenceUnderRobust) {
  Choose(IPOD_LEGACY_CONDUCT_ROBUST);
  Send("FF 55 02 09 03 F2");
  EXPECT_GE(Elapsed([&] { EXPECT_EQ(Extract(0x1D), 0); }), test::kEmptyReadsUs);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 09 04 02 00 00 EC"));
}

}  // namespace

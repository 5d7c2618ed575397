// SPDX-License-Identifier: MIT
// Without transaction identifiers, under the robust conduct: answers that repeat nothing of their
// question and come late or twice are not taken for those to the next question of the same command.
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::ElementsAre;

constexpr char kCountTracks[] = "FF 55 04 04 00 18 05 DB";
constexpr char kCountArtists[] = "FF 55 04 04 00 18 02 DE";
constexpr char kSixty[] = "FF 55 07 04 00 19 00 00 00 3C A0";
constexpr char kFour[] = "FF 55 07 04 00 19 00 00 00 04 D8";

class EarlierQuestion : public SessionTest {
 protected:
  EarlierQuestion() { EXPECT_EQ(session_.SetConduct(&IPOD_CONDUCT_FAST), 1); }

  // -1 when it was not told.
  long Count(unsigned char category) {
    unsigned long count = 0;
    if (session_.Command_GetNumberCategorizedDBRecords(category, &count) == 0) return -1;
    return static_cast<long>(count);
  }
  void AskOthers(unsigned count) {
    for (unsigned code = 0; code < count; ++code) {
      tagIPOD_WRITE_PARAMS write = {static_cast<std::uint16_t>(0x0100 + code), 4, nullptr, 0};
      tagIPOD_READ_PARAMS read = {};
      read.expected_command = 1;
      read.retries = 1;
      session_.WriteReadCommand(&write, &read);
    }
  }
};

// Both attempts are answered after 1.1 s: the first answer is believed, the second one is owed.
TEST_F(EarlierQuestion, AskedTwiceIsNotAnsweredForTheNext) {
  Answer(kCountTracks, kSixty, 1100 * kMillisecond);
  EXPECT_EQ(Count(5), 60);
  EXPECT_EQ(Count(2), -1);
}

TEST_F(EarlierQuestion, AskedTwiceIsWaitedForBeforeTheNext) {
  Answer(kCountTracks, kSixty, 1100 * kMillisecond);
  Answer(kCountArtists, kFour);
  EXPECT_EQ(Count(5), 60);
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Count(2), 4); });
  EXPECT_GT(elapsed_us, 900 * kMillisecond);
  EXPECT_LT(elapsed_us, 1500 * kMillisecond);
}

TEST_F(EarlierQuestion, IsNotWaitedForOnceItsAnswersHaveCome) {
  Answer(kCountTracks, kSixty, 1100 * kMillisecond);
  Answer(kCountArtists, kFour);
  EXPECT_EQ(Count(5), 60);
  world_.Advance(1200 * kMillisecond);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 200 * kMillisecond);
}

TEST_F(EarlierQuestion, IsNotWaitedForOnceItsAnswersHaveComeDuringAnotherCommand) {
  Answer(kCountTracks, kSixty, 1100 * kMillisecond);
  Answer("FF 55 03 04 00 2C CD", "FF 55 04 04 00 2D 01 CA", 990 * kMillisecond);
  Answer(kCountArtists, kFour);
  EXPECT_EQ(Count(5), 60);
  EXPECT_EQ(session_.Command_GetShuffle(nullptr), 1);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 200 * kMillisecond);
}

TEST_F(EarlierQuestion, UnansweredThriceIsWaitedForBeforeTheNext) {
  Answer(kCountTracks, kSixty, 3200 * kMillisecond);
  Answer(kCountArtists, kFour, 500 * kMillisecond);
  EXPECT_EQ(Count(5), -1);
  EXPECT_EQ(Count(2), 4);
}

TEST_F(EarlierQuestion, UnansweredForGoodCostsTwoSecondsOnce) {
  Answer(kCountArtists, kFour);
  EXPECT_EQ(Count(5), -1);
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Count(2), 4); });
  EXPECT_GE(elapsed_us, 2 * kSecond);
  EXPECT_LT(elapsed_us, 2200 * kMillisecond);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 200 * kMillisecond);
}

TEST_F(EarlierQuestion, AnsweredTwiceIsNotAnsweredForTheNext) {
  Answer(kCountTracks, std::string(kSixty) + " " + kSixty);
  Answer(kCountArtists, kFour, 50 * kMillisecond);
  EXPECT_EQ(Count(5), 60);
  EXPECT_EQ(Count(2), 4);
}

TEST_F(EarlierQuestion, ThatIsTheSameIsAskedAgainWithoutAWait) {
  Answer(kCountArtists, kFour);
  Count(2);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 15 * kMillisecond);
}

TEST_F(EarlierQuestion, WithItsDataRepeatedNeedsNoWait) {
  Answer("FF 55 03 00 0F 03 EB", "FF 55 05 00 10 03 01 05 E2");
  tagIPOD_VERSION version = {};
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(0, &version), 0);
  EXPECT_LT(
      Elapsed([&] { EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(3, &version), 1); }),
      100 * kMillisecond);
}

TEST_F(EarlierQuestion, WithIdentifiersNeedsNoWait) {
  TurnOnTransactionIds(7);
  Answer("FF 55 06 04 00 18 00 0A 02 D2", "FF 55 09 04 00 19 00 0A 00 00 00 04 CC");
  EXPECT_EQ(Count(5), -1);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 100 * kMillisecond);
}

// The ACK of the first selection comes when the second one has been refused.
TEST_F(EarlierQuestion, IsNotAcknowledgedForTheNext) {
  Answer("FF 55 08 04 00 17 05 00 00 00 01 D7", "FF 55 06 04 00 01 00 00 17 DE",
         3200 * kMillisecond);
  Answer("FF 55 08 04 00 17 05 00 00 00 02 D6", "FF 55 06 04 00 01 04 00 17 DA",
         500 * kMillisecond);
  EXPECT_EQ(session_.Command_SelectDBRecord(5, 1), 0);
  EXPECT_EQ(session_.Command_SelectDBRecord(5, 2), 0);
}

TEST_F(EarlierQuestion, OfTheIpodIsAnsweredBeforeTheNextIsAsked) {
  Arrive("FF 55 02 09 01 F4");
  Answer(kCountArtists, kFour);
  EXPECT_EQ(Count(2), 4);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 02 01 01 EF", kCountArtists));
}

// A list of one record, which comes twice, and the first record of the next list.
TEST_F(EarlierQuestion, DoesNotNameTheRecordsOfTheNextList) {
  const std::string one = "FF 55 09 04 00 1B 00 00 00 00 41 00 97";
  Answer("FF 55 0C 04 00 1A 02 00 00 00 00 00 00 00 01 D3", one + " " + one);
  Answer("FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 01 D0",
         "FF 55 09 04 00 1B 00 00 00 00 42 00 96", 50 * kMillisecond);
  wchar_t name[8] = L"";
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 2);
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 1);
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 5);
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 1);
  EXPECT_STREQ(name, L"B");
}

TEST_F(EarlierQuestion, IsForgottenWhenThePortIsOpenedAgain) {
  Answer(kCountArtists, kFour);
  EXPECT_EQ(Count(5), -1);
  session_.Close();
  world_.Advance(2 * kSecond);
  ASSERT_EQ(session_.Open(), 0);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 200 * kMillisecond);
}

TEST_F(EarlierQuestion, ThatIsTheEighthOfAllIsWaitedForToo) {
  AskOthers(7);
  EXPECT_EQ(Count(5), -1);
  Answer(kCountArtists, kFour);
  EXPECT_GE(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 2 * kSecond);
}

TEST_F(EarlierQuestion, BehindEightOthersIsForgotten) {
  EXPECT_EQ(Count(5), -1);
  AskOthers(8);
  Answer(kCountArtists, kFour);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Count(2), 4); }), 200 * kMillisecond);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Records taken one by one under the robust conduct: each once and in order, whatever the line does
// to them. What the default conduct makes of the same stands beside it.
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;

constexpr char kAll[] = "FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 03 CE";
constexpr char kFromSecond[] = "FF 55 0C 04 00 1A 05 00 00 00 01 00 00 00 02 CE";
constexpr char kArtists[] = "FF 55 0C 04 00 1A 02 00 00 00 00 00 00 00 01 D3";
const std::string kA = "FF 55 09 04 00 1B 00 00 00 00 41 00 97 ";
const std::string kB = "FF 55 09 04 00 1B 00 00 00 01 42 00 95 ";
const std::string kC = "FF 55 09 04 00 1B 00 00 00 02 43 00 93 ";
const std::string kZ = "FF 55 09 04 00 1B 00 00 00 00 5A 00 7E ";
const std::string kBWithoutTerminator = "FF 55 08 04 00 1B 00 00 00 01 42 96 ";
const std::string kRefusal = "FF 55 06 04 00 01 04 00 1A D7 ";

class RecordStream : public SessionTest {
 protected:
  void BeRobust() { ASSERT_EQ(session_.SetConduct(&IPOD_CONDUCT_ROBUST), 1); }
  std::vector<std::string> ThreeTracks() { return Records(3, 5); }
  // Asks for records, and takes them until there is none: "0 A", ...
  std::vector<std::string> Records(unsigned long count, unsigned char category) {
    session_.Command_RetrieveCategorizedDatabaseRecords(0, count, category);
    std::vector<std::string> records;
    unsigned long index = 0;
    wchar_t name[8];
    while (records.size() < 9 && session_.GetNextCategorizedRecord(&index, name, 8) != 0) {
      std::string text;
      for (const wchar_t* c = name; *c != 0; ++c) text += static_cast<char>(*c);
      records.push_back(std::to_string(index) + " " + text);
    }
    return records;
  }
};

TEST_F(RecordStream, HandsOutIndexAndName) {
  Answer(kAll, kA + kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
}

TEST_F(RecordStream, EndsWithoutWaitingAfterTheLastRecordAskedFor) {
  BeRobust();
  Answer(kAll, kA + kB + kC);
  const auto elapsed_us =
      Elapsed([&] { EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C")); });
  EXPECT_LT(elapsed_us, 300 * test::kMillisecond);
  EXPECT_THAT(DrainSent(), ElementsAre(kAll));
}

TEST_F(RecordStream, NothingIsTakenWhereNothingWasAskedFor) {
  BeRobust();
  wchar_t name[8];
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 0); }), 0);
}

TEST_F(RecordStream, AMissingRecordIsAskedForWithWhatFollowsIt) {
  BeRobust();
  Answer(kAll, kA + kC);
  Answer(kFromSecond, kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  EXPECT_THAT(DrainSent(), ElementsAre(kAll, kFromSecond));
}

TEST_F(RecordStream, AMissingRecordIsAskedForAsSoonAsALaterOneComes) {
  BeRobust();
  Answer(kAll, kA + kC);
  Answer(kFromSecond, kB + kC);
  EXPECT_LT(Elapsed([&] { EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C")); }),
            300 * test::kMillisecond);
}

TEST_F(RecordStream, AMissingRecordIsNotNoticedByDefault) {
  Answer(kAll, kA + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "2 C"));
}

TEST_F(RecordStream, ADoubledRecordIsTakenOnce) {
  BeRobust();
  Answer(kAll, kA + kA + kB + kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
}

TEST_F(RecordStream, ADoubledRecordIsTakenTwiceByDefault) {
  Answer(kAll, kA + kA + kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "0 A", "1 B", "2 C"));
}

TEST_F(RecordStream, ADamagedRecordIsAskedForAgain) {
  BeRobust();
  Answer(kAll, kA + kBWithoutTerminator + kC);
  Answer(kFromSecond, kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
}

TEST_F(RecordStream, WhatElseIsDamagedOfTheFirstStreamIsPassedOver) {
  BeRobust();
  Answer(kAll, kA + kBWithoutTerminator + kBWithoutTerminator + kBWithoutTerminator);
  Answer(kFromSecond, kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  EXPECT_THAT(DrainSent(), ElementsAre(kAll, kFromSecond));
}

TEST_F(RecordStream, ALostEndIsAskedForAfterASecondOfSilence) {
  BeRobust();
  Answer(kAll, kA);
  Answer(kFromSecond, kB + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
}

TEST_F(RecordStream, ASilentIpodIsAskedThreeTimes) {
  BeRobust();
  Answer(kAll, kA);
  const auto elapsed_us = Elapsed([&] { EXPECT_THAT(ThreeTracks(), ElementsAre("0 A")); });
  EXPECT_THAT(DrainSent(), ElementsAre(kAll, kFromSecond, kFromSecond));
  EXPECT_GE(elapsed_us, 3 * test::kSecond);
  EXPECT_LT(elapsed_us, 5 * test::kSecond);
}

TEST_F(RecordStream, ARefusalEndsTheStreamAtOnce) {
  BeRobust();
  Answer(kAll, kRefusal);
  const auto elapsed_us = Elapsed([&] { EXPECT_THAT(ThreeTracks(), ::testing::IsEmpty()); });
  EXPECT_LT(elapsed_us, 200 * test::kMillisecond);
}

TEST_F(RecordStream, WhatElseTheIpodSaysMeanwhileIsPassedOver) {
  BeRobust();
  const std::string accepted = "FF 55 06 04 00 01 00 00 1A DB ";
  const std::string another_refused = "FF 55 06 04 00 01 04 00 16 DB ";
  const std::string shuffle = "FF 55 04 04 00 2D 01 CA ";
  Answer(kAll, accepted + kA + another_refused + kB + shuffle + kC);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  EXPECT_THAT(DrainSent(), ElementsAre(kAll));
}

TEST_F(RecordStream, ARequestThatCannotBeWrittenIsAnAttempt) {
  BeRobust();
  Answer(kAll, kA);
  Answer(kFromSecond, kB + kC);
  world_.FailOnce("WriteFile", 3, 31);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  world_.ClearFaults();
  EXPECT_THAT(DrainSent(), ElementsAre(kAll, kFromSecond));
}

// Three tracks are asked for, nothing comes for a second, and they are asked for again: what the
// first request brings is believed, and what the second one brings after it is no list of artists.
TEST_F(RecordStream, ALateCopyIsNotTakenForTheNextList) {
  BeRobust();
  Answer(kAll, kA + kB + kC, 1200 * test::kMillisecond);
  Answer(kArtists, kZ, 1200 * test::kMillisecond);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  EXPECT_THAT(Records(1, 2), ElementsAre("0 Z"));
  EXPECT_THAT(DrainSent(), ElementsAre(kAll, kAll, kArtists, kArtists));
}

TEST_F(RecordStream, WhatAllCameOfIsNotWaitedForBeforeTheNextList) {
  BeRobust();
  Answer(kAll, kA + kB + kC);
  Answer(kArtists, kZ);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  EXPECT_LT(Elapsed([&] { EXPECT_THAT(Records(1, 2), ElementsAre("0 Z")); }),
            300 * test::kMillisecond);
}

TEST_F(RecordStream, WhatHasComeOfAnEarlierListIsHandedOutFirstByDefault) {
  session_.SetConduct(&IPOD_CONDUCT_FIELD);
  Answer(kArtists, kZ);
  Answer(kAll, kA + kB + kC);
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 2);
  world_.Advance(test::kSecond);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 Z", "0 A", "1 B", "2 C"));
}

TEST_F(RecordStream, ALostRecordIsWaitedForOnceBeforeTheNextList) {
  BeRobust();
  Answer(kAll, kA + kC);
  Answer(kFromSecond, kB + kC);
  Answer(kArtists, kZ);
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
  const auto elapsed_us = Elapsed([&] { EXPECT_THAT(Records(1, 2), ElementsAre("0 Z")); });
  EXPECT_GE(elapsed_us, 2 * test::kSecond);
  EXPECT_LT(elapsed_us, 2300 * test::kMillisecond);
  EXPECT_LT(Elapsed([&] { EXPECT_THAT(Records(1, 2), ElementsAre("0 Z")); }),
            300 * test::kMillisecond);
}

TEST_F(RecordStream, ARefusedListLeavesNothingToWaitFor) {
  BeRobust();
  Answer(kAll, kRefusal);
  Answer(kArtists, kZ);
  EXPECT_THAT(ThreeTracks(), ::testing::IsEmpty());
  EXPECT_LT(Elapsed([&] { EXPECT_THAT(Records(1, 2), ElementsAre("0 Z")); }),
            300 * test::kMillisecond);
}

TEST_F(RecordStream, ARecordUnderAnOlderIdentifierBelongsToAnotherStream) {
  BeRobust();
  TurnOnTransactionIds(7);
  Answer("FF 55 0E 04 00 1A 00 07 05 00 00 00 00 00 00 00 03 C5",
         "FF 55 0B 04 00 1B 00 06 00 00 00 00 5A 00 76"
         " FF 55 0B 04 00 1B 00 07 00 00 00 00 41 00 8E"
         " FF 55 0B 04 00 1B 00 07 00 00 00 01 42 00 8C"
         " FF 55 0B 04 00 1B 00 07 00 00 00 02 43 00 8A");
  EXPECT_THAT(ThreeTracks(), ElementsAre("0 A", "1 B", "2 C"));
}

}  // namespace

// SPDX-License-Identifier: MIT
// Selecting records: on the way down, by name, and of a track, which plays it.
#include "legacy/browsing_test.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using ::testing::ElementsAre;

constexpr const char* kCountAlbums = "FF 55 04 04 00 18 03 DD";
constexpr const char* kCount258 = "FF 55 07 04 00 19 00 00 01 02 D9";
constexpr const char* kSelectArtist = "FF 55 08 04 00 17 02 00 00 01 04 D6";
constexpr const char* kSelectAck = "FF 55 06 04 00 01 00 00 17 DE";
constexpr const char* kSelectTrace = "SelectDBRecord, Data 0-4, 2 0 0 1 4\n";

class Selecting : public test::LegacyBrowsingTest {};

TEST_F(Selecting, RecordIsSelectedInTheCategoryEnteredLast) {
  Enter(2);
  Answer(kSelectArtist, kSelectAck);
  Answer(kCountAlbums, kCount258);
  EXPECT_EQ(legacy_.select(3, 260, &count_), 1);
  EXPECT_EQ(count_, 258U);
  ExpectCategories(3, 3);
  EXPECT_THAT(DrainSent(), ElementsAre(kSelectArtist, kCountAlbums));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre(kSelectTrace,
                          "Select Last Category 2, Category 3, Index 260, Count 258, Result 1\n"));
}

TEST_F(Selecting, RecordIsSelectedSortedByNameWhenTheIpodNeedsIt) {
  Enter(2);
  ipodPeer::NameSort(legacy_) = 1;
  Answer("FF 55 09 04 00 38 02 00 00 01 04 04 B0", "FF 55 06 04 00 01 00 00 38 BD");
  Answer(kCountAlbums, kCount258);
  EXPECT_EQ(legacy_.select(3, 260, &count_), 1);
  EXPECT_EQ(count_, 258U);
  ExpectCategories(3, 3);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 09 04 00 38 02 00 00 01 04 04 B0", kCountAlbums));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectSortDBRecord, Data 0-4, 2 0 0 1 4\n",
                          "Select Last Category 2, Category 3, Index 260, Count 258, Result 1\n"));
}

TEST_F(Selecting, RefusedRecordFailsInTheCategoryEnteredLast) {
  Enter(2);
  Answer(kSelectArtist, "FF 55 06 04 00 01 04 00 17 DA");
  EXPECT_EQ(legacy_.select(3, 260, &count_), 0);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(2, 2);
  EXPECT_THAT(DrainSent(), ElementsAre(kSelectArtist));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre(kSelectTrace,
                          "Select Last Category 2, Category 3, Index 260, Count 0, Result 0\n"));
}

TEST_F(Selecting, UnansweredRecordFailsInTheCategoryEnteredLast) {
  Enter(2);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.select(3, 260, &count_), 0); }), kSilenceUs);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(2, 2);
}

TEST_F(Selecting, RecordThatCannotBeSentFailsAndAwaitsNothing) {
  Enter(2);
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.select(3, 260, &count_), 0); }), 5 * kMillisecond);
  EXPECT_EQ(count_, 0U);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre(kSelectTrace,
                          "Select Last Category 2, Category 3, Index 260, Count 0, Result 0\n"));
}

TEST_F(Selecting, RecordIsEnteredEvenWhenTheCountFails) {
  Enter(2);
  Answer(kSelectArtist, kSelectAck);
  EXPECT_EQ(legacy_.select(3, 260, &count_), 0);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(3, 3);
}

TEST_F(Selecting, RecordNeedsNoPlaceForItsCount) {
  Enter(2);
  Answer(kSelectArtist, kSelectAck);
  Answer(kCountAlbums, kCount258);
  EXPECT_EQ(legacy_.select(3, 260, nullptr), 1);
}

TEST_F(Selecting, GoingToTracksFromAnotherCategoryStopsNothing) {
  Enter(2);
  Answer(kSelectArtist, kSelectAck);
  Answer("FF 55 04 04 00 18 05 DB", kCount258);
  EXPECT_EQ(legacy_.select(5, 260, &count_), 1);
  EXPECT_EQ(count_, 258U);
  ExpectCategories(5, 5);
  EXPECT_THAT(DrainSent(), ElementsAre(kSelectArtist, "FF 55 04 04 00 18 05 DB"));
}

constexpr const char* kStop = "FF 55 04 04 00 29 02 CD";
constexpr const char* kStopAck = "FF 55 06 04 00 01 00 00 29 CC";
constexpr const char* kSelectTrack = "FF 55 08 04 00 17 05 00 00 00 03 D5";

TEST_F(Selecting, TrackIsStoppedFirstAndSelectedWithoutAwaitingAnAck) {
  Enter(5);
  Answer(kStop, kStopAck);
  Answer(kSelectTrack, kSelectAck);
  EXPECT_EQ(legacy_.select(5, 3, &count_), 1);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(5, 5);
  EXPECT_THAT(DrainSent(), ElementsAre(kStop, kSelectTrack));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectDBRecord, Data 0-4, 5 0 0 0 3\n",
                          "Select Last Category 5, Category 5, Index 3, Count 0, Result 1\n"));
}

TEST_F(Selecting, SelectingATrackTakesOnlyTheStopAndThePauses) {
  Enter(5);
  world_.Record({"Sleep", "ReadFile"});
  legacy_.select(5, 3, &count_);
  // Five empty reads for the ACK of the stop; none for the selection.
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("Sleep(5)", "ReadFile(port1, 1)", "Sleep(200)", "ReadFile(port1, 1)",
                          "Sleep(200)", "ReadFile(port1, 1)", "Sleep(200)", "ReadFile(port1, 1)",
                          "Sleep(200)", "ReadFile(port1, 1)", "Sleep(200)", "Sleep(5)"));
}

TEST_F(Selecting, TrackIsNotSelectedWhenTheStopIsRefused) {
  Enter(5);
  Answer(kStop, "FF 55 06 04 00 01 04 00 29 C8");
  EXPECT_EQ(legacy_.select(5, 3, &count_), 0);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(5, 5);
  EXPECT_THAT(DrainSent(), ElementsAre(kStop));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Select Last Category 5, Category 5, Index 3, Count 0, Result 0\n"));
}

TEST_F(Selecting, TrackOnTheWayToAnotherCategoryIsSelectedWithoutAStop) {
  Enter(5);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.select(3, 3, &count_), 1); }), 5 * kMillisecond);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(5, 5);
  EXPECT_THAT(DrainSent(), ElementsAre(kSelectTrack));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectDBRecord, Data 0-4, 5 0 0 0 3\n",
                          "Select Last Category 5, Category 3, Index 3, Count 0, Result 1\n"));
}

TEST_F(Selecting, TrackIsSelectedSortedByNameWhenTheIpodNeedsIt) {
  Enter(5);
  ipodPeer::NameSort(legacy_) = 1;
  Answer(kStop, kStopAck);
  EXPECT_EQ(legacy_.select(5, 3, &count_), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kStop, "FF 55 09 04 00 38 05 00 00 00 03 04 AF"));
}

TEST_F(Selecting, TrackThatCannotBeSelectedFails) {
  Enter(5);
  Answer(kStop, kStopAck);
  world_.FailFrom("WriteFile", 3, 31);
  EXPECT_EQ(legacy_.select(5, 3, &count_), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kStop));
}

}  // namespace

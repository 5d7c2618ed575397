// SPDX-License-Identifier: MIT
// Browsing: categories, counts, and entering a category at the top.
#include "legacy/browsing_test.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kReset = "FF 55 03 04 00 16 E3";
constexpr const char* kResetAck = "FF 55 06 04 00 01 00 00 16 DF";
constexpr const char* kResetVideo = "FF 55 04 04 00 3B 02 BB";
constexpr const char* kCountArtists = "FF 55 04 04 00 18 02 DE";
constexpr const char* kCountAlbums = "FF 55 04 04 00 18 03 DD";
constexpr const char* kCount258 = "FF 55 07 04 00 19 00 00 01 02 D9";
constexpr const char* kPurging = "Error reading port, purging rx...\r\n";

class LegacyBrowsing : public test::LegacyBrowsingTest {};

TEST_F(LegacyBrowsing, CategoryIsWhatWasSet) {
  ipodPeer::LastCategory(legacy_) = 3;
  legacy_.setcategory(8);
  ExpectCategories(8, 3);
}

TEST_F(LegacyBrowsing, LastTryIsTheObjectsEmptyText) {
  EXPECT_EQ(legacy_.getlasttry(), ipodPeer::StatusText(legacy_));
  EXPECT_STREQ(legacy_.getlasttry(), L"");
}

TEST_F(LegacyBrowsing, CountIsTheFirstFourReplyBytes) {
  Answer(kCountArtists, "FF 55 07 04 00 19 FE DC BA 98 B0");
  legacy_.setcategory(2);
  EXPECT_EQ(legacy_.loadipodcategorydbrecordcount(&count_), 1);
  EXPECT_EQ(count_, 0xFEDCBA98U);
  EXPECT_THAT(DrainSent(), ElementsAre(kCountArtists));
}

TEST_F(LegacyBrowsing, CountIs0Unanswered) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.loadipodcategorydbrecordcount(&count_), 0); }),
            kSilenceUs);
  EXPECT_EQ(count_, 0U);
}

TEST_F(LegacyBrowsing, CountIs0WhenItCannotBeAskedFor) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.loadipodcategorydbrecordcount(&count_), 0); }),
            5 * kMillisecond);
  EXPECT_EQ(count_, 0U);
}

TEST_F(LegacyBrowsing, CountNeedsNoPlace) {
  Answer(kCountArtists, kCount258);
  legacy_.setcategory(2);
  EXPECT_EQ(legacy_.loadipodcategorydbrecordcount(nullptr), 1);
}

TEST_F(LegacyBrowsing, TopIsEnteredByAResetWithoutAHierarchy) {
  Answer(kReset, kResetAck);
  Answer(kCountArtists, kCount258);
  EXPECT_EQ(legacy_.selecttop(2, &count_, 0), 1);
  EXPECT_EQ(count_, 258U);
  ExpectCategories(2, 2);
  EXPECT_THAT(DrainSent(), ElementsAre(kReset, kCountArtists));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectTop Category 2, Count Returned 258, Result 1\n"));
}

TEST_F(LegacyBrowsing, TopOfTheAudioHierarchyIsEnteredByItsReset) {
  Answer("FF 55 04 04 00 3B 01 BC", "FF 55 06 04 00 01 00 00 3B BA");
  Answer(kCountArtists, kCount258);
  EXPECT_EQ(legacy_.selecttop(2, &count_, 1), 1);
  EXPECT_EQ(count_, 258U);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 3B 01 BC", kCountArtists));
}

TEST_F(LegacyBrowsing, TopOfTheVideoHierarchyIsEnteredByItsReset) {
  Answer(kResetVideo, "FF 55 06 04 00 01 00 00 3B BA");
  Answer(kCountAlbums, kCount258);
  EXPECT_EQ(legacy_.selecttop(3, &count_, 2), 1);
  EXPECT_EQ(count_, 258U);
  EXPECT_THAT(DrainSent(), ElementsAre(kResetVideo, kCountAlbums));
}

TEST_F(LegacyBrowsing, TopOfAnotherHierarchySendsNothingAndFails) {
  Enter(3);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.selecttop(2, &count_, 3), 0); }), 0);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(9, 3);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectTop Category 2, Count Returned 0, Result 0\n"));
}

TEST_F(LegacyBrowsing, TopOfTheLastHierarchySendsNothingAndFails) {
  EXPECT_EQ(legacy_.selecttop(2, &count_, 255), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(LegacyBrowsing, RefusedTopFailsAndCategoriesStay) {
  Enter(3);
  Answer(kReset, "FF 55 06 04 00 01 04 00 16 DB");
  EXPECT_EQ(legacy_.selecttop(2, &count_, 0), 0);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(9, 3);
  EXPECT_THAT(DrainSent(), ElementsAre(kReset));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectTop Category 2, Count Returned 0, Result 0\n"));
}

TEST_F(LegacyBrowsing, UnansweredTopFailsAndCategoriesStay) {
  Enter(3);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.selecttop(2, &count_, 0), 0); }), kSilenceUs);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(9, 3);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre(kPurging, "SelectTop Category 2, Count Returned 0, Result 0\n"));
}

TEST_F(LegacyBrowsing, AckThatTellsNoStatusIsNoSuccess) {
  Enter(3);
  // A large frame, whose length byte is 0, so nothing is read of it and the status stays 255. As
  // much of it as is read passes for a command 1 with a good checksum.
  std::string ack = "FF 55 00 01 00 01";
  for (int i = 0; i < 249; ++i) ack += " 00";
  Answer(kReset, ack + " FE");
  EXPECT_EQ(legacy_.selecttop(2, &count_, 0), 0);
  ExpectCategories(9, 3);
  EXPECT_THAT(DrainSent(), ElementsAre(kReset));
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectTop Category 2, Count Returned 0, Result 0\n"));
}

TEST_F(LegacyBrowsing, TopThatCannotBeSentFailsAndAwaitsNothing) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.selecttop(2, &count_, 2), 0); }), 5 * kMillisecond);
  EXPECT_EQ(count_, 0U);
}

TEST_F(LegacyBrowsing, TopIsEnteredEvenWhenItsCountFails) {
  Answer(kReset, kResetAck);
  EXPECT_EQ(legacy_.selecttop(2, &count_, 0), 0);
  EXPECT_EQ(count_, 0U);
  ExpectCategories(2, 2);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre(kPurging, "SelectTop Category 2, Count Returned 0, Result 0\n"));
}

TEST_F(LegacyBrowsing, TopNeedsNoPlaceForItsCount) {
  Answer(kReset, kResetAck);
  Answer(kCountArtists, kCount258);
  EXPECT_EQ(legacy_.selecttop(2, nullptr, 0), 1);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("SelectTop Category 2, Count Returned 258, Result 1\n"));
}

}  // namespace

// SPDX-License-Identifier: MIT
// Artwork: formats, counts, times and data, and the walks through their replies.
#include <algorithm>
#include <iterator>
#include <memory>

#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::Each;
using ::testing::ElementsAre;

constexpr const char* kGetFormats = "FF 55 03 04 00 0E EB";
constexpr const char* kGetCount = "FF 55 0A 04 00 0C 07 00 00 01 02 00 00 DC";
constexpr const char* kGetTimes = "FF 55 0D 04 00 1F 00 00 01 02 0A 0B 00 00 00 01 B7";
constexpr const char* kGetIndex = "FF 55 03 04 00 1E DB";
constexpr const char* kIndex258 = "FF 55 07 04 00 1F 00 00 01 02 D3";

class Artwork : public LegacyTest {
 protected:
  Artwork() { std::fill(std::begin(ids_), std::end(ids_), std::uint16_t{7}); }
  int GetFormats() { return legacy_.getartworkformats(ids_, &count_); }
  int GetCount() { return legacy_.getindexedplayingtrackartworkcount(258, &value_); }
  int GetTimes() { return legacy_.gettrackartworktimes(258, 0x0A0B, &time_); }

  unsigned short ids_[21];
  unsigned char count_ = 7;
  unsigned short value_ = 7;
  unsigned long time_ = 7;
};

// ---- Formats -----------------------------------------------------------------------------------

TEST_F(Artwork, FormatIdsAreTheFirstTwoBytesOfEachRecord) {
  Answer(kGetFormats,
         "FF 55 18 04 00 0F 0A 0B 02 00 80 00 40 0C 0D 01 55 55 55 55 0E 0F 03 00 10 00 10 50");
  EXPECT_EQ(GetFormats(), 1);
  EXPECT_EQ(ids_[0], 0x0A0B);
  EXPECT_EQ(ids_[1], 0x0C0D);
  EXPECT_EQ(ids_[2], 0x0E0F);
  EXPECT_EQ(ids_[3], 7);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetFormats));
}

TEST_F(Artwork, FormatsAreNotCounted) {
  Answer(kGetFormats, "FF 55 11 04 00 0F 0A 0B 02 00 80 00 40 0C 0D 01 00 10 00 10 CB");
  EXPECT_EQ(GetFormats(), 1);
  EXPECT_EQ(count_, 0);
}

TEST_F(Artwork, FormatsEndAtAPixelFormatThatReadsAsTheFill) {
  Answer(kGetFormats,
         "FF 55 18 04 00 0F 0A 0B 02 00 80 00 40 0C 0D 55 00 10 00 10 0E 0F 03 00 10 00 10 30");
  EXPECT_EQ(GetFormats(), 1);
  EXPECT_EQ(ids_[0], 0x0A0B);
  EXPECT_EQ(ids_[1], 7);
}

TEST_F(Artwork, NoFormatIsReadWhenTheFirstPixelFormatReadsAsTheFill) {
  Answer(kGetFormats, "FF 55 0A 04 00 0F 0A 0B 55 00 80 00 40 B9");
  EXPECT_EQ(GetFormats(), 1);
  EXPECT_EQ(ids_[0], 7);
}

TEST_F(Artwork, NoFormatIsReadFromAReplyWithout) {
  Answer(kGetFormats, "FF 55 03 04 00 0F EA");
  EXPECT_EQ(GetFormats(), 1);
  EXPECT_EQ(ids_[0], 7);
}

TEST_F(Artwork, FormatsEndAfterTwenty) {
  // Thirty records, 0A0B each.
  std::string reply = "FF 55 D5 04 00 0F";
  for (int i = 0; i < 30; ++i) reply += " 0A 0B 02 00 80 00 40";
  Answer(kGetFormats, reply + " E6");
  EXPECT_EQ(GetFormats(), 1);
  EXPECT_THAT(std::vector<unsigned short>(ids_, ids_ + 20), Each(0x0A0B));
  EXPECT_EQ(ids_[20], 7);
}

TEST_F(Artwork, UnansweredFormatsAreNotStored) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetFormats(), 0); }), kSilenceUs);
  EXPECT_EQ(count_, 0);
  EXPECT_EQ(ids_[0], 7);
}

TEST_F(Artwork, FormatsThatCannotBeAskedForAreNotStored) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetFormats(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(count_, 0);
  EXPECT_EQ(ids_[0], 7);
}

TEST_F(Artwork, FormatsNeedNoPlaces) {
  Answer(kGetFormats, "FF 55 0A 04 00 0F 0A 0B 02 00 80 00 40 0C");
  EXPECT_EQ(legacy_.getartworkformats(nullptr, nullptr), 1);
}

// ---- Counts ------------------------------------------------------------------------------------

// The first step reads 07 and the identifier's high byte as the value, and the count as the
// condition.
TEST_F(Artwork, CountStoresTheTypeAndHalfAnIdentifier) {
  Answer(kGetCount, "FF 55 08 04 00 0D 07 0A 0B 00 01 CA");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0x070A);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetCount));
}

TEST_F(Artwork, CountsHighByteAloneCounts) {
  Answer(kGetCount, "FF 55 08 04 00 0D 07 0A 0B 01 00 CA");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0x070A);
}

TEST_F(Artwork, CountGoesOnFourBytesFurtherWhereThereIsNone) {
  Answer(kGetCount, "FF 55 0C 04 00 0D 07 0A 0B 00 00 0C 0D 00 03 AB");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0x000C);
}

TEST_F(Artwork, CountTakesTheFirstThatThereIs) {
  Answer(kGetCount, "FF 55 14 04 00 0D 07 0A 0B 00 00 0C 0D 00 00 0E 0F 00 01 11 12 00 02 63");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0x000E);
}

TEST_F(Artwork, CountEndsWhereTheSecondByteReadsAsTheFill) {
  Answer(kGetCount, "FF 55 0C 04 00 0D 07 55 0B 00 00 0C 0D 00 03 60");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 7);
}

TEST_F(Artwork, CountEndsWhereTheThirdByteReadsAsTheFillAStepLater) {
  Answer(kGetCount, "FF 55 10 04 00 0D 07 0A 55 00 00 0C 0D 00 00 0E 0F 00 01 42");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 7);
}

TEST_F(Artwork, CountReadsAStepBeforeTheEndItHasNotComeTo) {
  Answer(kGetCount, "FF 55 0C 04 00 0D 07 0A 55 00 00 0C 0D 00 03 61");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0x000C);
}

TEST_F(Artwork, NoCountIsReadWhenTheFirstByteReadsAsTheFill) {
  Answer(kGetCount, "FF 55 08 04 00 0D 55 0A 0B 00 01 7C");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 7);
}

TEST_F(Artwork, CountBehindTheReplyIsTheFill) {
  // The second step reads 00, the checksum 41, then the fill.
  Answer(kGetCount, "FF 55 08 04 00 0D 07 9F 00 00 00 41");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0x0041);
}

TEST_F(Artwork, CountOfTheLongestReplyWithoutAnyEndsInsideTheBuffer) {
  // 249 bytes of payload: 07, then zeros. The step at 248 finds the fill behind the 250 characters.
  std::string reply = "FF 55 FC 04 00 0D 07";
  for (int i = 0; i < 248; ++i) reply += " 00";
  Answer(kGetCount, reply + " EC");
  EXPECT_EQ(GetCount(), 1);
  EXPECT_EQ(value_, 0);
}

TEST_F(Artwork, UnansweredCountIsNotStored) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetCount(), 0); }), kSilenceUs);
  EXPECT_EQ(value_, 7);
}

TEST_F(Artwork, CountThatCannotBeAskedForIsNotStored) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetCount(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(value_, 7);
}

TEST_F(Artwork, CountNeedsNoPlace) {
  Answer(kGetCount, "FF 55 08 04 00 0D 07 0A 0B 00 01 CA");
  EXPECT_EQ(legacy_.getindexedplayingtrackartworkcount(258, nullptr), 1);
}

// ---- Times -------------------------------------------------------------------------------------

TEST_F(Artwork, TimeAddsItsLowerBytesAnd256) {
  Answer(kGetTimes, "FF 55 07 04 00 2B 01 02 03 04 C0");
  EXPECT_EQ(GetTimes(), 1);
  EXPECT_EQ(time_, 0x01020000U + 3 + 4 + 256);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetTimes));
}

TEST_F(Artwork, LongestTimeStaysInside32Bits) {
  Answer(kGetTimes, "FF 55 07 04 00 2B FF FF FF FF CE");
  EXPECT_EQ(GetTimes(), 1);
  EXPECT_EQ(time_, 0xFFFF02FEU);
}

TEST_F(Artwork, TimeOfAnEmptyReplyIsTheFills) {
  // Of an empty reply the checksum is read, CE, and then the fill: CE 55 55 55.
  Answer(kGetTimes, "FF 55 03 04 00 2B CE");
  EXPECT_EQ(GetTimes(), 1);
  EXPECT_EQ(time_, 0xCE5501AAU);
}

TEST_F(Artwork, UnansweredTimeIsNotStored) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetTimes(), 0); }), kSilenceUs);
  EXPECT_EQ(time_, 7U);
}

TEST_F(Artwork, TimeThatCannotBeAskedForIsNotStored) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetTimes(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(time_, 7U);
}

TEST_F(Artwork, TimeNeedsNoPlace) {
  Answer(kGetTimes, "FF 55 07 04 00 2B 01 02 03 04 C0");
  EXPECT_EQ(legacy_.gettrackartworktimes(258, 0x0A0B, nullptr), 1);
}

// ---- Data --------------------------------------------------------------------------------------

TEST_F(Artwork, DataAreAskedForWithTheValueOfTheCountInPlaceOfTheFormat) {
  Answer(kGetIndex, kIndex258);
  Answer(kGetCount, "FF 55 08 04 00 0D 07 0C 0D 00 01 C6");
  Answer("FF 55 0D 04 00 1F 00 00 01 02 07 0C 00 00 00 01 B9", "FF 55 07 04 00 2B 01 02 03 04 C0");
  Answer("FF 55 0D 04 00 10 00 00 01 02 07 0C 01 02 01 07 BE", "FF 55 07 04 00 11 00 00 00 80 64");
  EXPECT_EQ(legacy_.getcurrenttrackartworkdata(0x0A0B), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex, kGetCount,
                                       "FF 55 0D 04 00 1F 00 00 01 02 07 0C 00 00 00 01 B9",
                                       "FF 55 0D 04 00 10 00 00 01 02 07 0C 01 02 01 07 BE"));
}

TEST_F(Artwork, DataAreAskedForWithTheFormatAndTime0WhenCountAndTimeFail) {
  Answer(kGetIndex, kIndex258);
  Answer("FF 55 0D 04 00 10 00 00 01 02 0A 0B 00 00 00 00 C7", "FF 55 07 04 00 11 00 00 00 80 64");
  EXPECT_EQ(legacy_.getcurrenttrackartworkdata(0x0A0B), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex, kGetCount, kGetTimes,
                                       "FF 55 0D 04 00 10 00 00 01 02 0A 0B 00 00 00 00 C7"));
}

TEST_F(Artwork, UnansweredDataFailAfterThreeSilences) {
  Answer(kGetIndex, kIndex258);
  EXPECT_EQ(legacy_.getcurrenttrackartworkdata(0x0A0B), 0);
  EXPECT_EQ(DrainSent().size(), 4U);
}

TEST_F(Artwork, DataOfAnUnknownTrackAreNotAskedFor) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getcurrenttrackartworkdata(0x0A0B), 0); }),
            kSilenceUs);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex));
}

TEST_F(Artwork, DataThatCannotBeAskedForFail) {
  Answer(kGetIndex, kIndex258);
  world_.FailFrom("WriteFile", 3, 31);
  EXPECT_EQ(legacy_.getcurrenttrackartworkdata(0x0A0B), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex));
}

}  // namespace

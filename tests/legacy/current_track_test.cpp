// SPDX-License-Identifier: MIT
// The current track: its index, title and chapter, and whether it is a video.
#include <algorithm>
#include <iterator>

#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::ElementsAre;

constexpr const char* kGetIndex = "FF 55 03 04 00 1E DB";

class CurrentTrack : public LegacyTest {
 protected:
  CurrentTrack() { std::fill(std::begin(text_), std::end(text_), L'x'); }
  void AnswerIndex() { Answer(kGetIndex, "FF 55 07 04 00 1F 00 00 01 02 D3"); }

  wchar_t text_[250];
  unsigned long index_ = 7;
  int flag_ = 7;
};

TEST_F(CurrentTrack, IndexIsTheFirstFourReplyBytes) {
  Answer(kGetIndex, "FF 55 07 04 00 1F FE DC BA 98 AA");
  EXPECT_EQ(legacy_.getcurrentplayingtrackindex(&index_), 1);
  EXPECT_EQ(index_, 0xFEDCBA98U);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex));
}

TEST_F(CurrentTrack, UnansweredIndexIsStoredAs0) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getcurrentplayingtrackindex(&index_), 0); }),
            kSilenceUs);
  EXPECT_EQ(index_, 0U);
}

TEST_F(CurrentTrack, IndexOfAnotherReplyIsStoredAs0) {
  Answer(kGetIndex, "FF 55 07 04 00 1D 01 02 03 04 CE");
  EXPECT_EQ(legacy_.getcurrentplayingtrackindex(&index_), 0);
  EXPECT_EQ(index_, 0U);
}

TEST_F(CurrentTrack, IndexThatCannotBeAskedForIsNotStored) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getcurrentplayingtrackindex(&index_), 0); }),
            5 * kMillisecond);
  EXPECT_EQ(index_, 7U);
}

TEST_F(CurrentTrack, IndexNeedsNoPlace) {
  AnswerIndex();
  EXPECT_EQ(legacy_.getcurrentplayingtrackindex(nullptr), 1);
}

TEST_F(CurrentTrack, TitleIsThatOfTheCurrentIndexConverted) {
  AnswerIndex();
  Answer("FF 55 07 04 00 20 00 00 01 02 D2", "FF 55 08 04 00 21 5A 6F C3 AB 00 9C");
  EXPECT_EQ(legacy_.getindexedplayingtracktitle(text_), 1);
  EXPECT_STREQ(text_, L"Zo\u00EB");
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex, "FF 55 07 04 00 20 00 00 01 02 D2"));
}

TEST_F(CurrentTrack, TitleWithoutATerminatorIsFollowedByItsChecksumAndWhatTheBufferHeld) {
  AnswerIndex();
  Answer("FF 55 07 04 00 20 00 00 01 02 D2",
         "FF 55 05 04 00 21 41 42 53");  // the checksum is 53, "S"
  EXPECT_EQ(legacy_.getindexedplayingtracktitle(text_), 1);
  EXPECT_EQ(std::wstring(text_), L"ABS" + std::wstring(246, L'x'));
}

TEST_F(CurrentTrack, TitleIsEmptyWithoutAnIndexAndNotAskedFor) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getindexedplayingtracktitle(text_), 0); }),
            kSilenceUs);
  EXPECT_STREQ(text_, L"");
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex));
}

TEST_F(CurrentTrack, TitleIsEmptyUnanswered) {
  AnswerIndex();
  EXPECT_EQ(legacy_.getindexedplayingtracktitle(text_), 0);
  EXPECT_EQ(test::Units(text_, 2), "0 78");
}

TEST_F(CurrentTrack, TitleIsEmptyWhenItCannotBeAskedFor) {
  AnswerIndex();
  world_.FailFrom("WriteFile", 3, 31);
  EXPECT_EQ(legacy_.getindexedplayingtracktitle(text_), 0);
  EXPECT_STREQ(text_, L"");
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex));
}

TEST_F(CurrentTrack, TitleNeedsNoPlace) {
  AnswerIndex();
  Answer("FF 55 07 04 00 20 00 00 01 02 D2", "FF 55 08 04 00 21 5A 6F C3 AB 00 9C");
  EXPECT_EQ(legacy_.getindexedplayingtracktitle(nullptr), 1);
}

TEST_F(CurrentTrack, ChapterNameIsConverted) {
  Answer("FF 55 03 04 00 07 F2", "FF 55 08 04 00 08 5A 6F C3 AB 00 B5");
  EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(text_), 1);
  EXPECT_STREQ(text_, L"Zo\u00EB");
  EXPECT_EQ(text_[24], L'\0');
  EXPECT_EQ(text_[25], L'x');
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 04 00 07 F2"));
}

TEST_F(CurrentTrack, LongChapterNameIsCutTo24Characters) {
  Answer("FF 55 03 04 00 07 F2",
         "FF 55 1E 04 00 08 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 55 56 57 "
         "58 59 5A 00 F7");
  EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(text_), 1);
  EXPECT_STREQ(text_, L"ABCDEFGHIJKLMNOPQRSTUVWX");
  EXPECT_EQ(text_[25], L'x');
}

TEST_F(CurrentTrack, LongChapterNameIsCutBetweenTwoCharacters) {
  Answer("FF 55 03 04 00 07 F2",
         "FF 55 23 04 00 08 41 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 C3 A9 "
         "C3 A9 C3 A9 C3 A9 C3 A9 00 3C");
  EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(text_), 1);
  EXPECT_EQ(std::wstring(text_), L"A" + std::wstring(11, L'\u00E9'));
}

TEST_F(CurrentTrack, ChapterNameWithoutATerminatorIsFollowedByTheRestOfUnknown) {
  Answer("FF 55 03 04 00 07 F2", "FF 55 05 04 00 08 41 42 6C");  // the checksum is 6C, "l"
  EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(text_), 1);
  EXPECT_STREQ(text_, L"ABlnown");
}

TEST_F(CurrentTrack, ChapterNameIsUnknownUnanswered) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(text_), 0); }),
            kSilenceUs);
  EXPECT_STREQ(text_, L"Unknown");
}

TEST_F(CurrentTrack, ChapterNameIsConvertedAfterAFailureToo) {
  world_.FailFrom("WriteFile", 1, 31);
  world_.Record({"MultiByteToWideChar"});
  EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(text_), 0);
  EXPECT_STREQ(text_, L"Unknown");
  EXPECT_EQ(world_.DrainRecord().size(), 1U);
}

TEST_F(CurrentTrack, ChapterNameNeedsNoPlace) {
  Answer("FF 55 03 04 00 07 F2", "FF 55 08 04 00 08 5A 6F C3 AB 00 B5");
  EXPECT_EQ(legacy_.getipodcurrentplayingtrackchaptername(nullptr), 1);
}

constexpr const char* kGetCapabilities = "FF 55 09 03 12 00 00 00 01 02 00 00 DF";

TEST_F(CurrentTrack, VideoFlagIsTheTopBitAsItStands) {
  AnswerIndex();
  Answer(kGetCapabilities, "FF 55 0D 03 13 00 00 00 00 80 00 00 00 00 00 00 5D");
  EXPECT_EQ(legacy_.iscurrentvideo(&flag_), 1);
  EXPECT_EQ(flag_, 0x80);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex, kGetCapabilities));
}

TEST_F(CurrentTrack, VideoFlagIs0ForAllOtherBits) {
  AnswerIndex();
  Answer(kGetCapabilities, "FF 55 0D 03 13 00 FF FF FF 7F FF FF FF FF FF FF 67");
  EXPECT_EQ(legacy_.iscurrentvideo(&flag_), 1);
  EXPECT_EQ(flag_, 0);
}

TEST_F(CurrentTrack, VideoFlagIsNotAskedForWithoutAnIndex) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.iscurrentvideo(&flag_), 0); }), kSilenceUs);
  EXPECT_EQ(flag_, 7);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex));
}

TEST_F(CurrentTrack, UnansweredVideoFlagIsNotStored) {
  AnswerIndex();
  EXPECT_EQ(legacy_.iscurrentvideo(&flag_), 0);
  EXPECT_EQ(flag_, 7);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetIndex, kGetCapabilities));
}

TEST_F(CurrentTrack, VideoFlagThatCannotBeAskedForIsNotStored) {
  AnswerIndex();
  world_.FailFrom("WriteFile", 3, 31);
  EXPECT_EQ(legacy_.iscurrentvideo(&flag_), 0);
  EXPECT_EQ(flag_, 7);
}

TEST_F(CurrentTrack, VideoFlagNeedsNoPlace) {
  AnswerIndex();
  Answer(kGetCapabilities, "FF 55 0D 03 13 00 00 00 00 80 00 00 00 00 00 00 5D");
  EXPECT_EQ(legacy_.iscurrentvideo(nullptr), 1);
}

}  // namespace

// SPDX-License-Identifier: MIT
// What the iPod tells about itself: the requests, the texts, and what each failure leaves.
#include <algorithm>
#include <iterator>

#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kVersion = "FF 55 02 00 09 F5";
constexpr const char* kModel = "FF 55 02 00 0D F1";
constexpr const char* kLingoVersion = "FF 55 03 00 0F 00 EE";

class Getters : public LegacyTest {
 protected:
  Getters() { std::fill(std::begin(text_), std::end(text_), L'x'); }
  // Fails every write from now on.
  void StopSending() { world_.FailFrom("WriteFile", 1, 31); }

  wchar_t text_[250];
};

TEST_F(Getters, SoftwareVersionIsThreeNumbers) {
  Answer(kVersion, "FF 55 05 00 0A 02 01 0E E0");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 250), 1);
  EXPECT_STREQ(text_, L"2.1.14");
  EXPECT_THAT(DrainSent(), ElementsAre(kVersion));
}

TEST_F(Getters, SoftwareVersionWithMajor0HasItsTextAndFails) {
  Answer(kVersion, "FF 55 05 00 0A 00 02 01 EE");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 250), 0);
  EXPECT_STREQ(text_, L"0.2.1");
}

TEST_F(Getters, SoftwareVersionIsCutToItsSize) {
  Answer(kVersion, "FF 55 05 00 0A FF FE FD F7");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 6), 1);
  EXPECT_STREQ(text_, L"255.2");
  EXPECT_EQ(text_[6], L'x');
}

TEST_F(Getters, SoftwareVersionNeedsTwelveCharactersAtMost) {
  Answer(kVersion, "FF 55 05 00 0A FF FE FD F7");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 12), 1);
  EXPECT_STREQ(text_, L"255.254.253");
}

TEST_F(Getters, SoftwareVersionOfSize1IsEmpty) {
  Answer(kVersion, "FF 55 05 00 0A 02 01 0E E0");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 1), 1);
  EXPECT_EQ(test::Units(text_, 2), "0 78");
}

TEST_F(Getters, SoftwareVersionOfSize0TouchesNothing) {
  Answer(kVersion, "FF 55 05 00 0A 02 01 0E E0");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 0), 1);
  EXPECT_EQ(text_[0], L'x');
}

TEST_F(Getters, SoftwareVersionOfAShortReplyGoesOnWithZeros) {
  Answer(kVersion, "FF 55 03 00 0A 07 EC");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 250), 1);
  EXPECT_STREQ(text_, L"7.0.0");
}

TEST_F(Getters, SoftwareVersionOfALongReplyIsItsFirstThreeBytes) {
  Answer(kVersion, "FF 55 07 00 0A 01 02 03 04 05 E0");
  EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 250), 1);
  EXPECT_STREQ(text_, L"1.2.3");
}

TEST_F(Getters, UnansweredSoftwareVersionIsEmptyAndFails) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 250), 0); }),
            kSilenceUs);
  EXPECT_STREQ(text_, L"");
}

TEST_F(Getters, SoftwareVersionThatCannotBeAskedForIsNotAwaited) {
  StopSending();
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodsoftwareversion(text_, 250), 0); }),
            5 * kMillisecond);
  EXPECT_STREQ(text_, L"");
}

TEST_F(Getters, AnAnsweredRequestPausesOnlyBehindTheSyncByte) {
  Answer(kVersion, "FF 55 05 00 0A 02 01 0E E0");
  world_.Record({"Sleep", "WriteFile"});
  legacy_.getipodsoftwareversion(text_, 250);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(5)", "WriteFile(port1, 55 02 00 09 F5)"));
}

TEST_F(Getters, AnAnsweredRequestTakesThePauseAndTheLinesTime) {
  Answer(kVersion, "FF 55 05 00 0A 02 01 0E E0");
  const std::int64_t elapsed_us = Elapsed([this] { legacy_.getipodsoftwareversion(text_, 250); });
  constexpr std::int64_t kFiveBytesUs = 869;  // the request behind its sync byte, at 57600 baud
  constexpr std::int64_t kNineBytesUs = 1563;
  EXPECT_EQ(elapsed_us, 5 * kMillisecond + kFiveBytesUs + kNineBytesUs);
}

TEST_F(Getters, ModelNumberIsItsIdentifierInHexadecimal) {
  Answer(kModel, "FF 55 0E 00 0E 00 0B 00 04 4D 42 35 39 38 4C 4C 00 08");
  EXPECT_EQ(legacy_.getipodmodelnum(text_), 1);
  EXPECT_STREQ(text_, L"000b|0004");
  EXPECT_EQ(text_[10], L'x');
  EXPECT_THAT(DrainSent(), ElementsAre(kModel));
}

TEST_F(Getters, ModelNumberHasSmallLettersAndTwoDigitsToAByte) {
  Answer(kModel, "FF 55 06 00 0E AB CD EF 01 84");
  EXPECT_EQ(legacy_.getipodmodelnum(text_), 1);
  EXPECT_STREQ(text_, L"abcd|ef01");
}

TEST_F(Getters, ModelNumberOfAShortReplyGoesOnWithZeros) {
  Answer(kModel, "FF 55 04 00 0E 12 34 A8");
  EXPECT_EQ(legacy_.getipodmodelnum(text_), 1);
  EXPECT_STREQ(text_, L"1234|0000");
}

TEST_F(Getters, UnansweredModelNumberIsEmptyAndFails) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodmodelnum(text_), 0); }), kSilenceUs);
  EXPECT_STREQ(text_, L"");
}

TEST_F(Getters, ModelNumberThatCannotBeAskedForIsNotAwaited) {
  StopSending();
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodmodelnum(text_), 0); }), 5 * kMillisecond);
  EXPECT_STREQ(text_, L"");
}

TEST_F(Getters, ProtocolVersionSendsNothingAndTouchesNothing) {
  EXPECT_EQ(legacy_.getipodprotocolversion(text_), 0);
  EXPECT_EQ(legacy_.getipodprotocolversion(nullptr), 0);
  EXPECT_EQ(text_[0], L'x');
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Getters, LingoVersionIsTheReplysLingoAndItsVersion) {
  Answer(kLingoVersion, "FF 55 05 00 10 00 01 09 E1");
  EXPECT_EQ(legacy_.getipodlingoversion(text_, 0), 1);
  EXPECT_STREQ(text_, L"0 - 1.9");
}

TEST_F(Getters, LingoVersionMayFillItsTenCharacters) {
  Answer(kLingoVersion, "FF 55 05 00 10 0C 01 0C D2");
  EXPECT_EQ(legacy_.getipodlingoversion(text_, 0), 1);
  EXPECT_STREQ(text_, L"12 - 1.12");
  EXPECT_EQ(text_[10], L'x');
}

TEST_F(Getters, LingoVersionIsCutToItsTenCharacters) {
  Answer(kLingoVersion, "FF 55 05 00 10 FF FE FD F1");
  EXPECT_EQ(legacy_.getipodlingoversion(text_, 0), 1);
  EXPECT_STREQ(text_, L"255 - 254");
  EXPECT_EQ(text_[10], L'x');
}

TEST_F(Getters, LingoVersionAsksForLingo0WhateverItsArgument) {
  Answer(kLingoVersion, "FF 55 05 00 10 00 01 09 E1");
  EXPECT_EQ(legacy_.getipodlingoversion(text_, 4), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kLingoVersion));
}

TEST_F(Getters, LingoVersionGoesOutOnTheLingoOfTheCommandBefore) {
  unsigned char state = 0;
  legacy_.getipodplayerstatenum(&state);
  DrainSent();
  legacy_.getipodlingoversion(text_, 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 04 0F 00 EA"));
}

TEST_F(Getters, UnansweredLingoVersionIsEmptyAndFails) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodlingoversion(text_, 0), 0); }), kSilenceUs);
  EXPECT_STREQ(text_, L"");
}

TEST_F(Getters, LingoVersionThatCannotBeAskedForIsNotAwaited) {
  StopSending();
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodlingoversion(text_, 0), 0); }),
            5 * kMillisecond);
  EXPECT_STREQ(text_, L"");
}

TEST_F(Getters, TextsOfNumbersNeedNoPlace) {
  Answer(kVersion, "FF 55 05 00 0A 02 01 0E E0");
  Answer(kModel, "FF 55 06 00 0E 00 0B 00 04 DD");
  Answer(kLingoVersion, "FF 55 05 00 10 00 01 09 E1");
  EXPECT_EQ(legacy_.getipodsoftwareversion(nullptr, 10), 1);
  EXPECT_EQ(legacy_.getipodmodelnum(nullptr), 1);
  ipodPeer::Lingo(legacy_) = 0;
  EXPECT_EQ(legacy_.getipodlingoversion(nullptr, 0), 1);
}

TEST(TextSizes, AreExported) {
  EXPECT_EQ(ipod::SIZE_IPODTRACKLENGTH, 10);
  EXPECT_EQ(ipod::SIZE_IPODTRACKPOSITION, 10);
  EXPECT_EQ(ipod::SIZE_IPODPLAYERSTATE, 10);
  EXPECT_EQ(ipod::SIZE_IPODCHAPTERCOUNT, 10);
  EXPECT_EQ(ipod::SIZE_IPODCURRENTCHAPTERINDEX, 10);
  EXPECT_EQ(ipod::SIZE_IPODLINGOVERSIONGENERAL, 10);
  EXPECT_EQ(ipod::SIZE_IPODLINGOVERSIONEXTENDED, 10);
  EXPECT_EQ(ipod::SIZE_IPODPREFERENCES, 25);
  EXPECT_EQ(ipod::SIZE_IPODCURRENTPLAYINGTRACKCHAPTERNAME, 25);
}

}  // namespace

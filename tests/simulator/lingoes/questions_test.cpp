// SPDX-License-Identifier: MIT
// Proves that the iPod asks an accessory about itself, one thing after another, and checks what it
// is told.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

Settings AskingSettings() {
  Settings settings = QuietSettings();
  settings.asks_accessory = true;
  return settings;
}

TEST(Questions, AsksInOrderUnderItsOwnIdentifiers) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyByTokens();
  EXPECT_EQ(dock.Read(), "FF 55 05 00 27 00 01 00 D3");
  EXPECT_EQ(dock.Exchange("FF 55 07 00 28 00 00 00 00 F3 DE"), "FF 55 05 00 27 00 02 01 D1");
  EXPECT_EQ(dock.Exchange("FF 55 06 00 28 01 4D 65 00 1F"), "FF 55 05 00 27 00 03 04 CD");
  EXPECT_EQ(dock.Exchange("FF 55 06 00 28 04 01 00 00 CD"), "FF 55 05 00 27 00 04 05 CB");
  EXPECT_EQ(dock.Exchange("FF 55 06 00 28 05 01 00 00 CC"), "FF 55 05 00 27 00 05 06 C9");
  EXPECT_EQ(dock.Exchange("FF 55 05 00 28 06 4D 00 80"), "FF 55 05 00 27 00 06 07 C7");
  EXPECT_EQ(dock.Exchange("FF 55 05 00 28 07 58 00 74"), "FF 55 04 09 03 00 07 E9");
  EXPECT_EQ(dock.Exchange("FF 55 07 09 04 00 07 02 00 00 E3"), "FF 55 04 0C 81 00 08 67");
  EXPECT_EQ(dock.Exchange("FF 55 1A 0C 82 00 08 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                          "00 00 FF 01 02 4E"),
            "");
  EXPECT_EQ(dock.Mistakes(), "");
  EXPECT_EQ(ToHex(dock.ipod.accessory_information(7)), "58 00");
}

TEST(Questions, AsksWithoutIdentifiersAfterIdentificationByLingoes) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Read(), "FF 55 03 00 27 00 D6");
  EXPECT_EQ(dock.Exchange("FF 55 07 00 28 00 00 00 00 81 50"), "FF 55 03 00 27 07 CF");
  EXPECT_EQ(dock.Exchange("FF 55 04 00 28 07 00 CD"), "");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Questions, LingoesThatWereNotAnnouncedAreNotAskedAbout) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  EXPECT_EQ(dock.Exchange("FF 55 07 00 28 00 00 00 00 01 D0"), "");
}

TEST(Questions, EchoOfAnotherIdentifierIsNamed) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyByTokens();
  dock.Read();
  dock.Exchange("FF 55 07 00 28 00 00 00 00 01 D0");
  dock.Exchange("FF 55 07 09 04 00 63 02 00 00 87");
  EXPECT_EQ(dock.Mistakes(), "identifier not echoed");
}

TEST(Questions, UnaskedAnswerIsNamed) {
  IpodUnderTest dock;
  dock.IdentifyOnly();
  dock.Exchange("FF 55 06 00 28 01 4D 65 00 1F");
  EXPECT_EQ(dock.Mistakes(), "unasked answer");
}

TEST(Questions, AnswerOfTheWrongSizeIsNamed) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  dock.Exchange("FF 55 06 00 28 00 00 00 F3 DF");
  EXPECT_EQ(dock.Mistakes(), "wrong answer");
}

TEST(Questions, TextWithoutAnEndIsNamed) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  dock.Exchange("FF 55 07 00 28 00 00 00 00 83 4E");
  dock.Exchange("FF 55 05 00 28 01 4D 65 20");
  EXPECT_EQ(dock.Mistakes(), "wrong answer");
}

TEST(Questions, NameThatDiffersFromTheTokenIsNamed) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyByTokens();
  dock.Read();
  dock.Exchange("FF 55 07 00 28 00 00 00 00 03 CE");
  dock.Exchange("FF 55 07 00 28 01 59 6F 75 00 93");
  EXPECT_EQ(dock.Mistakes(), "wrong answer");
}

TEST(Questions, VersionThatDiffersFromTheTokenIsNoMistake) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyByTokens();
  dock.Read();
  dock.Exchange("FF 55 07 00 28 00 00 00 00 11 C0");
  dock.Exchange("FF 55 06 00 28 04 09 09 00 BC");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Questions, MissingAnswerIsNamedOnceTheAccessoryIsHeardAgain) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  dock.Read(10 * kSecond);
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Exchange("FF 55 02 00 07 F7");
  EXPECT_EQ(dock.Mistakes(), "missing answer");
}

TEST(Questions, MissingAnswerIsNamedWhenTheTimeIsOverForAnAccessoryThatIsHeard) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read(kSecond);
  dock.Exchange("FF 55 02 00 07 F7");
  dock.Read(1900 * kMillisecond);
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Read(200 * kMillisecond);
  EXPECT_EQ(dock.Mistakes(), "missing answer");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail, "GetAccessoryInfo was not answered");
}

TEST(Questions, MissingAnswerIsNamedAtTheEnd) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read(kSecond);
  dock.Exchange("FF 55 02 00 07 F7");
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "missing answer");
  IpodUnderTest still(AskingSettings());
  still.IdentifyOnly();
  still.Read(4 * kSecond);
  still.ipod.Finish(still.now);
  EXPECT_EQ(still.Mistakes(), "missing answer");
}

TEST(Questions, AccessoryThatLeavesAtOnceOwesNoAnswers) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read(100 * kMillisecond);
  dock.Exchange("FF 55 02 00 07 F7");
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Questions, AccessoryThatNobodyHearsAnyMoreOwesNoAnswers) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  dock.ipod.LoseAccessory(dock.now);
  EXPECT_EQ(dock.Read(10 * kSecond), "");
  dock.Exchange("FF 55 02 00 07 F7");
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "");
}

// Asked in the middle of an identification, as a fault does.
TEST(Questions, AnswerBeforeIdentificationIsWelcome) {
  Settings settings = QuietSettings();
  settings.faults.Enable(Fault::kUnaskedRequests);
  settings.faults.one_in = 1;
  for (std::uint64_t seed = 1;; ++seed) {
    ASSERT_LT(seed, 100U);
    settings.seed = seed;
    IpodUnderTest dock(settings);
    if (dock.Exchange("FF 55 02 00 11 ED").find("FF 55 02 09 03 F2") == std::string::npos) continue;
    dock.Exchange("FF 55 05 09 04 02 00 00 EC");
    EXPECT_EQ(dock.Mistakes(), "");
    return;
  }
}

TEST(Questions, AccessoryThatIdentifiesAnewOwesNoAnswers) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  dock.Read(10 * kSecond);
  dock.Exchange("FF 55 02 00 38 C6");
  dock.Exchange("FF 55 04 00 11 00 00 EB");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Questions, UnansweredQuestionIsFollowedByTheNext) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  dock.Read();
  EXPECT_EQ(dock.Exchange("FF 55 07 00 28 00 00 00 00 03 CE"), "FF 55 03 00 27 01 D5");
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Read(), "FF 55 03 00 27 00 D6");
  dock.Exchange("FF 55 07 00 28 00 00 00 00 C1 10");
  EXPECT_EQ(dock.Read(2900 * kMillisecond), "");
  EXPECT_EQ(dock.Read(200 * kMillisecond), "FF 55 03 00 27 07 CF");
}

TEST(Questions, LateAnswerAfterAnotherIdentificationIsWelcome) {
  IpodUnderTest dock(AskingSettings());
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Read(), "FF 55 03 00 27 00 D6");
  EXPECT_EQ(dock.Exchange("FF 55 07 00 28 00 00 00 00 03 CE"), "FF 55 03 00 27 01 D5");
  dock.IdentifyOnly();
  dock.Exchange("FF 55 06 00 28 01 4D 65 00 1F");
  EXPECT_EQ(dock.Mistakes(), "");
}

}  // namespace
}  // namespace ipodsim

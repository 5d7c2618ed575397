// SPDX-License-Identifier: MIT
// Proves each way of identifying, what an iPod of each kind says to it, and what it finds wrong.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kStart[] = "FF 55 02 00 38 C6";

TEST(TokenIdentification, StartIsAcceptedWithoutAnIdentifier) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange(kStart), "FF 55 04 00 02 00 38 C2");
  EXPECT_TRUE(dock.ipod.identifiers_on());
  EXPECT_FALSE(dock.ipod.identified());
}

TEST(TokenIdentification, StartWithAnIdentifierIsAnsweredUnderIt) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 04 00 38 12 34 7E"), "FF 55 06 00 02 12 34 00 38 7A");
}

TEST(TokenIdentification, IpodThatNeedsAnIdentifierIsSilentWithoutOne) {
  Settings settings = QuietSettings();
  settings.start_idps_needs_identifier = true;
  IpodUnderTest dock(settings);
  EXPECT_EQ(dock.Exchange(kStart), "");
  EXPECT_FALSE(dock.ipod.identifiers_on());
  EXPECT_EQ(dock.Exchange("FF 55 04 00 38 00 01 C3"), "FF 55 06 00 02 00 01 00 38 BF");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(TokenIdentification, TokensAreAcknowledgedOneByOne) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  EXPECT_EQ(dock.Exchange("FF 55 13 00 39 00 00 01 0D 00 00 02 00 03 00 00 00 00 00 00 00 00 A1"),
            "FF 55 09 00 3A 00 00 01 03 00 00 00 B9");
  EXPECT_EQ(dock.Exchange("FF 55 12 00 39 00 01 02 06 00 02 01 4D 65 00 05 00 03 0A 01 01 E3"),
            "FF 55 0F 00 3A 00 01 02 04 00 02 00 01 04 00 03 00 0A 9C");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(TokenIdentification, EndIsAcceptedWhenAllTokensAreThere) {
  IpodUnderTest dock;
  dock.IdentifyByTokens();
  EXPECT_EQ(dock.Mistakes(), "");
  EXPECT_TRUE(dock.ipod.identified());
  EXPECT_TRUE(dock.ipod.identified_by_tokens());
  EXPECT_EQ(dock.ipod.announced_lingoes(), 0x00001219u);
}

TEST(TokenIdentification, EndIsRefusedWhenTokensAreMissing) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 13 00 39 00 00 01 0D 00 00 02 00 03 00 00 00 00 00 00 00 00 A1");
  dock.Exchange(
      "FF 55 2B 00 39 00 01 05 0A 00 01 00 00 00 00 00 00 00 05 06 00 02 01 4D 65 00 06 00 02 04 "
      "01 00 00 06 00 02 05 01 00 00 05 00 02 06 4D 00 56");
  EXPECT_EQ(dock.Exchange("FF 55 05 00 3B 00 02 00 BE"), "FF 55 05 00 3C 00 02 01 BC");
  EXPECT_FALSE(dock.ipod.identified());
  EXPECT_EQ(dock.Mistakes(), "missing token");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail, "no model number token");
}

TEST(TokenIdentification, AbandonedIdentificationLeavesNobodyIdentified) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  EXPECT_EQ(dock.Exchange("FF 55 05 00 3B 00 00 02 BE"), "FF 55 05 00 3C 00 00 03 BC");
  EXPECT_FALSE(dock.ipod.identified());
}

TEST(TokenIdentification, PreferencesAmongTheTokensAreTakenOver) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 12 00 39 00 00 01 0C 00 00 01 00 00 00 00 00 00 00 00 00 A7");
  dock.Exchange(
      "FF 55 37 00 39 00 01 07 0A 00 01 00 00 00 00 00 00 00 05 06 00 02 01 4D 65 00 06 00 02 04 "
      "01 00 00 06 00 02 05 01 00 00 05 00 02 06 4D 00 05 00 02 07 58 00 05 00 03 0A 01 01 CE");
  EXPECT_EQ(dock.ipod.preference(10), 0);
  dock.Exchange("FF 55 05 00 3B 00 02 00 BE");
  EXPECT_EQ(dock.ipod.preference(10), 1);
}

TEST(TokenIdentification, LingoListedTwiceIsNoMistake) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  EXPECT_EQ(dock.Exchange(
                "FF 55 16 00 39 00 00 01 10 00 00 05 00 03 04 00 00 00 00 00 00 00 00 00 00 94"),
            "FF 55 09 00 3A 00 00 01 03 00 00 00 B9");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(TokenIdentification, LingoThatTheIpodLacksIsToldInTheAcknowledgement) {
  IpodUnderTest dock(QuietSettings(Profile::kNoSports));
  dock.Exchange(kStart);
  EXPECT_EQ(dock.Exchange("FF 55 13 00 39 00 00 01 0D 00 00 02 00 09 00 00 00 00 00 00 00 00 9B"),
            "FF 55 09 00 3A 00 00 01 03 00 00 02 B7");
}

TEST(TokenIdentification, RepeatedPacketIsNoDuplicate) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 13 00 39 00 00 01 0D 00 00 02 00 03 00 00 00 00 00 00 00 00 A1");
  dock.Exchange("FF 55 13 00 39 00 01 01 0D 00 00 02 00 03 00 00 00 00 00 00 00 00 A0");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(TokenIdentification, DuplicateTokenIsNamed) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 13 00 39 00 00 01 0D 00 00 02 00 03 00 00 00 00 00 00 00 00 A1");
  dock.Exchange("FF 55 13 00 39 00 01 02 06 00 02 01 4D 65 00 06 00 02 01 4D 79 00 27");
  EXPECT_EQ(dock.Mistakes(), "duplicate token");
}

TEST(TokenIdentification, WrongTokenCountIsNamed) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 13 00 39 00 00 02 0D 00 00 02 00 03 00 00 00 00 00 00 00 00 A0");
  EXPECT_EQ(dock.Mistakes(), "wrong token count");
}

TEST(TokenIdentification, TokenBeforeTheIdentificationTokenIsNamed) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 0C 00 39 00 00 01 06 00 02 01 4D 65 00 FF");
  EXPECT_EQ(dock.Mistakes(), "bad token layout");
}

TEST(TokenIdentification, TokensBeforeStartAreNamed) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 0A 00 39 01 06 00 02 01 4D 65 00 01"), "FF 55 04 00 02 01 39 C0");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 3B 00 C2"), "FF 55 03 00 3C 01 C0");
  EXPECT_EQ(dock.Mistakes(), "tokens outside identification, tokens outside identification");
}

struct BadToken {
  const char* packet;
  const char* detail;
};

class TokenLayout : public testing::TestWithParam<BadToken> {};

TEST_P(TokenLayout, FlawIsNamed) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  dock.Exchange("FF 55 12 00 39 00 00 01 0C 00 00 01 00 00 00 00 00 00 00 00 00 A7");
  dock.Exchange(GetParam().packet);
  ASSERT_EQ(dock.Mistakes(), "bad token layout");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail, GetParam().detail);
}

INSTANTIATE_TEST_SUITE_P(
    AllFlaws, TokenLayout,
    testing::Values(
        BadToken{"FF 55 0F 00 39 00 01 01 09 00 01 00 00 00 00 00 00 05 A7",
                 "capabilities token with 7 bytes instead of 8"},
        BadToken{"FF 55 0B 00 39 00 01 01 05 00 02 01 4D 65 00",
                 "information token without a text that ends in one zero byte"},
        BadToken{"FF 55 0D 00 39 00 01 01 07 00 02 01 4D 00 65 00 FC",
                 "information token without a text that ends in one zero byte"},
        BadToken{"FF 55 0B 00 39 00 01 01 05 00 02 04 01 00 AE",
                 "information token with 3 bytes instead of 4"},
        BadToken{"FF 55 0A 00 39 00 01 01 04 00 02 09 FF AD",
                 "information token with 2 bytes instead of 3"},
        BadToken{"FF 55 0C 00 39 00 01 01 06 00 02 0C 00 00 00 A5",
                 "information token with 4 bytes instead of 5"},
        BadToken{"FF 55 0C 00 39 00 01 01 06 00 02 0B 00 00 00 A6",
                 "information token with 4 bytes instead of 5"},
        BadToken{"FF 55 0A 00 39 00 01 01 04 00 02 20 FF 96",
                 "information token of unknown type 32"},
        BadToken{"FF 55 0A 00 39 00 01 01 04 00 03 0A 01 A9",
                 "preference token with 2 bytes instead of 3"},
        BadToken{"FF 55 0B 00 39 00 01 01 05 00 0F 00 00 00 A6",
                 "video delay token with 3 bytes instead of 4"},
        BadToken{"FF 55 0B 00 39 00 01 01 05 00 0E 00 00 00 A7",
                 "sample rates token with half a rate"},
        BadToken{"FF 55 0B 00 39 00 01 01 04 00 08 01 02 03 A8",
                 "token 2 is longer than its packet or too short"},
        BadToken{"FF 55 09 00 39 00 01 01 03 00 20 01 98", "token of unknown subtype 32"},
        BadToken{"FF 55 0B 00 39 00 01 01 05 01 03 0A 01 01 A5", "token of unknown type 1"},
        BadToken{"FF 55 0B 00 39 00 01 01 20 00 03 0A 01 01 8B",
                 "token 1 is longer than its packet or too short"},
        BadToken{"FF 55 07 00 39 00 01 01 01 00 BD",
                 "token 1 is longer than its packet or too short"}));

TEST(LingoIdentification, MaskIsAcceptedAndDropsIdentifiers) {
  IpodUnderTest dock;
  dock.Exchange(kStart);
  ASSERT_TRUE(dock.ipod.identifiers_on());
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4"),
            "FF 55 04 00 02 00 13 E7");
  EXPECT_FALSE(dock.ipod.identifiers_on());
  EXPECT_TRUE(dock.ipod.identified());
  EXPECT_FALSE(dock.ipod.identified_by_tokens());
  EXPECT_EQ(dock.ipod.announced_lingoes(), 0x00001219u);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(LingoIdentification, IdentifiersCanBeMadeToStay) {
  Settings settings = QuietSettings();
  settings.keeps_identifiers = true;
  IpodUnderTest dock(settings);
  dock.Exchange(kStart);
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE"),
            "FF 55 04 00 02 00 13 E7");
  EXPECT_EQ(dock.Exchange("FF 55 04 00 07 00 00 F5"), "FF 55 08 00 08 00 00 50 6F 64 00 CD");
}

TEST(LingoIdentification, LingoThatTheIpodLacksIsRefused) {
  IpodUnderTest dock(QuietSettings(Profile::kNoSports));
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4"),
            "FF 55 04 00 02 03 13 E4");
  EXPECT_FALSE(dock.ipod.identified());
}

TEST(LingoIdentification, MaskWithoutTheGeneralLingoIsAMistake) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 00 18 00 00 00 00 00 00 00 00 C7"),
            "FF 55 04 00 02 03 13 E4");
  EXPECT_EQ(dock.Mistakes(), "bad parameter");
}

TEST(OldestIdentification, IsTakenWithoutAnAnswer) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 03 00 01 04 F8"), "");
  EXPECT_EQ(dock.ipod.announced_lingoes(), 0x1Du);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(CommandOrder, CommandBeforeIdentificationIsNamedAndServed) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(dock.Mistakes(), "command before identification");
}

TEST(CommandOrder, SurveyOfVersionsAndOptionsComesBeforeIdentification) {
  IpodUnderTest dock;
  dock.Exchange("FF 55 03 00 0F 00 EE");
  dock.Exchange("FF 55 02 00 11 ED");
  dock.Exchange("FF 55 03 00 4B 09 A9");
  dock.Exchange("FF 55 02 00 50 AE");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(CommandOrder, LingoThatWasNotAnnouncedIsNamed) {
  IpodUnderTest dock;
  dock.Exchange("FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE");
  dock.Exchange("FF 55 03 04 00 16 E3");
  EXPECT_EQ(dock.Mistakes(), "lingo not announced");
}

TEST(CommandOrder, ButtonsNeedNotBeAnnounced) {
  IpodUnderTest dock;
  dock.Exchange("FF 55 0E 00 13 00 00 00 19 00 00 00 00 00 00 00 00 C6");
  dock.Exchange("FF 55 03 02 00 00 FB");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Profiles, ClassicRefusesTokens) {
  IpodUnderTest dock(QuietSettings(Profile::kClassic));
  EXPECT_EQ(dock.Exchange(kStart), "FF 55 04 00 02 04 38 BE");
  EXPECT_FALSE(dock.ipod.identifiers_on());
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Profiles, ClassicCanIgnoreTokensInstead) {
  Settings settings = QuietSettings(Profile::kClassic);
  settings.refuses_start_idps_silently = true;
  IpodUnderTest dock(settings);
  EXPECT_EQ(dock.Exchange(kStart), "");
}

TEST(Profiles, OldHasVersionsBelowTheMinimums) {
  IpodUnderTest dock(QuietSettings(Profile::kOld));
  EXPECT_EQ(dock.Exchange(kStart), "FF 55 04 00 02 04 38 BE");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 00 EE"), "FF 55 05 00 10 00 01 01 E9");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 03 EB"), "FF 55 05 00 10 03 01 00 E7");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 04 EA"), "FF 55 05 00 10 04 01 07 DF");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 09 E5"), "FF 55 04 00 02 04 0F E7");
}

TEST(Profiles, NanoHasSportsAndStorage) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 00 EE"), "FF 55 05 00 10 00 01 09 E1");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 03 EB"), "FF 55 05 00 10 03 01 05 E2");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 04 EA"), "FF 55 05 00 10 04 01 0E D8");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 09 E5"), "FF 55 05 00 10 09 01 01 E0");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 0C E2"), "FF 55 05 00 10 0C 01 02 DC");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 4B 09 A9"), "FF 55 0B 00 4C 09 00 00 00 00 00 00 00 02 9E");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 4B 04 AE"), "FF 55 0B 00 4C 04 00 00 00 00 00 00 00 03 A2");
}

TEST(Profiles, OldRejectsEveryOptionsRequestByName) {
  IpodUnderTest dock(QuietSettings(Profile::kOld));
  EXPECT_EQ(dock.Exchange("FF 55 03 00 4B 00 B2"), "FF 55 04 00 02 04 4B AB");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 4B 09 A9"), "FF 55 04 00 02 04 4B AB");
}

TEST(Profiles, NoSportsRejectsTheOptionsRequestOfSportsByName) {
  IpodUnderTest dock(QuietSettings(Profile::kNoSports));
  EXPECT_EQ(dock.Exchange("FF 55 03 00 4B 00 B2"), "FF 55 0B 00 4C 00 00 00 00 00 00 00 00 03 A6");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 4B 09 A9"), "FF 55 04 00 02 04 4B AB");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 09 E5"), "FF 55 04 00 02 04 0F E7");
}

TEST(Profiles, SilentTakesEverythingAndSaysNothing) {
  IpodUnderTest dock(QuietSettings(Profile::kSilent));
  dock.Write(kStart);
  dock.Write("FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE");
  dock.Write("FF 55 02 00 07 F7");
  EXPECT_EQ(dock.Read(10 * kSecond), "");
  EXPECT_EQ(dock.ipod.NextEvent(), std::nullopt);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Profiles, EachIsFoundByItsName) {
  EXPECT_EQ(ProfileByName("nano"), Profile::kNano);
  EXPECT_EQ(ProfileByName("classic"), Profile::kClassic);
  EXPECT_EQ(ProfileByName("old"), Profile::kOld);
  EXPECT_EQ(ProfileByName("nosports"), Profile::kNoSports);
  EXPECT_EQ(ProfileByName("silent"), Profile::kSilent);
  EXPECT_EQ(ProfileByName("Nano"), std::nullopt);
  EXPECT_EQ(ProfileByName(""), std::nullopt);
}

}  // namespace
}  // namespace ipodsim

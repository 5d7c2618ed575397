// SPDX-License-Identifier: MIT
// Proves the Sports lingo: what services there are, the user's data, and the questions that come
// before.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

// Announces General, Display Remote, Extended Interface, Sports and Storage.
void IdentifyForWorkouts(IpodUnderTest& dock) {
  dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4");
}

TEST(Sports, OffersWorkoutsAndUserData) {
  IpodUnderTest dock;
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 02 09 83 72"), "FF 55 05 09 84 00 03 00 6B");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Sports, CapabilitiesAreAsSet) {
  Settings settings = QuietSettings();
  settings.sports.capabilities = kGymCapability;
  IpodUnderTest dock(settings);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 02 09 83 72"), "FF 55 05 09 84 00 01 00 6D");
}

TEST(Sports, AnswersEchoTheIdentifier) {
  IpodUnderTest dock;
  dock.IdentifyByTokens();
  EXPECT_EQ(dock.Exchange("FF 55 04 09 83 00 03 6D"), "FF 55 07 09 84 00 03 00 03 00 66");
  EXPECT_EQ(dock.Exchange("FF 55 05 09 88 00 04 03 63"), "FF 55 07 09 89 00 04 03 00 4B 15");
  EXPECT_EQ(dock.Exchange("FF 55 07 09 8A 00 05 03 00 50 0E"), "FF 55 06 09 80 00 05 00 8A E2");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Sports, IdentifierThatDoesNotStepIsNamed) {
  IpodUnderTest dock;
  dock.IdentifyByTokens();
  dock.Exchange("FF 55 04 09 83 00 03 6D");
  dock.Exchange("FF 55 04 09 83 00 07 69");
  EXPECT_EQ(dock.Mistakes(), "identifier not stepping");
}

TEST(Sports, TellsTheUserDataThatWereSet) {
  Settings settings = QuietSettings();
  settings.sports.user_data = {2, 0x0123, 7};
  IpodUnderTest dock(settings);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 02 6A"), "FF 55 04 09 89 02 02 66");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 03 69"), "FF 55 05 09 89 03 01 23 42");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 04 68"), "FF 55 04 09 89 04 07 5F");
  EXPECT_EQ(dock.Exchange("FF 55 04 09 8A 02 01 66"), "FF 55 04 09 80 00 8A E9");
  EXPECT_EQ(dock.Exchange("FF 55 05 09 8A 03 FE DC 8B"), "FF 55 04 09 80 00 8A E9");
  EXPECT_EQ(dock.Exchange("FF 55 04 09 8A 04 09 5C"), "FF 55 04 09 80 00 8A E9");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 02 6A"), "FF 55 04 09 89 02 01 67");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 03 69"), "FF 55 05 09 89 03 FE DC 8C");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 04 68"), "FF 55 04 09 89 04 09 5D");
  EXPECT_EQ(dock.ipod.user_data().weight, 0xFEDC);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Sports, UserDataOutliveTheDock) {
  IpodUnderTest dock;
  IdentifyForWorkouts(dock);
  dock.Exchange("FF 55 05 09 8A 03 00 50 15");
  dock.ipod.Unplug(dock.now);
  dock.ipod.Replug(dock.now);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 03 69"), "FF 55 05 09 89 03 00 50 16");
}

TEST(Sports, OtherTypesOfUserDataAreBadParameters) {
  IpodUnderTest dock;
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 01 6B"), "FF 55 04 09 80 03 88 E8");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 05 67"), "FF 55 04 09 80 03 88 E8");
  EXPECT_EQ(dock.Exchange("FF 55 04 09 8A 01 00 68"), "FF 55 04 09 80 03 8A E6");
  EXPECT_EQ(dock.Exchange("FF 55 05 09 8A 05 00 00 63"), "FF 55 04 09 80 03 8A E6");
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter, bad parameter, bad parameter");
}

TEST(Sports, UserDataOfTheWrongSizeAreRefused) {
  IpodUnderTest dock;
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 04 09 8A 03 50 16"), "FF 55 04 09 80 03 8A E6");
  EXPECT_EQ(dock.Exchange("FF 55 05 09 8A 02 00 01 65"), "FF 55 04 09 80 03 8A E6");
  EXPECT_EQ(dock.Mistakes(), "wrong payload size, wrong payload size");
  EXPECT_EQ(dock.ipod.user_data().weight, 75);
  EXPECT_EQ(dock.ipod.user_data().flag, 1);
}

TEST(Sports, UserDataWithoutTheCapabilityAreRefusedAndNamed) {
  Settings settings = QuietSettings();
  settings.sports.capabilities = kGymCapability;
  IpodUnderTest dock(settings);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 03 69"), "FF 55 04 09 80 04 88 E7");
  EXPECT_EQ(dock.Exchange("FF 55 05 09 8A 03 00 50 15"), "FF 55 04 09 80 04 8A E5");
  EXPECT_EQ(dock.Mistakes(), "service not offered, service not offered");
}

TEST(Sports, UserIndexIsUnknown) {
  IpodUnderTest dock;
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 02 09 85 70"), "FF 55 04 09 80 04 85 EA");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Sports, IpodWithoutTheLingoRefusesEveryCommand) {
  IpodUnderTest dock(QuietSettings(Profile::kNoSports));
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 02 09 83 72"), "FF 55 04 09 80 04 83 EC");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 03 69"), "FF 55 04 09 80 04 88 E7");
  EXPECT_EQ(dock.Exchange("FF 55 05 09 8A 03 00 50 15"), "FF 55 04 09 80 04 8A E5");
  EXPECT_EQ(dock.Mistakes(), "lingo not announced, lingo not announced, lingo not announced");
}

TEST(Sports, CommandsCanBeRefusedByNumber) {
  Settings settings = QuietSettings();
  settings.refused[{kSports, 0x83}] = AckStatus::kFailed;
  IpodUnderTest dock(settings);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 02 09 83 72"), "FF 55 04 09 80 01 83 EF");
  EXPECT_EQ(dock.Exchange("FF 55 03 09 88 03 69"), "FF 55 05 09 89 03 00 4B 1B");
}

TEST(Sports, AsksForVersionAndCapabilitiesDuringTheSession) {
  Settings settings = QuietSettings();
  settings.asks_during_session = true;
  IpodUnderTest dock(settings);
  dock.IdentifyByTokens();
  EXPECT_EQ(dock.Exchange("FF 55 04 09 83 00 03 6D"),
            "FF 55 04 09 01 00 01 F1"
            " "
            "FF 55 04 09 03 00 02 EE"
            " "
            "FF 55 07 09 84 00 03 00 03 00 66");
  dock.Exchange("FF 55 06 09 02 00 04 01 01 E9");
  dock.Exchange("FF 55 07 09 04 00 02 02 00 00 E8");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Sports, AsksForStorageCapabilitiesDuringTheSession) {
  Settings settings = QuietSettings();
  settings.asks_during_session = true;
  IpodUnderTest dock(settings);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 01 F1").substr(0, 17), "FF 55 02 0C 81 71");
  dock.Exchange(
      "FF 55 18 0C 82 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 FF 01 02 58");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Sports, QuestionsOfTheSessionThatAreNotAnsweredAreNamed) {
  Settings settings = QuietSettings();
  settings.asks_during_session = true;
  IpodUnderTest dock(settings);
  IdentifyForWorkouts(dock);
  dock.Exchange("FF 55 02 09 83 72");
  dock.Read(10 * kSecond);
  dock.Exchange("FF 55 02 00 07 F7");
  EXPECT_EQ(dock.Mistakes(), "missing answer, missing answer");
}

}  // namespace
}  // namespace ipodsim

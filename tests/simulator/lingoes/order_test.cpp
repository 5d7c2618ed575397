// SPDX-License-Identifier: MIT
// Proves that commands come in their mode and one at a time, and what a new identification ends.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kEnter[] = "FF 55 02 00 05 F9";
constexpr char kLeave[] = "FF 55 02 00 06 F8";
constexpr char kReset[] = "FF 55 03 04 00 16 E3";
constexpr char kName[] = "FF 55 02 00 07 F7";
// All six tracks.
constexpr char kRecords[] = "FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 06 CB";
constexpr char kFirstRecord[] = "FF 55 0E 04 00 1B 00 00 00 00 41 6D 61 7A 6F 6E 00 6D";

TEST(Order, ExtendedInterfaceIsServedInItsModeOnly) {
  IpodUnderTest dock;
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Exchange(kReset), "FF 55 06 04 00 01 01 00 16 DE");
  EXPECT_EQ(dock.Mistakes(), "command outside its mode");
  dock.Exchange(kEnter);
  EXPECT_EQ(dock.Exchange(kReset), "FF 55 06 04 00 01 00 00 16 DF");
  dock.Exchange(kLeave);
  EXPECT_EQ(dock.Exchange(kReset), "FF 55 06 04 00 01 01 00 16 DE");
  EXPECT_EQ(dock.Mistakes(), "command outside its mode, command outside its mode");
}

TEST(Order, OtherLingoesAreServedInEveryMode) {
  IpodUnderTest dock;
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Exchange(kName), "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(dock.Exchange("FF 55 03 02 00 01 FA"), "");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Order, CommandInARecordStreamIsNamed) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRecords), kFirstRecord);
  dock.Write(kName);
  EXPECT_EQ(dock.Mistakes(), "command during a record stream");
}

TEST(Order, CommandInALongRecordStreamIsNamedHoweverLateItComes) {
  Settings settings = QuietSettings();
  settings.record_period = kSecond;
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Exchange(kRecords);
  dock.Read(4 * kSecond);
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Write(kName);
  EXPECT_EQ(dock.Mistakes(), "command during a record stream");
}

TEST(Order, CommandAfterTheLastRecordIsNoMistake) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write(kRecords);
  dock.Read(100 * kMillisecond);
  dock.Exchange(kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Order, SecondCommandBeforeTheFirstIsAnsweredIsNamed) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write(kName);
  dock.Read(9 * kMillisecond);
  dock.Write(kName);
  EXPECT_EQ(dock.Mistakes(), "command before an answer");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail,
            "General RequestiPodName before the end of General RequestiPodName");
}

TEST(Order, CommandThatIsTriedAgainAfterALongWaitIsNoMistake) {
  Settings settings = QuietSettings();
  settings.fixed_latency = kSecond;
  IpodUnderTest dock(settings);
  dock.IdentifyOnly();
  dock.Read(2 * kSecond);
  dock.Write(kName);
  dock.Read(500 * kMillisecond);
  dock.Write(kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Order, ConsolesThatWakeAndIdentifyWithoutReadingTheAnswersAreNotAccused) {
  IpodUnderTest dock;
  for (const char* const frame :
       {"FF 55 02 00 03 FB", kLeave, "FF 55 03 00 01 04 F8",
        "FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2", kEnter, kReset, kName}) {
    dock.Write(frame);
    dock.Read(2 * kMillisecond);
  }
  EXPECT_EQ(dock.Mistakes(), "");
  // They are, once they have paused.
  dock.Read(kSecond);
  dock.Write(kName);
  dock.Write(kName);
  EXPECT_EQ(dock.Mistakes(), "command before an answer");
}

TEST(Order, ExitWithoutAnIdentifierIsNoMistakeWhenAnIdentificationFollows) {
  IpodUnderTest dock;
  dock.IdentifyByTokens();
  dock.Exchange(kLeave);
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Order, ExitWithoutAnIdentifierIsNamedWhenNoIdentificationFollows) {
  IpodUnderTest dock;
  dock.IdentifyByTokens();
  dock.Exchange(kLeave);
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Exchange("FF 55 04 00 07 00 03 F2");
  EXPECT_EQ(dock.Mistakes(), "identifier missing");
}

TEST(Order, NewIdentificationEndsNotificationsAndRecords) {
  Settings settings = QuietSettings();
  settings.record_period = kSecond;
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Exchange("FF 55 07 04 00 26 00 00 00 1F B0");
  EXPECT_EQ(dock.ipod.notification_mask(), 0x1FU);
  EXPECT_EQ(dock.Exchange(kRecords), kFirstRecord);
  dock.IdentifyOnly();
  EXPECT_EQ(dock.ipod.notification_mask(), 0U);
  EXPECT_EQ(dock.Read(10 * kSecond), "");
  EXPECT_EQ(dock.Mistakes(), "");
}

}  // namespace
}  // namespace ipodsim

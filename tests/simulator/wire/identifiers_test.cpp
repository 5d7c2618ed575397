// SPDX-License-Identifier: MIT
// Proves how transaction identifiers are echoed, who carries none, and what about them is a
// mistake.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

class Identifiers : public testing::Test {
 protected:
  // The mode for the Extended Interface outlives an identification.
  Identifiers() {
    dock.Identify();
    dock.IdentifyByTokens();
  }
  IpodUnderTest dock;
};

TEST_F(Identifiers, AnswerEchoesTheRequest) {
  EXPECT_EQ(dock.Exchange("FF 55 04 00 07 00 03 F2"), "FF 55 08 00 08 00 03 50 6F 64 00 CA");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 16 00 04 DD"), "FF 55 08 04 00 01 00 04 00 00 16 D9");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(Identifiers, RemoteUiRequestCarriesNone) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 03 FB"), "FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(Identifiers, MissingOneIsNamedAndTheCommandServed) {
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(dock.Mistakes(), "identifier missing");
}

TEST_F(Identifiers, RepeatedOneIsNamed) {
  dock.Exchange("FF 55 04 00 07 00 03 F2");
  dock.Exchange("FF 55 04 00 07 00 03 F2");
  EXPECT_EQ(dock.Mistakes(), "identifier not stepping");
}

TEST_F(Identifiers, JumpIsNamed) {
  dock.Exchange("FF 55 04 00 07 00 03 F2");
  dock.Exchange("FF 55 04 00 07 00 05 F0");
  EXPECT_EQ(dock.Mistakes(), "identifier not stepping");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail, "RequestiPodName came under 5 after 3");
}

TEST_F(Identifiers, StartAgainFromZeroAfterThePortWasReopened) {
  dock.Exchange("FF 55 04 00 07 00 03 F2");
  dock.Exchange("FF 55 04 00 07 00 00 F5");
  dock.Exchange("FF 55 04 00 07 00 01 F4");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(Identifiers, ExtraStepAfterARequestOfTheIpodIsNormal) {
  dock.Exchange("FF 55 09 04 00 26 00 03 00 00 00 04 C6");
  // Starting a track is told by a notification under identifier 1; an accessory that is behind it
  // steps once more.
  dock.Exchange("FF 55 0A 04 00 17 00 04 05 00 00 00 00 D2");
  dock.Exchange("FF 55 05 04 00 1C 00 06 D5");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(IdentifierWrap, ComesAfterFFFF) {
  IpodUnderTest dock;
  dock.Exchange("FF 55 02 00 38 C6");
  dock.Exchange("FF 55 04 00 11 FF FF ED");
  dock.Exchange("FF 55 04 00 11 00 00 EB");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(Identifiers, CancelCarriesTheIdentifierOfWhatItCancels) {
  Settings settings = QuietSettings();
  settings.record_period = kSecond;
  IpodUnderTest slow(settings);
  slow.Identify();
  slow.IdentifyByTokens();
  EXPECT_EQ(slow.Exchange("FF 55 0E 04 00 1A 00 03 05 00 00 00 00 00 00 00 06 C6"),
            "FF 55 10 04 00 1B 00 03 00 00 00 00 41 6D 61 7A 6F 6E 00 68");
  EXPECT_EQ(slow.Exchange("FF 55 04 00 50 00 03 A9"), "FF 55 06 00 02 00 03 00 50 A5");
  EXPECT_EQ(slow.Read(10 * kSecond), "");
  EXPECT_EQ(slow.Exchange("FF 55 04 00 07 00 04 F1"), "FF 55 08 00 08 00 04 50 6F 64 00 C9");
  EXPECT_EQ(slow.Mistakes(), "");
}

TEST_F(Identifiers, CancelOfAnotherRequestLeavesAStreamAlone) {
  dock.Write("FF 55 0E 04 00 1A 00 03 05 00 00 00 00 00 00 00 02 CA");
  dock.Write("FF 55 04 00 50 00 02 AA");
  EXPECT_EQ(
      dock.Read(),
      "FF 55 10 04 00 1B 00 03 00 00 00 00 41 6D 61 7A 6F 6E 00 68 FF 55 06 00 02 00 02 00 50 A6");
  EXPECT_EQ(dock.Read(), "FF 55 0D 04 00 1B 00 03 00 00 00 01 42 61 79 00 B4");
}

}  // namespace
}  // namespace ipodsim

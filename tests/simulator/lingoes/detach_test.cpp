// SPDX-License-Identifier: MIT
// Proves that settings are restored when the iPod leaves the dock where the accessory asked for
// that, and kept where it did not.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

class DetachTest : public testing::Test {
 protected:
  DetachTest() { dock.Identify(); }
  void Redock() {
    dock.ipod.Unplug(dock.now);
    dock.ipod.Replug(dock.now);
    dock.Identify();
  }

  IpodUnderTest dock;
};

TEST_F(DetachTest, PreferenceIsRestoredWhereTheAccessoryAskedForThat) {
  dock.Exchange("FF 55 05 00 2B 08 02 00 C6");
  dock.Exchange("FF 55 05 00 2B 0F 01 01 BF");
  EXPECT_EQ(dock.ipod.preference(8), 2);
  EXPECT_EQ(dock.ipod.preference(15), 1);
  Redock();
  EXPECT_EQ(dock.ipod.preference(8), 2);
  EXPECT_EQ(dock.ipod.preference(15), 0);
}

TEST_F(DetachTest, PreferenceGoesBackToWhatItWasBeforeTheFirstChange) {
  dock.Exchange("FF 55 05 00 2B 08 01 00 C7");
  dock.Exchange("FF 55 05 00 2B 08 02 01 C5");
  dock.Exchange("FF 55 05 00 2B 08 03 01 C4");
  Redock();
  EXPECT_EQ(dock.ipod.preference(8), 1);
}

TEST_F(DetachTest, LastChangeForGoodStays) {
  dock.Exchange("FF 55 05 00 2B 08 02 01 C5");
  dock.Exchange("FF 55 05 00 2B 08 03 00 C5");
  Redock();
  EXPECT_EQ(dock.ipod.preference(8), 3);
}

TEST_F(DetachTest, ShuffleAndRepeatAreRestoredWhereTheAccessoryAskedForThat) {
  dock.Exchange("FF 55 05 04 00 2E 01 01 C7");
  dock.Exchange("FF 55 05 04 00 31 02 00 C4");
  Redock();
  EXPECT_EQ(dock.ipod.player().shuffle(), Shuffle::kOff);
  EXPECT_EQ(dock.ipod.player().repeat(), Repeat::kAll);
}

TEST_F(DetachTest, ShuffleAndRepeatOfOneByteAreKept) {
  dock.Exchange("FF 55 04 04 00 2E 01 C9");
  dock.Exchange("FF 55 05 04 00 31 01 01 C4");
  Redock();
  EXPECT_EQ(dock.ipod.player().shuffle(), Shuffle::kTracks);
  EXPECT_EQ(dock.ipod.player().repeat(), Repeat::kOff);
}

TEST_F(DetachTest, AudiobookSpeedIsRestoredWhereTheAccessoryAskedForThat) {
  dock.Exchange("FF 55 04 04 00 0B FF EE");
  dock.Exchange("FF 55 05 04 00 0B 01 01 EA");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 09 F0"), "FF 55 04 04 00 0A 01 ED");
  Redock();
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 09 F0"), "FF 55 04 04 00 0A FF EF");
}

TEST_F(DetachTest, NewIdentificationRestoresNothing) {
  dock.Exchange("FF 55 05 00 2B 08 02 01 C5");
  dock.Identify();
  EXPECT_EQ(dock.ipod.preference(8), 2);
}

TEST_F(DetachTest, NoMistakeIsMadeByAnyOfThis) {
  dock.Exchange("FF 55 05 04 00 2E 01 01 C7");
  Redock();
  EXPECT_EQ(dock.Mistakes(), "");
}

}  // namespace
}  // namespace ipodsim

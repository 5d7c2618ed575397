// SPDX-License-Identifier: MIT
// Proves the display's limits, pictures in parts, and what becomes of frames that are cut short.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kTaken[] = "FF 55 06 04 00 01 00 00 32 C3";
constexpr char kRefused[] = "FF 55 06 04 00 01 03 00 32 C0";
// 16 by 2 pixels, 2 bytes to a row: AA BB, CC DD.
constexpr char kFirst[] = "FF 55 10 04 00 32 00 00 01 00 10 00 02 00 00 00 02 AA BB 40";
constexpr char kSecondPart[] = "FF 55 07 04 00 32 00 01 CC DD 19";

class DisplayTest : public testing::Test {
 protected:
  DisplayTest() { dock.Identify(); }
  IpodUnderTest dock;
};

TEST_F(DisplayTest, LimitsAreTold) {
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 33 C6"), "FF 55 08 04 00 34 00 80 00 40 01 FF");
}

TEST_F(DisplayTest, PictureIsShownWhenAllOfItHasCome) {
  EXPECT_EQ(dock.Exchange(kFirst), kTaken);
  EXPECT_TRUE(dock.ipod.display_image().empty());
  EXPECT_EQ(dock.Exchange(kSecondPart), kTaken);
  EXPECT_EQ(ToHex(dock.ipod.display_image()), "AA BB CC DD");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(DisplayTest, LargeFramesAreTakenToo) {
  EXPECT_EQ(dock.Exchange("FF 55 00 00 10 04 00 32 00 00 01 00 10 00 02 00 00 00 02 AA BB 40"),
            kTaken);
  EXPECT_EQ(dock.Exchange("FF 55 00 00 07 04 00 32 00 01 CC DD 19"), kTaken);
  EXPECT_EQ(ToHex(dock.ipod.display_image()), "AA BB CC DD");
}

TEST_F(DisplayTest, PictureGoesWithTheAccessory) {
  dock.Exchange(kFirst);
  dock.Exchange(kSecondPart);
  dock.ipod.Unplug(dock.now);
  EXPECT_TRUE(dock.ipod.display_image().empty());
}

TEST_F(DisplayTest, PartsOutOfTurnAreNamed) {
  EXPECT_EQ(dock.Exchange(kSecondPart), kRefused);
  dock.Exchange(kFirst);
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 32 00 02 CC DD 18"), kRefused);
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter");
}

TEST_F(DisplayTest, MoreBytesThanThePictureHasAreNamed) {
  dock.Exchange(kFirst);
  EXPECT_EQ(dock.Exchange("FF 55 08 04 00 32 00 01 CC DD EE 2A"), kRefused);
  // That picture is given up.
  EXPECT_EQ(dock.Exchange(kSecondPart), kRefused);
  EXPECT_TRUE(dock.ipod.display_image().empty());
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter");
}

TEST_F(DisplayTest, PictureThatDoesNotFitIsNamed) {
  // 129 pixels wide; another pixel format; a first part without sizes.
  EXPECT_EQ(dock.Exchange("FF 55 10 04 00 32 00 00 01 00 81 00 02 00 00 00 02 AA BB CF"), kRefused);
  EXPECT_EQ(dock.Exchange("FF 55 10 04 00 32 00 00 02 00 10 00 02 00 00 00 02 AA BB 3F"), kRefused);
  EXPECT_EQ(dock.Exchange("FF 55 06 04 00 32 00 00 01 C3"), kRefused);
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter, bad parameter");
}

// Some consoles leave out the last two bytes of a large frame. The receiver takes the next frame's
// FF 55 for them, finds the sum wrong and looks for a sync byte in what is left of that frame.
TEST_F(DisplayTest, FrameCutShortTakesTheNextOneWithIt) {
  EXPECT_EQ(dock.Exchange("FF 55 00 00 07 04 00 32 00 01 CC"), "");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "");
  ASSERT_EQ(dock.ipod.mistakes().size(), 2u);
  EXPECT_EQ(dock.ipod.mistakes()[0].name, "bad checksum");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail,
            "the sum of a frame of 13 bytes is not 0; its last two begin another frame");
  EXPECT_EQ(dock.ipod.mistakes()[1].name, "stray bytes");
  // The frame after that is understood.
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "FF 55 06 00 08 50 6F 64 00 CF");
}

TEST_F(DisplayTest, FrameCutShortBeforeASilenceIsTruncated) {
  EXPECT_EQ(dock.Exchange("FF 55 00 00 07 04 00 32 00 01 CC"), "");
  dock.now += kSecond;
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(dock.Mistakes(), "truncated frame");
}

}  // namespace
}  // namespace ipodsim

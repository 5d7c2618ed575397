// SPDX-License-Identifier: MIT
#include "screen/heart_curve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/workout/recordings.h"

using namespace ipodctl;
using ipodctl::screen::DrawHeartCurve;
using ipodctl::screen::HeartCurve;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

Reading Beating(int seconds, int bpm) {
  Reading reading = At(seconds);
  reading.bpm = bpm;
  return reading;
}

TEST(HeartCurve, RisesFromTheLowerEdgeAndIsDrawnAsFarAsTheWorkoutHasCome) {
  // Two columns of four dots each, from 80 to 100 bpm: one dot stands for seven beats.
  const Recording recording =
      Kilometres({Beating(0, 80), Beating(1, 87), Beating(2, 94), Beating(3, 99), Beating(4, 99)});
  const HeartCurve whole = DrawHeartCurve(recording, 4, 1, 2);
  EXPECT_EQ(whole.lowest_bpm, 80);
  EXPECT_EQ(whole.highest_bpm, 100);
  // Dots 7 and 6, then 2 and 5: U+2800 with 0x40 + 0x20, and with 0x02 + 0x10.
  EXPECT_THAT(whole.lines, ElementsAre("⡠⠒"));
  EXPECT_THAT(DrawHeartCurve(recording, 1, 1, 2).lines, ElementsAre("⡠ "));
  EXPECT_THAT(DrawHeartCurve(recording, 0, 1, 2).lines, ElementsAre("⡀ "));
}

TEST(HeartCurve, FillsSteepPartsAndLeavesAGapWhereNothingIsMeasured) {
  const Recording steep =
      Kilometres({Beating(0, 80), Beating(1, 99), Beating(2, 0), Beating(3, 80), Beating(4, 80)});
  EXPECT_THAT(DrawHeartCurve(steep, 4, 1, 2).lines, ElementsAre("⡰⢀"));
}

TEST(HeartCurve, IsNotThereWithoutAHeartRate) {
  EXPECT_THAT(DrawHeartCurve(Kilometres({At(0), At(9)}), 9, 3, 20).lines, IsEmpty());
}

}  // namespace

// SPDX-License-Identifier: MIT
// Axes on round numbers, and courses thinned for drawing.
#include "report/axis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl;
using ::testing::ElementsAre;

namespace {

std::vector<Sample> Line(int count) {
  std::vector<Sample> course;
  for (int i = 0; i < count; ++i) {
    course.push_back({static_cast<double>(i), static_cast<double>(i % 7), i == 0});
  }
  return course;
}

TEST(NumberScale, TakesInItsRangeOnRoundSteps) {
  const Scale heart = NumberScale(94, 182, 7, 5);
  EXPECT_THAT(heart.ticks, ElementsAre(80, 100, 120, 140, 160, 180, 200));
  EXPECT_EQ(heart.low, 80);
  EXPECT_EQ(heart.high, 200);
  EXPECT_THAT(NumberScale(0, 10, 7, 0.05).ticks, ElementsAre(0, 2, 4, 6, 8, 10));
  EXPECT_THAT(NumberScale(0, 4.84, 7, 0.05).ticks, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST(NumberScale, IsNeverEmpty) {
  EXPECT_THAT(NumberScale(140, 140, 7, 5).ticks, ElementsAre(140, 145));
  EXPECT_THAT(NumberScale(0, 0, 7, 0.05).ticks, ElementsAre(0, 0.05));
  EXPECT_THAT(NumberScale(141, 142, 7, 5).ticks, ElementsAre(140, 145));
}

TEST(NumberScale, HasFewTicksForAnyRange) {
  for (const double high : {0.001, 1.0, 7.3, 99.0, 101.0, 12345.0, 1e10}) {
    const Scale scale = NumberScale(0, high, 7, 0.05);
    EXPECT_LE(scale.ticks.size(), 7U) << high;
    EXPECT_GE(scale.ticks.size(), 2U) << high;
    EXPECT_GE(scale.high, high);
    EXPECT_DOUBLE_EQ(scale.ticks.back(), scale.high);
  }
}

TEST(ClockScale, StepsAsClocksDo) {
  EXPECT_THAT(ClockScale(302, 541, 7).ticks, ElementsAre(300, 360, 420, 480, 540, 600));
  EXPECT_THAT(ClockScale(300, 300, 7).ticks, ElementsAre(300, 305));
  EXPECT_THAT(ClockScale(301, 349, 7).ticks, ElementsAre(300, 310, 320, 330, 340, 350));
}

TEST(TimeTicks, AreRoundTimesWithinTheWorkout) {
  EXPECT_THAT(TimeTicks(240, 5), ElementsAre(0, 60, 120, 180, 240));
  EXPECT_THAT(TimeTicks(1805, 5), ElementsAre(0, 600, 1200, 1800));
  EXPECT_THAT(TimeTicks(1, 5), ElementsAre(0, 1));
  EXPECT_THAT(TimeTicks(4 * 3600, 5), ElementsAre(0, 3600, 7200, 10800, 14400));
  EXPECT_LE(TimeTicks(1e10, 5).size(), 5U);
  EXPECT_GE(TimeTicks(1e10, 5).size(), 2U);
}

TEST(Thinned, KeepsAFewSamplesAsTheyAre) {
  const std::vector<Sample> course = {{0, 5, true}, {10, 7, false}, {20, 6, true}};
  const std::vector<Sample> kept = Thinned(course, 20, 300);
  ASSERT_EQ(kept.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(kept[i].seconds, course[i].seconds);
    EXPECT_EQ(kept[i].value, course[i].value);
    EXPECT_EQ(kept[i].starts_anew, course[i].starts_anew);
  }
}

TEST(Thinned, KeepsNoMoreThanFourOfAColumn) {
  const std::vector<Sample> kept = Thinned(Line(100000), 99999, 50);
  EXPECT_LE(kept.size(), 200U);
  EXPECT_GE(kept.size(), 100U);
  for (std::size_t i = 1; i < kept.size(); ++i) EXPECT_GE(kept[i].seconds, kept[i - 1].seconds);
}

TEST(Thinned, KeepsEveryPeak) {
  std::vector<Sample> course;
  for (int i = 0; i < 3600; ++i) course.push_back({static_cast<double>(i), 100, i == 0});
  course[1234].value = 190;
  course[1235].value = 40;
  double highest = 0;
  double lowest = 1000;
  for (const Sample& sample : Thinned(course, 3599, 20)) {
    highest = std::max(highest, sample.value);
    lowest = std::min(lowest, sample.value);
  }
  EXPECT_EQ(highest, 190);
  EXPECT_EQ(lowest, 40);
}

TEST(Thinned, KeepsFirstAndLast) {
  const std::vector<Sample> kept = Thinned(Line(1000), 999, 10);
  EXPECT_EQ(kept.front().seconds, 0);
  EXPECT_TRUE(kept.front().starts_anew);
  EXPECT_EQ(kept.back().seconds, 999);
}

TEST(Thinned, LosesGapsThinnerThanAColumn) {
  const std::vector<Sample> kept =
      Thinned({{0, 5, true}, {1, 9, true}, {2, 1, true}, {3, 4, true}, {90, 7, true}}, 100, 10);
  ASSERT_EQ(kept.size(), 5U);
  const bool starts[] = {true, false, false, false, true};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(kept[i].starts_anew, starts[i]) << i;
}

TEST(Thinned, StaysSmallWhereEverySecondReadingIsMissing) {
  std::vector<Sample> course;
  for (int i = 0; i < 100000; ++i) course.push_back({static_cast<double>(i), 1, true});
  EXPECT_LE(Thinned(course, 99999, 50).size(), 200U);
}

}  // namespace

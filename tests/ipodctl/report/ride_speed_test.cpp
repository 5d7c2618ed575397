// SPDX-License-Identifier: MIT
// The speed of rides, from paces and from distances.
#include "report/ride_speed.h"

#include <gtest/gtest.h>

#include "documents.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using report::Document;
using report::IntervalAt;
using report::KmAt;

namespace {

RideSpeed SpeedIn(const std::string& elements) {
  return RideSpeedOf(ParseWorkoutDocument(Document(elements)));
}

TEST(RideSpeed, IsThatOfThePaceWhereThereIsOne) {
  const RideSpeed speed = SpeedIn(IntervalAt(10, "<km>9</km><pace>120</pace>"));
  ASSERT_EQ(speed.course.size(), 1U);
  EXPECT_DOUBLE_EQ(speed.course[0].value, 30);
  EXPECT_FALSE(speed.from_distance);
}

TEST(RideSpeed, IsElseThatOfTheDistanceOverAMinute) {
  const RideSpeed speed = SpeedIn(KmAt(0, "0.00") + KmAt(20, "0.10") + KmAt(40, "0.20") +
                                  KmAt(60, "0.45") + KmAt(80, "0.70"));
  EXPECT_TRUE(speed.from_distance);
  ASSERT_EQ(speed.course.size(), 5U);
  EXPECT_DOUBLE_EQ(speed.course[0].value, 18);                 // 0.10 km in 20 s
  EXPECT_DOUBLE_EQ(speed.course[1].value, 18);                 // 0.20 km in 40 s
  EXPECT_NEAR(speed.course[2].value, 0.35 / 40 * 3600, 1e-9);  // from 0:20 to 1:00
  EXPECT_NEAR(speed.course[4].value, 45, 1e-9);
  EXPECT_TRUE(speed.course[0].starts_anew);
  EXPECT_FALSE(speed.course[1].starts_anew);
}

TEST(RideSpeed, TakesTheNeighboursOfLongIntervals) {
  const RideSpeed speed = SpeedIn(KmAt(0, "0") + KmAt(120, "1") + KmAt(240, "3"));
  ASSERT_EQ(speed.course.size(), 3U);
  EXPECT_DOUBLE_EQ(speed.course[0].value, 30);
  EXPECT_DOUBLE_EQ(speed.course[1].value, 45);
  EXPECT_DOUBLE_EQ(speed.course[2].value, 60);
}

TEST(RideSpeed, HasAGapAtAPauseAndDoesNotFallTowardsIt) {
  const RideSpeed speed =
      SpeedIn(KmAt(0, "0.0") + KmAt(10, "0.1") + KmAt(20, "0.2", "pause") +
              KmAt(30, "0.2", "continue") + KmAt(40, "0.2", "resume") + KmAt(50, "0.3"));
  ASSERT_EQ(speed.course.size(), 5U);
  const double times[] = {0, 10, 20, 40, 50};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(speed.course[i].seconds, times[i]);
    EXPECT_NEAR(speed.course[i].value, 36, 1e-9) << i;
    EXPECT_EQ(speed.course[i].starts_anew, i == 0 || i == 3) << i;
  }
}

TEST(RideSpeed, IsZeroWhereNothingMoves) {
  const RideSpeed speed = SpeedIn(KmAt(0, "1") + KmAt(5, "1"));
  ASSERT_EQ(speed.course.size(), 2U);
  EXPECT_EQ(speed.course[0].value, 0);
}

TEST(RideSpeed, IsUnknownWhereTheDistanceGoesBackOrTimeStandsStill) {
  EXPECT_TRUE(SpeedIn(KmAt(0, "2") + KmAt(5, "1")).course.empty());
  EXPECT_TRUE(SpeedIn(KmAt(5, "1") + KmAt(5, "2")).course.empty());
  EXPECT_TRUE(SpeedIn(KmAt(5, "1")).course.empty());
  EXPECT_TRUE(SpeedIn("").course.empty());
}

}  // namespace

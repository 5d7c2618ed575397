// SPDX-License-Identifier: MIT
// Splits by kilometre and mile, and the time in heart-rate zones.
#include "report/splits.h"

#include <gtest/gtest.h>

#include "documents.h"
#include "report/heart_zones.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using report::Document;
using report::IntervalAt;
using report::KmAt;

namespace {

std::vector<Split> SplitsIn(const std::string& elements, Units units = Units::kMetric) {
  return SplitsOf(ParseWorkoutDocument(Document(elements)), Measures(units));
}

void ExpectSplit(const Split& split, double from, double to, double seconds) {
  EXPECT_NEAR(split.from, from, 1e-9);
  EXPECT_NEAR(split.to, to, 1e-9);
  EXPECT_NEAR(split.seconds, seconds, 1e-6);
}

TEST(Splits, LastFromOneKilometreToTheNextAndToTheEnd) {
  const std::vector<Split> splits =
      SplitsIn(KmAt(0, "0") + KmAt(300, "1.0") + KmAt(540, "2.0") + KmAt(700, "2.5"));
  ASSERT_EQ(splits.size(), 3U);
  ExpectSplit(splits[0], 0, 1, 300);
  ExpectSplit(splits[1], 1, 2, 240);
  ExpectSplit(splits[2], 2, 2.5, 160);
}

TEST(Splits, EndBetweenIntervals) {
  const std::vector<Split> splits = SplitsIn(KmAt(100, "0.5") + KmAt(300, "2.5"));
  ASSERT_EQ(splits.size(), 3U);
  ExpectSplit(splits[0], 0, 1, 150);
  ExpectSplit(splits[1], 1, 2, 100);
  ExpectSplit(splits[2], 2, 2.5, 50);
}

TEST(Splits, DoNotCountPauses) {
  const std::vector<Split> splits = SplitsIn(KmAt(0, "0") + KmAt(100, "0.5", "pause") +
                                             KmAt(160, "0.5", "resume") + KmAt(260, "1.0"));
  ASSERT_EQ(splits.size(), 1U);
  ExpectSplit(splits[0], 0, 1, 200);
}

TEST(Splits, HaveTheHeartRateOfTheirWay) {
  const std::vector<Split> splits =
      SplitsIn(IntervalAt(100, "<km>0.5</km><bpm>100</bpm>") +
               IntervalAt(200, "<km>1.0</km><bpm>120</bpm>") + IntervalAt(300, "<km>2.0</km>"));
  ASSERT_EQ(splits.size(), 2U);
  EXPECT_EQ(splits[0].bpm, 110.0);
  EXPECT_FALSE(splits[1].bpm);
}

TEST(Splits, AreMilesWhereMilesAreWanted) {
  const std::vector<Split> splits =
      SplitsIn(KmAt(0, "0") + KmAt(1000, "3.218688"), Units::kImperial);
  ASSERT_EQ(splits.size(), 2U);
  ExpectSplit(splits[0], 0, 1, 500);
  ExpectSplit(splits[1], 1, 2, 500);
}

TEST(Splits, AreFewForAnyDistance) {
  const std::vector<Split> ride = SplitsIn(KmAt(0, "0") + KmAt(36000, "180"));
  ASSERT_EQ(ride.size(), 36U);
  ExpectSplit(ride[0], 0, 5, 1000);
  const std::vector<Split> far = SplitsIn(KmAt(0, "0") + KmAt(36000, "9999999999"));
  EXPECT_LE(far.size(), 50U);
  EXPECT_GE(far.size(), 10U);
}

TEST(Splits, AreNoneWithoutAWholeOne) {
  EXPECT_TRUE(SplitsIn("").empty());
  EXPECT_TRUE(SplitsIn(KmAt(0, "0") + KmAt(300, "0.99")).empty());
  EXPECT_TRUE(SplitsIn(IntervalAt(300, "<floors>40</floors>")).empty());
}

TEST(Splits, SurviveADistanceThatGoesBack) {
  const std::vector<Split> splits = SplitsIn(KmAt(100, "1.5") + KmAt(200, "0.5") + KmAt(300, "2"));
  ASSERT_EQ(splits.size(), 2U);
  EXPECT_GE(splits[1].seconds, 0);
}

TEST(HeartZones, CountTheTimeFromEachReadingToTheNext) {
  const auto zones = TimeInZones(
      ParseWorkoutDocument(
          Document(IntervalAt(0, "<bpm>90</bpm>") + IntervalAt(10, "<bpm>99</bpm>") +
                   IntervalAt(30, "<bpm>100</bpm>") + IntervalAt(60, "<bpm>200</bpm>") +
                   IntervalAt(100, "<bpm>250</bpm>") + IntervalAt(101, "<bpm>1</bpm>"))),
      200);
  EXPECT_EQ(zones[0].seconds, 30);  // below 100
  EXPECT_EQ(zones[0].to, 99);
  EXPECT_EQ(zones[1].from, 100);
  EXPECT_EQ(zones[1].to, 119);
  EXPECT_EQ(zones[1].seconds, 30);
  EXPECT_EQ(zones[4].seconds, 0);
  EXPECT_EQ(zones[5].from, 180);
  EXPECT_EQ(zones[5].to, 200);
  EXPECT_EQ(zones[5].seconds, 41);  // also what is beyond the maximum
}

TEST(HeartZones, HaveWholeBoundsThatTouch) {
  const auto zones = TimeInZones(WorkoutDocument(), 185);
  const double from[] = {0, 93, 111, 130, 148, 167};
  const double to[] = {92, 110, 129, 147, 166, 185};
  for (std::size_t i = 0; i < kHeartZones; ++i) {
    EXPECT_EQ(zones[i].from, from[i]) << i;
    EXPECT_EQ(zones[i].to, to[i]) << i;
    EXPECT_EQ(zones[i].seconds, 0) << i;
  }
}

TEST(HeartZones, CountNoTimeWithoutReadings) {
  const auto zones = TimeInZones(
      ParseWorkoutDocument(Document(IntervalAt(0, "<bpm>150</bpm>") + IntervalAt(5, "<km>1</km>") +
                                    IntervalAt(90, "<bpm>150</bpm>", "pause") +
                                    IntervalAt(300, "<bpm>150</bpm>", "resume"))),
      200);
  for (const HeartZone& zone : zones) EXPECT_EQ(zone.seconds, 0);
}

}  // namespace

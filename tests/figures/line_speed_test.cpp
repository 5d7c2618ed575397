// SPDX-License-Identifier: MIT
// What hosts wait for, in virtual time: the fast conduct beside what the line and the iPod take,
// the default one beside its pauses.
#include <gtest/gtest.h>

#include "figures/figures.h"
#include "world/clock.h"

namespace {

using ipodcomm::virtual_platform::kMillisecond;
using test::Figure;

TEST(FastFigures, AThousandNamesComeAtTheSpeedOfTheLine) {
  const Figure figure = test::MeasureNames(IPOD_CONDUCT_FAST, 1000);
  EXPECT_EQ(figure.received_bytes, 1000 * 34);
  EXPECT_GE(figure.Ratio(), 1.0);
  EXPECT_LE(figure.Ratio(), 1.05);
}

TEST(FastFigures, TenThousandNamesTakeTenTimesAsLong) {
  const Figure thousand = test::MeasureNames(IPOD_CONDUCT_FAST, 1000);
  const Figure ten_thousand = test::MeasureNames(IPOD_CONDUCT_FAST, 10000);
  ASSERT_GT(thousand.taken_us, 0);
  const double times =
      static_cast<double>(ten_thousand.taken_us) / static_cast<double>(thousand.taken_us);
  EXPECT_NEAR(times, 10, 0.1);
}

TEST(FastFigures, AnExchangeOnAQuietLineTakesTwoAndAHalfMillisecondsMore) {
  const Figure figure = test::MeasureExchange(IPOD_CONDUCT_FAST);
  ASSERT_GT(figure.taken_us, 0);
  EXPECT_GE(figure.taken_us, figure.floor_us);
  EXPECT_LE(figure.taken_us, figure.floor_us + 5 * kMillisecond / 2);
}

TEST(FastFigures, AnIdentificationTakesNoMoreThanItsAnswersAndPauses) {
  const Figure figure = test::MeasureIdentification(IPOD_CONDUCT_FAST);
  EXPECT_GE(figure.Ratio(), 1.0);
  EXPECT_LE(figure.Ratio(), 1.05);
}

TEST(FastFigures, AWorkoutIsWrittenAtTheSpeedOfTheLine) {
  const Figure figure = test::MeasureWorkout(IPOD_CONDUCT_FAST, 360);
  EXPECT_GE(figure.Ratio(), 1.0);
  EXPECT_LE(figure.Ratio(), 1.05);
}

// As many names as a driver can hold: they come ten times as fast as they are read.
TEST(DefaultFigures, NamesTakeThePausesAfterTheirBytes) {
  const Figure figure = test::MeasureNames(IPOD_CONDUCT_FIELD, 100);
  ASSERT_EQ(figure.received_bytes, 100 * 34);
  const std::int64_t pauses_us = (20 + 8 + 2 * figure.received_bytes) * kMillisecond;
  EXPECT_GE(figure.taken_us, pauses_us);
  EXPECT_LE(figure.taken_us, pauses_us + pauses_us / 50);
}

}  // namespace

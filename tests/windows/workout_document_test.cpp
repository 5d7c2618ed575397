// SPDX-License-Identifier: MIT
// The workout document's numbers in a host that has chosen its user's language: there the C library
// writes fractions with a comma, and the document must not.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <iterator>
#include <string>

#include "workout/document.h"

namespace {

class WorkoutDocument : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(std::setlocale(LC_ALL, "German_Germany.1252"), nullptr);
    wchar_t text[16] = {};
    _snwprintf(text, std::size(text) - 1, L"%.1f", 80.5);
    ASSERT_STREQ(text, L"80,5") << "the C library follows the language";
  }
  void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

std::wstring WeightLine(double weight_kg) {
  const ipodcomm::HeaderLines lines(
      {L"ACME", L"Acme Fitness", L"T9", L"SN-0042", IPOD_EQUIPMENT_TYPE_BIKE, weight_kg});
  return (lines.end() - 2)->Whole().data();
}

TEST_F(WorkoutDocument, HasPointsInItsHeader) {
  EXPECT_EQ(WeightLine(80.5), L"\t\t<kg>80.5</kg>\n");
  EXPECT_EQ(WeightLine(1234567.5), L"\t\t<kg>1234567.5</kg>\n");
}

TEST_F(WorkoutDocument, HasPointsInItsIntervals) {
  EXPECT_STREQ(
      ipodcomm::IntervalBlock({IPOD_INTERVAL_TYPE_START, 45, 1.25, 3.456, IPOD_DISTANCE_TYPE_KM,
                               59.99, IPOD_SPEED_TYPE_PACE, -2.5, 72, 6})
          .chars,
      L"\t<interval>\n"
      L"\t\t<event>start</event>\n"
      L"\t\t<sec>45</sec>\n"
      L"\t\t<kCal>1.25</kCal>\n"
      L"\t\t<km>3.46</km>\n"
      L"\t\t<pace>59</pace>\n"
      L"\t\t<incline>-2.5</incline>\n"
      L"\t\t<bpm>72</bpm>\n"
      L"\t\t<level>6</level>\n"
      L"\t</interval>\n");
}

TEST_F(WorkoutDocument, HasPointsInItsSummary) {
  EXPECT_STREQ(
      ipodcomm::SummaryBlock({1800, 250.128, 12.5, IPOD_DISTANCE_TYPE_FLOORS, 96.9, 0}).chars,
      L"\t<workoutSummary>\n"
      L"\t\t<sec>1800</sec>\n"
      L"\t\t<kCal>250.13</kCal>\n"
      L"\t\t<floors>12.5</floors>\n"
      L"\t\t<spm>96</spm>\n"
      L"\t</workoutSummary>\n");
}

// As on every platform; the system's own formatting would round them up.
TEST_F(WorkoutDocument, RoundsHalvesToTheEvenDigit) {
  EXPECT_EQ(WeightLine(80.25), L"\t\t<kg>80.2</kg>\n");
  EXPECT_EQ(WeightLine(80.75), L"\t\t<kg>80.8</kg>\n");
}

}  // namespace

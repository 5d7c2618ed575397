// SPDX-License-Identifier: MIT
// Where the chart puts things. Positions are in the units of the picture.
#include "report/chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "documents.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using report::Document;
using report::IntervalAt;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

// A shape of which the plots are 100 wide, from 46 to 146, and 100 high: the first from 26 to 126,
// the second from 172 to 272, the third from 318 to 418, the fourth from 464 to 564.
constexpr ChartShape kShape = {"test", 170, 100, 5};

Chart ChartOf(const std::string& text) {
  const WorkoutDocument document = ParseWorkoutDocument(text);
  return PlanChart(document, FiguresOf(document));
}

std::string Drawn(const std::string& text) { return RenderChart(ChartOf(text), kShape); }

std::size_t Occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(ChartPlan, HasAPanelForEachCourse) {
  const Chart chart = ChartOf(report::kRun);
  ASSERT_EQ(chart.panels.size(), 4U);
  EXPECT_EQ(chart.panels[0].title, "Heart rate");
  EXPECT_EQ(chart.panels[0].unit, "bpm");
  EXPECT_EQ(chart.panels[0].detail, "average 131, highest 150");
  EXPECT_EQ(chart.panels[1].title, "Pace");
  EXPECT_EQ(chart.panels[1].unit, "min/km");
  EXPECT_EQ(chart.panels[1].detail, "average 5:05");
  EXPECT_EQ(chart.panels[2].title, "Inclination");
  EXPECT_EQ(chart.panels[2].unit, "%");
  EXPECT_EQ(chart.panels[2].detail, "highest 1.5 %");
  EXPECT_EQ(chart.panels[3].title, "Distance");
  EXPECT_EQ(chart.panels[3].unit, "km");
  EXPECT_EQ(chart.panels[3].detail, "0.61 km in all");
  EXPECT_EQ(chart.end, 240);
}

TEST(ChartPlan, LeavesOutWhatWasNotMeasured) {
  EXPECT_TRUE(ChartOf(Document("")).panels.empty());
  const Chart chart = ChartOf(Document(IntervalAt(5, "<bpm>100</bpm>")));
  ASSERT_EQ(chart.panels.size(), 1U);
  EXPECT_EQ(chart.panels[0].title, "Heart rate");
  const std::string timeless = "<interval><bpm>90</bpm><km>1</km><pace>300</pace></interval>";
  EXPECT_TRUE(ChartOf(Document(timeless)).panels.empty());
  EXPECT_TRUE(ChartOf(Document("<interval><rpm>90</rpm></interval>")).panels.empty());
}

TEST(ChartPlan, NamesStepsRevolutionsAndFloors) {
  const Chart stepper = ChartOf(Document(IntervalAt(5, "<floors>2.5</floors><spm>50</spm>")));
  ASSERT_EQ(stepper.panels.size(), 2U);
  EXPECT_EQ(stepper.panels[0].title, "Steps");
  EXPECT_EQ(stepper.panels[0].unit, "per minute");
  EXPECT_EQ(stepper.panels[1].title, "Climb");
  EXPECT_EQ(stepper.panels[1].detail, "2.5 floors in all");
  const Chart bike = ChartOf(Document(IntervalAt(5, "<rpm>50</rpm>")));
  ASSERT_EQ(bike.panels.size(), 1U);
  EXPECT_EQ(bike.panels[0].title, "Cadence");
  EXPECT_EQ(bike.panels[0].unit, "rpm");
}

TEST(ChartPlan, ShowsARideBySpeedAndCadence) {
  std::string intervals;
  for (int i = 0; i <= 12; ++i) {
    intervals += IntervalAt(10 * i, "<km>" + std::to_string(i * 0.08) + "</km><rpm>80</rpm>");
  }
  const Chart chart =
      ChartOf(Document("<equipmentInfo><type>Bike</type></equipmentInfo>" + intervals));
  ASSERT_EQ(chart.panels.size(), 3U);
  EXPECT_EQ(chart.panels[0].title, "Speed");
  EXPECT_EQ(chart.panels[0].unit, "km/h");
  EXPECT_EQ(chart.panels[0].detail, "average 28.8");
  EXPECT_EQ(chart.panels[1].title, "Cadence");
  EXPECT_EQ(chart.panels[2].title, "Distance");
  EXPECT_TRUE(chart.speed_from_distance);
  const Chart older = ChartOf(report::kOlderRide);
  EXPECT_EQ(older.panels.at(1).detail, "average 30");
  EXPECT_FALSE(older.speed_from_distance);
}

TEST(ChartPlan, DrawsAnInclinationThatIsNotAlwaysZero) {
  EXPECT_TRUE(ChartOf(Document(IntervalAt(5, "<incline>0.0</incline>"))).panels.empty());
  const Chart chart = ChartOf(
      Document(IntervalAt(5, "<incline>-2.5</incline>") + IntervalAt(9, "<incline>4</incline>")));
  ASSERT_EQ(chart.panels.size(), 1U);
  EXPECT_EQ(chart.panels[0].scale.low, -4);
  EXPECT_EQ(chart.panels[0].scale.high, 4);
  EXPECT_EQ(chart.panels[0].summary, "Inclination between -2.5 and 4 %");
}

TEST(ChartPlan, MeasuresInMilesWhereThatIsWanted) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  Presentation presentation;
  presentation.measures = Measures(Units::kImperial);
  const Chart chart = PlanChart(document, FiguresOf(document), presentation);
  ASSERT_EQ(chart.panels.size(), 4U);
  EXPECT_EQ(chart.panels[1].unit, "min/mi");
  EXPECT_EQ(chart.panels[1].detail, "average 8:11");  // 305 s x 1.609344
  EXPECT_EQ(chart.panels[3].unit, "mi");
  EXPECT_EQ(chart.panels[3].detail, "0.38 mi in all");
}

TEST(ChartPlan, KeepsNearStandstillFromFlatteningThePace) {
  std::string intervals = IntervalAt(0, "<pace>7200</pace>");
  for (int second = 1; second < 20; ++second) intervals += IntervalAt(second, "<pace>300</pace>");
  const Chart chart = ChartOf(Document(intervals));
  EXPECT_EQ(chart.panels.at(0).scale.low, 300);
  EXPECT_EQ(chart.panels.at(0).scale.high, 600);
  EXPECT_TRUE(chart.panels.at(0).cut_off);
  EXPECT_FALSE(ChartOf(report::kRun).panels.at(1).cut_off);
}

TEST(ChartPicture, ScalesWithItsPage) {
  EXPECT_THAT(Drawn(report::kRun), HasSubstr("viewBox=\"0 0 170 610\""));
  EXPECT_THAT(Drawn(report::kRun), Not(HasSubstr(" height=\"610\"")));
}

// Heart rate on 100 to 150 in tens, pace on 5:00 to 5:20 in fives, distance on 0 to 0.6 in tenths.
TEST(ChartPicture, DrawsEachCourseToScale) {
  const std::string picture = Drawn(report::kRun);
  EXPECT_THAT(picture, HasSubstr("<path class=\"line heart\" d=\"M71 86L96 26M121 126L146 46\"/>"));
  EXPECT_THAT(picture, HasSubstr("<path class=\"line speed\" d=\"M71 172L96 272M146 222h0\"/>"));
  EXPECT_THAT(picture, HasSubstr("<path class=\"line distance\" "
                                 "d=\"M46 564L71 530.7L96 497.3L121 497.3L146 464\"/>"));
  EXPECT_THAT(picture, HasSubstr("<path class=\"area distance\" d=\"M46 564L46 564L71 530.7L96 "
                                 "497.3L121 497.3L146 464V564Z\"/>"));
}

TEST(ChartPicture, ShadesEveryPauseInEveryPanel) {
  const std::string picture = Drawn(report::kRun);
  for (const char* top : {"26", "172", "318", "464"}) {
    EXPECT_THAT(picture, HasSubstr(std::string("<rect class=\"pause\" x=\"96\" y=\"") + top +
                                   "\" width=\"25\" height=\"100\"/>"));
  }
  EXPECT_EQ(Occurrences(picture, "class=\"pause\""), 5U);  // the fifth is the key's
  EXPECT_THAT(picture, HasSubstr(">Paused</text>"));
}

TEST(ChartPicture, HasNoKeyWithoutPauses) {
  const std::string picture = Drawn(Document(IntervalAt(9, "<km>1</km>")));
  EXPECT_THAT(picture, Not(HasSubstr("pause")));
  EXPECT_THAT(picture, Not(HasSubstr("Paused")));
}

TEST(ChartPicture, ShowsAPauseInWhichTheClockStood) {
  const std::string picture =
      Drawn(Document(IntervalAt(50, "<km>1</km>", "pause") + IntervalAt(50, "", "resume") +
                     IntervalAt(100, "<km>2</km>")));
  EXPECT_THAT(picture, HasSubstr("<rect class=\"pause\" x=\"96\" y=\"26\" width=\"2\""));
}

TEST(ChartPicture, DrawsPausesThatTouchAsOne) {
  std::string intervals;
  for (int second = 0; second < 1000; second += 2) {
    intervals += IntervalAt(second, "<km>1</km>", "pause") + IntervalAt(second + 1, "", "resume");
  }
  const std::string picture = Drawn(Document(intervals));
  EXPECT_THAT(picture, HasSubstr("<rect class=\"pause\" x=\"46\" y=\"26\" width=\"1"));
  EXPECT_EQ(Occurrences(picture, "class=\"pause\""), 2U);
}

TEST(ChartPicture, LabelsItsAxes) {
  const std::string picture = Drawn(report::kRun);
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick value\" x=\"39\" y=\"130\">100</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick value\" x=\"39\" y=\"30\">150</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick value\" x=\"39\" y=\"176\">5:00</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick value\" x=\"39\" y=\"276\">5:20</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick value\" x=\"39\" y=\"568\">0</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick value\" x=\"39\" y=\"468\">0.6</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick time\" x=\"46\" y=\"583\">0:00</text>"));
  EXPECT_THAT(picture, HasSubstr("<text class=\"tick time\" x=\"146\" y=\"583\">4:00</text>"));
  EXPECT_THAT(picture, HasSubstr(">Time, min:s</text>"));
  EXPECT_THAT(picture, HasSubstr("<tspan class=\"heart\">Heart rate</tspan> "
                                 "<tspan class=\"unit\">bpm</tspan>"));
  EXPECT_THAT(Drawn(Document(IntervalAt(3600, "<km>1</km>"))), HasSubstr(">Time, h:min:s</text>"));
}

TEST(ChartPicture, TellsThoseWhoDoNotSeeIt) {
  EXPECT_THAT(Drawn(report::kRun), HasSubstr("role=\"img\" aria-label=\"The workout over time\" "
                                             "aria-describedby=\"chart-test-desc\""));
  EXPECT_THAT(
      Drawn(report::kRun),
      HasSubstr(
          "<desc id=\"chart-test-desc\">Heart rate between 100 and 150 bpm. Pace between 5:00 "
          "and 5:20 min/km. Inclination between -1.5 and 1.5 %. Distance between 0 and 0.6 km. "
          "Time from 0:00 to 4:00. Paused "
          "from 2:00 to 3:00.</desc>"));
}

TEST(ChartPicture, StaysSmallForAnyWorkout) {
  std::string intervals;
  for (int second = 0; second < 20000; ++second) {
    intervals += IntervalAt(second, "<km>" + std::to_string(second) + "</km><bpm>" +
                                        std::to_string(90 + second * 37 % 90) + "</bpm><pace>" +
                                        std::to_string(300 + second * 41 % 90) + "</pace>");
  }
  EXPECT_LT(RenderChart(ChartOf(Document(intervals)), kWideChart).size(), 100000U);
}

TEST(ChartPicture, DrawsTheLargestValues) {
  const std::string picture = Drawn(Document(
      IntervalAt(2147483647, "<km>9999999999</km><pace>2147483647</pace><bpm>2147483647</bpm>")));
  EXPECT_THAT(picture, HasSubstr("<path class=\"line heart\""));
  EXPECT_THAT(picture, Not(HasSubstr("nan")));
  EXPECT_THAT(picture, Not(HasSubstr("inf")));
}

}  // namespace

// SPDX-License-Identifier: MIT
// Totals, averages, pauses and courses of workouts.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "documents.h"
#include "report/summary_json.h"
#include "report/workout_figures.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using nlohmann::ordered_json;
using report::Document;
using report::IntervalAt;

namespace {

WorkoutFigures FiguresIn(const std::string& elements) {
  return FiguresOf(ParseWorkoutDocument(Document(elements)));
}

void ExpectFigure(const Figure& figure, double value, bool computed) {
  ASSERT_TRUE(figure.value);
  EXPECT_DOUBLE_EQ(*figure.value, value);
  EXPECT_EQ(figure.computed, computed);
}

std::vector<std::pair<double, double>> PausesIn(const std::string& elements) {
  std::vector<std::pair<double, double>> pauses;
  for (const Pause& pause : PausesOf(ParseWorkoutDocument(Document(elements)))) {
    pauses.emplace_back(pause.from, pause.to);
  }
  return pauses;
}

using Pauses = std::vector<std::pair<double, double>>;

TEST(WorkoutFigures, AreThoseOfTheSummary) {
  const WorkoutFigures figures = FiguresOf(ParseWorkoutDocument(report::kRun));
  ExpectFigure(figures.seconds, 240, false);
  ExpectFigure(figures.kcal, 31.25, false);
  ExpectFigure(figures.km, 0.61, false);
  ExpectFigure(figures.pace, 305, false);
  ExpectFigure(figures.bpm, 131, false);
  EXPECT_FALSE(figures.floors.value || figures.spm.value || figures.rpm.value);
  EXPECT_EQ(figures.highest_bpm, 150.0);
  EXPECT_EQ(figures.paused_seconds, 60.0);
}

TEST(WorkoutFigures, AreComputedWhereThereIsNoSummary) {
  const WorkoutFigures figures =
      FiguresOf(ParseWorkoutDocument(report::RunUpTo("<bpm>140</bpm>\n\t</interval>\n")));
  ExpectFigure(figures.seconds, 240, true);
  ExpectFigure(figures.kcal, 31.25, true);
  ExpectFigure(figures.km, 0.6, true);
  ExpectFigure(figures.pace, 300, true);   // 240 seconds, 60 of them paused, for 0.6 km
  ExpectFigure(figures.bpm, 127.5, true);  // of 120, 150, 100 and 140
}

TEST(WorkoutFigures, AreComputedWhereTheSummaryIsSilent) {
  const WorkoutFigures figures =
      FiguresIn(IntervalAt(1, "<bpm>90</bpm><rpm>60</rpm>") + IntervalAt(2, "<rpm>70</rpm>") +
                "<workoutSummary><sec>5</sec></workoutSummary>");
  ExpectFigure(figures.seconds, 5, false);
  ExpectFigure(figures.bpm, 90, true);
  ExpectFigure(figures.rpm, 65, true);
  EXPECT_FALSE(figures.pace.value);
}

TEST(WorkoutFigures, OfNothingAreNone) {
  const WorkoutFigures figures = FiguresIn("");
  for (const Figure& figure : {figures.seconds, figures.kcal, figures.km, figures.floors,
                               figures.pace, figures.spm, figures.rpm, figures.bpm}) {
    EXPECT_FALSE(figure.value);
    EXPECT_FALSE(figure.computed);
  }
  EXPECT_FALSE(figures.highest_bpm);
}

TEST(WorkoutFigures, HaveTheSummarysSpeedBesideAnotherOfTheIntervals) {
  const WorkoutFigures bike = FiguresIn(IntervalAt(1, "<km>1</km><rpm>80</rpm>") +
                                        "<workoutSummary><pace>143</pace></workoutSummary>");
  ExpectFigure(bike.pace, 143, false);
  ExpectFigure(bike.rpm, 80, true);
}

TEST(WorkoutFigures, HaveNoPaceWhereNothingMoved) {
  EXPECT_FALSE(FiguresIn(IntervalAt(60, "<km>0.00</km>")).pace.value);
  ExpectFigure(FiguresIn(IntervalAt(60, "<pace>300</pace>")).pace, 300, true);
  ExpectFigure(FiguresIn(IntervalAt(60, "<km>0.00</km><pace>300</pace>")).pace, 300, true);
  ExpectFigure(FiguresIn("<interval><km>1.0</km><pace>310</pace></interval>").pace, 310, true);
}

TEST(WorkoutFigures, FindTheKindOfSpeedThatMostIntervalsHave) {
  const auto kind = [](const std::string& elements) {
    return SpeedKindOf(ParseWorkoutDocument(Document(elements)));
  };
  EXPECT_EQ(kind("<workoutSummary><pace>300</pace></workoutSummary>"), SpeedKind::kNone);
  EXPECT_EQ(kind(IntervalAt(1, "<pace>300</pace>")), SpeedKind::kPace);
  EXPECT_EQ(kind(IntervalAt(1, "<spm>50</spm>")), SpeedKind::kSpm);
  EXPECT_EQ(kind(IntervalAt(1, "<spm>50</spm>") + IntervalAt(2, "<rpm>50</rpm>") +
                 IntervalAt(3, "<rpm>50</rpm>")),
            SpeedKind::kRpm);
}

TEST(WorkoutFigures, FindTheKindOfDistance) {
  const auto kind = [](const std::string& elements) {
    return DistanceKindOf(ParseWorkoutDocument(Document(elements)));
  };
  EXPECT_EQ(kind(""), DistanceKind::kNone);
  EXPECT_EQ(kind(IntervalAt(1, "<km>1</km>")), DistanceKind::kKm);
  EXPECT_EQ(kind(IntervalAt(1, "<floors>1</floors>")), DistanceKind::kFloors);
  EXPECT_EQ(kind("<workoutSummary><floors>3</floors></workoutSummary>"), DistanceKind::kFloors);
  EXPECT_EQ(kind("<workoutSummary><km>3</km></workoutSummary>"), DistanceKind::kKm);
}

TEST(Pauses, LastFromPauseToResume) {
  EXPECT_EQ(PausesIn(IntervalAt(10, "", "pause") + IntervalAt(15, "", "continue") +
                     IntervalAt(20, "", "resume") + IntervalAt(30, "", "pause") +
                     IntervalAt(45, "", "resume") + IntervalAt(60, "", "end")),
            (Pauses{{10, 20}, {30, 45}}));
}

TEST(Pauses, LastUntilTheEndWhereNobodyResumes) {
  EXPECT_EQ(PausesIn(IntervalAt(10, "", "pause") + IntervalAt(90, "", "end") +
                     IntervalAt(99, "", "continue")),
            (Pauses{{10, 90}}));
  EXPECT_EQ(PausesIn(IntervalAt(10, "", "pause") + IntervalAt(70, "", "continue")),
            (Pauses{{10, 70}}));
  EXPECT_EQ(PausesIn(IntervalAt(10, "", "pause")), (Pauses{{10, 10}}));
}

TEST(Pauses, AreOnePauseWhenAskedForTwice) {
  EXPECT_EQ(PausesIn(IntervalAt(10, "", "pause") + IntervalAt(12, "", "pause") +
                     IntervalAt(20, "", "resume")),
            (Pauses{{10, 20}}));
  EXPECT_EQ(PausesIn(IntervalAt(20, "", "resume")), Pauses());
}

TEST(Pauses, AreInTheOrderOfTime) {
  EXPECT_EQ(PausesIn(IntervalAt(50, "", "pause") + IntervalAt(60, "", "resume") +
                     IntervalAt(10, "", "pause") + IntervalAt(20, "", "resume")),
            (Pauses{{10, 20}, {50, 60}}));
}

TEST(Pauses, NeverLastANegativeTime) {
  EXPECT_EQ(PausesIn(IntervalAt(50, "", "pause") + IntervalAt(20, "", "resume")),
            (Pauses{{50, 50}}));
  EXPECT_EQ(PausesIn("<interval><event>pause</event></interval>" + IntervalAt(9, "", "resume")),
            Pauses());
}

TEST(Course, BreaksWhereReadingsAreMissing) {
  const std::vector<Sample> course =
      CourseOf(ParseWorkoutDocument(report::kRun), &Readings::pace, AcrossPauses::kGoesOn);
  ASSERT_EQ(course.size(), 3U);
  EXPECT_EQ(course[0].seconds, 60);
  EXPECT_EQ(course[0].value, 300);
  EXPECT_TRUE(course[0].starts_anew);
  EXPECT_EQ(course[1].seconds, 120);
  EXPECT_FALSE(course[1].starts_anew);
  EXPECT_EQ(course[2].seconds, 240);
  EXPECT_TRUE(course[2].starts_anew);
}

TEST(Course, BreaksAcrossAPauseOfWhichNothingIsKnown) {
  const auto starts = [](const std::string& elements, AcrossPauses across) {
    std::string text;
    const WorkoutDocument document = ParseWorkoutDocument(Document(elements));
    for (const Sample& sample : CourseOf(document, &Readings::bpm, across)) {
      text += sample.starts_anew ? 'M' : 'L';
    }
    return text;
  };
  const std::string before = IntervalAt(1, "<bpm>9</bpm>") + IntervalAt(2, "<bpm>9</bpm>", "pause");
  const std::string after = IntervalAt(8, "<bpm>9</bpm>", "resume") + IntervalAt(9, "<bpm>9</bpm>");
  EXPECT_EQ(starts(before + after, AcrossPauses::kBreaks), "MLML");
  EXPECT_EQ(starts(before + after, AcrossPauses::kGoesOn), "MLLL");
  const std::string between = IntervalAt(5, "<bpm>9</bpm>", "continue");
  EXPECT_EQ(starts(before + between + after, AcrossPauses::kBreaks), "MLLLL");
}

TEST(Course, HasNoZerosOfAPause) {
  const WorkoutDocument document = ParseWorkoutDocument(Document(
      IntervalAt(5, "<rpm>0</rpm>") + IntervalAt(10, "<rpm>80</rpm>") +
      IntervalAt(15, "<rpm>0</rpm>", "pause") + IntervalAt(20, "<rpm>0</rpm>", "continue") +
      IntervalAt(25, "<rpm>0</rpm>", "resume") + IntervalAt(30, "<rpm>70</rpm>")));
  const std::vector<Sample> course = CourseOf(document, &Readings::rpm, AcrossPauses::kBreaks);
  ASSERT_EQ(course.size(), 3U);
  EXPECT_EQ(course[0].value, 0);  // who rolls does not pedal
  EXPECT_EQ(course[1].value, 80);
  EXPECT_EQ(course[2].value, 70);
  EXPECT_TRUE(course[2].starts_anew);
  ExpectFigure(FiguresOf(document).rpm, 50, true);  // of 0, 80 and 70
}

TEST(Course, RunsInTheOrderOfTime) {
  const WorkoutDocument document = ParseWorkoutDocument(
      Document(IntervalAt(20, "<km>2</km>") + IntervalAt(10, "<km>1</km>") +
               "<interval><km>9</km></interval>" + IntervalAt(30, "<km>3</km>")));
  const std::vector<Sample> course = CourseOf(document, &Readings::km, AcrossPauses::kGoesOn);
  ASSERT_EQ(course.size(), 3U);
  EXPECT_EQ(course[0].value, 1);
  EXPECT_EQ(course[1].value, 2);
  EXPECT_EQ(course[2].value, 3);
  EXPECT_EQ(LastSecond(document), 30);
}

TEST(SummaryJson, NamesEveryFigureAndWhereItIsFrom) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  EXPECT_EQ(SummaryJson(document, FiguresOf(document)),
            ordered_json::parse(R"({"seconds": 240.0, "kcal": 31.25, "km": 0.61, "pace": 305.0,
              "bpm": 131.0, "highest_bpm": 150.0, "paused_seconds": 60.0, "intervals": 5,
              "computed": [], "unusable_values": 0, "weight_kg": 72.5,
              "equipment": {"type": "Treadmill", "manufacturer_id": "41",
                "manufacturer_name": "Northway & Söhne", "model": "QZ104",
                "serial_number": "QZ-0042"},
              "complete": true})"));
}

TEST(SummaryJson, TellsOfDamageAndOfWhatIsComputed) {
  const WorkoutDocument document = ParseWorkoutDocument(
      "<gymData>\n" + IntervalAt(30, "<floors>2</floors><spm>40</spm><kCal>nan</kCal>"));
  EXPECT_EQ(SummaryJson(document, FiguresOf(document)),
            ordered_json::parse(R"({"seconds": 30.0, "floors": 2.0, "spm": 40.0,
              "paused_seconds": 0.0, "intervals": 1, "computed": ["seconds", "floors", "spm"],
              "unusable_values": 1, "equipment": {}, "complete": false,
              "problem": {"kind": "cut short", "line": 3, "column": 1,
                "what": "no element found"}})"));
}

}  // namespace

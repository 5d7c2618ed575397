// SPDX-License-Identifier: MIT
// What is kept of documents that end early or are malformed, and where the fault is said to be.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "documents.h"
#include "report/page.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using report::Document;
using report::IntervalAt;
using report::kRun;
using report::Replaced;
using ::testing::HasSubstr;

namespace {

void ExpectProblem(const std::string& text, bool cut_short, unsigned long line,
                   unsigned long column) {
  const WorkoutDocument document = ParseWorkoutDocument(text);
  ASSERT_TRUE(document.problem) << text;
  EXPECT_EQ(document.problem->cut_short, cut_short) << document.problem->what;
  EXPECT_EQ(document.problem->line, line) << document.problem->what;
  EXPECT_EQ(document.problem->column, column) << document.problem->what;
}

TEST(DamagedDocument, IsReportedWhereverItIsCut) {
  const std::string run = kRun;
  const std::size_t root = run.find("<gymData>") + 9;
  for (std::size_t length = 0; length < run.size(); ++length) {
    const WorkoutDocument document = ParseWorkoutDocument(std::string_view(run).substr(0, length));
    ASSERT_TRUE(document.problem) << length;
    EXPECT_TRUE(document.problem->cut_short) << length << ": " << document.problem->what;
    EXPECT_EQ(document.is_workout, length >= root) << length;
    const WorkoutFigures figures = FiguresOf(document);
    EXPECT_THAT(RenderPage(document, figures, "run.xml"), HasSubstr("is cut short at line"));
  }
  EXPECT_FALSE(ParseWorkoutDocument(run).problem);
}

TEST(DamagedDocument, KeepsWhatComesBeforeTheCut) {
  const WorkoutDocument document = ParseWorkoutDocument(report::RunUpTo("<sec>120</sec>\n"));
  EXPECT_EQ(document.equipment.model, "QZ104");
  ASSERT_EQ(document.intervals.size(), 3U);
  EXPECT_EQ(document.intervals[1].readings.km, 0.2);
  EXPECT_EQ(document.intervals[2].event, WorkoutEvent::kPause);
  EXPECT_EQ(document.intervals[2].readings.seconds, 120.0);
  EXPECT_FALSE(document.intervals[2].readings.kcal);
  EXPECT_FALSE(document.summary);
}

TEST(DamagedDocument, NeverTakesHalfANumber) {
  const WorkoutDocument document = ParseWorkoutDocument(report::RunUpTo("<kCal>20.5"));
  ASSERT_EQ(document.intervals.size(), 3U);
  EXPECT_FALSE(document.intervals[2].readings.kcal);
}

TEST(DamagedDocument, IsCutShortWhereItEnds) {
  ExpectProblem("<gymData>\n\t<vers>1</vers>\n", true, 3, 1);
  ExpectProblem("<gymData>\n\t<interval>\n\t\t<sec>1", true, 3, 9);
  ExpectProblem("<gymData>\n\t<inter", true, 2, 2);
  ExpectProblem("<gymData><!-- never", true, 1, 10);
  ExpectProblem("<gymData><model>\xC3", true, 1, 17);
}

TEST(DamagedDocument, IsMalformedWhereTheFaultIs) {
  ExpectProblem("<gymData>\n\t<interval>\n</gymData>", false, 3, 3);
  ExpectProblem("<gymData>\n<model>A & B</model></gymData>", false, 2, 11);
  ExpectProblem("<gymData>\n<model>A < B</model></gymData>", false, 2, 11);
  ExpectProblem("<gymData></gymData>\nmore", false, 2, 1);
  ExpectProblem("<gymData>&unknown;</gymData>", false, 1, 10);
}

TEST(DamagedDocument, CountsColumnsInCharacters) {
  ExpectProblem("<gymData>\n<model>\xC3\xB6\xC3\xB6 & B</model></gymData>", false, 2, 12);
}

TEST(DamagedDocument, HasBytesThatAreNoText) {
  ExpectProblem("<gymData>\n<model>caf\xE9</model></gymData>", false, 2, 11);
  ExpectProblem("<gymData>\n<model>\xFF</model></gymData>", false, 2, 8);
  ExpectProblem(std::string("<gymData>\n\0\0\0</gymData>", 23), false, 2, 1);
}

TEST(DamagedDocument, KeepsTheIntervalsBeforeALostPiece) {
  const std::string lost(8, '\0');
  const WorkoutDocument document =
      ParseWorkoutDocument(Replaced(kRun, "\t\t<event>resume</event>\n", lost));
  ASSERT_TRUE(document.problem);
  EXPECT_FALSE(document.problem->cut_short);
  EXPECT_EQ(document.intervals.size(), 4U);
  EXPECT_EQ(document.intervals[2].readings.bpm, 150.0);
}

TEST(DamagedDocument, KeepsAllOfAWorkoutWithJunkBehindIt) {
  const WorkoutDocument document = ParseWorkoutDocument(std::string(kRun) + "<junk/>");
  ASSERT_TRUE(document.problem);
  EXPECT_FALSE(document.problem->cut_short);
  EXPECT_EQ(document.intervals.size(), 5U);
  EXPECT_TRUE(document.summary);
}

TEST(DamagedDocument, MayDeclareNoEntities) {
  const WorkoutDocument bomb = ParseWorkoutDocument(
      "<!DOCTYPE gymData [\n"
      "<!ENTITY a \"aaaaaaaaaa\">\n"
      "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">\n"
      "]>\n<gymData><model>&b;</model></gymData>");
  ASSERT_TRUE(bomb.problem);
  EXPECT_FALSE(bomb.is_workout);
  EXPECT_EQ(bomb.problem->what, "an entity declaration");
  EXPECT_EQ(bomb.problem->line, 2U);
}

TEST(DamagedDocument, OpensNoOtherFiles) {
  const WorkoutDocument outside = ParseWorkoutDocument(
      "<!DOCTYPE gymData [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>\n"
      "<gymData><equipmentInfo><model>&x;</model></equipmentInfo></gymData>");
  ASSERT_TRUE(outside.problem);
  EXPECT_EQ(outside.problem->what, "an entity declaration");
  const WorkoutDocument other = ParseWorkoutDocument(
      "<!DOCTYPE gymData SYSTEM \"file:///etc/passwd\">\n"
      "<gymData><equipmentInfo><model>A&x;B</model></equipmentInfo></gymData>");
  EXPECT_FALSE(other.problem);
  EXPECT_EQ(other.equipment.model, "AB");
}

TEST(DamagedDocument, MayNestAsDeepAsItLikes) {
  std::string open;
  for (int depth = 0; depth < 100000; ++depth) open += "<km>";
  const WorkoutDocument document = ParseWorkoutDocument("<gymData><interval>" + open);
  ASSERT_TRUE(document.problem);
  EXPECT_TRUE(document.problem->cut_short);
}

TEST(DamagedDocument, MayNotHaveATagWithoutEnd) {
  const std::string tag = "<gymData>\n<interval name=\"" + std::string(5 << 20, 'x') + "\"/>";
  ExpectProblem(tag, false, 2, 1);
  EXPECT_EQ(ParseWorkoutDocument(tag).problem->what, "a tag that does not end");
}

TEST(DamagedDocument, EndsAfterMoreIntervalsThanAnyWorkoutHas) {
  std::string text = "<gymData>\n";
  for (std::size_t i = 0; i < kMostIntervals; ++i) text += "<interval/>";
  EXPECT_EQ(ParseWorkoutDocument(text + "</gymData>").intervals.size(), 1000000U);
  EXPECT_FALSE(ParseWorkoutDocument(text + "</gymData>").problem);
  const WorkoutDocument document = ParseWorkoutDocument(text + "<interval/></gymData>");
  ASSERT_TRUE(document.problem);
  EXPECT_EQ(document.problem->what, "more intervals than any workout has");
  EXPECT_EQ(document.intervals.size(), 1000000U);
}

TEST(DamagedDocument, IsDescribedInOnePhrase) {
  EXPECT_EQ(ProblemText({true, 3, 4, "no element found"}), "is cut short at line 3, column 4");
  EXPECT_EQ(ProblemText({false, 7, 1, "mismatched tag"}),
            "is malformed at line 7, column 1 (mismatched tag)");
}

}  // namespace

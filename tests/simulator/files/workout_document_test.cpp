// SPDX-License-Identifier: MIT
// Proves that a workout document of either form is known as one, and that every line that is
// missing, out of its order or wrong is found.

#include "simulator/files/workout_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulator/workouts.h"

namespace ipodsim {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at) + 1;
    lines.push_back(text.substr(at, end - at));
    at = end;
  }
  return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

std::string Changed(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

std::string ProblemOf(const std::string& text) { return WorkoutDocument(text).problem(); }

TEST(WorkoutDocument, BothFormsAreWhole) {
  EXPECT_EQ(ProblemOf(kNewerWorkout), "");
  EXPECT_EQ(WorkoutDocument(kNewerWorkout).form(), WorkoutForm::kNewer);
  EXPECT_EQ(ProblemOf(kOlderWorkout), "");
  EXPECT_EQ(WorkoutDocument(kOlderWorkout).form(), WorkoutForm::kOlder);
}

// What may be left out is the heart rate and the level, and in the older form the event.
class EveryLine : public testing::TestWithParam<const char*> {};

TEST_P(EveryLine, IsMissedUnlessItMayBeLeftOut) {
  const std::vector<std::string> lines = LinesOf(GetParam());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::vector<std::string> fewer = lines;
    fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
    const bool older = GetParam() == kOlderWorkout;
    const bool optional = !older && (lines[i].find("<bpm>") != std::string::npos ||
                                     lines[i].find("<level>") != std::string::npos);
    EXPECT_EQ(ProblemOf(Joined(fewer)).empty(), optional) << lines[i];
  }
}

TEST_P(EveryLine, HasItsPlace) {
  const std::vector<std::string> lines = LinesOf(GetParam());
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    std::vector<std::string> swapped = lines;
    std::swap(swapped[i], swapped[i + 1]);
    EXPECT_NE(ProblemOf(Joined(swapped)), "") << lines[i];
  }
}

TEST_P(EveryLine, CutShortIsNoWholeDocument) {
  const std::string whole = GetParam();
  for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
    EXPECT_NE(ProblemOf(whole.substr(0, size)), "") << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, EveryLine, testing::Values(kNewerWorkout, kOlderWorkout));

TEST(WorkoutDocument, ProblemNamesTheLineAndWhatIsExpectedThere) {
  EXPECT_EQ(ProblemOf(Changed(kNewerWorkout, "\t\t<type>Bike</type>\n", "")),
            "line 7: <type> expected");
  EXPECT_EQ(ProblemOf(Changed(kNewerWorkout, "Bike", "Rower")), "line 7: <type> holds 'Rower'");
  EXPECT_EQ(ProblemOf(""), "line 1: <?xml version=\"1.0\" encoding=\"UTF-8\"?> expected");
  EXPECT_EQ(ProblemOf(std::string(kNewerWorkout) + "\t<interval>\n"),
            "line 31: nothing expected behind the summary");
}

TEST(WorkoutDocument, NumbersHaveTheirForm) {
  struct Change {
    const char* from;
    const char* to;
  };
  for (const Change change :
       {Change{"<vers>1", "<vers>2"}, Change{"70.0", "70"}, Change{"start", "rest"},
        Change{"<sec>60", "<sec>-1"}, Change{"<sec>60", "<sec>2147483648"}, Change{"12.50", "12.5"},
        Change{"12.50", "nan"}, Change{"<km>0.25", "<km>0,25"}, Change{"<rpm>80", "<rpm>80.0"},
        Change{"<incline>-1.5", "<incline>+1.5"}, Change{"<bpm>120", "<bpm>0"},
        Change{"<level>0", "<level>-1"}}) {
    EXPECT_THAT(ProblemOf(Changed(kNewerWorkout, change.from, change.to)), HasSubstr(" holds '"))
        << change.to;
  }
  EXPECT_EQ(ProblemOf(Changed(kNewerWorkout, "<sec>60", "<sec>2147483647")), "");
}

TEST(WorkoutDocument, AnyNumberOfIntervalsIsFine) {
  const std::string text = kNewerWorkout;
  const std::size_t begin = text.find("\t<interval>");
  const std::size_t end = text.find("\t<workoutSummary>");
  const std::string interval = text.substr(begin, end - begin);
  EXPECT_EQ(ProblemOf(text.substr(0, begin) + text.substr(end)), "");
  EXPECT_EQ(ProblemOf(text.substr(0, end) + interval + interval + text.substr(end)), "");
}

TEST(WorkoutDocument, IntervalBehindTheSummaryIsOutOfOrder) {
  const std::string text = kNewerWorkout;
  const std::size_t begin = text.find("\t<interval>");
  const std::size_t end = text.find("\t<workoutSummary>");
  EXPECT_EQ(ProblemOf(text.substr(0, begin) + text.substr(end) + text.substr(begin, end - begin)),
            "line 21: nothing expected behind the summary");
}

TEST(WorkoutDocument, DistanceDecidesAboutTheSpeedOfTheSummary) {
  const std::string text = kNewerWorkout;
  const std::size_t summary = text.find("\t<workoutSummary>");
  const std::string before = text.substr(0, summary);
  const std::string km = text.substr(summary);
  EXPECT_EQ(ProblemOf(before + Changed(Changed(km, "<km>0.25</km>", "<floors>3.5</floors>"),
                                       "<pace>240</pace>", "<spm>90</spm>")),
            "");
  EXPECT_EQ(ProblemOf(before + Changed(km, "<pace>240</pace>", "<spm>90</spm>")),
            "line 28: <pace> expected");
}

TEST(WorkoutDocument, LineRepeatedForWantOfDistanceOrSpeedIsBorne) {
  const std::string no_distance =
      Changed(kNewerWorkout, "\t\t<km>0.25</km>\n", "\t\t<kCal>12.50</kCal>\n");
  EXPECT_EQ(ProblemOf(no_distance), "");
  EXPECT_EQ(ProblemOf(Changed(no_distance, "\t\t<rpm>80</rpm>\n", "\t\t<kCal>12.50</kCal>\n")), "");
  EXPECT_EQ(ProblemOf(Changed(kNewerWorkout, "\t\t<rpm>80</rpm>\n", "\t\t<km>0.25</km>\n")), "");
  EXPECT_THAT(ProblemOf(Changed(kNewerWorkout, "\t\t<km>0.25</km>\n", "\t\t<kCal>9.50</kCal>\n")),
              StartsWith("line 18: "));
}

}  // namespace
}  // namespace ipodsim

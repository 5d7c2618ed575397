// SPDX-License-Identifier: MIT
// A sample of the runs of script/findings: nothing is said to be proved that is not the case, and
// nearly every trouble is named.
#include <gtest/gtest.h>

#include "children.h"

namespace truth {
namespace {

constexpr std::uint64_t kRuns = 240;
// Shares no factor with the numbers of commands and of troubles.
constexpr std::uint64_t kFindingStride = 997;
constexpr unsigned kFindingFrames = 20;

TEST(Findings, ProveNothingWrongAndNameNearlyEveryTrouble) {
  std::vector<Case> runs;
  for (std::uint64_t number = 0; number < kRuns; ++number) {
    Case run = CaseByNumber(number * kFindingStride, 2);
    run.place = DrawPlace(run, kFindingFrames, kFindingFrames);
    runs.push_back(run);
  }
  unsigned to_name = 0;
  unsigned named = 0;
  RunInChildren(runs, 2, [&](const Report& report) {
    EXPECT_EQ(report.not_proved, "") << "script/truth --only " << report.run.name();
    if (!report.has_a_name) return;
    ++to_name;
    if (report.named) ++named;
  });
  EXPECT_GE(to_name, kRuns / 4);
  EXPECT_GE(named * 100, to_name * 90) << named << " of " << to_name;
}

// A code that is found wherever nothing is wrong would name everything.
TEST(Findings, AreNoneInMostRunsWithoutTrouble) {
  std::vector<Case> runs;
  for (const Scene& scene : AllScenes()) {
    Case run;
    run.scene = &scene;
    run.conduct = "robust";
    run.trouble = TroubleByName("none");
    if (!run.legacy()) runs.push_back(run);
  }
  RunInChildren(runs, 2, [](const Report& report) {
    EXPECT_EQ(report.findings, std::vector<std::string>()) << report.run.name();
  });
}

}  // namespace
}  // namespace truth

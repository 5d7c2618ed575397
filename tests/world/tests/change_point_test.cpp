// SPDX-License-Identifier: MIT
// The schedule of random priorities and change points, asked directly.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "world/threads/next_thread.h"

namespace ipodcomm::virtual_platform {
namespace {

// Who runs in `steps` decisions between three threads that are always ready.
std::string Runs(Schedule& schedule, unsigned steps) {
  std::string runs;
  for (unsigned step = 0; step < steps; ++step) {
    runs += std::to_string(schedule.Choose(step, {1, 2, 3}, 1));
  }
  return runs;
}

std::string Runs(std::uint64_t seed, unsigned depth, unsigned points, unsigned steps) {
  return Runs(*ChangePointSchedule(seed, depth, points), steps);
}

std::size_t Changes(const std::string& runs) {
  std::size_t changes = 0;
  for (std::size_t i = 1; i < runs.size(); ++i) changes += runs[i] != runs[i - 1] ? 1 : 0;
  return changes;
}

TEST(ChangePoints, WithoutAnyTheSameThreadAlwaysRuns) {
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    const std::string runs = Runs(seed, 0, 100, 100);
    EXPECT_EQ(runs, std::string(100, runs.front())) << seed;
  }
}

TEST(ChangePoints, EveryOrderOfPrioritiesIsDrawn) {
  std::set<std::string> orders;
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    const auto schedule = ChangePointSchedule(seed, 0, 1);
    const int first = schedule->Choose(0, {1, 2, 3}, kNobody);
    std::vector<int> others = {1, 2, 3};
    others.erase(std::find(others.begin(), others.end(), first));
    const int second = schedule->Choose(1, others, kNobody);
    orders.insert(std::to_string(first) + std::to_string(second));
  }
  EXPECT_EQ(orders, (std::set<std::string>{"12", "13", "21", "23", "31", "32"}));
}

// The only point there is, the first decision, comes at once.
TEST(ChangePoints, ThreadThatWouldRunFallsBehindAllOthersForGood) {
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    const int would_run = ChangePointSchedule(seed, 0, 1)->Choose(0, {1, 2, 3}, kNobody);
    const auto schedule = ChangePointSchedule(seed, 1, 1);
    for (const char run : Runs(*schedule, 20)) EXPECT_NE(run - '0', would_run) << seed;
    EXPECT_EQ(schedule->Choose(20, {would_run, 4}, kNobody), 4) << seed;
  }
}

TEST(ChangePoints, SecondToFallComesBehindTheFirst) {
  unsigned both_fell = 0;
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    const auto schedule = ChangePointSchedule(seed, 2, 20);
    const std::string runs = Runs(*schedule, 20);
    const int first = ChangePointSchedule(seed, 0, 1)->Choose(0, {1, 2, 3}, kNobody);
    if (Changes(runs) < (runs.front() - '0' == first ? 2U : 1U)) continue;  // both at one point
    ++both_fell;
    const int last = runs.back() - '0';
    const int second = 6 - first - last;
    EXPECT_EQ(schedule->Choose(20, {std::min(first, second), std::max(first, second)}, kNobody),
              first)
        << runs;
  }
  EXPECT_GT(both_fell, 25U);
}

TEST(ChangePoints, AreSpreadOverThePointsGiven) {
  std::set<std::size_t> met;
  for (std::uint64_t seed = 1; seed <= 400; ++seed) {
    const std::string runs = Runs(seed, 1, 10, 30);
    const std::size_t change = runs.find_first_not_of(runs.front());
    if (change == std::string::npos) continue;  // at the first decision
    EXPECT_LT(change, 10U) << seed;
    met.insert(change);
  }
  EXPECT_EQ(met.size(), 9U);
}

TEST(ChangePoints, FollowFromTheSeed) {
  EXPECT_EQ(Runs(7, 3, 50, 100), Runs(7, 3, 50, 100));
  std::set<std::string> different;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) different.insert(Runs(seed, 3, 50, 100));
  EXPECT_GT(different.size(), 15U);
}

}  // namespace
}  // namespace ipodcomm::virtual_platform

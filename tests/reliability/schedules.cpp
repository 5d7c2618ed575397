// SPDX-License-Identifier: MIT
// Every scenario in turn, each run under a schedule of its own.
#include <chrono>
#include <cstdio>
#include <limits>

#include "commands.h"
#include "play.h"
#include "report.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::ChangePointSchedule;
using ipodcomm::virtual_platform::PausingSchedule;
using ipodcomm::virtual_platform::RandomSchedule;

std::unique_ptr<Schedule> WithPauses(const Options& options, std::uint64_t seed,
                                     std::unique_ptr<Schedule> schedule) {
  constexpr std::int64_t kMostUs = 40 * kMillisecond;
  if (options.pauses == 0) return schedule;
  return PausingSchedule(std::move(schedule), seed, options.pauses, kMostUs);
}

std::unique_ptr<Schedule> ScheduleOf(const Options& options, std::uint64_t seed) {
  auto schedule = options.strategy == Strategy::kUniform
                      ? RandomSchedule(seed, 1)
                      : ChangePointSchedule(seed, options.depth, options.points);
  return WithPauses(options, seed, Noted(std::move(schedule)));
}

const Scenario& ScenarioOf(const Options& options, std::uint64_t seed) {
  return *options.scenarios[seed % options.scenarios.size()];
}

// The same run under a schedule that is shorter and still fails.
int Explain(const Options& options, const Verdict& verdict, const Report& report) {
  constexpr double kMostSeconds = 60;
  const std::uint64_t seed = verdict.failed;
  const Scenario& scenario = ScenarioOf(options, seed);
  report.Found(seed - options.seed + 1);
  std::printf("%s, seed %llu\n  %s\n", scenario.name, static_cast<unsigned long long>(seed),
              verdict.text.c_str());
  if (!options.shorten) return 1;
  const Deviations noted = NotedDeviations();
  const Report shortening;
  const Deviations shortest = Shortest(noted, [&](const Deviations& rest) {
    if (shortening.seconds() > kMostSeconds) return false;
    const auto again = [&](std::uint64_t) {
      return Play(scenario, seed, WithPauses(options, seed, Deviating(rest)), options.pauses != 0);
    };
    return !RunApart({0, 1}, again).passed();
  });
  const std::string strategy = StrategyName(options.strategy);
  std::printf("  as it was found: %s schedules --scenario %s --runs 1 --seed %llu --strategy %s",
              ProgramName().c_str(), scenario.name, static_cast<unsigned long long>(seed),
              strategy.c_str());
  std::printf(" --depth %u --points %u --pauses %u\n", options.depth, options.points,
              options.pauses);
  std::printf("  shortest schedule: %zu of %zu deviations\n", shortest.size(), noted.size());
  return report.Failed(scenario.name, verdict.text,
                       "schedules --scenario " + std::string(scenario.name) + " --seed " +
                           std::to_string(seed) + " --pauses " + std::to_string(options.pauses) +
                           " --replay " + ToText(shortest));
}

int Replay(const Options& options) {
  const Report report;
  const Scenario& scenario = *options.scenarios.front();
  const auto trial = [&](std::uint64_t seed) {
    return Play(scenario, seed, WithPauses(options, seed, Deviating(*options.replay)),
                options.pauses != 0);
  };
  const Verdict verdict = RunApart({options.seed, options.seed + 1}, trial);
  if (verdict.passed()) return report.Passed("replayed", 1, options.seed);
  std::printf("FAILED: %s\n  %s\n", scenario.name, verdict.text.c_str());
  return 1;
}

}  // namespace

int RunSchedules(const Options& options) {
  if (options.replay) return Replay(options);
  const Report report;
  const std::uint64_t end =
      options.minutes ? std::numeric_limits<std::uint64_t>::max() : options.seed + options.runs;
  const auto trial = [&](std::uint64_t seed) {
    if (options.minutes && report.seconds() > *options.minutes * 60.0) EndSeries();
    return Play(ScenarioOf(options, seed), seed, ScheduleOf(options, seed), options.pauses != 0);
  };
  const Verdict verdict = RunApart({options.seed, end}, trial);
  if (!verdict.passed()) return Explain(options, verdict, report);
  std::string what = "schedules, " + std::string(StrategyName(options.strategy));
  if (options.strategy == Strategy::kChangePoints) {
    what += " with depth " + std::to_string(options.depth) + " and " +
            std::to_string(options.points) + " points";
  }
  return report.Passed(what, TotalTally().runs, options.seed);
}

}  // namespace reliability

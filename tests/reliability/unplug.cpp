// SPDX-License-Identifier: MIT
// The cable is pulled at every byte in either direction and at every decision of the schedule, and
// put back 300 ms later. Whatever that costs, the host identifies again and a command works.
#include <cstdio>
#include <limits>

#include "commands.h"
#include "play.h"
#include "report.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::RandomSchedule;

constexpr std::int64_t kOutUs = 300 * kMillisecond;

// Another schedule, which pulls a cable at one of its decisions.
class Pulling : public Schedule {
 public:
  Pulling(std::unique_ptr<Schedule> schedule, std::uint64_t at)
      : schedule_(std::move(schedule)), at_(at) {}

  void SetCable(Cable* cable) { cable_ = cable; }

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    if (step + 1 == at_ && cable_ != nullptr) cable_->Pull(kOutUs);
    return schedule_->Choose(step, ready, running);
  }

 private:
  const std::unique_ptr<Schedule> schedule_;
  const std::uint64_t at_;
  Cable* cable_ = nullptr;
};

void IdentifyAgain(Stage& stage) {
  // What was on the way when the cable came out, and the iPod's answers that still come.
  stage.world().Advance(2 * kSecond);
  if (stage.owned_legacy() != nullptr) {
    stage.owned_legacy()->closeport();
    stage.Expect(stage.owned_legacy()->openport() == 1, "the legacy port opens again");
    return;
  }
  CIpodComm& session = *stage.owned_session();
  session.Close();
  stage.world().Advance(1500 * kMillisecond);
  stage.Expect(session.Open() == 0, "the session opens again");
  session.SetIDPSEnable(1);
  session.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr);
}

std::string PlayPulled(const Scenario& scenario, bool at_byte, std::uint64_t at,
                       std::uint64_t seed) {
  constexpr std::int64_t kMostUs = 600 * kSecond;
  auto schedule = std::make_unique<Pulling>(RandomSchedule(seed, 4), at_byte ? 0 : at);
  Pulling& pulling = *schedule;
  StageOptions options;
  options.seed = seed;
  options.schedule = std::move(schedule);
  options.sound = false;
  Stage stage(scenario.settings(), std::move(options));
  pulling.SetCable(&stage.cable());
  if (at_byte) stage.cable().PullAfter(at, kOutUs);
  scenario.play(stage);
  stage.Demand(stage.world().now_us() < kMostUs, "the scenario ends within ten minutes");
  pulling.SetCable(nullptr);
  if (!stage.cable().pulled()) {
    EndSeries();
    return stage.wrong();
  }
  stage.SetSound(true);
  IdentifyAgain(stage);
  stage.Expect(stage.Works(), "a command works afterwards");
  Count(stage);
  stage.DestroyQuickly();
  stage.world().Advance(3 * kSecond);
  const std::string left = LeftOpen(stage);
  stage.Demand(left.empty(), left);
  return stage.wrong();
}

bool Enumerate(const Options& options, const Scenario& scenario, bool at_byte,
               const Report& report) {
  const char* kind = at_byte ? "byte" : "decision";
  const Places places = PlacesOf(options);
  const Verdict verdict = RunApart(
      places, [&](std::uint64_t at) { return PlayPulled(scenario, at_byte, at, options.seed); });
  if (verdict.passed()) return true;
  report.Found(TotalTally().runs + 1);
  report.Failed(std::string(scenario.name) + ", at a " + kind, verdict.text,
                "unplug --scenario " + std::string(scenario.name) + " --action " + kind + " --at " +
                    std::to_string(verdict.failed) + " --seed " + std::to_string(options.seed));
  return false;
}

}  // namespace

int RunUnplug(const Options& options) {
  const Report report;
  unsigned found = 0;
  for (const Scenario* scenario : options.scenarios) {
    for (const bool at_byte : {true, false}) {
      if (!options.action.empty() && (options.action == "byte") != at_byte) continue;
      if (IsEnough(options, found)) continue;
      found += Enumerate(options, *scenario, at_byte, report) ? 0 : 1;
    }
  }
  return report.Ended("bytes and decisions at which the cable was pulled", found, options.seed);
}

}  // namespace reliability

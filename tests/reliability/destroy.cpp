// SPDX-License-Identifier: MIT
// A scenario is ended between any two calls of the host, with the worker threads wherever they are
// then: at that moment and at some more within a turn of the read thread, and from each of them one
// decision after the other is given to the others before the host goes on. What the host does next
// is quick, and leaves an interface that works.
#include <cstdio>
#include <limits>

#include "commands.h"
#include "platform/services.h"
#include "play.h"
#include "report.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::kNobody;
using ipodcomm::virtual_platform::RandomSchedule;

constexpr int kHost = 1;

// Another schedule, but for so many decisions from a moment on the host waits while others can run.
class HoldingBack : public Schedule {
 public:
  explicit HoldingBack(std::unique_ptr<Schedule> schedule) : schedule_(std::move(schedule)) {}

  void Hold(unsigned decisions) { left_ = decisions; }
  unsigned left() const { return left_; }

  int Choose(std::uint64_t step, const std::vector<int>& ready, int running) override {
    if (left_ == 0 || ready.front() != kHost) return schedule_->Choose(step, ready, running);
    --left_;
    return ready[1];
  }

 private:
  const std::unique_ptr<Schedule> schedule_;
  unsigned left_ = 0;
};

// What the host does when the scenario has ended. Each ends with an interface that works.
struct Action {
  const char* name;
  void (*act)(Stage& stage);
};

void NewOne(Stage& stage, bool legacy) {
  if (legacy) {
    stage.DockLegacy();
  } else {
    stage.Dock();
  }
}

void Destroy(Stage& stage) {
  const bool legacy = stage.owned_legacy() != nullptr;
  stage.DestroyQuickly();
  NewOne(stage, legacy);
}

void CloseAndOpen(Stage& stage) {
  const std::int64_t began_us = stage.world().now_us();
  if (stage.owned_legacy() != nullptr) {
    stage.owned_legacy()->closeport();
    stage.Expect(stage.owned_legacy()->openport() == 1, "the legacy port opens again");
    return;
  }
  stage.owned_session()->Close();
  stage.Demand(stage.world().now_us() - began_us < 100 * kMillisecond, "closed within 100 ms");
  stage.world().Advance(1500 * kMillisecond);
  stage.Expect(stage.owned_session()->Open() == 0, "it opens again");
}

void OpenAgain(Stage& stage) {
  if (stage.owned_legacy() != nullptr) return CloseAndOpen(stage);
  const std::int64_t began_us = stage.world().now_us();
  const long code = stage.owned_session()->Open();
  // An open session that is opened closes its port first, which restarts the driver: it may fail.
  stage.Demand(stage.world().now_us() - began_us < 2 * kSecond, "opened again within 2 s");
  if (code == 0) return;
  stage.world().Advance(1500 * kMillisecond);
  stage.Expect(stage.owned_session()->Open() == 0, "it opens after the driver's restart");
}

void CopyAndDestroyBoth(Stage& stage) {
  stage.Copied();
  if (stage.owned_legacy() != nullptr) {
    auto copy = std::make_unique<::ipod>(*stage.owned_legacy());
    stage.DestroyQuickly();
    copy.reset();
    return NewOne(stage, true);
  }
  auto copy = std::make_unique<CIpodComm>(*stage.owned_session());
  stage.DestroyQuickly();
  const std::int64_t began_us = stage.world().now_us();
  copy.reset();
  // Nothing wakes the workers of the other any more.
  stage.Demand(stage.world().now_us() - began_us < 1010 * kMillisecond,
               "the copy is destroyed within a second");
  NewOne(stage, false);
}

constexpr Action kActions[] = {{"destroy", Destroy},
                               {"close", CloseAndOpen},
                               {"open", OpenAgain},
                               {"copy", CopyAndDestroyBoth}};

// How far a point lies: behind so many calls, so much time, and so many decisions of the others.
struct Point {
  unsigned calls;
  std::int64_t later_us;
  unsigned held;
};

// The threads wake at whole milliseconds, so that the host wakes beside them. A turn of the read
// thread takes 3 ms or more.
constexpr std::int64_t kMomentUs = kMillisecond;
constexpr unsigned kMoments = 8;

struct Reached {
  bool call = false;  // the scenario has so many calls
  bool held = false;  // the others could make so many decisions
};

std::string PlayUntil(const Scenario& scenario, const Action& action, const Point& point,
                      std::uint64_t seed, Reached* reached) {
  auto schedule = std::make_unique<HoldingBack>(RandomSchedule(seed, 2));
  HoldingBack& holding = *schedule;
  StageOptions options;
  options.seed = seed;
  options.schedule = std::move(schedule);
  options.calls_before_end = point.calls;
  Stage stage(scenario.settings(), std::move(options));
  try {
    scenario.play(stage);
  } catch (const Enough&) {
    reached->call = true;
  }
  if (!reached->call) return "";
  stage.EndLimit();
  holding.Hold(point.held);
  stage.world().Advance(point.later_us);
  GetTickCount();
  reached->held = holding.left() == 0;
  holding.Hold(0);
  if (!reached->held) return "";
  action.act(stage);
  stage.Expect(stage.Works(), "a command works afterwards");
  Count(stage);
  stage.DestroyQuickly();
  stage.world().Advance(3 * kSecond);
  const std::string left = LeftOpen(stage);
  stage.Demand(left.empty(), left);
  return stage.wrong();
}

// The decisions from one moment on, until the others have no more.
std::string PlayMoment(const Options& options, const Scenario& scenario, const Action& action,
                       Point point) {
  const unsigned most = options.first != 0 ? options.first : std::numeric_limits<unsigned>::max();
  for (point.held = 0; point.held < most; ++point.held) {
    Reached reached;
    const std::string wrong = PlayUntil(scenario, action, point, options.seed, &reached);
    if (!reached.call) EndSeries();
    if (!wrong.empty()) {
      return wrong + ", " + std::to_string(point.later_us) + " us and " +
             std::to_string(point.held) + " decisions later";
    }
    if (!reached.held) return "";
  }
  return "";
}

std::string PlayCall(const Options& options, const Scenario& scenario, const Action& action,
                     unsigned call) {
  for (unsigned moment = 0; moment < kMoments; ++moment) {
    const std::string wrong = PlayMoment(options, scenario, action, {call, moment * kMomentUs, 0});
    if (!wrong.empty()) return wrong;
  }
  return "";
}

bool Enumerate(const Options& options, const Scenario& scenario, const Action& action,
               const Report& report) {
  Places places;
  if (options.at != 0) places = {options.at, options.at + 1, 1};
  const Verdict verdict = RunApart(places, [&](std::uint64_t call) {
    return PlayCall(options, scenario, action, static_cast<unsigned>(call));
  });
  if (verdict.passed()) return true;
  report.Found(TotalTally().runs + 1);
  report.Failed(std::string(scenario.name) + ", " + action.name, verdict.text,
                "destroy --scenario " + std::string(scenario.name) + " --action " + action.name +
                    " --at " + std::to_string(verdict.failed) + " --seed " +
                    std::to_string(options.seed));
  return false;
}

}  // namespace

int RunDestroy(const Options& options) {
  const Report report;
  unsigned found = 0;
  for (const Scenario* scenario : options.scenarios) {
    for (const Action& action : kActions) {
      if (!options.action.empty() && options.action != action.name) continue;
      if (IsEnough(options, found)) continue;
      found += Enumerate(options, *scenario, action, report) ? 0 : 1;
    }
  }
  return report.Ended("points at which it was destroyed, closed, opened or copied", found,
                      options.seed);
}

}  // namespace reliability

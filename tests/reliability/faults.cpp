// SPDX-License-Identifier: MIT
// Every call of every service that can fail does fail, one after the other, once and from then on,
// with every code that it may have, and so does every allocation of the library. Nothing crashes,
// hangs or stays open, and afterwards a command works.
#include <cstdio>
#include <limits>
#include <optional>

#include "commands.h"
#include "play.h"
#include "report.h"
#include "services.h"
#include "world/memory_shortage.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::MemoryShortage;
using ipodcomm::virtual_platform::RandomSchedule;

struct Fault {
  const FailingService& service;
  DWORD code;
  bool for_ever;
};

// The nth call fails while one lives.
class FaultAt {
 public:
  FaultAt(World& world, const Fault& fault, unsigned nth)
      : world_(world), service_(fault.service.name), nth_(nth) {
    if (service_ == kMemory) {
      shortage_.emplace(nth, fault.for_ever ? MemoryShortage::kForEver : 1);
    } else if (fault.for_ever) {
      world.FailFrom(service_, nth, fault.code);
    } else {
      world.FailOnce(service_, nth, fault.code);
    }
  }
  FaultAt(const FaultAt&) = delete;
  FaultAt& operator=(const FaultAt&) = delete;
  ~FaultAt() { world_.ClearFaults(); }

  /// Whether there were so many calls.
  bool met() const { return shortage_ ? shortage_->felt() : world_.call_count(service_) >= nth_; }

 private:
  World& world_;
  const std::string service_;
  const unsigned nth_;
  std::optional<MemoryShortage> shortage_;
};

// An open session goes on as it is. One that a fault has kept closed is opened; one without worker
// threads is replaced. Which of it was needed is counted.
bool WorksSomehow(Stage& stage, bool may_be_replaced) {
  Tally& tally = TotalTally();
  const bool legacy = stage.owned_legacy() != nullptr;
  if (!legacy && stage.owned_session() == nullptr) stage.Dock();
  if (stage.Works()) return ++tally.works_at_once, true;
  if (!legacy && stage.owned_session()->IsOpen() != 0 && !may_be_replaced) return false;
  if (legacy) {
    stage.owned_legacy()->closeport();
    stage.owned_legacy()->openport();
  } else {
    stage.owned_session()->Close();
    stage.world().Advance(1500 * kMillisecond);
    stage.owned_session()->Open();
  }
  if (stage.Works()) return ++tally.works_opened_again, true;
  if (!may_be_replaced || legacy) return false;
  stage.owned_session().reset();
  stage.Dock();
  return stage.Works() && (++tally.works_in_a_new_session, true);
}

std::string PlayWith(const Scenario& scenario, const Fault& fault, unsigned nth,
                     std::uint64_t seed) {
  constexpr std::int64_t kMostUs = 600 * kSecond;
  StageOptions options;
  options.seed = seed;
  options.schedule = RandomSchedule(seed, 4);
  options.sound = false;
  Stage stage(scenario.settings(), std::move(options));
  bool met = false;
  {
    const FaultAt present(stage.world(), fault, nth);
    scenario.play(stage);
    met = present.met();
  }
  stage.Demand(stage.world().now_us() < kMostUs, "the scenario ends within ten minutes");
  stage.SetSound(true);
  // A port that was not closed cannot be opened again.
  const bool works = WorksSomehow(stage, fault.service.makes_workers);
  stage.Expect(works || fault.service.releases, "a command works afterwards");
  Count(stage);
  stage.DestroyQuickly();
  stage.world().Advance(3 * kSecond);
  const std::string left = LeftOpen(stage);
  stage.Demand(left.empty() || fault.service.releases, left);
  if (!met) EndSeries();
  return stage.wrong();
}

std::string Repeat(const Scenario& scenario, const Fault& fault, std::uint64_t nth,
                   std::uint64_t seed) {
  return "faults --scenario " + std::string(scenario.name) + " --service " + fault.service.name +
         " --code " + std::to_string(fault.code) + " --for-ever " +
         (fault.for_ever ? "yes" : "no") + " --at " + std::to_string(nth) + " --seed " +
         std::to_string(seed);
}

// From the first call on, or at the one place asked for.
bool Enumerate(const Options& options, const Scenario& scenario, const Fault& fault,
               const Report& report) {
  const auto trial = [&](std::uint64_t nth) {
    return PlayWith(scenario, fault, static_cast<unsigned>(nth), options.seed);
  };
  const Verdict verdict = RunApart(PlacesOf(options), trial);
  if (verdict.passed()) return true;
  report.Found(TotalTally().runs + 1);
  report.Failed(scenario.name, verdict.text, Repeat(scenario, fault, verdict.failed, options.seed));
  return false;
}

bool IsAskedFor(const Options& options, const Fault& fault) {
  if (!options.service.empty() && options.service != fault.service.name) return false;
  if (options.code != 0 && options.code != fault.code) return false;
  return !options.for_ever_only || *options.for_ever_only == fault.for_ever;
}

}  // namespace

int RunFaults(const Options& options) {
  const Report report;
  unsigned found = 0;
  for (const Scenario* scenario : options.scenarios) {
    for (const FailingService& service : FailingServices()) {
      for (const DWORD code : service.codes) {
        for (const bool for_ever : {false, true}) {
          const Fault fault = {service, code, for_ever};
          if (!IsAskedFor(options, fault) || IsEnough(options, found)) continue;
          found += Enumerate(options, *scenario, fault, report) ? 0 : 1;
        }
      }
    }
  }
  if (found == 0) return report.Passed("calls that failed", TotalTally().runs, options.seed);
  std::printf("%u kinds of fault found something, in %.0f s\n", found, report.seconds());
  return 1;
}

}  // namespace reliability

// SPDX-License-Identifier: MIT
// A seed gives the same trace twice: every call on the seam with its time and result, and every
// decision of the schedule.
#include <cinttypes>
#include <cstdio>

#include "commands.h"
#include "play.h"
#include "report.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::RandomSchedule;

// FNV-1a.
class Hash {
 public:
  void Add(const std::string& text) {
    for (const char letter : text) AddByte(static_cast<std::uint8_t>(letter));
    AddByte(0);
  }
  std::uint64_t value() const { return value_; }

 private:
  void AddByte(std::uint8_t byte) {
    value_ ^= byte;
    value_ *= 0x100000001B3;
  }

  std::uint64_t value_ = 0xCBF29CE484222325;
};

std::uint64_t TraceOf(const Scenario& scenario, std::uint64_t seed) {
  StageOptions options;
  options.seed = seed;
  options.schedule = RandomSchedule(seed, 1);
  Stage stage(scenario.settings(), std::move(options));
  stage.world().Record();
  scenario.play(stage);
  stage.DestroyQuickly();
  Hash hash;
  const auto calls = stage.world().DrainCalls().all();
  for (const auto& call : calls) {
    hash.Add(call.thread + " " + std::to_string(call.start_us) + " " + call.text + " = " +
             call.result);
  }
  for (const int decision : stage.world().decisions()) hash.Add(std::to_string(decision));
  Count(stage);
  return hash.value();
}

}  // namespace

int RunTraces(const Options& options) {
  const Report report;
  Hash all;
  const auto trial = [&](std::uint64_t seed) -> std::string {
    const Scenario& scenario = *options.scenarios[seed % options.scenarios.size()];
    const std::uint64_t once = TraceOf(scenario, seed);
    if (TraceOf(scenario, seed) != once) return std::string(scenario.name) + " differs";
    all.Add(std::to_string(once));
    if (seed + 1 == options.seed + options.runs) {
      std::printf("traces of seeds %" PRIu64 " to %" PRIu64 ": %016" PRIx64 "\n", options.seed,
                  seed, all.value());
    }
    return "";
  };
  const Verdict verdict = RunApart({options.seed, options.seed + options.runs}, trial);
  if (verdict.passed()) return report.Passed("seeds traced twice", options.runs, options.seed);
  return report.Failed("traces", verdict.text,
                       "traces --runs 1 --seed " + std::to_string(verdict.failed));
}

}  // namespace reliability

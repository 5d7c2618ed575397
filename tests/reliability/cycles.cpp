// SPDX-License-Identifier: MIT
// One session whose cable is pulled and put back again and again: what is open and allocated stays
// the same, and a command works each time. A world lasts a while and is then replaced.
#include <malloc.h>

#include "commands.h"
#include "play.h"
#include "report.h"

namespace reliability {
namespace {

using ipodcomm::virtual_platform::RandomSchedule;

constexpr std::uint64_t kCyclesOfAWorld = 1000;

std::size_t HeapInUse() { return mallinfo2().uordblks; }

void Cycle(Stage& stage) {
  stage.cable().Pull(20 * kMillisecond);
  stage.world().Advance(100 * kMillisecond);
  stage.Expect(stage.cable().pulled(), "the cable was pulled");
  stage.Expect(stage.Works(), "a command works after the cable is back");
}

std::string PlayCycles(std::uint64_t seed, std::uint64_t cycles, std::size_t* heap) {
  {
    StageOptions options;
    options.seed = seed;
    options.schedule = RandomSchedule(seed, 16);
    Stage stage(SmallIpod(), std::move(options));
    stage.Dock();
    for (int i = 0; i < 3; ++i) Cycle(stage);
    const auto open = stage.world().leftovers();
    for (std::uint64_t i = 0; i < cycles && stage.wrong().empty(); ++i) Cycle(stage);
    stage.Demand(stage.world().leftovers() == open, "the same is open as after the third cycle");
    Count(stage);
    if (!stage.wrong().empty()) return stage.wrong();
  }
  *heap = HeapInUse();
  return "";
}

}  // namespace

int RunCycles(const Options& options) {
  const Report report;
  const std::uint64_t worlds = (options.runs + kCyclesOfAWorld - 1) / kCyclesOfAWorld;
  std::size_t heap_before = 0;
  const auto trial = [&](std::uint64_t seed) -> std::string {
    std::size_t heap = 0;
    std::string wrong = PlayCycles(seed, std::min(options.runs, kCyclesOfAWorld), &heap);
    // The first two worlds make what the program keeps.
    constexpr std::size_t kMostGrowth = 64 * 1024;
    if (seed == options.seed + 1) heap_before = heap;
    if (seed > options.seed + 1 && heap > heap_before + kMostGrowth) {
      wrong += "the heap has grown from " + std::to_string(heap_before) + " to " +
               std::to_string(heap) + " bytes";
    }
    return wrong;
  };
  const Verdict verdict = RunApart({options.seed, options.seed + worlds}, trial, 600);
  if (verdict.passed()) {
    return report.Passed("cycles of the cable", worlds * std::min(options.runs, kCyclesOfAWorld),
                         options.seed);
  }
  return report.Failed("cycles", verdict.text,
                       "cycles --runs 1000 --seed " + std::to_string(verdict.failed));
}

}  // namespace reliability

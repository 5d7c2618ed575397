// SPDX-License-Identifier: MIT
// The self-test: that every step passed, and what its second tells of the iPod.
#include <cstdio>

#include "untrue/player_state.h"
#include "untrue/subjects.h"

namespace truth {

namespace {

std::string Information(const Question& question) {
  const ipodsim::Traits& traits = question.traits();
  char number[16];
  std::snprintf(number, sizeof number, "%04x|%04x", traits.model_id >> 16,
                traits.model_id & 0xFFFF);
  return "Ipod Information " + question.ipod.settings().library.name + " " + traits.model_number +
         " " + number + " " + traits.serial_number + " " + std::to_string(traits.software[0]) +
         "." + std::to_string(traits.software[1]) + "." + std::to_string(traits.software[2]);
}

std::string UntrueSteps(const Question& question, std::size_t* steps) {
  for (const Json& step : question.said) {
    if (!step.contains("passed")) continue;
    ++*steps;
    // One that has failed is no success, whatever interrupts the others.
    if (step.at("passed") != true && question.so_far) continue;
    if (step.at("passed") != true) return step.at("step").dump() + " failed";
    if (step.at("number") != 1) continue;
    const std::string untrue = Expect(step, "step", Information(question));
    if (!untrue.empty()) return untrue;
  }
  return "";
}

}  // namespace

// It ends with the player stopped.
std::string UntrueSelfTest(const Question& question) {
  constexpr std::size_t kSteps = 5;
  std::size_t steps = 0;
  const std::string untrue = UntrueSteps(question, &steps);
  if (!untrue.empty() || question.so_far) return untrue;
  const std::string summary =
      FirstOf(Expect(question.last(), "steps", kSteps), Expect(question.last(), "failures", 0));
  if (!summary.empty()) return summary;
  if (steps != kSteps) return "only " + std::to_string(steps) + " steps";
  if (question.MayBe(ipodsim::PlayerState::kStopped)) return "";
  return "it is " + StateName(question.ipod.player().state());
}

}  // namespace truth

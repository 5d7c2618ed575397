// SPDX-License-Identifier: MIT
#include "play.h"

#include <cstdio>
#include <utility>

#include "apart.h"

namespace reliability {
namespace {

// By default an identifier does not always step: a frame is numbered before it waits for the port,
// so of two threads' frames the later may leave first. But no two have the same.
bool ComesTwice(const std::string& detail) {
  unsigned identifier = 0;
  unsigned before = 0;
  const std::size_t at = detail.find(" came under ");
  return at != std::string::npos &&
         std::sscanf(detail.c_str() + at, " came under %u after %u", &identifier, &before) == 2 &&
         identifier == before;
}

// Some scenarios ask for the iPod's name before they identify. And an answer echoes the last
// question of its lingo, so of two in a row the first one's identifier is missed.
bool IsKnown(const ipodsim::Mistake& mistake, const Stage& stage) {
  switch (mistake.kind) {
    case ipodsim::MistakeKind::kCommandBeforeIdentification:
    case ipodsim::MistakeKind::kIdentifierNotEchoed:
    case ipodsim::MistakeKind::kIdentifierMissing:
      return true;
    case ipodsim::MistakeKind::kIdentifierNotStepping:
      return !stage.tells_answers_apart() && !ComesTwice(mistake.detail);
    default:
      return false;
  }
}

}  // namespace

std::string LeftOpen(Stage& stage) {
  std::string left;
  for (const std::string& name : stage.world().leftovers()) {
    if (name.find("read") == std::string::npos) left += " " + name;
  }
  for (const std::string& name : stage.world().live_threads()) {
    if (name.find("read") == 0) left += " (still running) " + name;
  }
  if (!left.empty()) left = "left open:" + left + " ";
  return left + stage.GivenBackTwice();
}

void Count(Stage& stage) {
  Tally& tally = TotalTally();
  ++tally.runs;
  tally.decisions += stage.world().decisions().size();
  tally.began_before_wrap += stage.began_before_wrap() ? 1 : 0;
  tally.wrapped += stage.wrapped() ? 1 : 0;
}

std::string Play(const Scenario& scenario, std::uint64_t seed,
                 std::unique_ptr<ipodcomm::virtual_platform::Schedule> schedule, bool pauses) {
  StageOptions options;
  options.seed = seed;
  options.schedule = std::move(schedule);
  options.pauses = pauses;
  Stage stage(scenario.settings(), std::move(options));
  scenario.play(stage);
  stage.Expect(stage.Works(), "a command works afterwards");
  stage.ExpectOneAttempt();
  for (const auto& mistake : stage.ipod().mistakes()) {
    // A frame in the middle of which its thread loses the processor is none for the iPod.
    if (pauses || IsKnown(mistake, stage)) continue;
    stage.Demand(false, "the iPod sees no mistake, but " + mistake.name + ": " + mistake.detail);
  }
  Count(stage);
  stage.DestroyQuickly();
  stage.world().Advance(3 * kSecond);
  const std::string left = LeftOpen(stage);
  stage.Demand(left.empty(), left);
  return stage.wrong();
}

}  // namespace reliability

// SPDX-License-Identifier: MIT
// Workouts as they are written, and the self-test.
#include "text/subjects.h"

namespace truth {

void ReadWorkout(Lines* lines, std::vector<Json>* said) {
  static const std::regex kHeading(
      "Workout on [a-z-]+, [0-9:]+, written to the iPod in ([0-9]+) .*");
  static const std::regex kProgress("(Start Workout|Internval Write) Good");  // as it is spelt
  static const std::regex kInterval(" +([0-9:]+)  ([a-z ]{6}) +[0-9.]+ km +.*");
  static const std::regex kSaved("Saved as .*: ([0-9]+) intervals? and a summary, ([0-9,]+) bytes");
  if (!lines->TakeIf(kHeading)) return;
  while (!lines->empty()) {
    if (lines->TakeIf(kProgress) || lines->TakeIf(kInterval)) continue;
    const auto saved = lines->TakeIf(kSaved);
    if (!saved) return;
    said->push_back(
        {{"event", "saved"}, {"intervals", Number(saved->at(1))}, {"bytes", Number(saved->at(2))}});
  }
}

void ReadSelfTest(Lines* lines, std::vector<Json>* said) {
  static const std::regex kStarted("Regression Test Started, port opened");
  static const std::regex kStep("(pass|FAIL)  (.*)");
  static const std::regex kDetail(" {6}(.*)");
  static const std::regex kAll("All ([0-9]+) steps passed");
  lines->TakeIf(kStarted);
  while (const auto step = lines->TakeIf(kStep)) {
    const auto detail = lines->TakeIf(kDetail);
    said->push_back({{"step", step->at(2)},
                     {"number", said->size()},
                     {"detail", detail ? detail->at(1) : ""},
                     {"passed", step->at(1) == "pass"}});
  }
  if (const auto all = lines->TakeIf(kAll)) {
    said->push_back({{"steps", Number(all->at(1))}, {"failures", 0}});
  }
}

}  // namespace truth

// SPDX-License-Identifier: MIT
// A workout is written to the iPod and read back there; on an iPod that fills up meanwhile, the
// gaps are told.
#include <algorithm>

#include "scenario.h"

namespace reliability {
namespace {

constexpr int kIntervals = 3;

ipodsim::Settings FullIpod() {
  ipodsim::Settings settings = SmallIpod();
  for (std::uint32_t write = 5; write < 1000; ++write) {
    settings.storage.failing_writes[write] = ipodsim::AckStatus::kOutOfResources;
  }
  return settings;
}

std::size_t Count(const std::string& text, const std::string& wanted) {
  std::size_t count = 0;
  for (std::size_t at = text.find(wanted); at != std::string::npos;
       at = text.find(wanted, at + 1)) {
    ++count;
  }
  return count;
}

int Start(Stage& stage) {
  return stage.session().Sports_StartWorkout(L"0042", L"Nord", L"B7", L"123-4",
                                             IPOD_EQUIPMENT_TYPE_BIKE, 72.5);
}

int Interval(Stage& stage, int number) {
  return stage.session().Sports_IntervalWorkout(
      number == 0 ? IPOD_INTERVAL_TYPE_START : IPOD_INTERVAL_TYPE_CONTINUE, number * 60,
      number * 11.0, number * 0.25, IPOD_DISTANCE_TYPE_KM, 240, IPOD_SPEED_TYPE_PACE, 1.5, 118, 4);
}

int Finish(Stage& stage) {
  return stage.session().Sports_FinishWorkout(180, 33, 0.75, IPOD_DISTANCE_TYPE_KM, 240,
                                              IPOD_SPEED_TYPE_PACE, 109);
}

void Write(Stage& stage) {
  stage.DockIdentified();
  stage.Expect(Start(stage) == 1, "the workout is started");
  for (int number = 0; number < kIntervals; ++number) {
    stage.Expect(Interval(stage, number) == 1, "an interval is written");
  }
  stage.Expect(Finish(stage) == 1, "the workout is finished");
  tagIPOD_WORKOUT_FILE file = {};
  stage.session().GetWorkoutFile(&file);
  stage.Expect(file.failed_writes == 0, "no write has failed");
  const EnoughMemory enough;
  const auto names = stage.ipod().feature_files().Names();
  stage.Expect(names.size() == 1, "there is one file");
  if (names.size() != 1) return;
  const std::string text = stage.ipod().feature_files().Read(names.front());
  stage.Expect(Count(text, "<interval>") == kIntervals, "it has the intervals");
  stage.Expect(Count(text, "<sec>120</sec>") == 1, "it has the last one's seconds");
  stage.Expect(Count(text, "<workoutSummary>") == 1 && Count(text, "</gymData>") == 1,
               "it is complete");
}

void WriteToTheFullOne(Stage& stage) {
  stage.DockIdentified();
  stage.Expect(Start(stage) == 1, "the workout is started");
  for (int number = 0; number < kIntervals; ++number) {
    stage.Expect(Interval(stage, number) == 0, "an interval is refused");
  }
  Finish(stage);
  tagIPOD_WORKOUT_FILE file = {};
  stage.session().GetWorkoutFile(&file);
  stage.Expect(file.failed_writes > kIntervals, "the failed writes are told");
  const EnoughMemory enough;
  stage.Expect(stage.ipod().open_feature_files().empty(), "the file is closed");
}

}  // namespace

const Scenario kWorkout = {"workout", "a workout is written and read back", SmallIpod, Write};
const Scenario kWorkoutFullIpod = {"workout-full-ipod", "the iPod fills up during a workout",
                                   FullIpod, WriteToTheFullOne};

}  // namespace reliability

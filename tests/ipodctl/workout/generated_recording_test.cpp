// SPDX-License-Identifier: MIT
// The workout that ipodctl makes up when none is given.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/workout/recordings.h"
#include "workout/recording.h"

using namespace ipodctl;
using ::testing::ElementsAre;

namespace {

TEST(GeneratedWorkout, HasAReadingEverySecondAndNeverGoesBack) {
  for (const Equipment& equipment : AllEquipment()) {
    const Recording recording = GenerateRecording(equipment, 600, 75);
    ASSERT_EQ(recording.readings.size(), 601U) << equipment.name;
    EXPECT_EQ(recording.equipment, equipment.type);
    for (std::size_t i = 1; i < recording.readings.size(); ++i) {
      const Reading& before = recording.readings[i - 1];
      const Reading& reading = recording.readings[i];
      EXPECT_EQ(reading.seconds, static_cast<int>(i));
      EXPECT_EQ(reading.distance > before.distance, !reading.paused) << equipment.name << i;
      EXPECT_EQ(reading.kcal > before.kcal, !reading.paused) << equipment.name << i;
      EXPECT_EQ(reading.speed > 0, !reading.paused) << equipment.name << i;
      EXPECT_GE(reading.bpm, 60);
      EXPECT_LE(reading.bpm, 180);
    }
  }
}

TEST(GeneratedWorkout, IsTheSameEveryTime) {
  const Recording first = GenerateRecording(AllEquipment()[3], 300, 75);
  const Recording again = GenerateRecording(AllEquipment()[3], 300, 75);
  ASSERT_EQ(first.readings.size(), again.readings.size());
  for (std::size_t i = 0; i < first.readings.size(); ++i) {
    EXPECT_EQ(first.readings[i].distance, again.readings[i].distance);
    EXPECT_EQ(first.readings[i].kcal, again.readings[i].kcal);
    EXPECT_EQ(first.readings[i].speed, again.readings[i].speed);
    EXPECT_EQ(first.readings[i].bpm, again.readings[i].bpm);
  }
}

TEST(GeneratedWorkout, PausesOnceFromAMinuteOn) {
  const auto events = [](int seconds) {
    std::vector<std::string> log =
        Log(IntervalsOf(GenerateRecording(AllEquipment()[0], seconds, 75), 3600));
    return log;
  };
  EXPECT_THAT(events(59), ElementsAre("0 start", "59 end"));
  EXPECT_THAT(events(60), ElementsAre("0 start", "24 pause", "34 resume", "60 end"));
  EXPECT_THAT(events(600), ElementsAre("0 start", "240 pause", "270 resume", "600 end"));
  EXPECT_THAT(events(1), ElementsAre("0 start", "1 end"));
}

TEST(GeneratedWorkout, CountsWhatItsEquipmentCounts) {
  const auto types = [](const char* name) {
    const Recording recording = GenerateRecording(*EquipmentByName(name), 10, 75);
    return std::string(UnitName(recording.distance_type)) + " " + SpeedName(recording.speed_type) +
           (recording.readings.back().level == -1 ? "" : " level");
  };
  EXPECT_EQ(types("treadmill"), "km pace");
  EXPECT_EQ(types("elliptical"), "km spm level");
  EXPECT_EQ(types("stepper"), "floors spm level");
  EXPECT_EQ(types("bike"), "km rpm level");
  EXPECT_EQ(types("other"), "km pace");
  EXPECT_FALSE(EquipmentByName("boat"));
}

TEST(GeneratedWorkout, BurnsMoreTheHeavierItsUser) {
  const double light = GenerateRecording(AllEquipment()[0], 600, 50).readings.back().kcal;
  const double heavy = GenerateRecording(AllEquipment()[0], 600, 100).readings.back().kcal;
  EXPECT_NEAR(heavy, 2 * light, 1e-9 * heavy);
}

}  // namespace

// SPDX-License-Identifier: MIT
// What is logged of a recording: its intervals, and its summary.
#include "workout/recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/workout/recordings.h"

using namespace ipodctl;
using ::testing::ElementsAre;

namespace {

TEST(WorkoutLog, HoldsEveryEventAndAnIntervalEverySoManySeconds) {
  const Recording recording = Kilometres({At(0), At(1), At(2), At(3), At(4), At(5, true),
                                          At(6, true), At(7, true), At(8), At(9), At(10), At(11)});
  EXPECT_THAT(Log(IntervalsOf(recording, 2)),
              ElementsAre("0 start", "2 continue", "4 continue", "5 pause", "8 resume",
                          "10 continue", "11 end"));
}

TEST(WorkoutLog, TakesSparseReadingsWhenTheyCome) {
  EXPECT_THAT(Log(IntervalsOf(Kilometres({At(0), At(4), At(12), At(14), At(30)}), 5)),
              ElementsAre("0 start", "12 continue", "30 end"));
  EXPECT_THAT(Log(IntervalsOf(Kilometres({At(7)}), 5)), ElementsAre("7 start", "7 end"));
}

TEST(WorkoutLog, ShowsTheLastReadingUntilTheNext) {
  const Recording recording = Kilometres({At(3), At(10)});
  EXPECT_EQ(ReadingAt(recording, 0).seconds, 3);
  EXPECT_EQ(ReadingAt(recording, 9.9).seconds, 3);
  EXPECT_EQ(ReadingAt(recording, 10).seconds, 10);
  EXPECT_EQ(ReadingAt(recording, 99).seconds, 10);
}

TEST(WorkoutSummary, GivesTheMeanPaceOfKilometresWhateverTheEquipmentCounts) {
  Recording recording = Kilometres({At(0), At(100, true), At(160), At(300)});
  recording.speed_type = IPOD_SPEED_TYPE_RPM;
  recording.readings[0].bpm = 100;
  recording.readings[2].bpm = 150;
  recording.readings[3].distance = 0.8;
  recording.readings[3].kcal = 61;
  const Summary summary = SummaryAt(recording, 300);
  EXPECT_EQ(summary.seconds, 300);
  EXPECT_EQ(summary.kcal, 61);
  EXPECT_EQ(summary.distance, 0.8);
  EXPECT_DOUBLE_EQ(summary.speed, 300);  // 240 s on the move, 0.8 km
  EXPECT_EQ(summary.bpm, 129);           // 100 for 100 s, 150 for 140 s; none during the pause
}

TEST(WorkoutSummary, GivesTheMeanStepsOfFloors) {
  Recording recording = Kilometres({At(0), At(10), At(40)});
  recording.distance_type = IPOD_DISTANCE_TYPE_FLOORS;
  recording.readings[0].speed = 40;
  recording.readings[1].speed = 80;
  EXPECT_DOUBLE_EQ(SummaryAt(recording, 40).speed, 70);
  EXPECT_DOUBLE_EQ(SummaryAt(recording, 20).speed, 60);
  EXPECT_DOUBLE_EQ(SummaryAt(recording, 0).speed, 0);
  EXPECT_EQ(SummaryAt(recording, 0).bpm, 0);
}

TEST(WorkoutSummary, HasNoPaceWithoutDistance) {
  EXPECT_DOUBLE_EQ(SummaryAt(Kilometres({At(0), At(60)}), 60).speed, 0);
}

}  // namespace

// SPDX-License-Identifier: MIT
// The figures that are shown while a workout goes on.
#include "workout/workout_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/workout/recordings.h"

using namespace ipodctl;

namespace {

TEST(WorkoutView, SaysHowFarTheWorkoutHasCome) {
  Recording recording = Kilometres({At(0)});
  const Reading reading = {65, 8.44, 0.128, 380, 0, 118, -1, false};
  EXPECT_EQ(LiveFigures(recording, reading, 3204), "1:05  0.13 km  8.4 kcal  118 bpm  3,204 bytes");
  recording.distance_type = IPOD_DISTANCE_TYPE_FLOORS;
  EXPECT_EQ(LiveFigures(recording, At(3661), 7), "1:01:01  0.0 floors  0.0 kcal  - bpm  7 bytes");
}

}  // namespace

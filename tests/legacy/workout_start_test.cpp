// SPDX-License-Identifier: MIT
// Finding out whether an iPod takes workouts, and opening its file: every way in which that fails,
// and what the status text then says.
#include "support/packets.h"
#include "workout_test.h"

namespace {

using test::kCloseOfNone;
using test::kHandle;
using test::kMillisecond;
using test::kOpen;
using test::kSilenceUs;
using test::kSportsRequest;
using test::kStorageRequest;
using test::WorkoutTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ---- Asking

class SportsSupport : public WorkoutTest {
 protected:
  int Ask() { return legacy_.issports(&supported_, &extra_); }

  int supported_ = 77;
  unsigned char extra_ = 77;
};

TEST_F(SportsSupport, IsAskedOfBothLingoes) {
  EXPECT_EQ(Ask(), 1);
  EXPECT_EQ(supported_, 1);
  EXPECT_EQ(extra_, 0x2A);
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kSportsRequest, kStorageRequest));
}

struct Caps {
  const char* name;
  const char* reply;
  bool supported;
};
void PrintTo(const Caps& row, std::ostream* out) { *out << row.name; }

class SportsCaps : public SportsSupport, public ::testing::WithParamInterface<Caps> {};

TEST_P(SportsCaps, NeedWorkoutsAndUserDataBoth) {
  answering_.Answer("09 83", GetParam().reply);
  EXPECT_EQ(Ask(), GetParam().supported ? 1 : 0);
  EXPECT_EQ(supported_, GetParam().supported ? 1 : 0);
  EXPECT_EQ(extra_, 0x2A);
  if (GetParam().supported) {
    EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kSportsRequest, kStorageRequest));
  } else {
    EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kSportsRequest));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SportsCaps,
    ::testing::Values(Caps{"none", "FF 55 05 09 84 00 00 2A 44", false},
                      Caps{"workouts", "FF 55 05 09 84 00 01 2A 43", false},
                      Caps{"user_data", "FF 55 05 09 84 00 02 2A 42", false},
                      Caps{"both", "FF 55 05 09 84 00 03 2A 41", true},
                      Caps{"others", "FF 55 05 09 84 FF FC 2A 49", false},
                      Caps{"all", "FF 55 05 09 84 FF FF 2A 46", true},
                      Caps{"both_in_the_high_byte", "FF 55 05 09 84 03 00 2A 41", false},
                      Caps{"one_in_each_byte", "FF 55 05 09 84 01 02 2A 41", false}),
    test::RowName());

TEST_F(SportsSupport, IsNotThereWithoutAnAnswer) {
  answering_.Answer("09 83", "");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Ask(), 0); }), kSilenceUs);
  EXPECT_EQ(supported_, 0);
  EXPECT_EQ(extra_, 0);
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kSportsRequest));
}

TEST_F(SportsSupport, FailsButIsThereWhenTheStorageDoesNotAnswer) {
  answering_.Answer("0C 01", "");
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(supported_, 1);
  EXPECT_EQ(extra_, 0x2A);
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kSportsRequest, kStorageRequest));
}

TEST_F(SportsSupport, FailsWhenARequestCannotBeSent) {
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Ask(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(supported_, 0);
  EXPECT_EQ(extra_, 0);
  world_.Advance(10 * kMillisecond);
  answering_.DrainFrames();
}

TEST_F(SportsSupport, FailsWhenTheSecondRequestCannotBeSent) {
  world_.FailOnce("WriteFile", 4, 31);
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(supported_, 0);
  EXPECT_EQ(extra_, 0x2A);
}

TEST_F(SportsSupport, FailsOnAClosedPortAtOnce) {
  legacy_.closeport();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Ask(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(supported_, 0);
}

TEST_F(SportsSupport, OutputsAreOptional) { EXPECT_EQ(legacy_.issports(nullptr, nullptr), 1); }

TEST_F(SportsSupport, AShortAnswerReadsAsZeros) {
  answering_.Answer("09 83", "FF 55 02 09 84 71");
  EXPECT_EQ(Ask(), 0);
  EXPECT_EQ(extra_, 0);
}

TEST_F(SportsSupport, ALongAnswerIsCut) {
  answering_.Answer("09 83", "FF 55 0A 09 84 00 03 2A 11 22 33 44 55 3D");
  EXPECT_EQ(Ask(), 1);
  EXPECT_EQ(extra_, 0x2A);
}

// ---- Opening

class WorkoutStart : public WorkoutTest {};

TEST_F(WorkoutStart, ClosesTheFileOfAnUnfinishedWorkout) {
  Begin();
  EXPECT_EQ(Start(), 1);
  EXPECT_THAT(answering_.DrainFrames()[0], "FF 55 03 0C 08 2B BE");
}

TEST_F(WorkoutStart, GoesOnWhenTheCloseIsRefused) {
  answering_.Answer("0C 08", "FF 55 04 0C 00 05 08 E3");
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(Status(), "Start Workout Good");
}

TEST_F(WorkoutStart, GoesOnWhenTheCloseIsNotAnswered) {
  std::int64_t answered_us = Elapsed([&] { EXPECT_EQ(Start(), 1); });
  answering_.Answer("0C 08", "");
  // The 8 bytes of the missing answer took 1389 us; silence begins when the request is in the
  // driver, whose 6 bytes behind the sync byte took 1042 us.
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Start(), 1); }) - answered_us, 3'000'000 - 1389 - 1042);
}

TEST_F(WorkoutStart, StopsWhereWorkoutsAreNotSupported) {
  answering_.Answer("09 83", "FF 55 05 09 84 00 01 2A 43");
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(Status(), "Makeing sure iPod supports workout");
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kCloseOfNone, kSportsRequest));
}

TEST_F(WorkoutStart, StopsWhenTheStorageDoesNotAnswer) {
  answering_.Answer("0C 01", "");
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(Status(), "Makeing sure iPod supports workout");
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre(kCloseOfNone, kSportsRequest, kStorageRequest));
}

TEST_F(WorkoutStart, StopsWhenTheOpenCannotBeSent) {
  world_.FailOnce("WriteFile", 8, 31);
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(Status(), "Opening iPod Workout File");
  world_.Advance(10 * kMillisecond);
  EXPECT_EQ(answering_.DrainFrames().size(), 3U);
}

TEST_F(WorkoutStart, StopsWithoutAHandle) {
  Begin();
  answering_.Answer("0C 12", "");
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(Status(), "Getting File Handle From iPod");
  EXPECT_EQ(ipodPeer::StorageFileHandle(legacy_), 0);
  EXPECT_THAT(answering_.DrainFrames(),
              ElementsAre("FF 55 03 0C 08 2B BE", kSportsRequest, kStorageRequest, kOpen));
}

TEST_F(WorkoutStart, StopsWhenTheOpenIsRefused) {
  answering_.Answer("0C 12", "FF 55 04 0C 00 02 12 DC");
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(Status(), "Getting File Handle From iPod");
}

TEST_F(WorkoutStart, WritesFromTheBeginningOfTheNewFile) {
  Begin();
  EXPECT_EQ(Interval(), 1);
  answering_.Answer("0C 12", "FF 55 03 0C 04 07 E6");
  answering_.DrainFrames();
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(answering_.DrainLines(7, 0).size(), 14U);
}

TEST_F(WorkoutStart, NeedsAnOpenPort) {
  legacy_.closeport();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Start(), 0); }), 10 * kMillisecond);  // two tries to send
  EXPECT_EQ(Status(), "Makeing sure iPod supports workout");
}

TEST_F(WorkoutStart, ASilentIpodCostsTwoSilences) {
  world_.line().Unplug();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Start(), 0); }), 2 * kSilenceUs);  // the close, the question
  EXPECT_EQ(Status(), "Makeing sure iPod supports workout");
}

}  // namespace

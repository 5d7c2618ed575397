// SPDX-License-Identifier: MIT
// What stands in a frame of a given size, without a terminal.
#include "screen/layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/screen/libraries.h"
#include "ipodctl/workout/recordings.h"
#include "screen/cells.h"

using namespace ipodctl::screen;
using ipodctl::At;
using ipodctl::Kilometres;
using ipodctl::Reading;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr std::chrono::seconds kNow(100);

class Layouts : public testing::Test {
 protected:
  void SetUp() override {
    UseUtf8();
    snapshot_.docked = true;
    snapshot_.ipod = "Zoë";
  }

  std::vector<std::string> Lines(int rows, int columns) {
    browser_.SetRows(RecordRows(LayOut(rows, columns)), snapshot_.library);
    return Draw({snapshot_, browser_, kNow, help_}, rows, columns).Lines();
  }

  Snapshot snapshot_;
  Browser browser_;
  bool help_ = false;
};

TEST_F(Layouts, PutLibraryAndPlayerBesideEachOtherAndTheWorkoutBelow) {
  const Layout layout = LayOut(24, 80);
  EXPECT_EQ(layout.library.row, layout.player.row);
  EXPECT_EQ(layout.library.columns + layout.player.columns, 80);
  EXPECT_EQ(layout.workout.row, layout.library.row + layout.library.rows);
  EXPECT_EQ(layout.workout.columns, 80);
  EXPECT_EQ(layout.keys.row, 23);
}

TEST_F(Layouts, PutAllBelowEachOtherInANarrowWindow) {
  const Layout layout = LayOut(24, 40);
  EXPECT_EQ(layout.player.row, layout.library.row + layout.library.rows);
  EXPECT_EQ(layout.workout.row, layout.player.row + layout.player.rows);
  EXPECT_GT(layout.workout.rows, 4);
  EXPECT_EQ(layout.library.columns, 40);
}

TEST_F(Layouts, GiveUpTheWorkoutBeforeThePlayerAndThePlayerBeforeTheLibrary) {
  EXPECT_EQ(LayOut(14, 40).workout.rows, 0);
  EXPECT_GT(LayOut(14, 40).player.rows, 0);
  EXPECT_EQ(LayOut(9, 40).player.rows, 0);
  EXPECT_GT(LayOut(9, 40).library.rows, 2);
}

TEST_F(Layouts, FillEverySizeAndNoMore) {
  snapshot_.library = TracksNamed(1000, 20);
  snapshot_.now = {1,     3,    "橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋",
                   "a",   "b",  {},
                   false, 9000, 4000};
  snapshot_.workout.state = WorkoutSnapshot::State::kRunning;
  snapshot_.workout.recording =
      std::make_shared<ipodctl::Recording>(Kilometres({At(0), At(5), At(10)}));
  for (int rows = 1; rows < 60; ++rows) {
    for (const int columns : {1, 10, 19, 20, 33, 40, 63, 64, 80, 200}) {
      const Frame frame = Draw({snapshot_, browser_, kNow, rows % 2 == 0}, rows, columns);
      for (const Piece& piece : frame.pieces()) {
        ASSERT_LE(piece.column + Width(piece.text), columns) << rows << " x " << columns;
        ASSERT_LT(piece.row, rows);
      }
    }
  }
}

TEST_F(Layouts, ShowTheLinesOfAListAroundTheCursor) {
  snapshot_.library = TracksNamed(1000, 6);
  browser_.Do(Action::kLast, snapshot_.library);
  browser_.Do(Action::kOpen, snapshot_.library);
  browser_.PointAt(4, snapshot_.library);
  const std::vector<std::string> lines = Lines(24, 80);
  EXPECT_THAT(lines[1], StartsWith("╭─ Tracks ──────────────────── 5 of 1,000 ─╮╭─ Stopped "));
  EXPECT_THAT(lines[2], StartsWith("│ Track 0                                  ││"));
  EXPECT_THAT(lines[7], StartsWith("│ Track 5 "));
  EXPECT_THAT(lines[8], StartsWith("│ …       "));
}

TEST_F(Layouts, ShowWhatIsPlayingWithItsProgress) {
  snapshot_.now = {1, 2, "Arches", "The Hum", "Spans", {}, false, 200000, 50000};
  snapshot_.playing_count = 14;
  const std::vector<std::string> lines = Lines(24, 80);
  EXPECT_THAT(lines[1], EndsWith("╭─ Playing ──────── track 3 of 14 ─╮"));
  EXPECT_THAT(lines[2], EndsWith("│ ▶ Arches                         │"));
  EXPECT_THAT(lines[3], EndsWith("│   The Hum                        │"));
  EXPECT_THAT(lines[4], EndsWith("│   Spans                          │"));
  EXPECT_THAT(lines[6], EndsWith("│ 0:50 ━━━━━───────────────── 3:20 │"));
}

TEST_F(Layouts, ShowTheWorkoutsFiguresAndItsCurve) {
  Reading reading = {65, 8.44, 0.128, 333, 0, 118, -1, false};
  Reading start = At(0);
  start.bpm = 84;
  WorkoutSnapshot& workout = snapshot_.workout;
  workout.state = WorkoutSnapshot::State::kSaved;
  workout.equipment = "treadmill";
  workout.recording = std::make_shared<ipodctl::Recording>(Kilometres({start, reading}));
  workout.ended_s = 65;
  workout.outcome = "Saved as gym-0001.xml: 14 intervals and a summary, 3,204 bytes";
  const std::vector<std::string> lines = Lines(24, 80);
  EXPECT_THAT(lines[13], StartsWith("╭─ Workout on treadmill ──"));
  EXPECT_THAT(lines[13], EndsWith(" 1:05 of 1:05 ─╮"));
  EXPECT_THAT(lines[14], StartsWith("│ 0.13 km  8.4 kcal  118 bpm  5:33 /km  "));
  EXPECT_THAT(lines[15], StartsWith("│ 120 ┤"));
  EXPECT_THAT(lines[18], StartsWith("│  80 ┤⠤"));
  EXPECT_THAT(lines[19],
              StartsWith("│ Saved as gym-0001.xml: 14 intervals and a summary, 3,204 b"));
}

TEST_F(Layouts, PutTheSpeedBelowTheOtherFiguresWhereThereIsNoRoomBeside) {
  WorkoutSnapshot& workout = snapshot_.workout;
  workout.state = WorkoutSnapshot::State::kRunning;
  workout.recording = std::make_shared<ipodctl::Recording>(
      Kilometres({At(0), {65, 80.6, 1.18, 361, 0, 155, -1, false}}));
  workout.ended_s = 65;
  workout.intervals = 14;
  workout.bytes = 3204;
  const std::vector<std::string> lines = Lines(24, 40);
  EXPECT_THAT(lines, Contains("│ 1.18 km  80.6 kcal  155 bpm          │"));
  EXPECT_THAT(lines, Contains("│ 6:01 /km                             │"));
  EXPECT_THAT(lines, Contains("│ saved: 14 intervals, 3,204 bytes     │"));
}

TEST_F(Layouts, SayWhatTheIpodIsWaitedForOnceThatTakesLong) {
  snapshot_.doing = "reading artists";
  snapshot_.doing_since = kNow - std::chrono::milliseconds(900);
  EXPECT_THAT(Lines(24, 80), Not(Contains(HasSubstr("Waiting"))));
  snapshot_.doing_since = kNow - std::chrono::milliseconds(3200);
  EXPECT_THAT(Lines(24, 80), Contains(" Waiting for the iPod for 3 s: reading artists"));
}

TEST_F(Layouts, SayWhyNoIpodIsThere) {
  snapshot_ = {};
  snapshot_.trouble = "no iPod answers on /dev/ttyS1; check that it is docked and switched on";
  const std::vector<std::string> lines = Lines(24, 40);
  EXPECT_THAT(lines[0], EndsWith("no iPod"));
  EXPECT_THAT(lines[21], " No iPod answers on /dev/ttyS1; check");
  EXPECT_THAT(lines[22], " that it is docked and switched on");
}

TEST_F(Layouts, ShowTheKeysThatAreOfUseAndTheMostNeededOnesWhereThereIsLittleRoom) {
  EXPECT_EQ(Lines(24, 80).back(),
            " Enter open  ← back  Space play/pause  n next  w workout  ? help  q quit");
  EXPECT_EQ(Lines(24, 40).back(), " Space play/pause  ? help  q quit");
  EXPECT_EQ(Lines(24, 20).back(), " ? help  q quit");
  snapshot_.workout.state = WorkoutSnapshot::State::kRunning;
  snapshot_.workout.recording = std::make_shared<ipodctl::Recording>(Kilometres({At(0)}));
  EXPECT_THAT(Lines(24, 80).back(), HasSubstr("e end it"));
}

TEST_F(Layouts, ShowAllKeysOverTheRestWhenTheyAreAskedFor) {
  help_ = true;
  const std::vector<std::string> lines = Lines(24, 80);
  EXPECT_THAT(lines, Contains(HasSubstr("│ Enter → l  open it; play a track ")));
  EXPECT_THAT(lines, Contains(HasSubstr("│ q          end a workout, and leave ")));
}

TEST_F(Layouts, SayInATinyWindowThatItIsTooSmall) {
  EXPECT_THAT(Lines(1, 30), ElementsAre("Too small. q: quit"));
  EXPECT_THAT(Lines(2, 10), ElementsAre("Too small…", ""));
}

}  // namespace

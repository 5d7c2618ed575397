// SPDX-License-Identifier: MIT
// What keys and clicks do: moves at once, and wishes for the session.
#include "screen/screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ipodctl/screen/libraries.h"
#include "screen/cells.h"
#include "screen/keys.h"

using namespace ipodctl::screen;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class Screens : public testing::Test {
 protected:
  void SetUp() override {
    UseUtf8();
    snapshot_.docked = true;
    snapshot_.library = TracksNamed(9, 9);
  }

  void Press(std::vector<char32_t> keys) {
    for (const char32_t key : keys) screen_.Press(key, snapshot_);
  }
  std::vector<std::string> Lines() {
    return screen_.Draw(snapshot_, 24, 80, std::chrono::microseconds(0)).Lines();
  }

  Snapshot snapshot_;
  std::vector<std::string> wishes_;
  Screen screen_{[this](const Wish& wish) { wishes_.push_back(wish.doing); }};
};

TEST_F(Screens, LeavesToTheSessionWhatConcernsThePlayerAndTheWorkout) {
  Press({U' ', U'n', U'p', U's', U'w', U'e'});
  EXPECT_THAT(wishes_, ElementsAre("playing or pausing", "skipping", "skipping back", "stopping",
                                   "starting a workout", "ending the workout"));
}

TEST_F(Screens, WalksThroughTheLibraryWithoutTheSessionUntilATrackIsOpened) {
  Press({kKeyEnd, kKeyEnter, kKeyDown, kKeyLeft, kKeyRight, kKeyDown});
  EXPECT_THAT(wishes_, IsEmpty());
  EXPECT_THAT(Lines(), Contains(HasSubstr("╭─ Tracks ──────────────────────── 2 of 9 ─╮")));
  Press({kKeyEnter});
  EXPECT_THAT(wishes_, ElementsAre("playing a track"));
}

TEST_F(Screens, ShowsTheKeysUntilTheNextOneWhichDoesNothingElse) {
  Press({U'?'});
  EXPECT_THAT(Lines(), Contains(HasSubstr("╭─ Keys ")));
  Press({U'n'});
  EXPECT_THAT(Lines(), Not(Contains(HasSubstr("╭─ Keys "))));
  EXPECT_THAT(wishes_, IsEmpty());
}

TEST_F(Screens, IsLeftByOneKeyAlone) {
  Press({U'x', U'Q', kKeyEscape});
  EXPECT_FALSE(screen_.left());
  Press({U'?', U'q'});
  EXPECT_TRUE(screen_.left());
}

TEST_F(Screens, PointsAtARecordWithOneClickAndOpensItWithTheNext) {
  Lines();
  screen_.Click(10, 6, snapshot_);
  EXPECT_THAT(Lines(), Contains(HasSubstr(" 9 of 9 ")));
  screen_.Click(10, 6, snapshot_);
  EXPECT_THAT(Lines(), Contains(HasSubstr("╭─ Tracks ")));
}

TEST_F(Screens, TakesClicksOnTheKeysAndOnThePlayer) {
  Lines();
  screen_.Click(23, 76, snapshot_);  // behind the last key
  screen_.Click(4, 60, snapshot_);
  EXPECT_THAT(wishes_, ElementsAre("playing or pausing"));
  screen_.Click(23, 69, snapshot_);
  EXPECT_TRUE(screen_.left());
}

TEST_F(Screens, ScrollsThreeLinesWithTheWheel) {
  screen_.Scroll(true, snapshot_);
  EXPECT_THAT(Lines(), Contains(HasSubstr(" 4 of 9 ")));
  screen_.Scroll(false, snapshot_);
  EXPECT_THAT(Lines(), Contains(HasSubstr(" 1 of 9 ")));
}

TEST_F(Screens, LooksAtThePartOfTheListThatIsShown) {
  snapshot_.library = TracksNamed(1000, 5);
  Press({kKeyEnd, kKeyEnter, kKeyEnd});
  Lines();
  EXPECT_EQ(screen_.view().first, 990U);
  EXPECT_EQ(screen_.view().rows, 10U);
}

}  // namespace

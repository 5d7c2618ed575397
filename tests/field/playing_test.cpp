// SPDX-License-Identifier: MIT
// Selections and controls that an iPod acknowledges and does not carry out.
#include "field/docked.h"

namespace {

using ipodsim::PlayerState;
using ipodsim::Profile;
using test::Docked;

constexpr unsigned char kPlay = 0x0A;
constexpr unsigned char kPause = 0x0B;
constexpr unsigned char kPaused = 2;

ipodsim::Settings WithAPausedSelection() {
  ipodsim::Settings settings = test::SixtySongsWith("no-select");
  EXPECT_TRUE(ipodsim::ApplyHabit("stays-paused", &settings));
  return settings;
}

// SelectDBRecord is refused, the sorted selection behind it accepted. That is all that an exchange
// can tell; what plays is a question of its own.
TEST(PausedSelection, CountsAsDoneAndIsToldByTheStatusUnderEveryConduct) {
  for (const tagIPOD_CONDUCT& conduct :
       {IPOD_CONDUCT_FIELD, IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(WithAPausedSelection(), conduct);
    docked.GoToTracks();
    EXPECT_EQ(docked.session.Select(test::kTracks, 30UL), 1);
    unsigned char state = 9;
    unsigned long length = 0;
    unsigned long position = 0;
    unsigned long index = 99;
    EXPECT_EQ(docked.session.Command_GetPlayStatus(&state, &length, &position), 1);
    EXPECT_EQ(state, kPaused);
    EXPECT_EQ(docked.session.Command_GetCurrentPlayingTrackIndex(&index), 1);
    EXPECT_EQ(index, 0UL);
  }
}

TEST(IpodBelow113, UnderFieldAcknowledgesPlayAndDoesNot) {
  Docked docked(test::SixtySongs(Profile::kClassic), IPOD_CONDUCT_FIELD);
  docked.GoToTracks();
  EXPECT_EQ(docked.session.Command_PlayControl(kPlay), 1);
  EXPECT_EQ(docked.ipod.player().state(), PlayerState::kStopped);
  EXPECT_EQ(docked.session.Select(test::kTracks, 3UL), 1);
  EXPECT_EQ(docked.session.Command_PlayControl(kPause), 1);
  EXPECT_EQ(docked.ipod.player().state(), PlayerState::kPlaying);
}

TEST(IpodBelow113, UnderRobustPlaysAndPauses) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(test::SixtySongs(Profile::kClassic), conduct);
    docked.GoToTracks();
    EXPECT_EQ(docked.session.Command_PlayControl(kPlay), 1);
    EXPECT_EQ(docked.ipod.player().state(), PlayerState::kPlaying);
    EXPECT_EQ(docked.session.Command_PlayControl(kPause), 1);
    EXPECT_EQ(docked.ipod.player().state(), PlayerState::kPaused);
    EXPECT_EQ(docked.session.Command_PlayControl(kPause), 1);
    EXPECT_EQ(docked.ipod.player().state(), PlayerState::kPaused);
  }
}

}  // namespace

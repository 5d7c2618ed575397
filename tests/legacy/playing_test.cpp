// SPDX-License-Identifier: MIT
// The player: its state, the track's times, and pausing.
#include <algorithm>
#include <iterator>
#include <ostream>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kGetPlayStatus = "FF 55 03 04 00 1C DD";
constexpr const char* kPlaying = "FF 55 0C 04 00 1D 00 04 17 0A 00 00 30 39 01 44";
constexpr const char* kPaused = "FF 55 0C 04 00 1D 00 04 17 0A 00 00 30 39 02 43";
constexpr const char* kPurging = "Error reading port, purging rx...\r\n";

class Playing : public LegacyTest {
 protected:
  Playing() { std::fill(std::begin(text_), std::end(text_), L'x'); }

  wchar_t text_[30];
  unsigned char state_ = 7;
  unsigned long length_ = 7;
  unsigned long position_ = 7;
};

TEST_F(Playing, StateIsTheNinthReplyByte) {
  Answer(kGetPlayStatus, kPaused);
  EXPECT_EQ(legacy_.getipodplayerstatenum(&state_), 1);
  EXPECT_EQ(state_, 2);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus));
}

TEST_F(Playing, StateIs255Unanswered) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodplayerstatenum(&state_), 0); }), kSilenceUs);
  EXPECT_EQ(state_, 255);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(kPurging));
}

TEST_F(Playing, StateIs255WhenItCannotBeAskedFor) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.getipodplayerstatenum(&state_), 0); }),
            5 * kMillisecond);
  EXPECT_EQ(state_, 255);
}

TEST_F(Playing, StateIs255AfterAnotherReply) {
  Answer(kGetPlayStatus, "FF 55 07 04 00 1F 00 00 00 01 D5");
  EXPECT_EQ(legacy_.getipodplayerstatenum(&state_), 0);
  EXPECT_EQ(state_, 255);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Playing, StateNeedsNoPlace) {
  Answer(kGetPlayStatus, kPaused);
  EXPECT_EQ(legacy_.getipodplayerstatenum(nullptr), 1);
}

TEST_F(Playing, StateOfAReplyThatEndsBeforeItIsItsZero) {
  Answer(kGetPlayStatus, "FF 55 06 04 00 1D 00 04 17 BE");
  EXPECT_EQ(legacy_.getipodplayerstatenum(&state_), 1);
  EXPECT_EQ(state_, 0);
}

// A state, the reply that tells it, its text, and whether it counts as playing.
struct State {
  const char* name;
  const char* reply;
  const wchar_t* text;
  int is_playing;
};
void PrintTo(const State& state, std::ostream* out) { *out << state.name; }

class PlayerStates : public Playing, public ::testing::WithParamInterface<State> {};

TEST_P(PlayerStates, HaveTheirText) {
  Answer(kGetPlayStatus, GetParam().reply);
  EXPECT_EQ(legacy_.getipodplayerstate(text_), 1);
  EXPECT_STREQ(text_, GetParam().text);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus));
}

TEST_P(PlayerStates, TellWhetherItPlays) {
  Answer(kGetPlayStatus, GetParam().reply);
  EXPECT_EQ(legacy_.isplaying(), GetParam().is_playing);
}

INSTANTIATE_TEST_SUITE_P(
    Legacy, PlayerStates,
    ::testing::Values(
        State{"Stopped", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 00 D3", L"Stopped", 0},
        State{"Playing", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 01 D2", L"Playing", 1},
        State{"Paused", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 02 D1", L"Paused", 0},
        State{"FastForward", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 03 D0", L"Fast Forward", 0},
        State{"FastRewind", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 04 CF", L"Fast Rewind", 0},
        State{"EndingFast", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 05 CE",
              L"Ending Fast Forward or Rewind", 0},
        State{"Other6", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 06 CD", L"Unknown", 0},
        State{"Other255", "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 FF D4", L"Unknown", 0}),
    test::RowName());

TEST_F(Playing, StateTextIsUnknownUnanswered) {
  EXPECT_EQ(legacy_.getipodplayerstate(text_), 0);
  EXPECT_STREQ(text_, L"Unknown");
}

TEST_F(Playing, StateTextNeedsNoPlace) {
  Answer(kGetPlayStatus, kPlaying);
  EXPECT_EQ(legacy_.getipodplayerstate(nullptr), 1);
}

TEST_F(Playing, NothingPlaysUnanswered) { EXPECT_EQ(legacy_.isplaying(), 0); }

TEST_F(Playing, ExtendedStateTellsLengthPositionAndState) {
  Answer(kGetPlayStatus, "FF 55 0C 04 00 1D 00 04 17 0A FE DC BA 98 03 7F");
  EXPECT_EQ(legacy_.GetIpodPlayerStateNumEx(&state_, &length_, &position_), 1);
  EXPECT_EQ(length_, 0x0004170AU);
  EXPECT_EQ(position_, 0xFEDCBA98U);
  EXPECT_EQ(state_, 3);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus));
}

TEST_F(Playing, ExtendedStateTakesAnyFrameForTheReply) {
  Answer(kGetPlayStatus, "FF 55 0C 09 84 00 01 02 03 04 05 06 07 08 09 3A");
  EXPECT_EQ(legacy_.GetIpodPlayerStateNumEx(&state_, &length_, &position_), 1);
  EXPECT_EQ(length_, 0x01020304U);
  EXPECT_EQ(position_, 0x05060708U);
  EXPECT_EQ(state_, 9);
}

TEST_F(Playing, ExtendedStateIsUnknownUnanswered) {
  EXPECT_EQ(Elapsed([this] {
              EXPECT_EQ(legacy_.GetIpodPlayerStateNumEx(&state_, &length_, &position_), 0);
            }),
            kSilenceUs);
  EXPECT_EQ(length_, 0U);
  EXPECT_EQ(position_, 0U);
  EXPECT_EQ(state_, 255);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre(kPurging));
}

TEST_F(Playing, ExtendedStateIsUnknownAfterABadChecksum) {
  Answer(kGetPlayStatus, "FF 55 0C 04 00 1D 00 04 17 0A 00 00 30 39 01 00");
  EXPECT_EQ(legacy_.GetIpodPlayerStateNumEx(&state_, &length_, &position_), 0);
  EXPECT_EQ(length_, 0U);
  EXPECT_EQ(position_, 0U);
  EXPECT_EQ(state_, 255);
}

TEST_F(Playing, ExtendedStateIsUnknownWhenItCannotBeAskedFor) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(legacy_.GetIpodPlayerStateNumEx(&state_, &length_, &position_), 0);
  EXPECT_EQ(length_, 0U);
  EXPECT_EQ(position_, 0U);
  EXPECT_EQ(state_, 255);
}

TEST_F(Playing, ExtendedStateNeedsNoPlaces) {
  Answer(kGetPlayStatus, kPlaying);
  EXPECT_EQ(legacy_.GetIpodPlayerStateNumEx(nullptr, nullptr, nullptr), 1);
}

TEST_F(Playing, TrackTimesShowTheOutgoingPayload) {
  Answer(kGetPlayStatus, kPlaying);
  NumberPayload();  // 00 01 02 03
  EXPECT_STREQ(legacy_.getipodtracklength(), L"66051");
  EXPECT_STREQ(legacy_.getipodtrackposition(), L"66051");
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus, kGetPlayStatus));
}

TEST_F(Playing, TrackTimesShowWhatTheCommandBeforeLeft) {
  Answer(kGetPlayStatus, kPlaying);
  legacy_.command_getindexedplayingtracktitle(258);
  EXPECT_STREQ(legacy_.getipodtracklength(), L"258");
  EXPECT_STREQ(legacy_.getipodtrackposition(), L"258");
}

TEST_F(Playing, TrackTimesStartFromAClearedByteAndStayInTheirText) {
  Answer(kGetPlayStatus, kPlaying);
  std::fill_n(ipodPeer::Payload(legacy_), 256, std::uint8_t{0xFF});
  EXPECT_STREQ(legacy_.getipodtracklength(), L"16777215");
  EXPECT_STREQ(legacy_.getipodtrackposition(), L"16777215");
}

TEST_F(Playing, TrackTimesAreTheObjectsOwnTexts) {
  EXPECT_EQ(legacy_.getipodtracklength(), ipodPeer::TrackLengthText(legacy_));
  EXPECT_EQ(legacy_.getipodtrackposition(), ipodPeer::TrackPositionText(legacy_));
}

TEST_F(Playing, TrackTimesAreUnknownUnanswered) {
  EXPECT_EQ(Elapsed([this] { EXPECT_STREQ(legacy_.getipodtracklength(), L"Unknown"); }),
            kSilenceUs);
  EXPECT_EQ(Elapsed([this] { EXPECT_STREQ(legacy_.getipodtrackposition(), L"Unknown"); }),
            kSilenceUs);
}

TEST_F(Playing, TrackTimesAreUnknownWhenTheyCannotBeAskedFor) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_STREQ(legacy_.getipodtracklength(), L"Unknown");
  EXPECT_STREQ(legacy_.getipodtrackposition(), L"Unknown");
}

TEST_F(Playing, TrackTimesBecomeUnknownAgain) {
  Answer(kGetPlayStatus, kPlaying);
  EXPECT_STREQ(legacy_.getipodtracklength(), L"0");
  EXPECT_STREQ(legacy_.getipodtrackposition(), L"0");
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_STREQ(legacy_.getipodtracklength(), L"Unknown");
  EXPECT_STREQ(legacy_.getipodtrackposition(), L"Unknown");
}

constexpr const char* kPlayPause = "FF 55 04 04 00 29 01 CE";

TEST_F(Playing, PausesWhatPlays) {
  Answer(kGetPlayStatus, kPlaying);
  Answer(kPlayPause, "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(legacy_.pausestop(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus, kPlayPause));
}

TEST_F(Playing, RefusedPauseFails) {
  Answer(kGetPlayStatus, kPlaying);
  Answer(kPlayPause, "FF 55 06 04 00 01 04 00 29 C8");
  EXPECT_EQ(legacy_.pausestop(), 0);
}

TEST_F(Playing, UnansweredPauseSucceeds) {
  Answer(kGetPlayStatus, kPlaying);
  EXPECT_EQ(legacy_.pausestop(), 1);
}

TEST_F(Playing, PauseThatCannotBeSentFails) {
  Answer(kGetPlayStatus, kPlaying);
  world_.FailFrom("WriteFile", 3, 31);
  EXPECT_EQ(legacy_.pausestop(), 0);
}

TEST_F(Playing, NothingIsPausedWithoutAState) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.pausestop(), 0); }), kSilenceUs);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus));
}

TEST_F(Playing, WhatIsPausedIsNotPausedAgain) {
  Answer(kGetPlayStatus, kPaused);
  EXPECT_EQ(legacy_.pausestop(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetPlayStatus));
}

TEST_P(PlayerStates, ArePausedOnlyWhenPlaying) {
  Answer(kGetPlayStatus, GetParam().reply);
  Answer(kPlayPause, "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(legacy_.pausestop(), 1);
  EXPECT_EQ(DrainSent().size(), GetParam().is_playing ? 2U : 1U);
}

}  // namespace

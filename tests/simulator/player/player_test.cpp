// SPDX-License-Identifier: MIT
// Proves the player on its own: repeat, shuffle, and the end of things.

#include "simulator/player/player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ipodsim {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class PlayerTest : public testing::Test {
 protected:
  PlayerTest() : player(&library, 1) {}

  static Library Ten() {
    Library library;
    for (int i = 0; i < 10; ++i) {
      Track track;
      track.title = std::string(1, static_cast<char>('A' + i));
      track.album = i % 2 == 0 ? "even" : "odd";
      track.length_ms = 1000;
      library.tracks.push_back(track);
    }
    return library;
  }

  std::string Order() const {
    std::string order;
    for (std::uint32_t i = 0; i < player.size(); ++i) order += player.at(i)->title;
    return order;
  }

  const Library library = Ten();
  Player player;
};

TEST_F(PlayerTest, RepeatAllStartsOver) {
  player.SetRepeat(Repeat::kAll);
  player.Start({0, 1, 2}, 0, 0);
  player.Advance(3500 * kMillisecond);
  EXPECT_EQ(player.index(), 0u);
  EXPECT_EQ(player.position_ms(3500 * kMillisecond), 500);
}

TEST_F(PlayerTest, RepeatOneStays) {
  player.SetRepeat(Repeat::kOne);
  player.Start({0, 1, 2}, 1, 0);
  player.Advance(7250 * kMillisecond);
  EXPECT_EQ(player.index(), 1u);
  EXPECT_EQ(player.position_ms(7250 * kMillisecond), 250);
}

TEST_F(PlayerTest, WithoutRepeatTheListEnds) {
  player.Start({0, 1, 2}, 1, 0);
  player.Advance(10 * kSecond);
  EXPECT_EQ(player.state(), PlayerState::kStopped);
  EXPECT_EQ(player.index(), Player::kNothing);
  EXPECT_EQ(player.current(), nullptr);
}

TEST_F(PlayerTest, RepeatAllWrapsSkipsToo) {
  player.SetRepeat(Repeat::kAll);
  player.Start({0, 1, 2}, 2, 0);
  player.Control(PlayControl::kNextTrack, 0);
  EXPECT_EQ(player.index(), 0u);
  player.Control(PlayControl::kPreviousTrack, 0);
  EXPECT_EQ(player.index(), 2u);
}

TEST_F(PlayerTest, ShufflePutsTheCurrentTrackFirstAndKeepsAll) {
  player.Start({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 4, 0);
  player.SetShuffle(Shuffle::kTracks, 0);
  EXPECT_EQ(player.index(), 0u);
  const std::string order = Order();
  EXPECT_EQ(order[0], 'E');
  EXPECT_NE(order, "EABCDFGHIJ");
  EXPECT_THAT(order, UnorderedElementsAre('A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J'));
}

TEST_F(PlayerTest, ShuffleOffFindsTheTrackInItsOldPlace) {
  player.Start({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 4, 0);
  player.SetShuffle(Shuffle::kTracks, 0);
  player.SetShuffle(Shuffle::kOff, 0);
  EXPECT_EQ(Order(), "ABCDEFGHIJ");
  EXPECT_EQ(player.index(), 4u);
}

TEST_F(PlayerTest, AlbumShuffleKeepsAlbumsTogether) {
  player.Start({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 3, 0);
  player.SetShuffle(Shuffle::kAlbums, 0);
  EXPECT_EQ(Order(), "BDFHJACEGI");
  EXPECT_EQ(player.index(), 1u);
}

TEST_F(PlayerTest, SameSeedShufflesTheSame) {
  Player other(&library, 1);
  for (Player* each : {&player, &other}) {
    each->Start({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 0, 0);
    each->SetShuffle(Shuffle::kTracks, 0);
  }
  for (std::uint32_t i = 0; i < 10; ++i) EXPECT_EQ(player.at(i)->title, other.at(i)->title);
}

TEST_F(PlayerTest, ShuffleHoldsForTheNextList) {
  player.SetShuffle(Shuffle::kTracks, 0);
  player.Start({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 7, 0);
  EXPECT_EQ(player.index(), 0u);
  EXPECT_EQ(player.current()->title, "H");
}

TEST_F(PlayerTest, EventsSayWhatHappenedWhen) {
  player.Start({0, 1}, 0, 0);
  player.Advance(2 * kSecond);
  std::vector<std::pair<PlayerEvent::Kind, Microseconds>> told;
  for (const PlayerEvent& event : player.PopEvents()) told.push_back({event.kind, event.at});
  using Kind = PlayerEvent::Kind;
  EXPECT_THAT(told, ElementsAre(std::pair(Kind::kTrackChanged, Microseconds{0}),
                                std::pair(Kind::kPlaying, Microseconds{0}),
                                std::pair(Kind::kTrackChanged, kSecond),
                                std::pair(Kind::kStopped, 2 * kSecond)));
  EXPECT_TRUE(player.PopEvents().empty());
}

TEST_F(PlayerTest, FastForwardGoesOnIntoTheNextTrack) {
  player.Start({0, 1, 2}, 0, 0);
  player.Control(PlayControl::kStartFastForward, 0);
  player.Advance(130 * kMillisecond);
  EXPECT_EQ(player.index(), 1u);
  EXPECT_EQ(player.position_ms(130 * kMillisecond), 40);
}

TEST_F(PlayerTest, TrackWithoutLengthDoesNotHangTheClock) {
  Library empty;
  empty.tracks.resize(2);
  Player short_player(&empty, 1);
  short_player.SetRepeat(Repeat::kAll);
  short_player.Start({0, 1}, 0, 0);
  short_player.Advance(kSecond);
  EXPECT_EQ(short_player.state(), PlayerState::kPlaying);
}

}  // namespace
}  // namespace ipodsim

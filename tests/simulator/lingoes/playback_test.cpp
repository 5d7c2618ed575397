// SPDX-License-Identifier: MIT
// Proves playing, its status and its notifications, byte by byte and moment by moment.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kStatus[] = "FF 55 03 04 00 1C DD";
constexpr char kAck29[] = "FF 55 06 04 00 01 00 00 29 CC";

// Track list by name: Amazon 20 s, Bay 5 s, Delta 10 s, Peak 30 s, zero 40 s, Ete 50 s.
class PlaybackTest : public testing::Test {
 protected:
  PlaybackTest() { dock.Identify(); }

  // Plays the given place of the track list; the clock stands 10 ms into it afterwards.
  void PlayBay() {
    EXPECT_EQ(dock.Exchange("FF 55 08 04 00 17 05 00 00 00 01 D7"),
              "FF 55 06 04 00 01 00 00 17 DE");
  }

  IpodUnderTest dock;
};

TEST_F(PlaybackTest, NothingIsLoadedAtFirst) {
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 00 D3");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 1E DB"), "FF 55 07 04 00 1F FF FF FF FF DA");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 35 C4"), "FF 55 07 04 00 36 00 00 00 00 BF");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 20 FF FF FF FF D9"), "FF 55 06 04 00 01 03 00 20 D2");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(PlaybackTest, SelectingATrackPlaysItAndItsList) {
  PlayBay();
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 13 88 00 00 00 0A 01 2D");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 1E DB"), "FF 55 07 04 00 1F 00 00 00 01 D5");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 35 C4"), "FF 55 07 04 00 36 00 00 00 06 B9");
}

TEST_F(PlaybackTest, PlayCurrentSelectionDoesTheSame) {
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 01 DA");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 28 00 00 00 01 CC"), "FF 55 06 04 00 01 00 00 28 CD");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 20 00 00 00 01 D4"), "FF 55 07 04 00 21 42 61 79 00 B8");
}

TEST_F(PlaybackTest, PositionMovesWithTheClockIntoTheNextTrack) {
  PlayBay();
  dock.now += 4980 * kMillisecond;
  dock.Write(kStatus);  // 4,990 ms in
  EXPECT_EQ(dock.Read(), "FF 55 0C 04 00 1D 00 00 13 88 00 00 13 7E 01 A6");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 1E DB"), "FF 55 07 04 00 1F 00 00 00 02 D4");
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 27 10 00 00 00 0A 01 91");
}

TEST_F(PlaybackTest, EndOfTheListStops) {
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 05 D3");
  dock.Read(50 * kSecond);
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 00 D3");
}

TEST_F(PlaybackTest, PauseHoldsThePosition) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 0B C4"), kAck29);
  dock.Read(kSecond);
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 13 88 00 00 00 0A 02 2C");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 0A C5"), kAck29);
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 13 88 00 00 00 14 01 23");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 01 CE"), kAck29);
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPaused);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 01 CE"), kAck29);
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
}

TEST_F(PlaybackTest, NoTrackIsCurrentAfterStop) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 02 CD"), kAck29);
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 00 D3");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 1E DB"), "FF 55 07 04 00 1F FF FF FF FF DA");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 35 C4"), "FF 55 07 04 00 36 00 00 00 00 BF");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(PlaybackTest, PlayAfterStopStartsTheSameListAgain) {
  PlayBay();
  dock.Exchange("FF 55 04 04 00 29 02 CD");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 0A C5"), kAck29);
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 1E DB"), "FF 55 07 04 00 1F 00 00 00 00 D6");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 35 C4"), "FF 55 07 04 00 36 00 00 00 06 B9");
}

TEST_F(PlaybackTest, StopWithNothingLoadedIsFine) {
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 02 CD"), kAck29);
}

TEST_F(PlaybackTest, SkipWithNothingLoadedFails) {
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 03 CC"), "FF 55 06 04 00 01 01 00 29 CB");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(PlaybackTest, PlayWithNothingLoadedPlaysAllMusic) {
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 0A C5"), kAck29);
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 35 C4"), "FF 55 07 04 00 36 00 00 00 06 B9");
}

TEST_F(PlaybackTest, NextAndPreviousMove) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 03 CC"), kAck29);
  EXPECT_EQ(dock.ipod.player().index(), 2u);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 08 C7"), kAck29);
  EXPECT_EQ(dock.ipod.player().index(), 3u);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 04 CB"), kAck29);
  EXPECT_EQ(dock.ipod.player().index(), 2u);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 09 C6"), kAck29);
  EXPECT_EQ(dock.ipod.player().index(), 1u);
}

TEST_F(PlaybackTest, PreviousLateInATrackReturnsToItsStart) {
  PlayBay();
  dock.Read(3 * kSecond);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 04 CB"), kAck29);
  EXPECT_EQ(dock.ipod.player().index(), 1u);
  EXPECT_EQ(dock.ipod.player().position_ms(dock.now), 10);
}

TEST_F(PlaybackTest, FastForwardRunsAhead) {
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 05 CA"),
            kAck29);  // 10 ms in; 8 times as fast from here
  EXPECT_EQ(dock.Exchange(kStatus), "FF 55 0C 04 00 1D 00 00 4E 20 00 00 00 5A 03 08");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 07 C8"), kAck29);
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
}

TEST_F(PlaybackTest, RewindEndsAtTheStart) {
  PlayBay();
  dock.Read(kSecond);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 06 C9"), kAck29);
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kFastRewind);
  dock.Read(kSecond);
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.ipod.player().index(), 1u);
}

TEST_F(PlaybackTest, TextsOfTheCurrentTrack) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 20 00 00 00 01 D4"), "FF 55 07 04 00 21 42 61 79 00 B8");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 22 00 00 00 01 D2"), "FF 55 07 04 00 23 42 6F 62 00 BF");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 24 00 00 00 01 D0"), "FF 55 07 04 00 25 5A 65 64 00 AD");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 20 00 00 00 06 CF"), "FF 55 06 04 00 01 03 00 20 D2");
  EXPECT_EQ(dock.Mistakes(), "index out of range");
}

TEST_F(PlaybackTest, InformationOfTheCurrentTrack) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 00 00 00 00 01 00 00 E5"),
            "FF 55 0E 04 00 0D 00 00 00 00 00 00 00 13 88 00 00 46");
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 05 00 00 00 01 00 00 E0"),
            "FF 55 09 04 00 0D 05 52 6F 63 6B 00 52");
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 06 00 00 00 01 00 00 DF"),
            "FF 55 08 04 00 0D 06 44 65 65 00 D3");
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 04 00 00 00 02 00 00 E0"),
            "FF 55 0D 04 00 0D 04 00 00 00 6C 61 20 6C 61 00 24");
}

TEST_F(PlaybackTest, DisplayRemoteTellsTheSameTracks) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 00 00 00 00 01 00 00 E1"),
            "FF 55 0D 03 13 00 00 00 00 00 00 00 13 88 00 00 42");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 02 00 00 00 01 00 00 DF"),
            "FF 55 07 03 13 02 42 6F 62 00 CE");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 03 00 00 00 01 00 00 DE"),
            "FF 55 07 03 13 03 5A 65 64 00 BD");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 05 00 00 00 01 00 00 DC"),
            "FF 55 07 03 13 05 42 61 79 00 C2");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 05 00 00 00 06 00 00 D7"), "FF 55 04 03 00 03 12 E4");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 09 00 00 00 01 00 00 D8"), "FF 55 04 03 00 03 12 E4");
  EXPECT_EQ(dock.Mistakes(), "index out of range, bad parameter");
}

TEST_F(PlaybackTest, VideoSetsTheTopBitOfTheFifthByte) {
  dock.Exchange("FF 55 04 04 00 3B 02 BB");
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 00 00 00 00 00 00 00 E2"),
            "FF 55 0D 03 13 00 00 00 00 80 00 01 5F 90 00 00 6D");
}

TEST_F(PlaybackTest, ShuffleAndRepeatAreKept) {
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 2C CD"), "FF 55 04 04 00 2D 00 CB");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 2E 01 01 C7"), "FF 55 06 04 00 01 00 00 2E C7");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 2C CD"), "FF 55 04 04 00 2D 01 CA");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 31 02 00 C4"), "FF 55 06 04 00 01 00 00 31 C4");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 2F CA"), "FF 55 04 04 00 30 02 C6");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 2E 03 01 C5"), "FF 55 06 04 00 01 03 00 2E C4");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 31 03 01 C2"), "FF 55 06 04 00 01 03 00 31 C1");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 0C C3"), "FF 55 06 04 00 01 03 00 29 C9");
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter, bad parameter");
}

TEST_F(PlaybackTest, ButtonsPlayAndPauseWithoutAnAnswer) {
  EXPECT_EQ(dock.Exchange("FF 55 03 02 00 01 FA"), "");
  EXPECT_EQ(dock.Exchange("FF 55 03 02 00 00 FB"), "");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
  dock.Exchange("FF 55 03 02 00 08 F3");
  dock.Exchange("FF 55 03 02 00 00 FB");
  EXPECT_EQ(dock.ipod.player().index(), 1u);
  dock.Exchange("FF 55 04 02 00 00 02 F8");  // pause: bit 9, in the second byte
  dock.Exchange("FF 55 03 02 00 00 FB");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPaused);
  dock.Exchange("FF 55 05 02 00 00 00 01 F8");  // repeat: bit 16
  EXPECT_EQ(dock.ipod.player().repeat(), Repeat::kOne);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(PlaybackTest, HeldFastForwardButtonEndsWhenReleased) {
  PlayBay();
  dock.Exchange("FF 55 05 02 00 00 00 10 E9");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kFastForward);
  dock.Exchange("FF 55 03 02 00 00 FB");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
}

TEST_F(PlaybackTest, HeldButtonCountsOnce) {
  dock.Exchange("FF 55 03 02 00 01 FA");
  dock.Exchange("FF 55 03 02 00 01 FA");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPlaying);
}

TEST_F(PlaybackTest, NotificationsAreSentAsTheMaskAsks) {
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 26 00 00 00 1F B0"), "FF 55 06 04 00 01 00 00 26 CF");
  EXPECT_EQ(dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8"),
            "FF 55 08 04 00 27 01 00 00 00 00 CC FF 55 05 04 00 27 06 0A C0 FF 55 06 04 00 01 00 "
            "00 17 DE");
  EXPECT_EQ(dock.Read(490 * kMillisecond),
            "FF 55 08 04 00 27 04 00 00 01 F4 D4 FF 55 08 04 00 27 07 00 00 00 00 C6");
  EXPECT_EQ(dock.Read(500 * kMillisecond),
            "FF 55 08 04 00 27 04 00 00 03 E8 DE FF 55 08 04 00 27 07 00 00 00 01 C5");
  EXPECT_EQ(dock.Read(500 * kMillisecond), "FF 55 08 04 00 27 04 00 00 05 DC E8");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 0B C4"),
            std::string("FF 55 05 04 00 27 06 0B BF ") + kAck29);
  EXPECT_EQ(dock.Read(5 * kSecond), "");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 29 02 CD"),
            std::string("FF 55 04 04 00 27 00 D1 FF 55 05 04 00 27 06 02 C8 ") + kAck29);
}

TEST_F(PlaybackTest, EachMaskBitAsksForItsTypeOnly) {
  struct Row {
    const char* request;
    const char* started;
    const char* after_half_a_second;
    const char* stopped;
  };
  const Row rows[] = {
      {"FF 55 07 04 00 26 00 00 00 01 CE", "", "", "FF 55 04 04 00 27 00 D1 "},
      {"FF 55 07 04 00 26 00 00 00 02 CD", "FF 55 05 04 00 27 06 0A C0 ", "",
       "FF 55 05 04 00 27 06 02 C8 "},
      {"FF 55 07 04 00 26 00 00 00 04 CB", "FF 55 08 04 00 27 01 00 00 00 01 CB ", "", ""},
      {"FF 55 07 04 00 26 00 00 00 08 C7", "", "FF 55 08 04 00 27 04 00 00 01 F4 D4", ""},
      {"FF 55 07 04 00 26 00 00 00 10 BF", "", "FF 55 08 04 00 27 07 00 00 00 00 C6", ""},
      {"FF 55 07 04 00 26 00 00 00 00 CF", "", "", ""},
  };
  for (const Row& row : rows) {
    IpodUnderTest one;
    one.Identify();
    one.Exchange(row.request);
    EXPECT_EQ(one.Exchange("FF 55 08 04 00 17 05 00 00 00 01 D7"),
              row.started + std::string("FF 55 06 04 00 01 00 00 17 DE"));
    EXPECT_EQ(one.Read(490 * kMillisecond), row.after_half_a_second) << row.request;
    EXPECT_EQ(one.Exchange("FF 55 04 04 00 29 02 CD"), row.stopped + std::string(kAck29))
        << row.request;
  }
}

TEST_F(PlaybackTest, OneByteFormSwitchesTheBasicOnes) {
  dock.Exchange("FF 55 04 04 00 26 01 D1");
  EXPECT_EQ(dock.Exchange("FF 55 08 04 00 17 05 00 00 00 01 D7"),
            "FF 55 08 04 00 27 01 00 00 00 01 CB FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(dock.Read(490 * kMillisecond), "FF 55 08 04 00 27 04 00 00 01 F4 D4");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 26 00 D2"), "FF 55 06 04 00 01 00 00 26 CF");
  EXPECT_EQ(dock.Read(5 * kSecond), "");
}

TEST_F(PlaybackTest, OldIpodRefusesTheWideMask) {
  IpodUnderTest old(QuietSettings(Profile::kOld));
  old.Identify();
  EXPECT_EQ(old.Exchange("FF 55 07 04 00 26 00 00 00 1F B0"), "FF 55 06 04 00 01 03 00 26 CC");
  EXPECT_EQ(old.Exchange("FF 55 04 04 00 26 01 D1"), "FF 55 06 04 00 01 00 00 26 CF");
}

TEST_F(PlaybackTest, MaskThatNoIpodKnowsIsNamedAndRefused) {
  dock.Exchange("FF 55 07 04 00 26 00 00 00 04 CB");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 26 00 00 00 20 AF"), "FF 55 06 04 00 01 03 00 26 CC");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 26 02 D0"), "FF 55 06 04 00 01 03 00 26 CC");
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter");
  EXPECT_EQ(dock.ipod.notification_mask(), 4U);
}

TEST_F(PlaybackTest, SecondByteOfShuffleRepeatAndSpeedIsCheckedToo) {
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 2E 01 02 C6"), "FF 55 06 04 00 01 03 00 2E C4");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 31 01 FF C6"), "FF 55 06 04 00 01 03 00 31 C1");
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 0B 01 02 E9"), "FF 55 06 04 00 01 03 00 0B E7");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 0B 02 EB"), "FF 55 06 04 00 01 03 00 0B E7");
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter, bad parameter, bad parameter");
  EXPECT_EQ(dock.ipod.player().shuffle(), Shuffle::kOff);
  EXPECT_EQ(dock.ipod.player().repeat(), Repeat::kOff);
}

TEST_F(PlaybackTest, ChapterThatATrackDoesNotHaveIsNamedInBothRemoteLingoes) {
  PlayBay();
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 00 00 00 00 01 03 E7 FB"),
            "FF 55 06 04 00 01 03 00 0C E6");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 00 00 00 00 01 03 E7 F7"), "FF 55 04 03 00 03 12 E4");
  EXPECT_EQ(dock.Mistakes(), "index out of range, index out of range");
}

TEST_F(PlaybackTest, NotificationsCarryTheIpodsOwnIdentifiers) {
  IpodUnderTest tokens;
  tokens.Identify();
  tokens.IdentifyByTokens();
  tokens.Exchange("FF 55 09 04 00 26 00 03 00 00 00 04 C6");
  EXPECT_EQ(tokens.Exchange("FF 55 0A 04 00 17 00 04 05 00 00 00 01 D1"),
            "FF 55 0A 04 00 27 00 01 01 00 00 00 01 C8 FF 55 08 04 00 01 00 04 00 00 17 D8");
  EXPECT_EQ(tokens.Read(6 * kSecond), "FF 55 0A 04 00 27 00 02 01 00 00 00 02 C6");
}

TEST_F(PlaybackTest, NextEventTellsWhenTheNextNotificationIsDue) {
  dock.Exchange("FF 55 07 04 00 26 00 00 00 08 C7");
  const Microseconds started = dock.now;
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  EXPECT_EQ(dock.ipod.NextEvent(), started + 500 * kMillisecond);
  EXPECT_EQ(ToHex(dock.ipod.Transmit(started + 500 * kMillisecond - 1)), "");
  EXPECT_EQ(ToHex(dock.ipod.Transmit(started + 500 * kMillisecond)),
            "FF 55 08 04 00 27 04 00 00 01 F4 D4");
}

TEST_F(PlaybackTest, QuietIpodHasNoNextEvent) {
  PlayBay();
  EXPECT_EQ(dock.ipod.NextEvent(), std::nullopt);
}

TEST_F(PlaybackTest, LateLookTellsEveryNotificationInOrder) {
  dock.Exchange("FF 55 07 04 00 26 00 00 00 0C C3");
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 01 D7");  // Bay, 5 s
  const std::string told = dock.Read(5500 * kMillisecond);
  EXPECT_NE(told.find("FF 55 08 04 00 27 04 00 00 11 94 24 FF 55 08 04 00 27 01 00 00 00 02 CA"),
            std::string::npos);
}

}  // namespace
}  // namespace ipodsim

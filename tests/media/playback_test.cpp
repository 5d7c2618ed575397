// SPDX-License-Identifier: MIT
// Controlling playback and asking what is playing: what goes out for each operation and what is
// made of the answer. The scripted iPod answers each literal frame with a literal frame.
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Playback : public SessionTest {};

// ---- Play control -------------------------------------------------------------------------------

TEST_F(Playback, PlayControlSucceedsOnStatusZero) {
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(session_.Command_PlayControl(2), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 29 02 CD"));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Playback, RefusedPlayControlIsLoggedAndFails) {
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 0B 00 29 C1");
  EXPECT_EQ(session_.Command_PlayControl(2), 0);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodComm::Command_PlayControl: Failed to control! Ack = 0x0B"));
}

TEST_F(Playback, UnansweredPlayControlFailsWithoutALog) {
  EXPECT_EQ(session_.Command_PlayControl(2), 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

// ---- Buttons ------------------------------------------------------------------------------------

struct Buttons {
  unsigned long mask;
  const char* frame;
};

class SimplePlayControl : public SessionTest, public ::testing::WithParamInterface<Buttons> {};

TEST_P(SimplePlayControl, SendsTheBytesUpToTheFirstThatIsSet) {
  tagIPOD_COMM_ERROR result = IPOD_COMM_RETRIES_EXHAUSTED;
  const std::int64_t elapsed_us =
      Elapsed([&] { result = session_.Command_SimplePlayControl(GetParam().mask); });
  EXPECT_EQ(result, IPOD_COMM_OK);
  EXPECT_GE(elapsed_us, 20 * test::kMillisecond);
  EXPECT_LE(elapsed_us, 22 * test::kMillisecond);  // the read thread may have the port first
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().frame));
}

INSTANTIATE_TEST_SUITE_P(
    Masks, SimplePlayControl,
    ::testing::Values(Buttons{0x00000000, "FF 55 03 02 00 00 FB"},  // released
                      Buttons{0x00000001, "FF 55 03 02 00 01 FA"},
                      Buttons{0x00000100, "FF 55 04 02 00 00 01 F9"},
                      Buttons{0x00010000, "FF 55 05 02 00 00 00 01 F8"},
                      Buttons{0x01000000, "FF 55 06 02 00 00 00 00 01 F7"},
                      Buttons{0x00010001, "FF 55 03 02 00 01 FA"},  // the higher one is left out
                      Buttons{0x00030200, "FF 55 04 02 00 00 02 F8"}));

TEST_F(Playback, ButtonsReturnTheMachinerysErrorWhenThePortIsClosed) {
  session_.Close();
  EXPECT_EQ(session_.Command_SimplePlayControl(1), IPOD_COMM_RETRIES_EXHAUSTED);
}

// ---- Status -------------------------------------------------------------------------------------

TEST_F(Playback, PlayStatusIsReadBigEndian) {
  Answer("FF 55 03 04 00 1C DD", "FF 55 0C 04 00 1D 00 03 A9 80 00 00 13 88 01 0B");
  unsigned char state = 0;
  unsigned long length = 0;
  unsigned long position = 0;
  EXPECT_EQ(session_.Command_GetPlayStatus(&state, &length, &position), 1);
  EXPECT_EQ(state, 1);
  EXPECT_EQ(length, 240000U);
  EXPECT_EQ(position, 5000U);
}

TEST_F(Playback, FailedPlayStatusLeavesTheOutputsUntouched) {
  unsigned char state = 7;
  unsigned long length = 8;
  unsigned long position = 9;
  EXPECT_EQ(session_.Command_GetPlayStatus(&state, &length, &position), 0);
  EXPECT_EQ(state, 7);
  EXPECT_EQ(length, 8U);
  EXPECT_EQ(position, 9U);
}

TEST_F(Playback, TrackIndexIsReadBigEndian) {
  Answer("FF 55 03 04 00 1E DB", "FF 55 07 04 00 1F 00 00 01 02 D3");
  unsigned long index = 0;
  EXPECT_EQ(session_.Command_GetCurrentPlayingTrackIndex(&index), 1);
  EXPECT_EQ(index, 0x102U);
}

TEST_F(Playback, FailedTrackIndexLeavesTheOutputUntouched) {
  unsigned long index = 7;
  EXPECT_EQ(session_.Command_GetCurrentPlayingTrackIndex(&index), 0);
  EXPECT_EQ(index, 7U);
}

TEST_F(Playback, TrackTimeIsTruncatedToSeconds) {
  CIpodCommPeer::Identity(session_).database_track_info = 1;
  Answer("FF 55 0C 04 00 40 00 00 00 11 00 00 00 01 40 5E",
         "FF 55 0C 04 00 41 00 00 00 00 00 00 00 07 CF D9");
  unsigned long seconds = 0;
  EXPECT_EQ(session_.Command_RetrieveDBTrackTime(0x11, &seconds), 1);
  EXPECT_EQ(seconds, 1U);
}

TEST_F(Playback, TrackTimeIsNotAskedOfAnIpodThatCannotTell) {
  unsigned long seconds = 7;
  EXPECT_EQ(session_.Command_RetrieveDBTrackTime(0x11, &seconds), 0);
  EXPECT_EQ(seconds, 7U);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Playback, FailedTrackTimeLeavesTheOutputUntouched) {
  CIpodCommPeer::Identity(session_).database_track_info = 1;
  unsigned long seconds = 7;
  EXPECT_EQ(session_.Command_RetrieveDBTrackTime(0x11, &seconds), 0);
  EXPECT_EQ(seconds, 7U);
}

// ---- Notifications ------------------------------------------------------------------------------

TEST_F(Playback, NotificationMaskGoesOutAsFourBytes) {
  Answer("FF 55 07 04 00 26 00 00 00 0D C2", "FF 55 06 04 00 01 00 00 26 CF");
  EXPECT_EQ(session_.SetNotification(0x0D), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 04 00 26 00 00 00 0D C2"));
}

TEST_F(Playback, NamedNotificationsAreTheBitsOnTheWire) {
  Answer("FF 55 07 04 00 26 00 00 00 1F B0", "FF 55 06 04 00 01 00 00 26 CF");
  EXPECT_EQ(
      session_.SetNotification(IPOD_PLAY_STATUS_BIT_BASIC | IPOD_PLAY_STATUS_BIT_STATE |
                               IPOD_PLAY_STATUS_BIT_TRACK | IPOD_PLAY_STATUS_BIT_MILLISECONDS |
                               IPOD_PLAY_STATUS_BIT_SECONDS),
      1);
}

TEST_F(Playback, RefusedNotificationMaskIsFollowedByTheOneByteForm) {
  Answer("FF 55 07 04 00 26 00 00 00 0D C2", "FF 55 06 04 00 01 04 00 26 CB");
  Answer("FF 55 04 04 00 26 01 D1", "FF 55 06 04 00 01 00 00 26 CF");
  EXPECT_EQ(session_.SetNotification(0x0D), 1);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 07 04 00 26 00 00 00 0D C2", "FF 55 04 04 00 26 01 D1"));
}

TEST_F(Playback, UnansweredNotificationMaskIsFollowedByTheOneByteForm) {
  Answer("FF 55 04 04 00 26 00 D2", "FF 55 06 04 00 01 00 00 26 CF");
  EXPECT_EQ(session_.SetNotification(0), 1);
  EXPECT_EQ(test::Last(DrainSent()), "FF 55 04 04 00 26 00 D2");
}

TEST_F(Playback, NotificationsFailWhenBothFormsAreRefused) {
  Answer("FF 55 07 04 00 26 00 00 00 0D C2", "FF 55 06 04 00 01 04 00 26 CB");
  Answer("FF 55 04 04 00 26 01 D1", "FF 55 06 04 00 01 04 00 26 CB");
  EXPECT_EQ(session_.SetNotification(0x0D), 0);
}

TEST_F(Playback, PlayStatusNotificationDoesNotCompleteAnExchange) {
  // A position notification comes first, then the answer.
  Answer("FF 55 03 04 00 1E DB",
         "FF 55 08 04 00 27 04 00 00 27 10 92 FF 55 07 04 00 1F 00 00 01 02 D3");
  unsigned long index = 0;
  EXPECT_EQ(session_.Command_GetCurrentPlayingTrackIndex(&index), 1);
  EXPECT_EQ(index, 0x102U);
  tagIPOD_PLAY_STATUS status = {};
  world_.Advance(test::kSecond);
  session_.GetPlayStatus(&status);
  EXPECT_EQ(status.position, 10U);
}

// ---- Shuffle and repeat -------------------------------------------------------------------------

TEST_F(Playback, ShuffleIsRead) {
  Answer("FF 55 03 04 00 2C CD", "FF 55 04 04 00 2D 02 C9");
  unsigned long mode = 0;
  EXPECT_EQ(session_.Command_GetShuffle(&mode), 1);
  EXPECT_EQ(mode, 2U);
  EXPECT_EQ(session_.Command_GetShuffle(nullptr), 1);
}

TEST_F(Playback, FailedShuffleLeavesTheOutputUntouched) {
  unsigned long mode = 7;
  EXPECT_EQ(session_.Command_GetShuffle(&mode), 0);
  EXPECT_EQ(mode, 7U);
}

TEST_F(Playback, SetShuffleSendsTheNegationOfItsFlag) {
  Answer("FF 55 05 04 00 2E 01 01 C7", "FF 55 06 04 00 01 00 00 2E C7");
  Answer("FF 55 05 04 00 2E 01 00 C8", "FF 55 06 04 00 01 00 00 2E C7");
  EXPECT_EQ(session_.Command_SetShuffle(1, 0), 1);
  EXPECT_EQ(session_.Command_SetShuffle(0x101, 5), 1);  // the mode's low byte
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 04 00 2E 01 01 C7", "FF 55 05 04 00 2E 01 00 C8"));
}

TEST_F(Playback, SetShuffleLooksAtTheExchangeOnly) {
  Answer("FF 55 05 04 00 2E 01 01 C7", "FF 55 06 04 00 01 04 00 2E C3");
  EXPECT_EQ(session_.Command_SetShuffle(1, 0), 1);
  EXPECT_EQ(session_.Command_SetShuffle(2, 0), 0);
}

TEST_F(Playback, SetRepeatSendsItsFlagAsItIs) {
  Answer("FF 55 05 04 00 31 01 00 C5", "FF 55 06 04 00 01 00 00 31 C4");
  Answer("FF 55 05 04 00 31 02 01 C3", "FF 55 06 04 00 01 00 00 31 C4");
  EXPECT_EQ(session_.Command_SetRepeat(1, 0), 1);
  EXPECT_EQ(session_.Command_SetRepeat(2, 5), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 04 00 31 01 00 C5", "FF 55 05 04 00 31 02 01 C3"));
}

TEST_F(Playback, SetRepeatLooksAtTheExchangeOnly) {
  Answer("FF 55 05 04 00 31 01 00 C5", "FF 55 06 04 00 01 04 00 31 C0");
  EXPECT_EQ(session_.Command_SetRepeat(1, 0), 1);
  EXPECT_EQ(session_.Command_SetRepeat(2, 0), 0);
}

}  // namespace

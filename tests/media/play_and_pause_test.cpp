// SPDX-License-Identifier: MIT
// Playing, pausing and skipping under the robust conduct: on iPods that do not know the codes for
// play and pause, and when an ACK gets lost.
#include "support/answering_ipod.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::ElementsAre;

constexpr unsigned char kPlay = 0x0A;
constexpr unsigned char kPause = 0x0B;
constexpr unsigned char kNext = 0x03;

constexpr char kStopped[] = "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 00 D3";
constexpr char kPlaying[] = "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 01 D2";
constexpr char kPaused[] = "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 02 D1";
constexpr char kAccepted[] = "FF 55 06 04 00 01 00 00 29 CC";
constexpr char kRefused[] = "FF 55 06 04 00 01 02 00 29 CA";

// The commands' frames.
constexpr char kAskState[] = "FF 55 03 04 00 1C DD";
constexpr char kToggle[] = "FF 55 04 04 00 29 01 CE";
constexpr char kSendPlay[] = "FF 55 04 04 00 29 0A C5";
constexpr char kSendNext[] = "FF 55 04 04 00 29 03 CC";

class PlayAndPause : public SessionTest {
 protected:
  PlayAndPause() {
    world_.line().Unplug();
    world_.line().Plug(player_);
    EXPECT_EQ(session_.SetConduct(&IPOD_CONDUCT_ROBUST), 1);
    SetVersion(1, 12);
    player_.Answer("04 00 29", kAccepted);
  }
  ~PlayAndPause() override { world_.line().Unplug(); }

  void SetVersion(std::uint8_t major, std::uint8_t minor) {
    CIpodCommPeer::Identity(session_).extended = {major, minor};
  }
  void InTurn(const std::vector<std::string>& states) { player_.AnswerInTurn("04 00 1C", states); }

  test::AnsweringIpod player_;
};

TEST_F(PlayAndPause, AreTheirCodesFrom113On) {
  SetVersion(1, 13);
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kSendPlay));
}

TEST_F(PlayAndPause, AreTheirCodesUnderTheDefaultConduct) {
  session_.SetConduct(&IPOD_CONDUCT_FIELD);
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kSendPlay));
}

TEST_F(PlayAndPause, ToggleAnOlderIpodThatHasToChange) {
  InTurn({kPaused, kPlaying});
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_EQ(session_.Command_PlayControl(kPause), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kToggle, kAskState, kToggle));
}

TEST_F(PlayAndPause, PlayStartsAStoppedIpod) {
  InTurn({kStopped});
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kToggle));
}

TEST_F(PlayAndPause, LeaveAnOlderIpodThatDoesSoAlready) {
  InTurn({kPlaying, kPaused, kStopped});
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_EQ(session_.Command_PlayControl(kPause), 1);
  EXPECT_EQ(session_.Command_PlayControl(kPause), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kAskState, kAskState));
}

TEST_F(PlayAndPause, TakeAnIpodOfUnknownVersionForAnOlderOne) {
  SetVersion(0, 0);
  InTurn({kPaused});
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kToggle));
}

TEST_F(PlayAndPause, FailWhereTheStateIsNotTold) {
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 0);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kAskState, kAskState));
}

TEST_F(PlayAndPause, FailAtOnceWhereTheToggleIsRefused) {
  InTurn({kPaused});
  player_.Answer("04 00 29", kRefused);
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 0);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kToggle));
}

TEST_F(PlayAndPause, AToggleWhoseAckIsLostIsSeenByTheState) {
  InTurn({kPaused, kPlaying});
  player_.Answer("04 00 29", "");
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kToggle, kAskState));
}

TEST_F(PlayAndPause, ALostToggleIsSentAgain) {
  InTurn({kPaused});
  player_.Answer("04 00 29", kAccepted);
  player_.AnswerNth("04 00 29", 1, "");
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 1);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kAskState, kToggle, kAskState, kToggle));
}

TEST_F(PlayAndPause, FailWhereThreeTogglesChangeNothing) {
  InTurn({kPaused});
  player_.Answer("04 00 29", "");
  EXPECT_EQ(session_.Command_PlayControl(kPlay), 0);
  EXPECT_THAT(player_.DrainFrames(),
              ElementsAre(kAskState, kToggle, kAskState, kToggle, kAskState, kToggle));
}

TEST_F(PlayAndPause, ASkipWhoseAckIsLostIsNotSentAgain) {
  player_.Answer("04 00 29", "");
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(session_.Command_PlayControl(kNext), 0); });
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kSendNext));
  EXPECT_GE(elapsed_us, 3 * kSecond);
}

TEST_F(PlayAndPause, ASkipWhoseAckIsCutShortAgainAndAgainIsNotSentAgain) {
  player_.Answer("04 00 29", "FF 55 04 04 00 01 00 F7 FF 55 04 04 00 01 00 F7");
  EXPECT_EQ(session_.Command_PlayControl(kNext), 0);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kSendNext));
}

TEST_F(PlayAndPause, ASkipIsSentAgainUnderTheDefaultConduct) {
  session_.SetConduct(&IPOD_CONDUCT_FIELD);
  player_.Answer("04 00 29", "");
  EXPECT_EQ(session_.Command_PlayControl(kNext), 0);
  EXPECT_THAT(player_.DrainFrames(), ElementsAre(kSendNext, kSendNext, kSendNext));
}

class LateSkip : public SessionTest {};

TEST_F(LateSkip, IsAwaitedAsLongAsThreeAttemptsWouldLast) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  Answer(kSendNext, kAccepted, 2500 * kMillisecond);
  EXPECT_EQ(session_.Command_PlayControl(kNext), 1);
}

}  // namespace

// SPDX-License-Identifier: MIT
// The commands of the legacy interface that wait for an acknowledgement or send a second frame.
#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LegacyWaitingCommands : public LegacyTest {};

// ---- Remote UI mode

constexpr const char* kEnter = "FF 55 02 00 05 F9";

TEST_F(LegacyWaitingCommands, EnteringRemoteUiModeWaitsForTheAck) {
  Answer(kEnter, "FF 55 04 00 02 00 05 F5");
  world_.Record({"WriteFile", "Sleep"});
  EXPECT_EQ(legacy_.command_enterremoteuimode(), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(5)", "WriteFile(port1, 55 02 00 05 F9)"));
}

TEST_F(LegacyWaitingCommands, EnteringRemoteUiModeDoesNotLookAtTheAcksStatus) {
  Answer(kEnter, "FF 55 04 00 02 04 05 F1");
  EXPECT_EQ(legacy_.command_enterremoteuimode(), 1);
}

TEST_F(LegacyWaitingCommands, EnteringRemoteUiModePassesOverOtherFrames) {
  Answer(kEnter, "FF 55 03 00 27 08 CE FF 55 04 00 02 00 05 F5");
  EXPECT_EQ(legacy_.command_enterremoteuimode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kEnter, "FF 55 03 00 28 08 CD"));
}

TEST_F(LegacyWaitingCommands, EnteringRemoteUiModeWaitsTwiceForASilentIpod) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.command_enterremoteuimode(), 0); }),
            5 * kMillisecond + test::kEmptyReadsUs + 20 * kMillisecond + test::kEmptyReadsUs);
  EXPECT_THAT(DrainSent(), ElementsAre(kEnter));
}

TEST_F(LegacyWaitingCommands, EnteringRemoteUiModeTakesTheAckOfTheSecondWait) {
  Answer(kEnter, "FF 55 04 00 02 00 05 F5", 4 * kSecond);
  world_.Record({"Sleep"});
  EXPECT_EQ(legacy_.command_enterremoteuimode(), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("Sleep(5)", "Sleep(200)", "Sleep(200)", "Sleep(200)", "Sleep(200)",
                          "Sleep(200)", "Sleep(20)", "Sleep(200)"));
}

TEST_F(LegacyWaitingCommands, EnteringRemoteUiModeWaitsForNothingWhenTheSendFails) {
  world_.FailOnce("WriteFile", 2, 31);
  world_.Record({"ReadFile"});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.command_enterremoteuimode(), 0); }), 5 * kMillisecond);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

// ---- Play control

constexpr const char* kPlayPause = "FF 55 04 04 00 29 01 CE";

TEST_F(LegacyWaitingCommands, PlayControlSucceedsOnAnAcceptingAck) {
  Answer(kPlayPause, "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(legacy_.command_playcontrol(ipod::IPOD_PLAYCONTROL_PLAYPAUSE), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kPlayPause));
}

TEST_F(LegacyWaitingCommands, PlayControlSendsItsCode) {
  Answer("FF 55 04 04 00 29 0B C4", "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(legacy_.command_playcontrol(ipod::IPOD_PLAYCONTROL_PAUSE), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 29 0B C4"));
}

TEST_F(LegacyWaitingCommands, PlayControlFailsOnARefusingAck) {
  Answer(kPlayPause, "FF 55 06 04 00 01 04 00 29 C8");
  EXPECT_EQ(legacy_.command_playcontrol(1), 0);
}

TEST_F(LegacyWaitingCommands, PlayControlSucceedsOnASilentIpod) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.command_playcontrol(1), 1); }),
            5 * kMillisecond + test::kEmptyReadsUs);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Error reading port, purging rx...\r\n"));
}

TEST_F(LegacyWaitingCommands, PlayControlSucceedsOnAnotherReply) {
  Answer(kPlayPause, "FF 55 07 04 00 1D 41 42 43 44 CE");
  EXPECT_EQ(legacy_.command_playcontrol(1), 1);
}

TEST_F(LegacyWaitingCommands, PlayControlSucceedsOnARefusingAckWithABadChecksum) {
  Answer(kPlayPause, "FF 55 06 04 00 01 04 00 29 00");
  EXPECT_EQ(legacy_.command_playcontrol(1), 1);
}

TEST_F(LegacyWaitingCommands, PlayControlFailsWhenTheSendFailsAndReadsNothing) {
  world_.FailOnce("WriteFile", 1, 31);
  world_.Record({"ReadFile"});
  EXPECT_EQ(legacy_.command_playcontrol(1), 0);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(LegacyWaitingCommands, PlayControlLeavesTheRestOfThePayload) {
  NumberPayload();
  Answer("FF 55 04 04 00 29 09 C6", "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(legacy_.command_playcontrol(9), 1);
  EXPECT_EQ(Payload(4), "09 01 02 03");
}

// ---- Buttons

TEST_F(LegacyWaitingCommands, ContextButtonIsPressedFor30Milliseconds) {
  world_.Record({"WriteFile", "Sleep"});
  EXPECT_EQ(Elapsed([&] {
              EXPECT_EQ(legacy_.command_contextbutton(ipod::IPOD_BUTTON_CONTEXT_MASK_PLAYPAUSE), 1);
            }),
            40 * kMillisecond);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                                                "WriteFile(port1, 55 06 02 00 01 00 00 00 F7)",
                                                "Sleep(30)", "WriteFile(port1, FF)", "Sleep(5)",
                                                "WriteFile(port1, 55 06 02 00 00 00 00 00 F8)"));
}

TEST_F(LegacyWaitingCommands, ButtonMaskGoesOutLowestByteFirst) {
  EXPECT_EQ(legacy_.command_buttonstatus(ipod::IPOD_COMMAND_VIDEOBUTTONSTATUS, 0x01020304), 1);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 06 02 03 04 03 02 01 EB", "FF 55 06 02 03 00 00 00 00 F5"));
}

TEST_F(LegacyWaitingCommands, ButtonThatIsNotPressedIsNotReleased) {
  world_.FailOnce("WriteFile", 2, 31);
  world_.Record({"WriteFile", "Sleep"});
  EXPECT_EQ(legacy_.command_contextbutton(1), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                                                "WriteFile(port1, 55 06 02 00 01 00 00 00 F7)"));
}

TEST_F(LegacyWaitingCommands, ButtonThatIsNotReleasedFails) {
  world_.FailOnce("WriteFile", 4, 31);
  EXPECT_EQ(legacy_.command_contextbutton(1), 0);
}

TEST_F(LegacyWaitingCommands, ButtonLeavesTheRestOfThePayload) {
  NumberPayload();
  legacy_.command_contextbutton(1);
  EXPECT_EQ(Payload(6), "00 00 00 00 04 05");
}

}  // namespace

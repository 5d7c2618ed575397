// SPDX-License-Identifier: MIT
// Controlling playback: what goes out for each operation and what is made of the answer.
#include "support/session_test.h"

namespace {

using ::testing::ElementsAre;
using test::SessionTest;

class Playback : public SessionTest {};

TEST_F(Playback, PlayControlSucceedsOnStatusZero) {
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(session_.Command_PlayControl(2), 1);
  EXPECT_THAT(TakeSent(), ElementsAre("FF 55 04 04 00 29 02 CD"));
}

TEST_F(Playback, RefusedPlayControlIsLoggedAndFails) {
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 04 00 29 C8");
  EXPECT_EQ(session_.Command_PlayControl(2), 0);
  EXPECT_THAT(test::TakeTraceLog(),
              ElementsAre("CIpodComm::Command_PlayControl: Failed to control! Ack = 0x04"));
}

}  // namespace

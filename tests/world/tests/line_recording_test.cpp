// SPDX-License-Identifier: MIT
// IPODCOMM_CAPTURE records a world's line, in virtual time.
#include <gmock/gmock.h>

#include <cstdlib>

#include "support.h"
#include "support/pcapng_reader.h"
#include "support/temporary_folder.h"
#include "world/line/scripted_device.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;

TEST(LineRecording, HoldsBothDirectionsAtTheWorldsOwnTime) {
  const test::TemporaryFolder folder;
  ::setenv("IPODCOMM_CAPTURE", folder.path("line.pcapng").c_str(), 1);
  {
    ScriptedDevice device;
    World world;
    world.line().Plug(device);
    device.SendAt(500 * kMillisecond, {0xFF, 0x55, 0x02, 0x00, 0x07, 0xF7});
    const HANDLE port = OpenPort();
    DCB state = {};
    state.DCBlength = sizeof state;
    state.BaudRate = 57600;
    state.ByteSize = 8;
    SetCommState(port, &state);
    world.Advance(250 * kMillisecond);
    Write(port, {0xFF});
    world.Advance(kSecond);
  }
  ::unsetenv("IPODCOMM_CAPTURE");
  const test::ReadRecording recording = test::ReadPcapngFile(folder.path("line.pcapng"));
  // The port as it is opened, and as it is set up.
  ASSERT_EQ(recording.interfaces.size(), 2U);
  EXPECT_EQ(recording.interfaces[0].speed, 9600U);
  EXPECT_EQ(recording.interfaces[1].speed, 57600U);
  EXPECT_EQ(recording.interfaces[1].name, "COM2:");
  EXPECT_THAT(recording.Lines(), ElementsAre("> FF", "< FF 55 02 00 07 F7", "event 6"));
  EXPECT_EQ(recording.packets[0].time_ns, 250'000'000U);
  // A byte arrives with its last bit, 173.6 us after the first; the clock knows whole ones.
  EXPECT_EQ(recording.packets[1].time_ns, 500'174'000U);
}

TEST(LineRecording, TellsThatTheLineIsGone) {
  const test::TemporaryFolder folder;
  ::setenv("IPODCOMM_CAPTURE", folder.path("line.pcapng").c_str(), 1);
  {
    World world;
    OpenPort();
    world.Advance(kSecond);
    world.line().Vanish();
  }
  ::unsetenv("IPODCOMM_CAPTURE");
  const test::ReadRecording recording = test::ReadPcapngFile(folder.path("line.pcapng"));
  EXPECT_THAT(recording.Lines(), ElementsAre("event 0", "event 6"));
  EXPECT_EQ(recording.packets[0].time_ns, 1'000'000'000U);
  EXPECT_THAT(recording.packets[0].comments, ElementsAre("the line is gone: No such device"));
}

}  // namespace
}  // namespace ipodcomm::virtual_platform

// SPDX-License-Identifier: MIT
// Writing a frame: the first byte alone, 20 ms, then the rest, all under the port lock, and each
// way in which it fails.
#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Writing : public SerialTest {
 protected:
  Writing() {
    OpenForRawAccess();
    world_.Record();
  }
  long Write(const char* text) {
    test::Bytes bytes = test::Hex(text);
    return serial_.WritePacket(bytes.data(), static_cast<unsigned long>(bytes.size()));
  }
};

TEST_F(Writing, SendsTheFirstByteAloneThenTheRest) {
  EXPECT_EQ(Write("FF 55 02 00 13 EB"), 0);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("EnterCriticalSection(section2)", "WriteFile(port1, FF)", "Sleep(20)",
                          "WriteFile(port1, 55 02 00 13 EB)", "LeaveCriticalSection(section2)"));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_F(Writing, KeepsTwentyMillisecondsOfSilenceAfterTheSyncByte) {
  EXPECT_EQ(Elapsed([&] { Write("FF 55 02 00 13 EB"); }), 20 * kMillisecond);
  world_.Advance(5 * kMillisecond);
  const auto arrivals = ipod_.arrivals();
  ASSERT_EQ(arrivals.size(), 6U);
  EXPECT_EQ(arrivals[0].time_us, 174);
  EXPECT_EQ(arrivals[1].time_us, 20174);
}

TEST_F(Writing, OneByteIsFollowedByThePauseToo) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write("FF"), 0); }), 20 * kMillisecond);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("EnterCriticalSection(section2)", "WriteFile(port1, FF)", "Sleep(20)",
                          "LeaveCriticalSection(section2)"));
}

TEST_F(Writing, TwoBytesAreTwoWrites) {
  EXPECT_EQ(Write("FF 55"), 0);
  EXPECT_THAT(world_.DrainCalls().To({"WriteFile"}).text(),
              ElementsAre("WriteFile(port1, FF)", "WriteFile(port1, 55)"));
}

TEST_F(Writing, NothingIsAnInsufficientBuffer) {
  unsigned char byte = 0xFF;
  EXPECT_EQ(serial_.WritePacket(&byte, 0), 122);
  EXPECT_EQ(serial_.WritePacket(nullptr, 0), 122);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Writing, ClosedPortRefusesToWrite) {
  serial_.Close();
  world_.DrainRecord();
  EXPECT_EQ(Write("FF 55"), 6);
  unsigned char byte = 0xFF;
  EXPECT_EQ(serial_.WritePacket(&byte, 0), 6);  // before the length is looked at
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(Writing, FailedFirstByteSkipsThePauseAndTheRest) {
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write("FF 55 02 00 13 EB"), 31); }), 0);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("EnterCriticalSection(section2)", "WriteFile(port1, FF)",
                          "LeaveCriticalSection(section2)"));
  EXPECT_EQ(Write("FF"), 0);
}

TEST_F(Writing, FailedRestReturnsItsCode) {
  world_.FailOnce("WriteFile", 2, 995);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write("FF 55 02 00 13 EB"), 995); }), 20 * kMillisecond);
  EXPECT_THAT(world_.DrainCalls().To({"LeaveCriticalSection"}).text(),
              ElementsAre("LeaveCriticalSection(section2)"));
  EXPECT_THAT(DrainSent(), ElementsAre("FF"));
}

TEST_F(Writing, FailuresAreNotLogged) {
  world_.FailFrom("WriteFile", 1, 31);
  Write("FF 55");
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Writing, LineThatIsGoneFailsWithItsCode) {
  world_.line().Vanish();
  EXPECT_EQ(Write("FF 55"), 31);
}

TEST_F(Writing, MoreThanTheDriversQueueIsWrittenWhole) {
  test::Bytes bytes(3000, 0x5A);
  EXPECT_EQ(serial_.WritePacket(bytes.data(), 3000), 0);
  world_.Advance(test::kSecond);
  EXPECT_EQ(ipod_.received(), bytes);
}

// With a read thread beside.
class WritingBesideTheReadThread : public SerialTest {};

// From the first byte to the last no read is under way: the lock keeps the thread out, also during
// the pause.
TEST_F(WritingBesideTheReadThread, KeepsReadsOut) {
  OpenForPackets();
  for (int offset_us = 0; offset_us < 4000; offset_us += 100) {
    world_.Advance(offset_us);
    world_.DrainCalls();
    world_.Record({"ReadFile", "WriteFile"});
    unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, 0x13, 0xEB};
    ASSERT_EQ(serial_.WritePacket(frame, sizeof frame), 0);
    world_.StopRecording();
    const auto calls = world_.DrainCalls();
    const auto writes = calls.Of("host").all();
    ASSERT_EQ(writes.size(), 2U);
    for (const auto& read : calls.Of("read").all()) {
      EXPECT_TRUE(!read.finished || read.end_us <= writes[0].start_us ||
                  read.start_us >= writes[1].end_us)
          << offset_us << ": " << read.start_us << " to " << read.end_us;
    }
  }
}

TEST_F(WritingBesideTheReadThread, WaitsAtMostForOneRead) {
  OpenForPackets();
  for (int offset_us = 0; offset_us < 4000; offset_us += 100) {
    world_.Advance(offset_us);
    unsigned char byte = 0xFF;
    EXPECT_LE(Elapsed([&] { serial_.WritePacket(&byte, 1); }), 22 * kMillisecond) << offset_us;
  }
}

}  // namespace

// SPDX-License-Identifier: MIT
// The read thread: its calls in order and at their times, its pauses, and its end.
#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReadThread : public SerialTest {
 protected:
  // The thread's calls of these services while `duration_us` passes.
  ipodcomm::virtual_platform::Calls CallsDuring(std::int64_t duration_us,
                                                const std::vector<std::string>& services) {
    world_.DrainCalls();
    world_.Record(services);
    world_.Advance(duration_us);
    world_.StopRecording();
    return world_.DrainCalls().Of("read");
  }
};

TEST_F(ReadThread, BeginsWithTheFlagsTheMaskAndTheFirstRead) {
  world_.Record();
  EXPECT_EQ(serial_.Open(true), 0);
  world_.Settle();
  EXPECT_THAT(
      world_.DrainCalls().Of("read").text(),
      ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                  "SetCommMask(port1, 3)", "EnterCriticalSection(section2)", "ReadFile(port1, 1)"));
  EXPECT_TRUE(ThreadRunning());
}

// A turn: the read under the port lock, the pause without any lock, the flag under the state lock.
TEST_F(ReadThread, LooksForAByteEveryFourMillisecondsOnASilentLine) {
  OpenForPackets();
  world_.Advance(1 * kMillisecond);
  const std::int64_t start_us = world_.now_us();
  EXPECT_EQ(start_us, 1000);
  EXPECT_THAT(
      CallsDuring(6 * kMillisecond, {}).text_with_times(),
      ElementsAre("2000 LeaveCriticalSection(section2)", "2000 Sleep(2)",
                  "4000 EnterCriticalSection(section1)", "4000 LeaveCriticalSection(section1)",
                  "4000 EnterCriticalSection(section2)", "4000 ReadFile(port1, 1)",
                  "6000 LeaveCriticalSection(section2)", "6000 Sleep(2)"));
}

TEST_F(ReadThread, PausesTwoMillisecondsAfterEveryByte) {
  OpenForPackets();
  ipod_.Send(test::Hex("01 02 03 04"));
  const auto calls = CallsDuring(11 * kMillisecond, {"ReadFile", "Sleep"});
  EXPECT_THAT(calls.text_with_results(),
              ElementsAre("Sleep(2)", "ReadFile(port1, 1) = 02", "Sleep(2)",
                          "ReadFile(port1, 1) = 03", "Sleep(2)", "ReadFile(port1, 1) = 04",
                          "Sleep(2)", "ReadFile(port1, 1) = nothing", "Sleep(2)"));
  // The first byte is there after ten bits at 57600 baud; those behind it wait for the thread.
  EXPECT_THAT(calls.To({"ReadFile"}).text_with_times(),
              ElementsAre("2174 ReadFile(port1, 1)", "4174 ReadFile(port1, 1)",
                          "6174 ReadFile(port1, 1)", "8174 ReadFile(port1, 1)"));
}

TEST_F(ReadThread, PausesFiftyMillisecondsAfterAFailedRead) {
  OpenForPackets();
  world_.Advance(3 * kMillisecond);
  world_.FailFrom("ReadFile", 1, 31, "read");
  EXPECT_THAT(CallsDuring(102 * kMillisecond, {"ReadFile", "Sleep"}).text_with_times(),
              ElementsAre("4000 ReadFile(port1, 1)", "4000 Sleep(50)", "54000 ReadFile(port1, 1)",
                          "54000 Sleep(50)", "104000 ReadFile(port1, 1)", "104000 Sleep(50)"));
}

TEST_F(ReadThread, SaysNothingAboutFailedReadsAndGoesOnAfterThem) {
  OpenForPackets();
  world_.line().Vanish();
  world_.Advance(kSecond);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  world_.line().Restore();
  world_.Advance(60 * kMillisecond);
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

// The assembler goes on where it was: a failed read is no byte.
TEST_F(ReadThread, FailedReadInsideAFrameLosesNothing) {
  OpenForPackets();
  world_.FailOnce("ReadFile", 3, 31, "read");
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_F(ReadThread, QueuesUnderTheStateLockThenSignals) {
  OpenForPackets();
  ipod_.Send(test::Hex("FF 55 02 00 13 EB"));
  const auto calls = CallsDuring(20 * kMillisecond, {}).text_with_results();
  const auto last = std::find(calls.begin(), calls.end(), "ReadFile(port1, 1) = EB");
  ASSERT_LE(last + 6, calls.end());
  EXPECT_THAT(
      std::vector<std::string>(last, last + 6),
      ElementsAre("ReadFile(port1, 1) = EB", "LeaveCriticalSection(section2)",
                  "EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                  "EventModify(event1 \"IPOD_PORT_EVENT_NAME\", EVENT_SET) = 1", "Sleep(2)"));
}

TEST_F(ReadThread, NeverHoldsBothLocks) {
  OpenForPackets();
  ipod_.Send(test::Hex("FF 55 02 00 13 EB FF 55 02 00 14 EA"));
  int held = 0;
  for (const auto& call : CallsDuring(100 * kMillisecond, {}).all()) {
    if (call.service == "EnterCriticalSection") ++held;
    // The record begins inside a read, under the port lock.
    if (call.service == "LeaveCriticalSection" && held > 0) --held;
    ASSERT_LE(held, 1) << call.text;
    if (call.service == "Sleep") {
      ASSERT_EQ(held, 0);
    }
  }
}

// ---- The end

TEST_F(ReadThread, LeavesItsLoopWithinAFewMillisecondsAfterClosing) {
  for (int offset_us = 0; offset_us < 4000; offset_us += 250) {
    OpenForPackets();
    world_.Advance(offset_us);
    serial_.Close();
    world_.Advance(60 * kMillisecond);
    EXPECT_FALSE(ThreadRunning()) << offset_us;
  }
}

TEST_F(ReadThread, EmptiesTheQueueAtItsEnd) {
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB FF 55 02 00 14 EA");
  EXPECT_EQ(CIpodSerialPeer::CopyOfReceived(serial_).size(), 2U);
  serial_.Close();
  EXPECT_EQ(CIpodSerialPeer::CopyOfReceived(serial_).size(), 2U);
  world_.Advance(60 * kMillisecond);
  EXPECT_THAT(CIpodSerialPeer::CopyOfReceived(serial_), IsEmpty());
  EXPECT_THAT(DrainPackets(), IsEmpty());
}

TEST_F(ReadThread, EndsWithCodeOneAfterTheDriverRestart) {
  OpenForPackets();
  const HANDLE thread = CIpodSerialPeer::ReadThread(serial_);
  serial_.Close();
  EXPECT_EQ(WaitForSingleObject(thread, 900), WAIT_TIMEOUT);
  EXPECT_EQ(WaitForSingleObject(thread, 200), WAIT_OBJECT_0);
  EXPECT_THAT(world_.live_threads(), IsEmpty());
}

// Run by the host itself on a port that is not open: no loop, and the exit code.
TEST_F(ReadThread, OnAClosedPortOnlyRestartsTheDriver) {
  world_.Record();
  EXPECT_EQ(CIpodSerial::PortReadThread(&serial_), 1U);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "RegCreateKeyExW(HKEY_LOCAL_MACHINE, \"Drivers\\Active\\18\")",
                          "RegQueryValueExW(key, \"Hnd\")",
                          "RegSetValueExW(key, \"Hnd\", 4294967295)", "RegCloseKey(key)",
                          "Sleep(1000)", "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18)"));
  EXPECT_FALSE(ThreadRunning());
}

// The port is open but meant to be closed: the mask is set, and nothing is read.
TEST_F(ReadThread, ReadsNothingWhenTheRunningFlagIsOff) {
  OpenForRawAccess();
  CIpodSerialPeer::Running(serial_) = 0;
  world_.Record({"SetCommMask", "ReadFile"});
  EXPECT_EQ(CIpodSerial::PortReadThread(&serial_), 1U);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("SetCommMask(port1, 3)"));
}

TEST_F(ReadThread, EndsAfterItsTurnWhenTheRunningFlagGoesOff) {
  OpenForPackets();
  CIpodSerialPeer::Running(serial_) = 0;
  EXPECT_EQ(CallsDuring(100 * kMillisecond, {"ReadFile"}).text().size(), 0U);
  EXPECT_FALSE(ThreadRunning());
}

TEST_F(ReadThread, EndsAfterItsTurnWhenThePortIsGone) {
  OpenForPackets();
  const HANDLE port = CIpodSerialPeer::Port(serial_).exchange(INVALID_HANDLE_VALUE);
  EXPECT_EQ(CallsDuring(100 * kMillisecond, {"ReadFile"}).text().size(), 0U);
  EXPECT_FALSE(ThreadRunning());
  CloseHandle(port);
}

TEST_F(ReadThread, StartsWithAnEmptyAssembler) {
  OpenForPackets();
  Arrive("FF 55 02 00");
  EXPECT_EQ(serial_.Open(true), 0);
  Arrive("13 EB");
  EXPECT_THAT(DrainPackets(), IsEmpty());
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_F(ReadThread, RemembersThePacketTypeAcrossThreads) {
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB");
  EXPECT_EQ(CIpodSerialPeer::PacketType(serial_), IPOD_PACKET_TYPE_SMALL);
  EXPECT_EQ(serial_.Open(true), 0);
  Arrive("AA");
  EXPECT_EQ(CIpodSerialPeer::PacketType(serial_), IPOD_PACKET_TYPE_SMALL);
}

}  // namespace

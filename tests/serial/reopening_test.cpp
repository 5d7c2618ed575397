// SPDX-License-Identifier: MIT
// Closing and opening again: the old handle and the old read thread are gone first, whatever the
// thread was doing, and never do two threads read one port.
#include <set>

#include "serial_test.h"

namespace {

using ipodcomm::virtual_platform::CooperativeSchedule;
using ipodcomm::virtual_platform::PrioritySchedule;
using ipodcomm::virtual_platform::WorldOptions;
using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using test::World;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class Reopening : public SerialTest {};

TEST_F(Reopening, ClosingSetsTheFlagUnderTheStateLockThenClosesThePort) {
  OpenForRawAccess();
  world_.Record();
  serial_.Close();
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "CloseHandle(port1)"));
  EXPECT_FALSE(Running());
  EXPECT_EQ(Port(), INVALID_HANDLE_VALUE);
}

TEST_F(Reopening, ClosingAClosedPortClosesNoHandle) {
  world_.Record({"CloseHandle"});
  serial_.Close();
  serial_.Close();
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(Reopening, ClosingDoesNotWaitForTheThread) {
  OpenForPackets();
  EXPECT_EQ(Elapsed([&] { serial_.Close(); }), 0);
  EXPECT_THAT(world_.live_threads(), ElementsAre("read"));
}

TEST_F(Reopening, EndsTheThreadBetweenClosingTheOldPortAndOpeningTheNew) {
  OpenForPackets();
  world_.Advance(3 * kMillisecond);  // the thread is in its pause
  world_.Record();
  EXPECT_EQ(serial_.Open(false), 0);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "CloseHandle(port1)", "TerminateThread(read, 4294967295)",
                          "CloseHandle(read)", "CreateFileW(\"COM2:\")",
                          "SetCommState(port2, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                          "SetCommTimeouts(port2, 1, 1, 1, 0, 0)", "SetCommMask(port2, 3)",
                          "PurgeComm(port2, 15)"));
  EXPECT_THAT(world_.live_threads(), IsEmpty());
  EXPECT_EQ(CIpodSerialPeer::ReadThread(serial_), INVALID_HANDLE_VALUE);
}

// The thread has left its loop and restarts the driver: its handle is closed, and it goes on.
TEST_F(Reopening, ThreadThatHasLeftItsLoopIsNotTerminated) {
  OpenForPackets();
  serial_.Close();
  world_.Advance(100 * kMillisecond);
  world_.Record({"TerminateThread", "CloseHandle"});
  EXPECT_EQ(serial_.Open(false), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CloseHandle(read)"));
  EXPECT_THAT(world_.live_threads(), ElementsAre("read"));
  world_.Advance(kSecond);
  EXPECT_THAT(world_.live_threads(), IsEmpty());
  EXPECT_EQ(world_.drivers().size(), 1U);
}

TEST_F(Reopening, TerminatedThreadLeavesTheDriverAlone) {
  OpenForPackets();
  EXPECT_EQ(serial_.Open(false), 0);
  world_.Advance(3 * kSecond);
  EXPECT_THAT(world_.drivers(), IsEmpty());
}

TEST_F(Reopening, WithoutAThreadTerminatesNone) {
  OpenForRawAccess();
  world_.Record({"TerminateThread", "CloseHandle"});
  OpenForRawAccess();
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CloseHandle(port1)"));
}

// Also when the thread cannot be ended by force it lets go by itself.
TEST_F(Reopening, ThreadThatCannotBeTerminatedStillReadsNoMore) {
  OpenForPackets();
  world_.FailOnce("TerminateThread", 1, 5);
  EXPECT_EQ(serial_.Open(true), 0);
  world_.Record({"ReadFile"});
  world_.Advance(kSecond);
  EXPECT_THAT(world_.DrainCalls().Of("read").all(), IsEmpty());
  EXPECT_THAT(world_.live_threads(), ElementsAre("read 2"));
  EXPECT_THAT(world_.drivers(), IsEmpty());
}

// A thread of the host's own then leaves as no thread of the port: nobody claims it.
TEST_F(Reopening, HostMayRunTheThreadsEntryBehindAThreadThatWasTerminated) {
  OpenForPackets();
  OpenForRawAccess();
  CIpodSerialPeer::Running(serial_) = 0;
  EXPECT_EQ(CIpodSerial::PortReadThread(&serial_), 1U);
}

// A host that was thrown out of a call may still hold the lock that the read thread needs.
TEST_F(Reopening, FreesTheStateLockWhereTheHostHoldsIt) {
  CIpodSerialPeer::StateLock(serial_).Enter();
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_F(Reopening, TakesAFewMillisecondsWhileTheThreadReads) {
  OpenForPackets();
  for (int i = 0; i < 40; ++i) {
    EXPECT_LE(Elapsed([&] { serial_.Open(true); }), 5 * kMillisecond);
    world_.Advance(i * 300);
  }
}

// A thread that finds itself turned away just when it is to be terminated: it may hold a lock of
// the system on its way out, and the world throws when it is met there.
TEST(TurnedAwayThread, IsNeverTerminatedOnItsWayOut) {
  for (std::uint64_t seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(seed);
    World world({seed});
    world.NameRoutine(CIpodSerial::PortReadThread, "read");
    CIpodSerial serial;
    EXPECT_EQ(serial.Open(true), 0);
    Sleep(4);  // the thread wakes from its pause at the same moment
    ASSERT_NO_THROW(EXPECT_EQ(serial.Open(true), 0));
    world.Advance(2 * kSecond);  // a thread that had left its loop has restarted the driver
    EXPECT_THAT(world.live_threads(), ElementsAre("read 2"));
  }
}

// Which threads read which port, as "thread port", from a record of ReadFile.
std::set<std::string> Readers(World& world) {
  std::set<std::string> readers;
  for (const auto& call : world.DrainCalls().all()) {
    if (call.result == "failed 6") continue;  // on a port closed meanwhile: it read nothing
    const std::size_t begin = call.text.find('(') + 1;
    readers.insert(call.thread + " " + call.text.substr(begin, call.text.find(',') - begin));
  }
  return readers;
}

// Opens five times in a row, `pause_us` apart, and expects one reader for each port.
void OpenFiveTimes(WorldOptions options, std::int64_t pause_us) {
  World world(std::move(options));
  world.NameRoutine(CIpodSerial::PortReadThread, "read");
  CIpodSerial serial;
  world.Record({"ReadFile"});
  for (int i = 0; i < 5; ++i) {
    ASSERT_EQ(serial.Open(true), 0);
    world.Advance(pause_us);
  }
  world.Advance(100 * kMillisecond);
  const std::set<std::string> readers = Readers(world);
  std::set<std::string> ports;
  for (const std::string& reader : readers) ports.insert(reader.substr(reader.find(" port")));
  EXPECT_EQ(ports.size(), readers.size()) << ::testing::PrintToString(readers);
  EXPECT_THAT(readers, Contains("read 5 port5"));
  EXPECT_EQ(world.live_threads().size(), 1U);
}

TEST(TwoReadThreads, NeverReadOnePortUnderAnySchedule) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    OpenFiveTimes({seed}, static_cast<std::int64_t>(seed % 7) * 500);
  }
}

// Each thread runs until it waits: the host opens again before the thread has run at all.
TEST(TwoReadThreads, NeverReadOnePortWhenOneHasNotReachedItsLoop) {
  OpenFiveTimes({1, CooperativeSchedule()}, 0);
}

// The host always goes first, so a thread makes its steps only while the host waits.
TEST(TwoReadThreads, NeverReadOnePortWhenTheHostIsAlwaysFirst) {
  OpenFiveTimes({1, PrioritySchedule({1})}, 0);
  OpenFiveTimes({1, PrioritySchedule({1})}, 250);
}

// The newest thread goes first, and the host last.
TEST(TwoReadThreads, NeverReadOnePortWhenTheHostIsAlwaysLast) {
  OpenFiveTimes({1, PrioritySchedule({6, 5, 4, 3, 2, 1})}, 0);
  OpenFiveTimes({1, PrioritySchedule({6, 5, 4, 3, 2, 1})}, 250);
}

TEST(TwoReadThreads, NeverReadOnePortThroughACopy) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    World world({seed});
    world.NameRoutine(CIpodSerial::PortReadThread, "read");
    CIpodSerial serial;
    serial.Open(true);
    world.Advance(static_cast<std::int64_t>(seed % 5) * 700);
    CIpodSerial copy = serial;
    world.Record({"ReadFile"});
    EXPECT_EQ(copy.Open(true), 0);
    const std::set<std::string> before = Readers(world);
    world.Advance(100 * kMillisecond);
    EXPECT_THAT(Readers(world), ElementsAre("read 2 port2"));
    EXPECT_THAT(before, Not(Contains("read port2")));
  }
}

// The copy's source started the thread, which works on the source.
TEST(TwoReadThreads, CopyTurnsItsSourcesThreadAwayThoughItCannotBeTerminated) {
  World world;
  world.NameRoutine(CIpodSerial::PortReadThread, "read");
  CIpodSerial source;
  source.Open(true);
  CIpodSerial copy = source;
  world.FailOnce("TerminateThread", 1, 5);
  EXPECT_EQ(copy.Open(true), 0);
  world.Advance(100 * kMillisecond);
  EXPECT_THAT(world.live_threads(), ElementsAre("read 2"));
}

// Assigning makes the object forget its thread's handle; the thread still works on it.
TEST(TwoReadThreads, ThreadThatAnAssignmentMadeForgottenIsTurnedAway) {
  World world;
  world.NameRoutine(CIpodSerial::PortReadThread, "read");
  CIpodSerial serial;
  serial.Open(true);
  CIpodSerial copy = serial;
  copy.Close();
  serial = CIpodSerial();
  world.Record({"ReadFile"});
  EXPECT_EQ(serial.Open(true), 0);
  world.Advance(100 * kMillisecond);
  EXPECT_THAT(Readers(world), ElementsAre("read 2 port2"));
  EXPECT_THAT(world.live_threads(), ElementsAre("read 2"));
}

}  // namespace

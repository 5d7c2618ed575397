// SPDX-License-Identifier: MIT
// The library's lock, and what an object and its read thread let go of each other by.
#include "ipodcomm/detail/Lock.h"

#include <functional>
#include <optional>

#include "ipodcomm/detail/Departure.h"
#include "ipodcomm/detail/Lifeline.h"
#include "serial_test.h"
#include "world/memory_shortage.h"
#include "world/tests/support.h"

namespace {

using ipodcomm::Lock;
using ipodcomm::virtual_platform::StartThread;
using test::kMillisecond;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Locks : public ::testing::Test {
 protected:
  Locks() { world_.Record({"EnterCriticalSection", "LeaveCriticalSection"}); }

  test::World world_;
};

TEST_F(Locks, AreLeftAsOftenAsTheyWereEntered) {
  Lock lock;
  lock.Enter();
  lock.Enter();
  world_.DrainRecord();
  lock.Leave();
  lock.Leave();
  lock.Leave();
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("LeaveCriticalSection(section1)", "LeaveCriticalSection(section1)"));
}

TEST_F(Locks, ACopyIsAnotherLockAndFree) {
  Lock lock;
  lock.Enter();
  Lock copy(lock);
  Lock assigned;
  assigned = lock;
  world_.DrainRecord();
  copy.Leave();
  assigned.Leave();
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  lock.Leave();
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("LeaveCriticalSection(section1)"));
}

TEST(Lifelines, ACopyIsAnotherOne) {
  const test::World world;
  const ipodcomm::OwnLifeline line;
  const ipodcomm::OwnLifeline copy(line);
  ipodcomm::OwnLifeline assigned;
  const auto before = assigned.shared();
  assigned = line;
  EXPECT_NE(copy.shared(), line.shared());
  EXPECT_EQ(assigned.shared(), before);
}

TEST(Departures, WhoHasLeftIsNotClaimedAndLeavesAgainAtOnce) {
  const test::World world;
  const auto departure = ipodcomm::Departure::Make();
  departure->Leave();
  EXPECT_FALSE(departure->Claim());
  const std::int64_t start_us = world.now_us();
  departure->Leave();
  EXPECT_EQ(world.now_us(), start_us);
}

// Starts `waits` in a thread and does `ends_the_wait` half a millisecond later; when the thread was
// through, from its start on.
std::int64_t ThroughAfter(test::World& world, const std::function<void()>& waits,
                          const std::function<void()>& ends_the_wait) {
  const std::int64_t start_us = world.now_us();
  const HANDLE thread = StartThread(waits);
  world.Advance(kMillisecond / 2);
  ends_the_wait();
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  return world.now_us() - start_us;
}

TEST(Departures, WhoIsClaimedLooksEveryMillisecondWhetherItMayLeave) {
  test::World world;
  const auto departure = ipodcomm::Departure::Make();
  EXPECT_TRUE(departure->Claim());
  EXPECT_FALSE(departure->Claim());
  EXPECT_EQ(ThroughAfter(
                world, [&] { departure->Leave(); }, [&] { departure->Release(); }),
            kMillisecond);
}

TEST(Lifelines, WhoWaitsForTheLastToLeaveLooksEveryMillisecond) {
  for (const auto wait :
       {&ipodcomm::Lifeline::End, &ipodcomm::Lifeline::Hold, &ipodcomm::Lifeline::Dismiss}) {
    test::World world;
    ipodcomm::Lifeline line;
    EXPECT_TRUE(line.Enter());
    EXPECT_EQ(ThroughAfter(
                  world, [&] { (line.*wait)(); }, [&] { line.Leave(); }),
              kMillisecond);
  }
}

TEST(Lifelines, ThatHasEndedIsEnteredByNobody) {
  const test::World world;
  ipodcomm::Lifeline line;
  EXPECT_FALSE(line.gone());
  line.End();
  EXPECT_TRUE(line.gone());
  EXPECT_FALSE(line.Enter());
}

TEST(Lifelines, WhoIsKeptOutsideLooksEveryMillisecondWhetherItMayEnter) {
  test::World world;
  ipodcomm::Lifeline line;
  line.Hold();
  EXPECT_EQ(ThroughAfter(
                world, [&] { EXPECT_TRUE(line.Enter()); }, [&] { line.Release(); }),
            kMillisecond);
  EXPECT_FALSE(line.empty());
}

// Its lifeline is closed from the start, so that no thread enters it.
TEST(ReadThreadWithoutMemory, ReadsNothingForAnObjectThatWasMadeWhileMemoryWasOut) {
  test::World world;
  std::optional<CIpodSerial> serial;
  {
    const ipodcomm::virtual_platform::MemoryShortage shortage;
    serial.emplace();
  }
  world.Record({"SetCommMask", "ReadFile"});
  EXPECT_EQ(CIpodSerial::PortReadThread(&*serial), 1U);
  EXPECT_THAT(world.DrainRecord(), IsEmpty());
}

}  // namespace

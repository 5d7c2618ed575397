// SPDX-License-Identifier: MIT
// Events and critical sections under every order of threads that a hundred seeds give.
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>

#include "support.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(VirtualSync, SectionLetsOneThreadInAtATimeWhateverTheSchedule) {
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    World world({seed});
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    int inside = 0;
    int most = 0;
    int turns = 0;
    const std::function<void()> body = [&] {
      for (int i = 0; i < 10; ++i) {
        EnterCriticalSection(&section);
        most = std::max(most, ++inside);
        GetTickCount();
        Sleep(i % 2 == 0 ? 1 : 0);
        --inside;
        ++turns;
        LeaveCriticalSection(&section);
      }
    };
    for (int i = 0; i < 3; ++i) StartThread(body);
    world.Advance(kSecond);
    world.EndThreads();
    ASSERT_EQ(most, 1) << "seed " << seed;
    ASSERT_EQ(turns, 30) << "seed " << seed;
  }
}

TEST(VirtualSync, WithoutASectionSomeScheduleLosesAnUpdate) {
  int lost = 0;
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    World world({seed});
    int count = 0;
    const std::function<void()> body = [&] {
      const Unwatched unwatched;
      const int seen = count;
      GetTickCount();
      count = seen + 1;
    };
    StartThread(body);
    StartThread(body);
    world.Settle();
    world.EndThreads();
    if (count == 1) ++lost;
  }
  EXPECT_GT(lost, 0) << "the schedules never interrupt a thread";
  EXPECT_LT(lost, 100);
}

TEST(VirtualSync, EverySignalWakesExactlyOneWaiter) {
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    World world({seed});
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<int> woken = 0;
    const std::function<void()> body = [&] {
      if (WaitForSingleObject(event, INFINITE) == WAIT_OBJECT_0) ++woken;
    };
    for (int i = 0; i < 3; ++i) StartThread(body);
    Sleep(1);
    EventModify(event, EVENT_SET);
    world.Settle();
    ASSERT_EQ(woken, 1) << "seed " << seed;
    EventModify(event, EVENT_SET);
    EventModify(event, EVENT_SET);
    world.Settle();
    ASSERT_EQ(woken, 3) << "seed " << seed;
    ASSERT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
  }
}

TEST(VirtualSync, LongestWaiterIsWokenFirst) {
  World world;
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  Notes<int> order;
  const std::function<void()> first = [&] {
    WaitForSingleObject(event, INFINITE);
    order.Add(1);
  };
  const std::function<void()> second = [&] {
    WaitForSingleObject(event, INFINITE);
    order.Add(2);
  };
  StartThread(second);
  Sleep(1);
  StartThread(first);
  Sleep(1);
  EventModify(event, EVENT_SET);
  Sleep(1);
  EventModify(event, EVENT_SET);
  Sleep(1);
  EXPECT_THAT(order.all(), ElementsAre(2, 1));
}

TEST(VirtualSync, WaitEndsExactlyAtItsTimeout) {
  World world;
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  EXPECT_EQ(WaitForSingleObject(event, 1000), WAIT_TIMEOUT);
  EXPECT_EQ(world.now_us(), 1'000'000);
}

TEST(VirtualSync, WaitEndsExactlyWithTheSignal) {
  World world;
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const std::function<void()> body = [&] {
    Sleep(7);
    EventModify(event, EVENT_SET);
  };
  StartThread(body);
  EXPECT_EQ(WaitForSingleObject(event, 1000), WAIT_OBJECT_0);
  EXPECT_EQ(world.now_us(), 7000);
}

TEST(VirtualSync, BytesThatNeverWereASectionAreHarmless) {
  World world;
  CRITICAL_SECTION garbage = {reinterpret_cast<void*>(0xDEADBEEFUL)};
  EnterCriticalSection(&garbage);
  LeaveCriticalSection(&garbage);
  DeleteCriticalSection(&garbage);
  EXPECT_THAT(world.leftovers(), IsEmpty());
}

TEST(VirtualSync, SectionOfAnEarlierWorldIsNotMistakenForOneOfThis) {
  CRITICAL_SECTION old_section;
  {
    World world;
    InitializeCriticalSection(&old_section);
  }
  World world;
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  DeleteCriticalSection(&old_section);
  EXPECT_THAT(world.leftovers(), ElementsAre("section1"));
}

}  // namespace
}  // namespace ipodcomm::virtual_platform

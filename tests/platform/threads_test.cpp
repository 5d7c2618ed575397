// SPDX-License-Identifier: MIT
// Threads: starting them, waiting for them, ending them, and time passing for them.
#include <atomic>
#include <memory>

#include "support.h"

namespace ipodcomm::test {
namespace {

DWORD WINAPI StoreTrue(void* flag) {
  *static_cast<std::atomic<bool>*>(flag) = true;
  return 0;
}

struct Gates {
  HANDLE open;
  HANDLE passed;
};

DWORD WINAPI PassOn(void* argument) {
  const Gates gates = *static_cast<Gates*>(argument);
  WaitForSingleObject(gates.open, INFINITE);
  EventModify(gates.passed, EVENT_SET);
  return 0;
}

class Threads : public PlatformTest {};

TEST_F(Threads, RunTheirRoutineWithItsArgument) {
  std::atomic<bool> ran{false};
  const HANDLE thread = CreateThread(nullptr, 0, StoreTrue, &ran, 0, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  EXPECT_TRUE(ran);
  EXPECT_TRUE(CloseHandle(thread));
}

TEST_F(Threads, AcceptASmallStackToo) {
  std::atomic<bool> ran{false};
  const HANDLE thread = CreateThread(nullptr, 1, StoreTrue, &ran, 0, nullptr);
  ASSERT_NE(thread, nullptr);
  WaitForSingleObject(thread, INFINITE);
  EXPECT_TRUE(ran);
  CloseHandle(thread);
}

TEST_F(Threads, HaveIdentifiersOfTheirOwn) {
  DWORD first = 0;
  DWORD second = 0;
  DWORD second_again = 1;
  TestThread one([&first] { first = GetCurrentThreadId(); });
  TestThread two([&] {
    second = GetCurrentThreadId();
    second_again = GetCurrentThreadId();
  });
  one.Join();
  two.Join();
  EXPECT_EQ(first, one.id());
  EXPECT_EQ(second, two.id());
  EXPECT_EQ(second, second_again);
  EXPECT_NE(first, second);
  EXPECT_NE(first, GetCurrentThreadId());
  EXPECT_NE(first, 0U);
}

TEST_F(Threads, AreWaitedForAnyNumberOfTimes) {
  TestThread thread([] {});
  for (int turn = 0; turn < 3; ++turn) {
    EXPECT_EQ(WaitForSingleObject(thread.handle(), INFINITE), WAIT_OBJECT_0);
  }
}

TEST_F(Threads, AWaitForARunningThreadTimesOut) {
  const HANDLE gate = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  {
    TestThread thread([gate] { WaitForSingleObject(gate, INFINITE); });
    EXPECT_EQ(WaitForSingleObject(thread.handle(), 0), WAIT_TIMEOUT);
    EXPECT_EQ(WaitForSingleObject(thread.handle(), 10), WAIT_TIMEOUT);
    EventModify(gate, EVENT_SET);
  }
  CloseHandle(gate);
}

TEST_F(Threads, GoOnWhenTheirHandleIsClosed) {
  Gates gates{CreateEventW(nullptr, TRUE, FALSE, nullptr),
              CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  const HANDLE thread = CreateThread(nullptr, 0, PassOn, &gates, 0, nullptr);
  ASSERT_TRUE(CloseHandle(thread));
  EventModify(gates.open, EVENT_SET);
  EXPECT_EQ(WaitForSingleObject(gates.passed, INFINITE), WAIT_OBJECT_0);
  CloseHandle(gates.open);
  CloseHandle(gates.passed);
}

TEST_F(Threads, EndWhileTheySleepForGood) {
  TestThread thread([] { Sleep(INFINITE); });
  Sleep(10);
  EXPECT_TRUE(TerminateThread(thread.handle(), 3));
  EXPECT_EQ(WaitForSingleObject(thread.handle(), INFINITE), WAIT_OBJECT_0);
}

TEST_F(Threads, EndWhileTheyWaitForAnEvent) {
  const HANDLE never = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  TestThread thread([never] { WaitForSingleObject(never, INFINITE); });
  Sleep(10);
  EXPECT_TRUE(TerminateThread(thread.handle(), 3));
  EXPECT_EQ(WaitForSingleObject(thread.handle(), INFINITE), WAIT_OBJECT_0);
  CloseHandle(never);
}

TEST_F(Threads, AThreadEndedInAWaitTakesNoSignalWithIt) {
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  TestThread thread([event] { WaitForSingleObject(event, INFINITE); });
  Sleep(10);
  ASSERT_TRUE(TerminateThread(thread.handle(), 3));
  thread.Join();
  EventModify(event, EVENT_SET);
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
  CloseHandle(event);
}

TEST_F(Threads, EndBeforeTheyBegin) {
  REQUIRE_TRAIT(ends_threads_at_safe_points, "it may die holding the system's loader lock here");
  for (int turn = 0; turn < 20; ++turn) {
    TestThread thread([] {
      for (;;) Sleep(1);
    });
    ASSERT_TRUE(TerminateThread(thread.handle(), 3));
    ASSERT_EQ(WaitForSingleObject(thread.handle(), INFINITE), WAIT_OBJECT_0);
  }
}

TEST_F(Threads, EndingAnEndedThreadHarmsNobody) {
  REQUIRE_TRAIT(ends_threads_at_safe_points, "the result is undefined here");
  TestThread thread([] {});
  thread.Join();
  EXPECT_TRUE(TerminateThread(thread.handle(), 3));
}

TEST_F(Threads, UnwindTheirStackWhenEnded) {
  REQUIRE_TRAIT(ends_threads_at_safe_points, "threads are ended where they stand here");
  auto token = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = token;
  TestThread thread([&token] {
    const auto mine = std::move(token);
    Sleep(INFINITE);
  });
  Sleep(10);
  EXPECT_FALSE(watched.expired());
  EXPECT_TRUE(TerminateThread(thread.handle(), 3));
  EXPECT_TRUE(watched.expired());
}

TEST_F(Threads, DoNotEndWhileTheyHoldALock) {
  REQUIRE_TRAIT(ends_threads_at_safe_points, "threads are ended where they stand here");
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  const HANDLE inside = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  std::atomic<bool> about_to_leave{false};
  TestThread thread([&] {
    EnterCriticalSection(&section);
    EventModify(inside, EVENT_SET);
    for (int turn = 0; turn < 5; ++turn) Sleep(10);
    about_to_leave = true;
    LeaveCriticalSection(&section);
    Sleep(INFINITE);
  });
  WaitForSingleObject(inside, INFINITE);
  EXPECT_TRUE(TerminateThread(thread.handle(), 3));
  EXPECT_TRUE(about_to_leave);
  EnterCriticalSection(&section);  // would block for ever on an orphaned lock
  LeaveCriticalSection(&section);
  DeleteCriticalSection(&section);
  CloseHandle(inside);
}

TEST_F(Threads, SleepAtLeastAsLongAsAsked) {
  for (const DWORD duration_ms : {1U, 5U, 50U}) {
    const DWORD start = GetTickCount();
    Sleep(duration_ms);
    EXPECT_GE(GetTickCount() - start + world.traits().tick_step_ms, duration_ms);
  }
}

TEST_F(Threads, SleepingForNothingReturns) { Sleep(0); }

TEST_F(Threads, TheTickCountGoesOnWhileTheySleep) {
  const DWORD start = GetTickCount();
  for (int turn = 0; turn < 20; ++turn) Sleep(5);
  EXPECT_GE(GetTickCount() - start + world.traits().tick_step_ms, 100U);
}

}  // namespace
}  // namespace ipodcomm::test

// SPDX-License-Identifier: MIT
// Threads on Linux: exit codes, ending at safe points, and a process that ends under its threads.
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "platform/posix/threads.h"
#include "support.h"

namespace ipodcomm::test {
namespace {

DWORD WINAPI Return7(void*) { return 7; }

DWORD WINAPI SleepForGood(void*) {
  Sleep(INFINITE);
  return 0;
}

DWORD WINAPI EndItself(void* handle) {
  TerminateThread(*static_cast<HANDLE*>(handle), 9);
  return 0;
}

DWORD WINAPI SwallowTheEnd(void*) {
  try {
    Sleep(INFINITE);
  } catch (...) {
  }
  Sleep(INFINITE);
  return 1;
}

DWORD WINAPI TimerSlackNs(void*) {
  return static_cast<DWORD>(prctl(PR_GET_TIMERSLACK, 0UL, 0UL, 0UL, 0UL));
}

DWORD ExitCode(HANDLE thread) {
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  return platform::Handles().FindAs<platform::Thread>(thread)->exit_code();
}

class PosixThreads : public PlatformTest {};

TEST_F(PosixThreads, KeepTheirExitCode) {
  const HANDLE thread = CreateThread(nullptr, 0, Return7, nullptr, 0, nullptr);
  EXPECT_EQ(ExitCode(thread), 7U);
  CloseHandle(thread);
}

TEST_F(PosixThreads, WakeAsPunctuallyAsTheKernelCan) {
  const HANDLE thread = CreateThread(nullptr, 0, TimerSlackNs, nullptr, 0, nullptr);
  EXPECT_EQ(ExitCode(thread), 1U);
  CloseHandle(thread);
}

TEST_F(PosixThreads, HaveTheExitCodeOfTheirEnding) {
  const HANDLE thread = CreateThread(nullptr, 0, SleepForGood, nullptr, 0, nullptr);
  EXPECT_TRUE(TerminateThread(thread, 0xFFFFFFFF));
  EXPECT_EQ(ExitCode(thread), 0xFFFFFFFFU);
  CloseHandle(thread);
}

TEST_F(PosixThreads, MayEndThemselves) {
  HANDLE thread = nullptr;
  const HANDLE gate = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  struct Start {
    HANDLE gate;
    HANDLE* thread;
  } start{gate, &thread};
  const auto routine = [](void* argument) -> DWORD {
    const Start& given = *static_cast<Start*>(argument);
    WaitForSingleObject(given.gate, INFINITE);
    return EndItself(given.thread);
  };
  thread = CreateThread(nullptr, 0, routine, &start, 0, nullptr);
  EventModify(gate, EVENT_SET);
  EXPECT_EQ(ExitCode(thread), 9U);
  CloseHandle(thread);
  CloseHandle(gate);
}

TEST_F(PosixThreads, EndAtTheNextSafePointWhenTheEndIsSwallowed) {
  const HANDLE thread = CreateThread(nullptr, 0, SwallowTheEnd, nullptr, 0, nullptr);
  Sleep(10);
  EXPECT_TRUE(TerminateThread(thread, 4));
  EXPECT_EQ(ExitCode(thread), 4U);
  CloseHandle(thread);
}

TEST_F(PosixThreads, EndWithinAShortSleepOrWait) {
  const HANDLE never = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  TestThread sleeper([] {
    for (;;) Sleep(1);
  });
  TestThread waiter([never] {
    for (;;) WaitForSingleObject(never, 1);
  });
  Sleep(10);
  EXPECT_TRUE(TerminateThread(sleeper.handle(), 1));
  EXPECT_TRUE(TerminateThread(waiter.handle(), 1));
  CloseHandle(never);
}

TEST_F(PosixThreads, TwoMayEndOneThread) {
  TestThread victim([] { Sleep(INFINITE); });
  TestThread one([&] { EXPECT_TRUE(TerminateThread(victim.handle(), 1)); });
  TestThread two([&] { EXPECT_TRUE(TerminateThread(victim.handle(), 2)); });
}

TEST_F(PosixThreads, AThreadFromElsewhereMayUseEveryService) {
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  pthread_t thread;
  ASSERT_EQ(pthread_create(
                &thread, nullptr,
                [](void* argument) -> void* {
                  Sleep(1);
                  EXPECT_NE(GetCurrentThreadId(), 0U);
                  EventModify(argument, EVENT_SET);
                  return nullptr;
                },
                event),
            0);
  EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
  pthread_join(thread, nullptr);
  CloseHandle(event);
}

TEST_F(PosixThreads, RefuseAnEndWithoutARoutine) {
  EXPECT_EQ(CreateThread(nullptr, 0, nullptr, nullptr, 0, nullptr), nullptr);
  EXPECT_EQ(GetLastError(), 87U);
}

// Uses the services from its own destructor, as a host's static session does.
struct LateUser {
  ~LateUser() {
    EnterCriticalSection(&section);
    Sleep(1);
    LeaveCriticalSection(&section);
    CloseHandle(event);
    LocalFree(LocalAlloc(LPTR, 1));
  }
  CRITICAL_SECTION section = {};
  HANDLE event = nullptr;
};

TEST_F(PosixThreads, AProcessMayEndUnderItsThreads) {
  const pid_t child = fork();
  if (child == 0) {
    static LateUser late;
    InitializeCriticalSection(&late.section);
    late.event = CreateEventW(nullptr, FALSE, FALSE, L"late");
    const auto busy = [](void*) -> DWORD {
      for (;;) {
        EnterCriticalSection(&late.section);
        LocalFree(LocalAlloc(LPTR, 10));
        WaitForSingleObject(late.event, 1);
        LeaveCriticalSection(&late.section);
        Sleep(1);
      }
    };
    for (int i = 0; i < 4; ++i) CreateThread(nullptr, 0, busy, nullptr, 0, nullptr);
    CreateThread(nullptr, 0, SleepForGood, nullptr, 0, nullptr);
    Sleep(20);
    std::exit(23);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 23);
}

}  // namespace
}  // namespace ipodcomm::test

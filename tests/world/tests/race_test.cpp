// SPDX-License-Identifier: MIT
// ThreadSanitizer finds races in a virtual world although only one thread runs at a time: a planted
// race is reported, whatever the schedule, and what the services order is not. Each case runs in a
// process of its own, which ThreadSanitizer lets end with code 66 when it has reported something.
#include <gtest/gtest.h>

#include <cstdlib>

#include "support.h"

#if defined(IPODCOMM_THREAD_SANITIZER)

namespace ipodcomm::virtual_platform {
namespace {

constexpr int kReported = 66;
constexpr std::uint64_t kSeeds = 8;

// Two threads run in a world, and then the process ends.
template <class One, class Other>
[[noreturn]] void RunThreads(std::uint64_t seed, One one, Other other) {
  {
    World world({seed});
    const std::function<void()> bodies[] = {one, other};
    const HANDLE threads[] = {StartThread(bodies[0]), StartThread(bodies[1])};
    for (const HANDLE thread : threads) WaitForSingleObject(thread, INFINITE);
  }
  std::exit(0);
}

// The same for cases that need more than two threads.
template <class Body>
[[noreturn]] void RunInWorld(std::uint64_t seed, Body body) {
  {
    World world({seed});
    body(world);
  }
  std::exit(0);
}

class VirtualRacesDeathTest : public testing::Test {
 protected:
  VirtualRacesDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

#define EXPECT_RACE(statement) \
  EXPECT_EXIT(statement, testing::ExitedWithCode(kReported), "data race .*Touch")
#define EXPECT_NO_RACE(statement) EXPECT_EXIT(statement, testing::ExitedWithCode(0), "")

int shared = 0;

void Touch() { ++shared; }

TEST_F(VirtualRacesDeathTest, UnguardedAccessIsReportedUnderEverySchedule) {
  for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
    EXPECT_RACE(RunThreads(seed, Touch, Touch));
  }
}

TEST_F(VirtualRacesDeathTest, AccessesFarApartInTimeAreStillReported) {
  const auto late = [] {
    Sleep(60'000);
    Touch();
  };
  EXPECT_RACE(RunThreads(1, Touch, late));
}

TEST_F(VirtualRacesDeathTest, ServicesThatOrderNothingHideNoRace) {
  EXPECT_RACE(RunInWorld(1, [](World& world) {
    world.Record();
    const HANDLE port = OpenPort();
    SetReadTimeouts(port, 1, 1, 1);
    const std::function<void()> body = [&] {
      for (int i = 0; i < 3; ++i) {
        LocalFree(LocalAlloc(LPTR, 64));
        CloseHandle(CreateEventW(nullptr, FALSE, TRUE, nullptr));
        GetTickCount();
        Write(port, {1, 2, 3});
        Read(port, 1);
        NKDbgPrintfW(L"%d\n", i);
        ActivateDevice(L"X", 18);
        HKEY key = nullptr;
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"A", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                        nullptr);
        RegCloseKey(key);
        CRITICAL_SECTION own;
        InitializeCriticalSection(&own);
        EnterCriticalSection(&own);
        LeaveCriticalSection(&own);
        DeleteCriticalSection(&own);
        Sleep(1);
      }
    };
    const std::function<void()> before = [&] {
      Touch();
      body();
    };
    const std::function<void()> after = [&] {
      body();
      Sleep(1000);
      Touch();
    };
    const HANDLE threads[] = {StartThread(before), StartThread(after)};
    for (const HANDLE thread : threads) WaitForSingleObject(thread, INFINITE);
  }));
}

TEST_F(VirtualRacesDeathTest, WaitThatTimesOutOrdersNothing) {
  EXPECT_RACE(RunInWorld(1, [](World&) {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const std::function<void()> body = [&] {
      Touch();
      EventModify(event, EVENT_RESET);
      Sleep(INFINITE);
    };
    StartThread(body);
    WaitForSingleObject(event, 1000);
    Touch();
  }));
}

TEST_F(VirtualRacesDeathTest, SignalOfAnotherEventOrdersNothing) {
  EXPECT_RACE(RunInWorld(1, [](World&) {
    const HANDLE one = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const HANDLE other = CreateEventW(nullptr, FALSE, TRUE, nullptr);
    const std::function<void()> body = [&] {
      Touch();
      EventModify(one, EVENT_SET);
      Sleep(INFINITE);
    };
    StartThread(body);
    Sleep(5);
    WaitForSingleObject(other, INFINITE);
    Touch();
  }));
}

TEST_F(VirtualRacesDeathTest, AccessAfterTheSectionWasLeftIsReported) {
  EXPECT_RACE(RunInWorld(1, [](World&) {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    const std::function<void()> body = [&] {
      EnterCriticalSection(&section);
      LeaveCriticalSection(&section);
      Touch();
      Sleep(INFINITE);
    };
    StartThread(body);
    Sleep(5);
    EnterCriticalSection(&section);
    Touch();
    LeaveCriticalSection(&section);
  }));
}

TEST_F(VirtualRacesDeathTest, BufferGivenToAServiceIsTheCallersToGuard) {
  EXPECT_RACE(RunInWorld(1, [](World&) {
    const HANDLE port = OpenPort();
    const std::function<void()> writer = [&] {
      Touch();
      Sleep(INFINITE);
    };
    StartThread(writer);
    Sleep(5);
    DWORD written = 0;
    WriteFile(port, &shared, sizeof shared, &written, nullptr);
  }));
}

TEST_F(VirtualRacesDeathTest, SectionOrdersWhatItGuards) {
  EXPECT_NO_RACE(RunInWorld(1, [](World&) {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    const std::function<void()> body = [&] {
      for (int i = 0; i < 20; ++i) {
        EnterCriticalSection(&section);
        Touch();
        LeaveCriticalSection(&section);
        Sleep(i % 3 == 0 ? 1 : 0);
      }
    };
    const HANDLE threads[] = {StartThread(body), StartThread(body)};
    for (const HANDLE thread : threads) WaitForSingleObject(thread, INFINITE);
    if (shared != 40) std::abort();
  }));
}

TEST_F(VirtualRacesDeathTest, SignalOrdersWhatCameBefore) {
  for (const BOOL manual : {FALSE, TRUE}) {
    EXPECT_NO_RACE(RunInWorld(1, [manual](World&) {
      const HANDLE event = CreateEventW(nullptr, manual, FALSE, nullptr);
      const std::function<void()> body = [&] {
        Touch();
        EventModify(event, EVENT_SET);
        Sleep(INFINITE);
      };
      StartThread(body);
      WaitForSingleObject(event, INFINITE);
      Touch();
    }));
  }
}

TEST_F(VirtualRacesDeathTest, StartAndEndOfAThreadOrderWhatItDoes) {
  EXPECT_NO_RACE(RunInWorld(1, [](World& world) {
    Touch();
    const std::function<void()> body = Touch;
    WaitForSingleObject(StartThread(body), INFINITE);
    Touch();
    const std::function<void()> endless = [] {
      Touch();
      Sleep(INFINITE);
    };
    const HANDLE thread = StartThread(endless);
    Sleep(5);
    TerminateThread(thread, 0);
    Touch();
    StartThread(endless);
    Sleep(5);
    world.EndThreads();
    Touch();
  }));
}

}  // namespace
}  // namespace ipodcomm::virtual_platform

#endif  // IPODCOMM_THREAD_SANITIZER

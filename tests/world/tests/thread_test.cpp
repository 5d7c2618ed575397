// SPDX-License-Identifier: MIT
// Threads of a virtual world: one at a time, in an order that the schedule decides, and how they
// end.
#include <gmock/gmock.h>

#include <atomic>
#include <exception>
#include <set>

#include "support.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Text(const Notes<char>& notes) {
  const std::vector<char> letters = notes.all();
  return {letters.begin(), letters.end()};
}

// Two threads that each note five steps, with a chance to be interrupted after each.
std::string Interleaving(WorldOptions options) {
  World world(std::move(options));
  Notes<char> order;
  const auto noting = [&](char letter) {
    return [&order, letter] {
      for (int i = 0; i < 5; ++i) {
        order.Add(letter);
        GetTickCount();
      }
    };
  };
  const std::function<void()> first = noting('a');
  const std::function<void()> second = noting('b');
  StartThread(first);
  StartThread(second);
  world.Settle();
  return Text(order);
}

TEST(VirtualThreads, OrderFollowsFromTheSeed) { EXPECT_EQ(Interleaving({3}), Interleaving({3})); }

TEST(VirtualThreads, OtherSeedsGiveOtherOrders) {
  std::set<std::string> orders;
  for (std::uint64_t seed = 0; seed < 50; ++seed) orders.insert(Interleaving({seed}));
  EXPECT_GE(orders.size(), 10U);
}

TEST(VirtualThreads, CooperativeThreadsRunUntilTheyWait) {
  EXPECT_EQ(Interleaving({1, CooperativeSchedule()}), "aaaaabbbbb");
}

TEST(VirtualThreads, PriorityDecidesAtEveryStep) {
  EXPECT_EQ(Interleaving({1, PrioritySchedule({1, 3, 2})}), "bbbbbaaaaa");
  EXPECT_EQ(Interleaving({1, PrioritySchedule({1, 2, 3})}), "aaaaabbbbb");
}

TEST(VirtualThreads, DrawnPrioritiesKeepAThreadAwayForLong) {
  std::set<std::string> orders;
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    orders.insert(Interleaving({1, RandomPrioritySchedule(seed, 1000)}));
  }
  EXPECT_THAT(orders, testing::Contains("aaaaabbbbb"));
  EXPECT_THAT(orders, testing::Contains("bbbbbaaaaa"));
  EXPECT_EQ(Interleaving({1, RandomPrioritySchedule(3, 2)}),
            Interleaving({1, RandomPrioritySchedule(3, 2)}));
}

// Time passes for a thread that does not wait, and for it alone.
TEST(VirtualThreads, PausedThreadLosesItsProcessorForAWhile) {
  World world({1, PausingSchedule(CooperativeSchedule(), 1, 1, 5000)});
  const std::int64_t start_us = world.now_us();
  for (int i = 0; i < 10; ++i) GetTickCount();
  EXPECT_GE(world.now_us() - start_us, 10);
  EXPECT_LE(world.now_us() - start_us, 10 * 5000);
}

TEST(VirtualThreads, PausesFollowFromTheSeedAndComeOnceInTheirPace) {
  const auto schedule = PausingSchedule(CooperativeSchedule(), 3, 10, 40);
  const auto again = PausingSchedule(CooperativeSchedule(), 3, 10, 40);
  int pauses = 0;
  for (std::uint64_t call = 0; call < 10'000; ++call) {
    const std::int64_t pause_us = schedule->PauseUs(call);
    EXPECT_EQ(pause_us, again->PauseUs(call));
    EXPECT_LE(pause_us, 40);
    pauses += pause_us > 0 ? 1 : 0;
  }
  EXPECT_NEAR(pauses, 1000, 150);
}

TEST(VirtualThreads, RecordedScheduleIsRepeated) {
  // Thread 1 is the host, which starts the other two; where the recording ends, the last goes on.
  const std::vector<int> decisions = {1, 1, 1, 3, 3, 2, 2, 3};
  EXPECT_EQ(Interleaving({1, ReplaySchedule(decisions)}), "bbaabbbaaa");
}

TEST(VirtualThreads, DecisionsOfARunRepeatIt) {
  std::vector<int> decisions;
  std::string order;
  const auto run = [&](WorldOptions options) {
    World world(std::move(options));
    Notes<char> notes;
    const std::function<void()> a = [&] {
      for (int i = 0; i < 20; ++i, Sleep(1)) notes.Add('a');
    };
    const std::function<void()> b = [&] {
      for (int i = 0; i < 20; ++i, Sleep(1)) notes.Add('b');
    };
    StartThread(a);
    StartThread(b);
    world.Advance(kSecond);
    decisions = world.decisions();
    order = Text(notes);
  };
  run({12, RandomSchedule(12, 1)});
  const std::string first = order;
  run({99, ReplaySchedule(decisions)});
  EXPECT_EQ(order, first);
  EXPECT_NE(first.find("abba"), std::string::npos) << first << " shows no choice at all";
}

TEST(VirtualThreads, TimeStandsStillWhileAnyThreadCanRun) {
  World world;
  std::atomic<std::int64_t> end_us = -1;
  const std::function<void()> busy = [&] {
    for (int i = 0; i < 1000; ++i) GetTickCount();
    end_us = world.now_us();
  };
  StartThread(busy);
  Sleep(1);
  EXPECT_EQ(end_us, 0);
}

TEST(VirtualThreads, WaitingForAThreadEndsWithIt) {
  World world;
  const std::function<void()> body = [] { Sleep(30); };
  const HANDLE thread = StartThread(body);
  EXPECT_EQ(WaitForSingleObject(thread, 29), WAIT_TIMEOUT);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(world.now_us(), 30'000);
  EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0);
}

TEST(VirtualThreads, ThreadIdsAreTheNumbersOfTheNames) {
  World world;
  EXPECT_EQ(GetCurrentThreadId(), 1U);
  std::atomic<DWORD> own_id = 0;
  const std::function<void()> body = [&] { own_id = GetCurrentThreadId(); };
  StartThread(body);
  world.Settle();
  EXPECT_EQ(own_id, 2U);
}

struct Unwinding {
  explicit Unwinding(bool* flag) : unwound(flag) {}
  ~Unwinding() { *unwound = true; }
  bool* unwound;
};

TEST(VirtualThreads, TerminatedThreadIsUnwoundOutOfItsSleep) {
  World world;
  bool unwound = false;
  bool went_on = false;
  const std::function<void()> body = [&] {
    const Unwinding guard(&unwound);
    Sleep(INFINITE);
    went_on = true;
  };
  const HANDLE thread = StartThread(body);
  Sleep(1);
  EXPECT_NE(TerminateThread(thread, 0xFFFFFFFF), FALSE);
  EXPECT_TRUE(unwound);
  EXPECT_FALSE(went_on);
  EXPECT_EQ(world.now_us(), 1000);
  EXPECT_THAT(world.live_threads(), IsEmpty());
}

TEST(VirtualThreads, TerminatedThreadGoesOnWhileItHoldsASection) {
  World world;
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  bool left = false;
  const std::function<void()> body = [&] {
    EnterCriticalSection(&section);
    Sleep(10);
    LeaveCriticalSection(&section);
    left = true;
    Sleep(INFINITE);
  };
  const HANDLE thread = StartThread(body);
  Sleep(1);
  EXPECT_NE(TerminateThread(thread, 1), FALSE);
  EXPECT_TRUE(left);
  EXPECT_EQ(world.now_us(), 10'000);
}

TEST(VirtualThreads, ThreadTerminatedBeforeItsFirstInstructionNeverRuns) {
  World world({1, CooperativeSchedule()});
  bool ran = false;
  const std::function<void()> body = [&] { ran = true; };
  const HANDLE thread = StartThread(body);
  EXPECT_NE(TerminateThread(thread, 1), FALSE);
  EXPECT_FALSE(ran);
  EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0);
}

TEST(VirtualThreads, ThreadThatEndsItselfIsUnwound) {
  World world;
  bool unwound = false;
  std::atomic<HANDLE> thread = nullptr;
  const std::function<void()> body = [&] {
    const Unwinding guard(&unwound);
    Sleep(1);
    TerminateThread(thread, 3);
    Sleep(INFINITE);
  };
  thread = StartThread(body);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  EXPECT_TRUE(unwound);
}

TEST(VirtualThreads, WorldsEndUnwindsEveryWait) {
  std::vector<bool> unwound(5, false);
  {
    World world;
    const HANDLE port = OpenPort();
    SetCommMask(port, EV_RXCHAR);
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    EnterCriticalSection(&section);
    bool flags[5] = {};
    const std::function<void()> bodies[] = {
        [&] {
          const Unwinding guard(&flags[0]);
          Sleep(INFINITE);
        },
        [&] {
          const Unwinding guard(&flags[1]);
          WaitForSingleObject(event, 1000);
        },
        [&] {
          const Unwinding guard(&flags[2]);
          Read(port, 1);
        },
        [&] {
          const Unwinding guard(&flags[3]);
          DWORD events = 0;
          WaitCommEvent(port, &events, nullptr);
        },
        [&] {
          const Unwinding guard(&flags[4]);
          EnterCriticalSection(&section);
        },
    };
    for (const auto& body : bodies) StartThread(body);
    Sleep(1);
    EXPECT_EQ(world.live_threads().size(), 5U);
    // The bodies use what this scope holds, so the threads are ended before it is left.
    world.EndThreads();
    EXPECT_THAT(world.live_threads(), IsEmpty());
    unwound.assign(flags, flags + 5);
  }
  EXPECT_THAT(unwound, ElementsAre(true, true, true, true, true));
}

TEST(VirtualThreads, HostGoesOnInTimeAfterAllOthersHaveEnded) {
  World world;
  const std::function<void()> body = [] { Sleep(INFINITE); };
  StartThread(body);
  Sleep(1);
  world.EndThreads();
  Sleep(20);
  EXPECT_EQ(world.now_us(), 21'000);
  EXPECT_EQ(StartThread(body), nullptr);
  EXPECT_EQ(GetLastError(), 8U);
}

TEST(VirtualThreads, SecondThreadOfARoutineIsNumbered) {
  World world;
  const auto routine = [](void* /*argument*/) -> DWORD { return 0; };
  world.NameRoutine(routine, "worker");
  world.Record({"CreateThread"});
  CreateThread(nullptr, 0, routine, nullptr, 0, nullptr);
  CreateThread(nullptr, 0, routine, nullptr, 0, nullptr);
  EXPECT_THAT(world.DrainRecord(), ElementsAre("CreateThread(worker)", "CreateThread(worker 2)"));
}

TEST(VirtualThreads, ThreadThatNeverRanIsGoneWithTheWorld) {
  bool ran = false;
  const std::function<void()> body = [&] { ran = true; };
  {
    World world({1, CooperativeSchedule()});
    StartThread(body);
  }
  EXPECT_FALSE(ran);
}

TEST(VirtualThreads, DestructorsOfAnEndedThreadMayWaitAndTakeLocks) {
  bool finished = false;
  CRITICAL_SECTION section;
  struct Cleanup {
    ~Cleanup() {
      EnterCriticalSection(section);
      Sleep(1000);
      LeaveCriticalSection(section);
      *finished = true;
    }
    CRITICAL_SECTION* section;
    bool* finished;
  };
  const std::function<void()> body = [&] {
    const Cleanup cleanup{&section, &finished};
    Sleep(INFINITE);
  };
  {
    World world;
    InitializeCriticalSection(&section);
    StartThread(body);
    Sleep(1);
  }
  EXPECT_TRUE(finished);
}

TEST(VirtualThreads, AThousandShortThreadsComeAndGo) {
  World world;
  int count = 0;
  const std::function<void()> body = [&] {
    Sleep(1);
    ++count;
  };
  for (int i = 0; i < 1000; ++i) {
    const HANDLE thread = StartThread(body);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
  }
  EXPECT_EQ(count, 1000);
  EXPECT_THAT(world.leftovers(), IsEmpty());
}

TEST(VirtualThreads, WaitThatCannotEndFailsWithWhoWaitsOnWhat) {
  World world;
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  EnterCriticalSection(&section);
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, L"IPOD_PORT_EVENT_NAME");
  world.NameThreads({"stuck"});
  const std::function<void()> body = [&] { EnterCriticalSection(&section); };
  StartThread(body);
  std::string reason;
  try {
    WaitForSingleObject(event, INFINITE);
  } catch (const Deadlock& deadlock) {
    reason = deadlock.what();
  }
  EXPECT_THAT(reason, HasSubstr("host: WaitForSingleObject(event1 \"IPOD_PORT_EVENT_NAME\")"));
  EXPECT_THAT(reason, HasSubstr("stuck: EnterCriticalSection(section1 held by host) for ever"));
  // The world goes on, so that the test's objects can be destroyed.
  Sleep(5);
  EXPECT_EQ(world.now_us(), 5000);
}

// Windows holds a lock while a thread ends; ended there, it would hold it for ever.
TEST(VirtualThreads, TerminatingAThreadOnItsWayOutIsNoticed) {
  // The host starts it and is about to end it; it runs and returns; the host goes on.
  World world({1, ReplaySchedule({1, 2, 1})});
  world.NameThreads({"leaver"});
  const std::function<void()> body = [] {};
  const HANDLE leaver = StartThread(body);
  std::string reason;
  try {
    TerminateThread(leaver, 0);
  } catch (const Deadlock& deadlock) {
    reason = deadlock.what();
  }
  EXPECT_THAT(reason, HasSubstr("TerminateThread(leaver) met a thread on its way out"));
}

TEST(VirtualThreads, BusyLoopIsNoticed) {
  World world;
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  EXPECT_THROW(
      {
        while (WaitForSingleObject(event, 0) == WAIT_TIMEOUT) {
        }
      },
      Deadlock);
}

TEST(VirtualThreads, EachHandlesItsOwnExceptionWhileOthersHandleTheirs) {
  World world({1, PrioritySchedule({1, 2, 2})});
  Notes<int> rethrown;
  const auto handling = [&](int number) {
    return [&rethrown, number] {
      try {
        try {
          throw number;
        } catch (int) {
          Sleep(static_cast<DWORD>(10 * number));
          throw;
        }
      } catch (int thrown) {
        rethrown.Add(thrown);
      }
    };
  };
  const std::function<void()> first = handling(1);
  const std::function<void()> second = handling(2);
  StartThread(first);
  StartThread(second);
  world.Advance(kSecond);
  EXPECT_THAT(rethrown.all(), ElementsAre(1, 2));
}

// Sleeps while an exception is on its way through its thread.
struct SleepsAtItsEnd {
  ~SleepsAtItsEnd() { Sleep(10); }
};

TEST(VirtualThreads, ExceptionOnItsWayConcernsNoOtherThread) {
  World world({1, CooperativeSchedule()});
  Notes<int> on_their_way;
  const std::function<void()> throwing = [&] {
    try {
      const SleepsAtItsEnd last;
      throw 1;
    } catch (int) {
      on_their_way.Add(std::uncaught_exceptions());
    }
  };
  const std::function<void()> watching = [&] { on_their_way.Add(std::uncaught_exceptions()); };
  StartThread(throwing);
  StartThread(watching);
  world.Advance(kSecond);
  EXPECT_THAT(on_their_way.all(), ElementsAre(0, 0));
}

TEST(VirtualThreads, ThreadBeginsWithoutAnErrorAndLeavesThatOfOthersAlone) {
  World world({1, CooperativeSchedule()});
  Notes<DWORD> errors;
  const std::function<void()> first = [&] {
    errors.Add(GetLastError());
    SetLastError(22);
  };
  const std::function<void()> second = [&] { errors.Add(GetLastError()); };
  SetLastError(11);
  StartThread(first);
  StartThread(second);
  world.Settle();
  errors.Add(GetLastError());
  EXPECT_THAT(errors.all(), ElementsAre(0U, 0U, 11U));
}

class WrongSchedule : public Schedule {
 public:
  int Choose(std::uint64_t /*step*/, const std::vector<int>& /*ready*/, int /*running*/) override {
    return 42;
  }
};

TEST(VirtualThreadsDeathTest, ScheduleThatChoosesNobodyIsRefused) {
  World world({1, std::make_unique<WrongSchedule>()});
  const std::function<void()> body = [] {};
  EXPECT_DEATH(StartThread(body), "chose thread 42, which cannot run");
}

TEST(VirtualThreadsDeathTest, SecondWorldIsRefused) {
  World world;
  EXPECT_DEATH(World second, "there is a World already");
}

TEST(VirtualThreadsDeathTest, ServiceWithoutAWorldSaysSo) {
  EXPECT_DEATH(Sleep(1), "Sleep called while there is no World");
}

}  // namespace
}  // namespace ipodcomm::virtual_platform

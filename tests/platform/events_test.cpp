// SPDX-License-Identifier: MIT
// Events: whom a signal wakes, how long it is kept, and what a name shares.
#include <atomic>
#include <memory>
#include <vector>

#include "support.h"

namespace ipodcomm::test {
namespace {

class Events : public PlatformTest {
 protected:
  void TearDown() override {
    for (const HANDLE event : events_) CloseHandle(event);
  }

  HANDLE NewEvent(bool manual, bool set, const wchar_t* name = nullptr) {
    const HANDLE event = CreateEventW(nullptr, manual ? TRUE : FALSE, set ? TRUE : FALSE, name);
    EXPECT_NE(event, nullptr);
    events_.push_back(event);
    return event;
  }
  HANDLE AutoReset() { return NewEvent(false, false); }
  HANDLE ManualReset() { return NewEvent(true, false); }

 private:
  std::vector<HANDLE> events_;
};

TEST_F(Events, AreNotSignalledAtFirst) {
  EXPECT_EQ(WaitForSingleObject(AutoReset(), 0), WAIT_TIMEOUT);
  EXPECT_EQ(WaitForSingleObject(ManualReset(), 0), WAIT_TIMEOUT);
}

TEST_F(Events, MayBeCreatedSignalled) {
  EXPECT_EQ(WaitForSingleObject(NewEvent(false, true), 0), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(NewEvent(true, true), 0), WAIT_OBJECT_0);
}

TEST_F(Events, AnAutoResetSignalIsTakenOnce) {
  const HANDLE event = AutoReset();
  ASSERT_TRUE(EventModify(event, EVENT_SET));
  EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
}

TEST_F(Events, AnAutoResetEventKeepsOneSignal) {
  const HANDLE event = AutoReset();
  ASSERT_TRUE(EventModify(event, EVENT_SET));
  ASSERT_TRUE(EventModify(event, EVENT_SET));
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
}

TEST_F(Events, AManualSignalStays) {
  const HANDLE event = ManualReset();
  ASSERT_TRUE(EventModify(event, EVENT_SET));
  EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
}

TEST_F(Events, ResettingDropsTheSignal) {
  for (const bool manual : {false, true}) {
    const HANDLE event = NewEvent(manual, true);
    EXPECT_TRUE(EventModify(event, EVENT_RESET));
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
    EXPECT_TRUE(EventModify(event, EVENT_RESET));
  }
}

TEST_F(Events, AnUnknownActionFailsWith87) {
  const HANDLE event = AutoReset();
  SetLastError(0);
  EXPECT_FALSE(EventModify(event, 7));
  EXPECT_EQ(GetLastError(), 87U);
}

TEST_F(Events, AWaitLastsAtLeastItsTimeout) {
  const HANDLE event = AutoReset();
  const DWORD start = GetTickCount();
  EXPECT_EQ(WaitForSingleObject(event, 50), WAIT_TIMEOUT);
  EXPECT_GE(GetTickCount() - start + world.traits().tick_step_ms, 50U);
}

TEST_F(Events, ASignalEndsAWait) {
  const HANDLE event = AutoReset();
  TestThread setter([event] {
    Sleep(20);
    EventModify(event, EVENT_SET);
  });
  EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
}

TEST_F(Events, AnAutoResetSignalWakesOneWaiter) {
  const HANDLE event = AutoReset();
  const HANDLE woke = AutoReset();
  std::atomic<int> awake{0};
  std::vector<std::unique_ptr<TestThread>> waiters;
  for (int i = 0; i < 3; ++i) {
    waiters.push_back(std::make_unique<TestThread>([&] {
      WaitForSingleObject(event, INFINITE);
      ++awake;
      EventModify(woke, EVENT_SET);
    }));
  }
  Sleep(20);  // all of them wait
  for (int expected = 1; expected <= 3; ++expected) {
    ASSERT_TRUE(EventModify(event, EVENT_SET));
    ASSERT_EQ(WaitForSingleObject(woke, INFINITE), WAIT_OBJECT_0);
    Sleep(10);
    EXPECT_EQ(awake, expected);
  }
}

TEST_F(Events, AManualSignalWakesEveryWaiter) {
  const HANDLE event = ManualReset();
  std::atomic<int> awake{0};
  std::vector<std::unique_ptr<TestThread>> waiters;
  for (int i = 0; i < 3; ++i) {
    waiters.push_back(std::make_unique<TestThread>([&] {
      WaitForSingleObject(event, INFINITE);
      ++awake;
    }));
  }
  Sleep(20);
  ASSERT_TRUE(EventModify(event, EVENT_SET));
  for (const auto& waiter : waiters) EXPECT_TRUE(waiter->Join());
  EXPECT_EQ(awake, 3);
}

TEST_F(Events, NoSignalIsLostBetweenTwoThreads) {
  const HANDLE ping = AutoReset();
  const HANDLE pong = AutoReset();
  constexpr int kTurns = 500;
  TestThread echo([&] {
    for (int turn = 0; turn < kTurns; ++turn) {
      WaitForSingleObject(ping, INFINITE);
      EventModify(pong, EVENT_SET);
    }
  });
  for (int turn = 0; turn < kTurns; ++turn) {
    ASSERT_TRUE(EventModify(ping, EVENT_SET));
    ASSERT_EQ(WaitForSingleObject(pong, INFINITE), WAIT_OBJECT_0);
  }
}

TEST_F(Events, OrderWhatTheirThreadsDo) {
  const HANDLE event = AutoReset();
  int plain = 0;
  TestThread writer([&] {
    plain = 42;
    EventModify(event, EVENT_SET);
  });
  WaitForSingleObject(event, INFINITE);
  EXPECT_EQ(plain, 42);
}

TEST_F(Events, AreSharedByTheirName) {
  const HANDLE first = NewEvent(false, false, L"ipodcomm shared event");
  const HANDLE second = NewEvent(false, false, L"ipodcomm shared event");
  EXPECT_NE(first, second);
  ASSERT_TRUE(EventModify(first, EVENT_SET));
  EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(first, 0), WAIT_TIMEOUT);
}

TEST_F(Events, OpeningByNameKeepsKindAndSignal) {
  const HANDLE first = NewEvent(false, true, L"ipodcomm kept event");
  const HANDLE second = NewEvent(true, false, L"ipodcomm kept event");
  EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(first, 0), WAIT_TIMEOUT);
}

TEST_F(Events, OutliveTheirFirstHandle) {
  const HANDLE first = CreateEventW(nullptr, FALSE, TRUE, L"ipodcomm outliving event");
  const HANDLE second = NewEvent(false, false, L"ipodcomm outliving event");
  ASSERT_TRUE(CloseHandle(first));
  EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_OBJECT_0);
}

TEST_F(Events, AreForgottenWithTheirLastHandle) {
  const HANDLE first = CreateEventW(nullptr, TRUE, TRUE, L"ipodcomm forgotten event");
  ASSERT_TRUE(CloseHandle(first));
  const HANDLE second = NewEvent(true, false, L"ipodcomm forgotten event");
  EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_TIMEOUT);
}

TEST_F(Events, DifferentNamesAreDifferentEvents) {
  const HANDLE first = NewEvent(false, true, L"ipodcomm event A");
  const HANDLE second = NewEvent(false, false, L"ipodcomm event B");
  EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_TIMEOUT);
  EXPECT_EQ(WaitForSingleObject(first, 0), WAIT_OBJECT_0);
}

}  // namespace
}  // namespace ipodcomm::test

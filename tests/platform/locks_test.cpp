// SPDX-License-Identifier: MIT
// Critical sections: recursive, exclusive, and harmless when misused.
#include <atomic>
#include <cstring>

#include "support.h"

namespace ipodcomm::test {
namespace {

class Locks : public PlatformTest {
 protected:
  void SetUp() override { InitializeCriticalSection(&section); }
  void TearDown() override { DeleteCriticalSection(&section); }

  // Another thread gets in and out; hangs if it never does.
  static bool OthersGetIn(CRITICAL_SECTION* asked) {
    TestThread thread([asked] {
      EnterCriticalSection(asked);
      LeaveCriticalSection(asked);
    });
    return thread.Join();
  }

  // Another thread stays out until the caller, who holds the section once, has left it.
  static bool OthersStayOut(CRITICAL_SECTION* asked) {
    std::atomic<bool> entered{false};
    TestThread thread([&] {
      EnterCriticalSection(asked);
      entered = true;
      LeaveCriticalSection(asked);
    });
    Sleep(30);
    const bool stayed_out = !entered;
    LeaveCriticalSection(asked);
    thread.Join();
    EnterCriticalSection(asked);
    return stayed_out;
  }

  CRITICAL_SECTION section;
};

TEST_F(Locks, AreFreeAtFirst) { EXPECT_TRUE(OthersGetIn(&section)); }

TEST_F(Locks, KeepOthersOut) {
  EnterCriticalSection(&section);
  EXPECT_TRUE(OthersStayOut(&section));
  LeaveCriticalSection(&section);
  EXPECT_TRUE(OthersGetIn(&section));
}

TEST_F(Locks, AreRecursive) {
  EnterCriticalSection(&section);
  EnterCriticalSection(&section);
  LeaveCriticalSection(&section);
  EXPECT_TRUE(OthersStayOut(&section));
  LeaveCriticalSection(&section);
  EXPECT_TRUE(OthersGetIn(&section));
}

TEST_F(Locks, LetOneThreadInAtATime) {
  constexpr int kTurns = 300;
  int inside = 0;
  int total = 0;
  const auto work = [&] {
    for (int turn = 0; turn < kTurns; ++turn) {
      EnterCriticalSection(&section);
      EXPECT_EQ(++inside, 1);
      ++total;
      if (turn % 50 == 0) Sleep(1);
      --inside;
      LeaveCriticalSection(&section);
    }
  };
  TestThread one(work);
  TestThread two(work);
  TestThread three(work);
  one.Join();
  two.Join();
  three.Join();
  EXPECT_EQ(total, 3 * kTurns);
}

TEST_F(Locks, ALoneLeaveDoesNothing) {
  REQUIRE_TRAIT(tolerates_lock_misuse, "the system's lock breaks; the library's own lock cares");
  LeaveCriticalSection(&section);
  LeaveCriticalSection(&section);
  EXPECT_TRUE(OthersGetIn(&section));
  EnterCriticalSection(&section);
  EXPECT_TRUE(OthersStayOut(&section));
  LeaveCriticalSection(&section);
  EXPECT_TRUE(OthersGetIn(&section));
}

TEST_F(Locks, LeavingAnothersLockDoesNothing) {
  REQUIRE_TRAIT(tolerates_lock_misuse, "the system's lock breaks; the library's own lock cares");
  EnterCriticalSection(&section);
  TestThread([this] { LeaveCriticalSection(&section); }).Join();
  EXPECT_TRUE(OthersStayOut(&section));
  LeaveCriticalSection(&section);
}

TEST_F(Locks, ACopyAsBytesIsTheSameLock) {
  REQUIRE_TRAIT(tolerates_lock_misuse, "the system's lock cannot be copied");
  CRITICAL_SECTION copy;
  std::memcpy(&copy, &section, sizeof copy);
  EnterCriticalSection(&section);
  EXPECT_TRUE(OthersStayOut(&copy));
  LeaveCriticalSection(&copy);
  EXPECT_TRUE(OthersGetIn(&section));
}

TEST_F(Locks, ADeletedLockIsHarmless) {
  REQUIRE_TRAIT(tolerates_lock_misuse, "undefined on the system's lock");
  DeleteCriticalSection(&section);
  EnterCriticalSection(&section);
  LeaveCriticalSection(&section);
  LeaveCriticalSection(&section);
  DeleteCriticalSection(&section);
}

TEST_F(Locks, ADeletedLockLetsItsWaitersOut) {
  REQUIRE_TRAIT(tolerates_lock_misuse, "undefined on the system's lock");
  EnterCriticalSection(&section);
  TestThread waiter([this] {
    EnterCriticalSection(&section);
    LeaveCriticalSection(&section);
  });
  Sleep(20);
  DeleteCriticalSection(&section);
  LeaveCriticalSection(&section);
  EXPECT_TRUE(waiter.Join());
}

}  // namespace
}  // namespace ipodcomm::test

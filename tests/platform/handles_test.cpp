// SPDX-License-Identifier: MIT
// Handles: each closes once, and everything else is refused with code 6.
#include "support.h"

namespace ipodcomm::test {
namespace {

HANDLE NewEvent() { return CreateEventW(nullptr, FALSE, FALSE, nullptr); }

class Handles : public PlatformTest {};

TEST_F(Handles, LastErrorIsWhatWasSet) {
  SetLastError(1234);
  EXPECT_EQ(GetLastError(), 1234U);
}

TEST_F(Handles, LastErrorBelongsToItsThread) {
  SetLastError(11);
  DWORD seen_in_thread = 99;
  TestThread([&seen_in_thread] {
    SetLastError(22);
    seen_in_thread = GetLastError();
  }).Join();
  EXPECT_EQ(seen_in_thread, 22U);
  EXPECT_EQ(GetLastError(), 11U);
}

TEST_F(Handles, ClosesOnce) {
  const HANDLE event = NewEvent();
  ASSERT_NE(event, nullptr);
  EXPECT_TRUE(CloseHandle(event));
  for (int attempt = 0; attempt < 3; ++attempt) {
    SetLastError(0);
    EXPECT_FALSE(CloseHandle(event));
    EXPECT_EQ(GetLastError(), 6U);
  }
}

TEST_F(Handles, ClosingWhatIsNoHandleFails) {
  SetLastError(0);
  EXPECT_FALSE(CloseHandle(nullptr));
  EXPECT_EQ(GetLastError(), 6U);
  SetLastError(0);
  EXPECT_FALSE(CloseHandle(NoHandle()));
  EXPECT_EQ(GetLastError(), 6U);
}

TEST_F(Handles, InvalidHandleValueIsRefused) {
  SetLastError(0);
  DWORD count = 0;
  EXPECT_FALSE(WriteFile(INVALID_HANDLE_VALUE, "x", 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), 6U);
}

TEST_F(Handles, EveryServiceRefusesAStaleHandle) {
  const HANDLE stale = NewEvent();
  ASSERT_TRUE(CloseHandle(stale));
  DCB state = {};
  state.DCBlength = sizeof state;
  COMMTIMEOUTS timeouts = {};
  COMSTAT status = {};
  DWORD count = 0;
  char byte = 0;
  const auto refused = [](BOOL result) {
    const DWORD code = GetLastError();
    SetLastError(0);
    return result == FALSE && code == 6;
  };
  SetLastError(0);
  EXPECT_TRUE(refused(GetCommState(stale, &state)));
  EXPECT_TRUE(refused(SetCommState(stale, &state)));
  EXPECT_TRUE(refused(GetCommTimeouts(stale, &timeouts)));
  EXPECT_TRUE(refused(SetCommTimeouts(stale, &timeouts)));
  EXPECT_TRUE(refused(SetCommMask(stale, EV_RXCHAR)));
  EXPECT_TRUE(refused(WaitCommEvent(stale, &count, nullptr)));
  EXPECT_TRUE(refused(ReadFile(stale, &byte, 1, &count, nullptr)));
  EXPECT_TRUE(refused(WriteFile(stale, &byte, 1, &count, nullptr)));
  EXPECT_TRUE(refused(PurgeComm(stale, PURGE_RXCLEAR)));
  EXPECT_TRUE(refused(ClearCommError(stale, &count, &status)));
  EXPECT_TRUE(refused(ClearCommBreak(stale)));
  EXPECT_TRUE(refused(TerminateThread(stale, 0)));
  EXPECT_TRUE(refused(EventModify(stale, EVENT_SET)));
  EXPECT_TRUE(refused(EventModify(stale, EVENT_RESET)));
  EXPECT_EQ(WaitForSingleObject(stale, INFINITE), WAIT_FAILED);
  EXPECT_EQ(GetLastError(), 6U);
}

TEST_F(Handles, AHandleOfAnotherKindIsRefused) {
  const HANDLE event = NewEvent();
  DWORD count = 0;
  char byte = 0;
  EXPECT_FALSE(ReadFile(event, &byte, 1, &count, nullptr));
  EXPECT_FALSE(TerminateThread(event, 0));
  TestThread thread([] {});
  EXPECT_FALSE(EventModify(thread.handle(), EVENT_SET));
  EXPECT_TRUE(CloseHandle(event));
}

TEST_F(Handles, AClosedHandleNeverComesBack) {
  REQUIRE_TRAIT(retires_handles, "handles are used again here");
  const HANDLE stale = NewEvent();
  ASSERT_TRUE(CloseHandle(stale));
  for (int i = 0; i < 1000; ++i) {
    const HANDLE fresh = NewEvent();
    ASSERT_NE(fresh, nullptr);
    ASSERT_NE(fresh, stale);
    ASSERT_FALSE(CloseHandle(stale));
    ASSERT_TRUE(CloseHandle(fresh));
  }
}

}  // namespace
}  // namespace ipodcomm::test

// SPDX-License-Identifier: MIT
// The services while memory is out: each fails as it fails otherwise, with code 8, and throws
// nothing; and it works again afterwards.
#include <functional>
#include <string>

#include "platform/common/tracked_memory.h"
#include "support.h"
#include "world/memory_shortage.h"

namespace ipodcomm::test {
namespace {

using virtual_platform::MemoryShortage;

// Calls a service with its 1st, 2nd, 3rd ... allocation failing, until none fails. Returns how
// many there were.
unsigned FailEachInTurn(const std::function<void(bool felt)>& check,
                        const std::function<void()>& call) {
  for (unsigned nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    bool felt = false;
    {
      const MemoryShortage shortage(nth);
      EXPECT_NO_THROW(call());
      felt = shortage.felt();
    }
    check(felt);
    if (!felt || nth == 50) return nth - 1;
  }
}

DWORD WINAPI Return(void*) { return 0; }

class PosixMemory : public PlatformTest {};

TEST_F(PosixMemory, HeapBlockThatCannotBeTrackedIsNotHandedOut) {
  void* block = nullptr;
  const unsigned tried = FailEachInTurn(
      [&](bool felt) {
        EXPECT_EQ(block == nullptr, felt);
        if (felt) {
          EXPECT_EQ(GetLastError(), 8U);
        }
        LocalFree(block);
      },
      [&] { block = LocalAlloc(LPTR, 100); });
  EXPECT_GE(tried, 1U);
}

TEST_F(PosixMemory, EventIsNotCreated) {
  for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"an event of this test"}) {
    HANDLE event = nullptr;
    const unsigned tried = FailEachInTurn(
        [&](bool felt) {
          EXPECT_EQ(event == nullptr, felt);
          if (felt) {
            EXPECT_EQ(GetLastError(), 8U);
          }
          if (event != nullptr) CloseHandle(event);
        },
        [&] { event = CreateEventW(nullptr, FALSE, FALSE, name); });
    EXPECT_GE(tried, 1U);
  }
}

TEST_F(PosixMemory, ThreadIsNotCreated) {
  HANDLE thread = nullptr;
  const unsigned tried = FailEachInTurn(
      [&](bool felt) {
        EXPECT_EQ(thread == nullptr, felt);
        if (felt) {
          EXPECT_EQ(GetLastError(), 8U);
        }
        if (thread == nullptr) return;
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
      },
      [&] { thread = CreateThread(nullptr, 0, Return, nullptr, 0, nullptr); });
  EXPECT_GE(tried, 2U);
}

TEST_F(PosixMemory, DriverIsNotActivated) {
  HANDLE driver = nullptr;
  const unsigned tried = FailEachInTurn(
      [&](bool felt) {
        EXPECT_EQ(driver == nullptr, felt);
        if (driver != nullptr) DeactivateDevice(driver);
      },
      [&] { driver = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18); });
  EXPECT_GE(tried, 1U);
}

TEST_F(PosixMemory, PortIsNotOpened) {
  HANDLE port = nullptr;
  FailEachInTurn(
      [&](bool felt) {
        if (felt) {
          EXPECT_EQ(port, INVALID_HANDLE_VALUE);
        }
        if (port != INVALID_HANDLE_VALUE) CloseHandle(port);
      },
      [&] {
        port = CreateFileW(L"COM2:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                           nullptr);
      });
}

TEST_F(PosixMemory, RegistryTellsItByItsCode) {
  LSTATUS status = 0;
  HKEY key = nullptr;
  const unsigned tried =
      FailEachInTurn([&](bool felt) { EXPECT_EQ(status, felt ? 8 : 0); },
                     [&] {
                       status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"A key of this test", 0,
                                                nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
                     });
  EXPECT_GE(tried, 1U);
  const BYTE value[4] = {1, 2, 3, 4};
  FailEachInTurn([&](bool felt) { EXPECT_EQ(status, felt ? 8 : 0); },
                 [&] {
                   status = RegSetValueExW(key, L"a value with a long name", 0, REG_DWORD, value,
                                           sizeof value);
                 });
  RegCloseKey(key);
}

// There are no results to tell it by: sections then share one lock, and still keep threads apart.
TEST_F(PosixMemory, SectionsStillGuard) {
  CRITICAL_SECTION section;
  CRITICAL_SECTION other;
  {
    const MemoryShortage shortage;
    ASSERT_NO_THROW(InitializeCriticalSection(&section));
    ASSERT_NO_THROW(InitializeCriticalSection(&other));
    EXPECT_TRUE(shortage.felt());
  }
  EnterCriticalSection(&section);
  static CRITICAL_SECTION* entered = nullptr;
  entered = &section;
  const HANDLE thread = CreateThread(
      nullptr, 0,
      [](void*) -> DWORD {
        EnterCriticalSection(entered);
        LeaveCriticalSection(entered);
        return 0;
      },
      nullptr, 0, nullptr);
  EXPECT_EQ(WaitForSingleObject(thread, 50), WAIT_TIMEOUT);
  LeaveCriticalSection(&section);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  CloseHandle(thread);
  // The end of one is not the end of the other.
  DeleteCriticalSection(&section);
  EnterCriticalSection(&other);
  LeaveCriticalSection(&other);
  DeleteCriticalSection(&other);
}

// A thread that somebody else started meets the services for the first time.
TEST_F(PosixMemory, WaitingAndClosingNeedNone) {
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const MemoryShortage shortage;
  EXPECT_EQ(WaitForSingleObject(event, 1), WAIT_TIMEOUT);
  EventModify(event, EVENT_SET);
  EXPECT_EQ(WaitForSingleObject(event, 1), WAIT_OBJECT_0);
  EXPECT_TRUE(CloseHandle(event));
  EXPECT_FALSE(shortage.felt());
}

TEST_F(PosixMemory, FormattedTextIsEmpty) {
  wchar_t text[2000] = L"x";
  const std::wstring long_text(1000, L'a');
  {
    const MemoryShortage shortage;
    ASSERT_NO_THROW(EXPECT_EQ(wsprintfW(text, L"%s", long_text.c_str()), 0));
    EXPECT_EQ(text[0], 0);
    EXPECT_TRUE(shortage.felt());
  }
  text[0] = L'x';
  const MemoryShortage shortage;
  ASSERT_NO_THROW(EXPECT_NE(StringCchPrintfW(text, 2000, L"%s", long_text.c_str()), 0));
  EXPECT_EQ(text[0], 0);
}

}  // namespace
}  // namespace ipodcomm::test

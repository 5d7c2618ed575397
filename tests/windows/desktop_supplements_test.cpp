// SPDX-License-Identifier: MIT
// Proves that the services which desktop Windows lacks do there what Windows CE does.
#include <gtest/gtest.h>

#include <string>

#include "platform/services.h"

namespace {

TEST(DesktopSupplements, EventModifySetsAnAutoResetEventForOneWait) {
  HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  EXPECT_TRUE(EventModify(event, EVENT_SET));
  EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(event, 0));
  EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(event, 0));
  CloseHandle(event);
}

TEST(DesktopSupplements, EventModifyResetsAManualEvent) {
  HANDLE event = CreateEventW(nullptr, TRUE, TRUE, nullptr);
  EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(event, 0));
  EXPECT_TRUE(EventModify(event, EVENT_RESET));
  EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(event, 0));
  CloseHandle(event);
}

TEST(DesktopSupplements, EventModifyLeavesAPulsedEventReset) {
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  EXPECT_TRUE(EventModify(event, EVENT_PULSE));
  EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(event, 0));
  CloseHandle(event);
}

TEST(DesktopSupplements, EventModifyRefusesAnUnknownAction) {
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetLastError(0);
  EXPECT_FALSE(EventModify(event, 4));
  EXPECT_EQ(87UL, GetLastError());
  CloseHandle(event);
}

TEST(DesktopSupplements, EventModifyRefusesAClosedEvent) {
  HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  CloseHandle(event);
  SetLastError(0);
  EXPECT_FALSE(EventModify(event, EVENT_SET));
  EXPECT_EQ(6UL, GetLastError());
}

// The system's own may end the process over one.
TEST(DesktopSupplements, ReleasingANumberIsRefusedAndNeverReachesTheHeap) {
  for (ULONG_PTR number = 1; number < 0x10000; ++number) {
    auto* const memory = reinterpret_cast<HLOCAL>(number);
    SetLastError(0);
    ASSERT_EQ(memory, LocalFree(memory)) << number;
    ASSERT_EQ(6UL, GetLastError()) << number;
  }
}

TEST(DesktopSupplements, BlocksOfTheHeapAreReleased) {
  for (const UINT flags : {UINT{LMEM_FIXED}, UINT{LPTR}, UINT{LMEM_MOVEABLE}}) {
    const HLOCAL memory = LocalAlloc(flags, 100);
    ASSERT_NE(nullptr, memory);
    EXPECT_EQ(nullptr, LocalFree(memory));
  }
  EXPECT_EQ(nullptr, LocalFree(nullptr));
}

TEST(DesktopSupplements, EachActivationGivesAFreshHandleThatFitsARegistryValue) {
  HANDLE first = ActivateDevice(L"Drivers\\Builtin\\Serial2", 0);
  HANDLE second = ActivateDevice(L"Drivers\\Builtin\\Serial2", 0);
  EXPECT_NE(nullptr, first);
  EXPECT_NE(nullptr, second);
  EXPECT_NE(first, second);
  EXPECT_EQ(0U, reinterpret_cast<ULONG_PTR>(first) >> 32);
  EXPECT_EQ(0U, reinterpret_cast<ULONG_PTR>(second) >> 32);
}

TEST(DesktopSupplements, NoDriverIsActivatedWithoutAName) {
  EXPECT_EQ(nullptr, ActivateDevice(nullptr, 0));
  EXPECT_EQ(87UL, GetLastError());
  EXPECT_EQ(nullptr, ActivateDevice(L"", 0));
}

TEST(DesktopSupplements, DeactivatingTakesAnyHandleButAnInvalidOne) {
  EXPECT_TRUE(DeactivateDevice(ActivateDevice(L"Drivers\\Builtin\\Serial2", 0)));
  EXPECT_FALSE(DeactivateDevice(nullptr));
  EXPECT_EQ(6UL, GetLastError());
  EXPECT_FALSE(DeactivateDevice(INVALID_HANDLE_VALUE));
}

// The system hands debug output to a debugger as an exception that carries the text; this listens
// where a debugger would.
class DebugListener {
 public:
  DebugListener() : handler_(AddVectoredExceptionHandler(1, &DebugListener::Receive)) {
    text.clear();
  }
  ~DebugListener() { RemoveVectoredExceptionHandler(handler_); }
  DebugListener(const DebugListener&) = delete;
  DebugListener& operator=(const DebugListener&) = delete;

  static std::wstring text;

 private:
  // Newer systems offer the wide text first, and the narrow one only if nobody took it.
  static LONG WINAPI Receive(EXCEPTION_POINTERS* pointers) {
    constexpr DWORD kNarrowDebugOutput = 0x40010006;
    constexpr DWORD kWideDebugOutput = 0x4001000A;
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    const auto length = static_cast<std::size_t>(record.ExceptionInformation[0]) - 1;
    if (record.ExceptionCode == kWideDebugOutput) {
      text.append(reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]), length);
    } else if (record.ExceptionCode == kNarrowDebugOutput) {
      const auto* narrow = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
      text.append(narrow, narrow + length);
    } else {
      return EXCEPTION_CONTINUE_SEARCH;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  void* handler_;
};

std::wstring DebugListener::text;

TEST(DesktopSupplements, DebugOutputFollowsTheWindowsRules) {
  DebugListener listener;
  NKDbgPrintfW(L"%s %d 0x%02X %S\n", L"wide", -5, 0xAB, "narrow");
  EXPECT_EQ(L"wide -5 0xAB narrow\n", DebugListener::text);
}

TEST(DesktopSupplements, DebugOutputMayBeOfAnyLength) {
  const std::wstring text(5000, L'x');
  DebugListener listener;
  NKDbgPrintfW(L"<%s>", text.c_str());
  EXPECT_TRUE(DebugListener::text == L"<" + text + L">")
      << DebugListener::text.size() << " characters";
}

TEST(DesktopSupplements, EmptyDebugOutputIsNoOutput) {
  DebugListener listener;
  NKDbgPrintfW(L"");
  EXPECT_EQ(L"", DebugListener::text);
}

}  // namespace

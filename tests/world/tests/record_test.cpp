// SPDX-License-Identifier: MIT
// The record of calls, the fault switches, and what a test sets and reads of the platform.
#include <gmock/gmock.h>

#include <set>
#include <stdexcept>

#include "support.h"
#include "world/line/scripted_device.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(VirtualRecord, IsOffUntilAskedFor) {
  World world;
  Sleep(1);
  EXPECT_THAT(world.DrainRecord(), IsEmpty());
}

TEST(VirtualRecord, ShowsCallsWithTheirArgumentsInOrder) {
  World world;
  world.Record({"CreateFileW", "SetCommState", "SetCommTimeouts", "SetCommMask", "PurgeComm",
                "WriteFile", "Sleep", "CloseHandle"});
  const HANDLE port = OpenPort();
  DCB state = {};
  state.DCBlength = 28;
  state.BaudRate = 57600;
  state.ByteSize = 8;
  state.StopBits = 1;
  SetCommState(port, &state);
  SetReadTimeouts(port, 1, 1, 1);
  SetCommMask(port, 3);
  PurgeComm(port, 0x0F);
  Write(port, {0xFF, 0x55, 0x02});
  Sleep(20);
  Sleep(INFINITE - 1);
  CloseHandle(port);
  CloseHandle(port);
  EXPECT_THAT(
      world.DrainRecord(),
      ElementsAre("CreateFileW(\"COM2:\")",
                  "SetCommState(port1, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                  "SetCommTimeouts(port1, 1, 1, 1, 0, 0)", "SetCommMask(port1, 3)",
                  "PurgeComm(port1, 15)", "WriteFile(port1, FF 55 02)", "Sleep(20)",
                  "Sleep(4294967294)", "CloseHandle(port1)", "CloseHandle(port1 (closed))"));
}

TEST(VirtualRecord, ShowsResults) {
  ScriptedDevice device;
  World world;
  world.line().Plug(device);
  const HANDLE port = OpenPort();
  SetReadTimeouts(port, 1, 1, 1);
  device.Send({0x55});
  world.Record();
  Read(port, 1);
  Read(port, 1);
  CloseHandle(nullptr);
  const HANDLE event = CreateEventW(nullptr, FALSE, TRUE, L"IPOD_PORT_EVENT_NAME");
  WaitForSingleObject(event, 1000);
  WaitForSingleObject(event, 0);
  EventModify(event, EVENT_SET);
  EXPECT_THAT(world.DrainCalls().text_with_results(),
              ElementsAre("ReadFile(port1, 1) = 55", "ReadFile(port1, 1) = nothing",
                          "CloseHandle(null) = failed 6",
                          "CreateEventW(auto, set, \"IPOD_PORT_EVENT_NAME\") = "
                          "event1 \"IPOD_PORT_EVENT_NAME\"",
                          "WaitForSingleObject(event1 \"IPOD_PORT_EVENT_NAME\", 1000) = signalled",
                          "WaitForSingleObject(event1 \"IPOD_PORT_EVENT_NAME\", 0) = timed out",
                          "EventModify(event1 \"IPOD_PORT_EVENT_NAME\", EVENT_SET) = 1"));
}

TEST(VirtualRecord, IsFilteredByThreadAndService) {
  World world;
  world.NameThreads({"read thread"});
  world.Record({"CreateThread", "Sleep", "GetTickCount"});
  const std::function<void()> body = [] {
    Sleep(2);
    GetTickCount();
    Sleep(50);
  };
  StartThread(body);
  Sleep(100);
  const Calls calls = world.DrainCalls();
  EXPECT_THAT(calls.Of("host").text(), ElementsAre("CreateThread(read thread)", "Sleep(100)"));
  EXPECT_THAT(calls.Of("read thread").To({"Sleep"}).text_with_times(),
              ElementsAre("0 Sleep(2)", "2000 Sleep(50)"));
}

TEST(VirtualRecord, CallInProgressIsUnfinished) {
  World world;
  world.Record({"Sleep"});
  const std::function<void()> body = [] { Sleep(INFINITE); };
  StartThread(body);
  world.Advance(1000);
  const Calls calls = world.calls();
  ASSERT_EQ(calls.all().size(), 1U);
  EXPECT_EQ(calls.all()[0].text, "Sleep(INFINITE)");
  EXPECT_FALSE(calls.all()[0].finished);
}

TEST(VirtualRecord, CallThatEndsAfterTheRecordWasTakenDisturbsNothing) {
  World world;
  world.Record({"Sleep", "GetTickCount"});
  const std::function<void()> body = [] { Sleep(10); };
  StartThread(body);
  world.Advance(1000);
  EXPECT_THAT(world.DrainRecord(), ElementsAre("Sleep(10)"));
  GetTickCount();
  world.Advance(kSecond);
  EXPECT_THAT(world.DrainRecord(), ElementsAre("GetTickCount()"));
}

TEST(VirtualRecord, SectionsAndMemoryHaveStableNames) {
  World world;
  world.Record();
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  EnterCriticalSection(&section);
  LeaveCriticalSection(&section);
  DeleteCriticalSection(&section);
  const HLOCAL block = LocalAlloc(LPTR, 8);
  LocalFree(block);
  LocalFree(&section);
  EXPECT_THAT(world.DrainCalls().text_with_results(),
              ElementsAre("InitializeCriticalSection(section1)", "EnterCriticalSection(section1)",
                          "LeaveCriticalSection(section1)", "DeleteCriticalSection(section1)",
                          "LocalAlloc(64, 8) = block1", "LocalFree(block1) = null",
                          "LocalFree(unknown) = failed 6"));
}

// A port, a device that answers through noise, three threads: all that a world has to repeat.
std::vector<std::string> LivelyRun(std::uint64_t seed) {
  ScriptedDevice device;
  World world({seed});
  world.line().Plug(device);
  world.line().to_host().SetNoise(200'000);
  device.Answer({0x02}, {0x10, 0x11, 0x12}, 700);
  world.Record();
  const HANDLE port = OpenPort();
  SetReadTimeouts(port, 1, 1, 1);
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  const std::function<void()> reader = [&] {
    for (int i = 0; i < 50; ++i) {
      EnterCriticalSection(&section);
      if (!Read(port, 1).empty()) EventModify(event, EVENT_SET);
      LeaveCriticalSection(&section);
      Sleep(2);
    }
  };
  const std::function<void()> waiter = [&] {
    while (WaitForSingleObject(event, 50) == WAIT_OBJECT_0) GetTickCount();
  };
  StartThread(reader);
  StartThread(waiter);
  for (int i = 0; i < 10; ++i) {
    EnterCriticalSection(&section);
    Write(port, {0x01, 0x02});
    LeaveCriticalSection(&section);
    Sleep(7);
  }
  world.Advance(kSecond);
  std::vector<std::string> record = world.calls().text_with_times();
  for (const std::string& call : world.DrainCalls().text_with_results()) record.push_back(call);
  world.EndThreads();
  return record;
}

TEST(VirtualRecord, SameSeedGivesTheSameRecordToTheLastCall) {
  std::set<std::vector<std::string>> records;
  for (std::uint64_t seed = 1; seed <= 10; ++seed) {
    const std::vector<std::string> record = LivelyRun(seed);
    EXPECT_GT(record.size(), 500U);
    EXPECT_EQ(record, LivelyRun(seed)) << "seed " << seed;
    records.insert(record);
  }
  EXPECT_EQ(records.size(), 10U) << "other seeds give other runs";
}

TEST(VirtualRecord, MisspeltServiceIsRefused) {
  World world;
  EXPECT_THROW(world.Record({"ReadFiel"}), std::invalid_argument);
  EXPECT_THROW(world.FailOnce("ReadFiel", 1, 6), std::invalid_argument);
  EXPECT_THROW(world.call_count("ReadFiel"), std::invalid_argument);
  EXPECT_THROW(world.calls().To({"ReadFiel"}), std::invalid_argument);
}

TEST(VirtualFaults, OneCallFailsWithItsCode) {
  World world;
  world.FailOnce("CreateFileW", 2, 1234);
  EXPECT_NE(OpenPort(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(OpenPort(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 1234U);
  EXPECT_EQ(OpenPort(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 5U) << "the third call fails for its own reason";
  EXPECT_EQ(world.call_count("CreateFileW"), 3U);
}

TEST(VirtualFaults, CallsFailForEverUntilTheSwitchesAreCleared) {
  World world;
  const HANDLE port = OpenPort();
  world.FailFrom("WriteFile", 2, 31);
  EXPECT_TRUE(Write(port, {1}));
  EXPECT_FALSE(Write(port, {1}));
  EXPECT_FALSE(Write(port, {1}));
  EXPECT_EQ(GetLastError(), 31U);
  world.ClearFaults();
  EXPECT_TRUE(Write(port, {1}));
}

TEST(VirtualFaults, CountingStartsWithTheSwitch) {
  World world;
  LocalFree(LocalAlloc(LPTR, 1));
  world.FailOnce("LocalAlloc", 1, 8);
  EXPECT_EQ(LocalAlloc(LPTR, 1), nullptr);
  EXPECT_EQ(GetLastError(), 8U);
  LocalFree(LocalAlloc(LPTR, 1));
  EXPECT_THAT(world.leftovers(), IsEmpty());
}

TEST(VirtualFaults, OneThreadAloneMayFail) {
  World world;
  world.NameThreads({"victim"});
  world.FailFrom("CreateEventW", 1, 8, "victim");
  HANDLE in_thread = INVALID_HANDLE_VALUE;
  const std::function<void()> body = [&] {
    in_thread = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  };
  WaitForSingleObject(StartThread(body), INFINITE);
  EXPECT_EQ(in_thread, nullptr);
  EXPECT_NE(CreateEventW(nullptr, FALSE, FALSE, nullptr), nullptr);
}

TEST(VirtualFaults, FailingCallTakesNoTimeAndHasNoEffect) {
  ScriptedDevice device;
  World world;
  world.line().Plug(device);
  const HANDLE port = OpenPort();
  SetReadTimeouts(port, 0, 0, 100);
  device.Send({0x01});
  Sleep(1);
  world.FailOnce("ReadFile", 1, 31);
  EXPECT_THAT(Read(port, 1), IsEmpty());
  EXPECT_EQ(world.now_us(), 1000);
  EXPECT_THAT(Read(port, 1), ElementsAre(0x01));
}

TEST(VirtualFaults, EveryServiceFailsInItsOwnWay) {
  World world;
  const std::function<void()> body = [] {};
  DWORD number = 0;
  UINT length = 0;
  void* value = nullptr;
  wchar_t text[8] = {};
  char narrow[8] = {};
  HKEY key = nullptr;
  for (const char* service :
       {"CreateThread", "ActivateDevice", "VirtualAlloc", "RegCreateKeyExW", "RegQueryValueExW",
        "WaitForSingleObject", "GetFileVersionInfoSizeW", "VerQueryValueW", "MultiByteToWideChar",
        "WideCharToMultiByte", "StringCchCopyW", "StringCchPrintfW", "wsprintfW",
        "FormatMessageW"}) {
    world.FailFrom(service, 1, 77);
  }
  EXPECT_EQ(StartThread(body), nullptr);
  EXPECT_EQ(ActivateDevice(L"X", 18), nullptr);
  EXPECT_EQ(VirtualAlloc(nullptr, 8, MEM_COMMIT, PAGE_READWRITE), nullptr);
  EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"A", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr),
            77);
  EXPECT_EQ(RegQueryValueExW(HKEY_LOCAL_MACHINE, L"A", nullptr, nullptr, nullptr, &number), 77);
  EXPECT_EQ(WaitForSingleObject(nullptr, 0), WAIT_FAILED);
  EXPECT_EQ(GetLastError(), 77U);
  EXPECT_EQ(GetFileVersionInfoSizeW(L"a.exe", &number), 0U);
  EXPECT_EQ(VerQueryValueW(text, L"\\", &value, &length), FALSE);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a", -1, text, 8), 0);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a", -1, narrow, 8, nullptr, nullptr), 0);
  EXPECT_EQ(StringCchCopyW(text, 8, L"a"), 0x80004005);
  EXPECT_EQ(StringCchPrintfW(text, 8, L"a"), 0x80004005);
  EXPECT_EQ(wsprintfW(text, L"a"), 0);
  EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 6, 0, text, 8, nullptr), 0U);
}

TEST(VirtualFaults, ServiceThatCannotFailIsRefused) {
  World world;
  EXPECT_THROW(world.FailOnce("Sleep", 1, 6), std::invalid_argument);
}

TEST(VirtualDevices, RegistryIsSetAndRead) {
  World world;
  EXPECT_EQ(world.RegistryValue(L"Drivers\\Active\\18", L"Hnd"), std::nullopt);
  world.SetRegistryValue(L"Drivers\\Active\\18", L"Hnd", 0x12345678);
  HKEY key = nullptr;
  RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"drivers\\active\\18", 0, nullptr, 0, KEY_ALL_ACCESS,
                  nullptr, &key, nullptr);
  std::uint32_t value = 0;
  DWORD size = sizeof value;
  EXPECT_EQ(RegQueryValueExW(key, L"hnd", nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size),
            0);
  EXPECT_EQ(value, 0x12345678U);
  value = 0xFFFFFFFF;
  EXPECT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, reinterpret_cast<BYTE*>(&value), 4), 0);
  EXPECT_EQ(world.RegistryValue(L"Drivers\\Active\\18", L"Hnd"), 0xFFFFFFFFU);
}

TEST(VirtualDevices, RegistryRefusesReservedArgumentsAndShowsOptions) {
  World world;
  HKEY key = nullptr;
  const auto create = [&key](DWORD reserved, DWORD options) {
    return RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"A", reserved, nullptr, options, KEY_ALL_ACCESS,
                           nullptr, &key, nullptr);
  };
  world.Record({"RegCreateKeyExW"});
  EXPECT_EQ(create(1, 0), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(create(0, 1), 0);
  EXPECT_THAT(world.DrainRecord(),
              ElementsAre("RegCreateKeyExW(HKEY_LOCAL_MACHINE, \"A\")",
                          "RegCreateKeyExW(HKEY_LOCAL_MACHINE, \"A\", options 1)"));
  const BYTE value[4] = {};
  EXPECT_EQ(RegSetValueExW(key, L"B", 1, REG_DWORD, value, 4), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(world.RegistryValue(L"A", L"B"), std::nullopt);
  EXPECT_EQ(RegSetValueExW(key, L"B", 0, REG_DWORD, value, 4), 0);
  EXPECT_EQ(world.RegistryValue(L"A", L"B"), 0U);
}

TEST(VirtualDevices, DriversAreRememberedWithTheirTimes) {
  World world;
  const HANDLE first = world.ActivateDriver("Drivers\\Builtin\\Serial2", 18);
  Sleep(5);
  EXPECT_NE(DeactivateDevice(first), FALSE);
  EXPECT_EQ(DeactivateDevice(first), FALSE);
  EXPECT_EQ(GetLastError(), 6U);
  Sleep(1000);
  const HANDLE second = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18);
  EXPECT_NE(second, first);
  const auto drivers = world.drivers();
  ASSERT_EQ(drivers.size(), 2U);
  EXPECT_FALSE(drivers[0].active);
  EXPECT_EQ(drivers[0].deactivated_us, 5000);
  EXPECT_TRUE(drivers[1].active);
  EXPECT_EQ(drivers[1].driver, "Drivers\\Builtin\\Serial2");
  EXPECT_EQ(drivers[1].client_info, 18U);
  EXPECT_EQ(drivers[1].activated_us, 1'005'000);
}

std::wstring FileVersion(const wchar_t* file) {
  DWORD handle = 0;
  const DWORD size = GetFileVersionInfoSizeW(file, &handle);
  if (size == 0) return L"no resource";
  std::vector<unsigned char> block(size);
  if (GetFileVersionInfoW(file, 0, size, block.data()) == FALSE) return L"unreadable";
  void* value = nullptr;
  UINT length = 0;
  if (VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\FileVersion", &value, &length) ==
      FALSE) {
    return L"no value";
  }
  return {static_cast<wchar_t*>(value), length - 1};
}

TEST(VirtualDevices, FileHasTheVersionItWasGiven) {
  World world;
  EXPECT_EQ(FileVersion(L"qz104.exe"), L"no resource");
  EXPECT_EQ(GetLastError(), 2U);
  world.SetFileVersion(L"qz104.exe", L"2,5,0,17");
  EXPECT_EQ(FileVersion(L"qz104.exe"), L"2,5,0,17");
  EXPECT_EQ(FileVersion(L"QZ104.EXE"), L"2,5,0,17");
  world.SetFileVersion(L"qz104.exe", L"");
  EXPECT_EQ(FileVersion(L"qz104.exe"), L"no resource");
}

TEST(VirtualDevices, DebugOutputIsCollected) {
  World world;
  NKDbgPrintfW(L"Error %d writing serial port\n", 31);
  NKDbgPrintfW(L"%s", L"\x00E9");
  EXPECT_THAT(world.debug_output(), ElementsAre("Error 31 writing serial port\n", "\xC3\xA9"));
}

TEST(VirtualDevices, WhatIsLeftOpenIsKnownByName) {
  World world;
  OpenPort();
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  LocalAlloc(LPTR, 8);
  VirtualAlloc(nullptr, 8, MEM_COMMIT, PAGE_READWRITE);
  CRITICAL_SECTION section;
  InitializeCriticalSection(&section);
  EXPECT_THAT(world.leftovers(),
              testing::UnorderedElementsAre("port1", "event1", "block1", "pages1", "section1"));
  CloseHandle(event);
  DeleteCriticalSection(&section);
  EXPECT_THAT(world.leftovers(), testing::UnorderedElementsAre("port1", "block1", "pages1"));
}

TEST(VirtualDevices, WhatIsGivenBackTwiceIsNoted) {
  World world;
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const HLOCAL block = LocalAlloc(0, 8);
  CloseHandle(event);
  LocalFree(block);
  EXPECT_THAT(world.given_back_twice(), IsEmpty());
  CloseHandle(event);
  LocalFree(block);
  CloseHandle(nullptr);
  CloseHandle(INVALID_HANDLE_VALUE);
  EXPECT_THAT(world.given_back_twice(), ElementsAre("event1 (closed) by host", "a block by host"));
}

TEST(VirtualDevices, HeapServesHostsOutsideAWorld) {
  const HLOCAL block = LocalAlloc(LPTR, 16);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(LocalFree(block), nullptr);
  EXPECT_EQ(LocalFree(block), block) << "it is released already";
}

}  // namespace
}  // namespace ipodcomm::virtual_platform

// SPDX-License-Identifier: MIT
// The registry and the device manager, as far as restarting the serial driver needs them.
#include <cstring>
#include <string>

#include "support.h"

namespace ipodcomm::test {
namespace {

LSTATUS Create(const std::wstring& path, HKEY* key, DWORD* disposition) {
  return RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                         key, disposition);
}

class TheRegistry : public PlatformTest {
 protected:
  void SetUp() override {
    // A key that no earlier run has left behind.
    static int number = 0;
    path = L"Software\\ipodcomm test " + std::to_wstring(GetTickCount()) + L" " +
           std::to_wstring(GetCurrentThreadId()) + L" " + std::to_wstring(++number);
    ASSERT_EQ(Create(path, &key, &disposition), 0);
  }
  void TearDown() override { RegCloseKey(key); }

  std::wstring path;
  HKEY key = nullptr;
  DWORD disposition = 0;
};

TEST_F(TheRegistry, CreatesAKeyOnceAndOpensItAfterwards) {
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  HKEY again = nullptr;
  ASSERT_EQ(Create(path, &again, &disposition), 0);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  EXPECT_EQ(RegCloseKey(again), 0);
}

TEST_F(TheRegistry, CreatesTheKeysOnTheWay) {
  HKEY deep = nullptr;
  ASSERT_EQ(Create(path + L"\\Active\\18", &deep, &disposition), 0);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  RegCloseKey(deep);
  ASSERT_EQ(Create(path + L"\\Active", &deep, &disposition), 0);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  RegCloseKey(deep);
}

TEST_F(TheRegistry, AMissingValueIsNotFound) {
  DWORD type = 0;
  DWORD value = 7;
  DWORD size = 4;
  EXPECT_EQ(RegQueryValueExW(key, L"Hnd", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size),
            2);
  EXPECT_EQ(value, 7U);
}

TEST_F(TheRegistry, GivesBackWhatWasSet) {
  const BYTE stored[] = {0xFF, 0xFF, 0xFF, 0xFE};
  ASSERT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, stored, 4), 0);
  BYTE value[4] = {};
  DWORD type = 0;
  DWORD size = sizeof value;
  ASSERT_EQ(RegQueryValueExW(key, L"Hnd", nullptr, &type, value, &size), 0);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(std::memcmp(value, stored, 4), 0);
}

TEST_F(TheRegistry, KeepsAValueWhoeverOpensItsKey) {
  const BYTE stored[] = {1, 0, 0, 0};
  ASSERT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, stored, 4), 0);
  HKEY again = nullptr;
  ASSERT_EQ(Create(path, &again, nullptr), 0);
  RegCloseKey(key);
  key = again;
  BYTE value[4] = {};
  DWORD size = sizeof value;
  EXPECT_EQ(RegQueryValueExW(key, L"Hnd", nullptr, nullptr, value, &size), 0);
  EXPECT_EQ(value[0], 1);
}

TEST_F(TheRegistry, FindsNamesInAnyCase) {
  const BYTE stored[] = {9, 0, 0, 0};
  ASSERT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, stored, 4), 0);
  std::wstring other = path;
  other.replace(0, 8, L"SOFTWARE");
  HKEY again = nullptr;
  ASSERT_EQ(Create(other, &again, &disposition), 0);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  BYTE value[4] = {};
  DWORD size = sizeof value;
  EXPECT_EQ(RegQueryValueExW(again, L"HND", nullptr, nullptr, value, &size), 0);
  EXPECT_EQ(value[0], 9);
  RegCloseKey(again);
}

TEST_F(TheRegistry, OverwritesAValue) {
  const BYTE first[] = {1, 0, 0, 0};
  const BYTE second[] = {2, 0, 0, 0};
  ASSERT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, first, 4), 0);
  ASSERT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, second, 4), 0);
  BYTE value[4] = {};
  DWORD size = sizeof value;
  EXPECT_EQ(RegQueryValueExW(key, L"Hnd", nullptr, nullptr, value, &size), 0);
  EXPECT_EQ(value[0], 2);
}

TEST_F(TheRegistry, TellsTheSizeThatIsNeeded) {
  const BYTE stored[] = {1, 2, 3, 4};
  ASSERT_EQ(RegSetValueExW(key, L"Hnd", 0, REG_DWORD, stored, 4), 0);
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExW(key, L"Hnd", nullptr, nullptr, nullptr, &size), 0);
  EXPECT_EQ(size, 4U);
  BYTE value[4] = {7, 7, 7, 7};
  size = 3;
  EXPECT_EQ(RegQueryValueExW(key, L"Hnd", nullptr, nullptr, value, &size), 234);
  EXPECT_EQ(size, 4U);
}

TEST_F(TheRegistry, AClosedKeyIsRefused) {
  HKEY closed = nullptr;
  ASSERT_EQ(Create(path + L"\\Closed", &closed, nullptr), 0);
  ASSERT_EQ(RegCloseKey(closed), 0);
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExW(closed, L"Hnd", nullptr, nullptr, nullptr, &size), 6);
  EXPECT_EQ(RegSetValueExW(closed, L"Hnd", 0, REG_DWORD, nullptr, 0), 6);
  EXPECT_EQ(RegCloseKey(closed), 6);
}

class Devices : public PlatformTest {};

TEST_F(Devices, ActivatingADriverGivesAFreshHandle) {
  const HANDLE first = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18);
  const HANDLE second = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(first, INVALID_HANDLE_VALUE);
  EXPECT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_TRUE(DeactivateDevice(first));
  EXPECT_TRUE(DeactivateDevice(second));
}

TEST_F(Devices, DriversThatNobodyUnloadsLeaveRoomForMore) {
  constexpr int kMoreThanThereAreHandles = 70'000;
  HANDLE last = nullptr;
  for (int count = 0; count < kMoreThanThereAreHandles; ++count) {
    last = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18);
    ASSERT_NE(last, nullptr) << count;
  }
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  EXPECT_NE(event, nullptr);
  CloseHandle(event);
  EXPECT_TRUE(DeactivateDevice(last));
}

TEST_F(Devices, ActivatingNothingFails) {
  EXPECT_EQ(ActivateDevice(L"", 18), nullptr);
  EXPECT_EQ(ActivateDevice(nullptr, 18), nullptr);
}

TEST_F(Devices, AHandleFitsInARegistryValue) {
  const HANDLE device = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18);
  EXPECT_LE(reinterpret_cast<std::uintptr_t>(device), 0xFFFFFFFFU);
  DeactivateDevice(device);
}

TEST_F(Devices, DeactivatingWhatIsNoDriverFailsWith6) {
  SetLastError(0);
  EXPECT_FALSE(DeactivateDevice(INVALID_HANDLE_VALUE));
  EXPECT_EQ(GetLastError(), 6U);
  const HANDLE device = ActivateDevice(L"Drivers\\Builtin\\Serial2", 18);
  EXPECT_TRUE(DeactivateDevice(device));
  SetLastError(0);
  const BOOL again = DeactivateDevice(device);
  const BOOL none = DeactivateDevice(NoHandle());
  if (world.traits().checks_device_handles) {
    EXPECT_EQ(GetLastError(), 6U);
    EXPECT_FALSE(again);
    EXPECT_FALSE(none);
  } else {
    EXPECT_TRUE(again);
    EXPECT_TRUE(none);
  }
}

}  // namespace
}  // namespace ipodcomm::test

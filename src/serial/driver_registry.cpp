// SPDX-License-Identifier: MIT
// Where the platform's device manager keeps the running serial driver.
#include "serial/driver_registry.h"

#include <cstdint>

namespace ipodcomm {

namespace {

constexpr wchar_t kKey[] = L"Drivers\\Active\\18";
constexpr wchar_t kValue[] = L"Hnd";

/// Reads a 32-bit value; one that does not exist is written with `fallback`.
std::int32_t ReadRegistryValue(HKEY key, const wchar_t* name, std::int32_t fallback) {
  std::int32_t value = fallback;
  DWORD size = sizeof value;
  DWORD type = 0;
  auto* bytes = reinterpret_cast<BYTE*>(&value);
  if (RegQueryValueExW(key, name, nullptr, &type, bytes, &size) == ERROR_SUCCESS) return value;
  value = fallback;
  RegSetValueExW(key, name, 0, REG_DWORD, bytes, sizeof value);
  return value;
}

}  // namespace

HANDLE ActiveSerialDriver() {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    return INVALID_HANDLE_VALUE;
  }
  const std::int32_t handle = ReadRegistryValue(key, kValue, -1);
  RegCloseKey(key);
  return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(handle));
}

}  // namespace ipodcomm

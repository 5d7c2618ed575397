// SPDX-License-Identifier: MIT
// CIpodSerial: the restart of the serial driver at the end of the read thread, and the registry
// value in which the device manager keeps the running driver.
#include <cstdint>

#include "ipodcomm/CIpodSerial.h"
#include "platform/services.h"

namespace {

constexpr DWORD kDriverRestartMs = 1000;
constexpr DWORD kSerialDeviceClass = 18;
constexpr wchar_t kKey[] = L"Drivers\\Active\\18";
constexpr wchar_t kValue[] = L"Hnd";

// Reads a 32-bit value; one that does not exist is written with `fallback`.
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

// Handle of the active serial driver; INVALID_HANDLE_VALUE when it is unknown. A missing value is
// created with that default (-1).
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

}  // namespace

// Unloads and reloads the driver of "COM2:", which every end of the thread does, whatever the
// reason. `serial` may be gone by now, or go meanwhile: it is touched inside `lifeline` only.
void CIpodSerial::RestartDriver(CIpodSerial* serial, Lifeline& lifeline, HANDLE driver) {
  const auto keep_driver = [serial, &lifeline](HANDLE handle) {
    if (!lifeline.Enter()) return;
    serial->driver_ = handle;
    lifeline.Leave();
  };
  if (driver == INVALID_HANDLE_VALUE) {
    driver = ActiveSerialDriver();
    keep_driver(driver);
  }
  if (driver != INVALID_HANDLE_VALUE) DeactivateDevice(driver);
  Sleep(kDriverRestartMs);
  keep_driver(ActivateDevice(L"Drivers\\Builtin\\Serial2", kSerialDeviceClass));
}

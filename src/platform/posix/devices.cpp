// SPDX-License-Identifier: MIT
// The device manager. Drivers are the kernel's business here: activating one hands out a fresh
// handle at once and touches no port, so that the library's restart of the serial driver goes
// through its steps and closes nothing.
#include <atomic>
#include <cstddef>

#include "platform/common/out_of_memory.h"
#include "platform/posix/objects.h"
#include "platform/services.h"

namespace ipodcomm::platform {
namespace {

class Driver : public Object {};

// Restarts that overlap, of a port that is closed and opened again within a second, each activate
// the driver and know of one to unload. So that the others do not fill the table, only as many as
// this are active: the one that has been for the longest makes room.
constexpr std::size_t kMostActive = 16;
std::atomic<HANDLE> active_drivers[kMostActive];
std::atomic<std::size_t> activated{0};

HANDLE NewDriver() {
  const HANDLE handle = NewHandle(std::make_shared<Driver>());
  if (handle == nullptr) return nullptr;
  const HANDLE oldest = active_drivers[activated++ % kMostActive].exchange(handle);
  if (oldest != nullptr) Handles().Remove(oldest);  // unless it has been unloaded
  return handle;
}

}  // namespace
}  // namespace ipodcomm::platform

using namespace ipodcomm::platform;

HANDLE ActivateDevice(const wchar_t* driver, DWORD /*client_info*/) {
  if (driver == nullptr || *driver == 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const HANDLE none = nullptr;
  return FailWithoutMemory(none, NewDriver);
}

BOOL DeactivateDevice(HANDLE device) {
  if (OpenObject<Driver>(device) == nullptr) return FALSE;
  if (Handles().Remove(device) != nullptr) return TRUE;
  SetLastError(ERROR_INVALID_HANDLE);  // another thread was faster
  return FALSE;
}

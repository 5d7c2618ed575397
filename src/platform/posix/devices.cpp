// SPDX-License-Identifier: MIT
// The device manager. Drivers are the kernel's business here: activating one hands out a fresh
// handle at once and touches no port, so that the library's restart of the serial driver goes
// through its steps and closes nothing.
#include "platform/common/out_of_memory.h"
#include "platform/posix/objects.h"
#include "platform/services.h"

namespace ipodcomm::platform {
namespace {

class Driver : public Object {};

}  // namespace
}  // namespace ipodcomm::platform

using namespace ipodcomm::platform;

HANDLE ActivateDevice(const wchar_t* driver, DWORD /*client_info*/) {
  if (driver == nullptr || *driver == 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const HANDLE none = nullptr;
  return FailWithoutMemory(none, [] { return NewHandle(std::make_shared<Driver>()); });
}

BOOL DeactivateDevice(HANDLE device) {
  if (OpenObject<Driver>(device) == nullptr) return FALSE;
  if (Handles().Remove(device) != nullptr) return TRUE;
  SetLastError(ERROR_INVALID_HANDLE);  // another thread was faster
  return FALSE;
}

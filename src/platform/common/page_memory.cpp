// SPDX-License-Identifier: MIT
// Zeroed blocks straight from the system.
#include "platform/common/out_of_memory.h"
#include "platform/common/tracked_memory.h"
#include "platform/services.h"

namespace {

// Lives as long as the process: threads may still use it while the process ends.
ipodcomm::platform::TrackedMemory& Pages() {
  static auto* const pages = new ipodcomm::platform::TrackedMemory;
  return *pages;
}

}  // namespace

void* VirtualAlloc(void* address, std::size_t size, DWORD type, DWORD protection) {
  if (address != nullptr || size == 0 || type != MEM_COMMIT || protection != PAGE_READWRITE) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  void* const none = nullptr;
  void* block =
      ipodcomm::platform::FailWithoutMemory(none, [size] { return Pages().Allocate(size, true); });
  if (block == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return block;
}

BOOL VirtualFree(void* address, std::size_t size, DWORD type) {
  // A release is of the whole block and says so with a size of 0.
  if (type == MEM_RELEASE && size == 0 && Pages().Release(address)) return TRUE;
  SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}

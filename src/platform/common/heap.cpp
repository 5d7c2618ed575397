// SPDX-License-Identifier: MIT
// The platform heap. It knows its blocks, so releasing anything else is refused, not a crash.
#include "platform/common/out_of_memory.h"
#include "platform/common/tracked_memory.h"
#include "platform/services.h"

namespace {

// Lives as long as the process: threads may still use it while the process ends.
ipodcomm::platform::TrackedMemory& Heap() {
  static auto* const heap = new ipodcomm::platform::TrackedMemory;
  return *heap;
}

}  // namespace

HLOCAL LocalAlloc(UINT flags, std::size_t size) {
  void* const none = nullptr;
  void* block = ipodcomm::platform::FailWithoutMemory(
      none, [&] { return Heap().Allocate(size, (flags & LMEM_ZEROINIT) != 0); });
  if (block == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return block;
}

HLOCAL LocalFree(HLOCAL memory) {
  if (memory == nullptr || Heap().Release(memory)) return nullptr;
  SetLastError(ERROR_INVALID_HANDLE);
  return memory;
}

// SPDX-License-Identifier: MIT
// Memory that knows what it handed out.
#include "platform/common/tracked_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace ipodcomm::platform {

void* TrackedMemory::Allocate(std::size_t size, bool zeroed) {
  if (size > PTRDIFF_MAX) return nullptr;
  const std::size_t bytes = std::max<std::size_t>(size, 1);
  void* block = zeroed ? std::calloc(bytes, 1) : std::malloc(bytes);
  if (block == nullptr) return nullptr;
  const std::lock_guard lock(lock_);
  try {
    blocks_.insert(block);
  } catch (const std::bad_alloc&) {
    std::free(block);
    return nullptr;
  }
  return block;
}

bool TrackedMemory::Release(void* block) {
  {
    const std::lock_guard lock(lock_);
    if (blocks_.erase(block) == 0) return false;
  }
  std::free(block);
  return true;
}

}  // namespace ipodcomm::platform

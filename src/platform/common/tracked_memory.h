// SPDX-License-Identifier: MIT
// Memory that knows what it handed out.
#pragma once

#include <cstddef>
#include <mutex>
#include <unordered_set>

namespace ipodcomm::platform {

/// Hands out blocks and takes back only those. Members may be called from any thread.
class TrackedMemory {
 public:
  /// A block fit for any type, or null when memory is short. A size of 0 gives a block of its own.
  void* Allocate(std::size_t size, bool zeroed);
  /// False, and nothing happens, for an address that is not a block of this memory.
  bool Release(void* block);

 private:
  std::mutex lock_;
  std::unordered_set<void*> blocks_;
};

}  // namespace ipodcomm::platform

// SPDX-License-Identifier: MIT
// The blocks of a heap that are in use, by name.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/common/tracked_memory.h"

namespace ipodcomm::virtual_platform {

/// Returns its memory at its end, whoever forgot it.
class MemoryBlocks {
 public:
  explicit MemoryBlocks(std::string kind) : kind_(std::move(kind)) {}
  MemoryBlocks(const MemoryBlocks&) = delete;
  MemoryBlocks& operator=(const MemoryBlocks&) = delete;
  ~MemoryBlocks();

  void* Allocate(std::size_t size, bool zeroed);
  bool Release(void* block);
  /// "block1"; "null", or "unknown" for what this heap did not hand out.
  std::string NameOf(const void* block) const;
  std::vector<std::string> names() const;

 private:
  const std::string kind_;
  int last_ = 0;
  std::map<void*, std::string> names_;
  platform::TrackedMemory memory_;
};

}  // namespace ipodcomm::virtual_platform

// SPDX-License-Identifier: MIT
// Names for memory.
#include "world/services/memory_blocks.h"

namespace ipodcomm::virtual_platform {

MemoryBlocks::~MemoryBlocks() {
  for (const auto& [block, name] : names_) memory_.Release(block);
}

void* MemoryBlocks::Allocate(std::size_t size, bool zeroed) {
  void* block = memory_.Allocate(size, zeroed);
  if (block != nullptr) names_[block] = kind_ + std::to_string(++last_);
  return block;
}

bool MemoryBlocks::Release(void* block) {
  names_.erase(block);
  return memory_.Release(block);
}

std::string MemoryBlocks::NameOf(const void* block) const {
  if (block == nullptr) return "null";
  const auto found = names_.find(const_cast<void*>(block));
  return found != names_.end() ? found->second : "unknown";
}

std::vector<std::string> MemoryBlocks::names() const {
  std::vector<std::string> names;
  for (const auto& [block, name] : names_) names.push_back(name);
  return names;
}

}  // namespace ipodcomm::virtual_platform

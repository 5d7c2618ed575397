// SPDX-License-Identifier: MIT
// Turns handles into objects and refuses those that are no longer open.
#include "platform/common/handle_table.h"

#include <mutex>
#include <utility>

namespace ipodcomm::platform {
namespace {

// A handle's low 16 bits are the index and the 15 bits above are the generation, from 1 on. Handles
// are kept in 32-bit registry values, so nothing stands above them.
constexpr unsigned kIndexBits = 16;
constexpr std::uint32_t kMaxEntries = 1U << kIndexBits;
constexpr std::uint32_t kLastGeneration = 0x7FFF;

HANDLE Encode(std::uint32_t index, std::uint32_t generation) {
  return reinterpret_cast<HANDLE>((static_cast<std::uintptr_t>(generation) << kIndexBits) | index);
}

}  // namespace

HANDLE HandleTable::Add(std::shared_ptr<Object> object) {
  const std::unique_lock lock(lock_);
  std::uint32_t index = PopFree();
  if (index == kNone) {
    if (entries_.size() == kMaxEntries) return nullptr;
    index = static_cast<std::uint32_t>(entries_.size());
    entries_.emplace_back();
  }
  Entry& entry = entries_[index];
  ++entry.generation;
  entry.object = std::move(object);
  return Encode(index, entry.generation);
}

std::shared_ptr<Object> HandleTable::Find(HANDLE handle) const {
  const std::shared_lock lock(lock_);
  const Entry* entry = OpenEntry(handle);
  return entry != nullptr ? entry->object : nullptr;
}

std::shared_ptr<Object> HandleTable::Remove(HANDLE handle) {
  const std::unique_lock lock(lock_);
  if (OpenEntry(handle) == nullptr) return nullptr;
  const auto index =
      static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle) % kMaxEntries);
  Entry& entry = entries_[index];
  if (entry.generation < kLastGeneration) PushFree(index);
  return std::exchange(entry.object, nullptr);
}

std::uint32_t HandleTable::PopFree() {
  const std::uint32_t index = first_free_;
  if (index == kNone) return kNone;
  first_free_ = std::exchange(entries_[index].next_free, kNone);
  if (first_free_ == kNone) last_free_ = kNone;
  return index;
}

void HandleTable::PushFree(std::uint32_t index) {
  (last_free_ == kNone ? first_free_ : entries_[last_free_].next_free) = index;
  last_free_ = index;
}

const HandleTable::Entry* HandleTable::OpenEntry(HANDLE handle) const {
  const auto value = reinterpret_cast<std::uintptr_t>(handle);
  const std::uintptr_t index = value % kMaxEntries;
  if (index >= entries_.size()) return nullptr;
  const Entry& entry = entries_[index];
  const bool open = entry.object != nullptr && entry.generation == value >> kIndexBits;
  return open ? &entry : nullptr;
}

}  // namespace ipodcomm::platform

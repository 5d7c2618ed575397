// SPDX-License-Identifier: MIT
// Memory that runs out when a test says so.
#include "world/memory_shortage.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace ipodcomm::virtual_platform {
namespace {

// Relaxed throughout, so that counting orders no two threads and hides no race.
constexpr auto kRelaxed = std::memory_order_relaxed;

std::atomic<bool> short_of_memory{false};
std::atomic<std::uint64_t> uses{0};
std::atomic<std::uint64_t> first_failing{0};
std::atomic<std::uint64_t> end_of_failing{0};
std::atomic<bool> any_failed{false};

bool FailsNow() {
  if (!short_of_memory.load(kRelaxed) || EnoughMemory::here()) return false;
  const std::uint64_t use = uses.fetch_add(1, kRelaxed) + 1;
  if (use < first_failing.load(kRelaxed) || use >= end_of_failing.load(kRelaxed)) return false;
  any_failed.store(true, kRelaxed);
  return true;
}

}  // namespace

MemoryShortage::MemoryShortage(unsigned first, unsigned times) {
  uses = 0;
  first_failing = first;
  end_of_failing = std::uint64_t{first} + times;
  any_failed = false;
  short_of_memory = true;
}

MemoryShortage::~MemoryShortage() { short_of_memory = false; }

bool MemoryShortage::felt() const { return any_failed; }

}  // namespace ipodcomm::virtual_platform

void* operator new(std::size_t size) {
  void* memory = ipodcomm::virtual_platform::FailsNow() ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return ipodcomm::virtual_platform::FailsNow() ? nullptr : std::malloc(size);
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

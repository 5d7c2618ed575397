// SPDX-License-Identifier: MIT
// Counts the program's heap allocations.
#include <atomic>
#include <cstdlib>
#include <new>

#include "figures.h"

namespace {
std::atomic<unsigned long> allocations{0};
std::atomic<unsigned long> releases{0};
}  // namespace

unsigned long bench::AllocationCount() { return allocations; }

unsigned long bench::LiveBlockCount() { return allocations - releases; }

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) ++releases;
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept { operator delete(memory); }

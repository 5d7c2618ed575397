// SPDX-License-Identifier: MIT
// The heap and the zeroed blocks.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "support.h"

namespace ipodcomm::test {
namespace {

class Memory : public PlatformTest {};

TEST_F(Memory, ZeroedHeapBlocksAreZeroed) {
  for (const std::size_t size : {1U, 7U, 256U, 4096U, 100000U}) {
    auto* block = static_cast<unsigned char*>(LocalAlloc(LPTR, size));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::count(block, block + size, 0), static_cast<std::ptrdiff_t>(size));
    std::memset(block, 0xA5, size);
    EXPECT_EQ(LocalFree(block), nullptr);
  }
}

TEST_F(Memory, HeapBlocksAreAlignedForAnything) {
  void* block = LocalAlloc(LPTR, 3);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
  LocalFree(block);
}

TEST_F(Memory, HeapBlocksAreDistinct) {
  void* first = LocalAlloc(LMEM_FIXED, 10);
  void* second = LocalAlloc(LMEM_FIXED, 10);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(LocalFree(second), nullptr);
  EXPECT_EQ(LocalFree(first), nullptr);
}

TEST_F(Memory, ReleasingNothingSucceeds) { EXPECT_EQ(LocalFree(nullptr), nullptr); }

TEST_F(Memory, TooLargeAHeapBlockIsRefused) {
  EXPECT_EQ(LocalAlloc(LPTR, static_cast<std::size_t>(-1) - 64), nullptr);
  EXPECT_NE(GetLastError(), 0U);
}

TEST_F(Memory, WhatTheHeapDidNotHandOutIsRefused) {
  REQUIRE_TRAIT(checks_heap_blocks, "undefined on the system's heap");
  int local = 5;
  SetLastError(0);
  EXPECT_EQ(LocalFree(&local), &local);
  EXPECT_EQ(GetLastError(), 6U);
  void* const block = LocalAlloc(LPTR, 16);
  char* const inside = static_cast<char*>(block) + 8;
  EXPECT_EQ(LocalFree(inside), inside);
  EXPECT_EQ(LocalFree(block), nullptr);
  EXPECT_EQ(LocalFree(block), block);
  EXPECT_EQ(local, 5);
}

// Record lists of the legacy interface hand their number of elements to the heap. What no block's
// address can be is refused on every platform, also by a heap that does not check other addresses.
TEST_F(Memory, SmallNumbersAreNoBlocks) {
  void* const block = LocalAlloc(LPTR, 16);
  for (std::uintptr_t number = 1; number < 1000; ++number) {
    void* const address = reinterpret_cast<void*>(number);
    SetLastError(0);
    EXPECT_EQ(LocalFree(address), address);
    EXPECT_EQ(GetLastError(), 6U);
  }
  EXPECT_EQ(LocalFree(block), nullptr);
}

TEST_F(Memory, FreshPagesAreZeroedAndWritable) {
  constexpr std::size_t kSize = 10000;
  auto* block =
      static_cast<unsigned char*>(VirtualAlloc(nullptr, kSize, MEM_COMMIT, PAGE_READWRITE));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::count(block, block + kSize, 0), static_cast<std::ptrdiff_t>(kSize));
  std::memset(block, 0xA5, kSize);
  EXPECT_TRUE(VirtualFree(block, 0, MEM_RELEASE));
}

TEST_F(Memory, PagesAreReleasedWholeAndOnce) {
  void* block = VirtualAlloc(nullptr, 100, MEM_COMMIT, PAGE_READWRITE);
  EXPECT_FALSE(VirtualFree(block, 100, MEM_RELEASE));
  EXPECT_TRUE(VirtualFree(block, 0, MEM_RELEASE));
  EXPECT_FALSE(VirtualFree(block, 0, MEM_RELEASE));
  EXPECT_FALSE(VirtualFree(nullptr, 0, MEM_RELEASE));
}

TEST_F(Memory, NoPagesAreRefused) {
  EXPECT_EQ(VirtualAlloc(nullptr, 0, MEM_COMMIT, PAGE_READWRITE), nullptr);
  EXPECT_EQ(GetLastError(), 87U);
}

}  // namespace
}  // namespace ipodcomm::test

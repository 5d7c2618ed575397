// SPDX-License-Identifier: MIT
// The handle table: generations, their end, and a table that is full.
#include "platform/common/handle_table.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace ipodcomm::test {
namespace {

using platform::HandleTable;
using platform::Object;

struct Other : Object {};

std::shared_ptr<Object> NewObject() { return std::make_shared<Other>(); }

TEST(HandleTable, FindsWhatWasAdded) {
  HandleTable table;
  const auto object = NewObject();
  const HANDLE handle = table.Add(object);
  EXPECT_EQ(table.Find(handle), object);
  EXPECT_EQ(table.FindAs<Other>(handle), object);
  EXPECT_EQ(table.Remove(handle), object);
  EXPECT_EQ(table.Find(handle), nullptr);
  EXPECT_EQ(table.Remove(handle), nullptr);
}

TEST(HandleTable, RefusesEveryHandleItDidNotGive) {
  HandleTable table;
  const auto value = reinterpret_cast<std::uintptr_t>(table.Add(NewObject()));
  for (int bit = 0; bit < std::numeric_limits<std::uintptr_t>::digits; ++bit) {
    EXPECT_EQ(table.Find(reinterpret_cast<HANDLE>(value ^ (std::uintptr_t{1} << bit))), nullptr);
  }
  EXPECT_EQ(table.Find(nullptr), nullptr);
  EXPECT_EQ(table.Find(INVALID_HANDLE_VALUE), nullptr);
}

TEST(HandleTable, NeverGivesTheSameHandleTwice) {
  HandleTable table;
  std::set<HANDLE> given;
  for (int turn = 0; turn < 100000; ++turn) {
    const HANDLE handle = table.Add(NewObject());
    ASSERT_NE(handle, nullptr);
    ASSERT_LT(reinterpret_cast<std::uintptr_t>(handle), 0x80000000U);
    ASSERT_TRUE(given.insert(handle).second) << turn;
    ASSERT_NE(table.Remove(handle), nullptr);
  }
}

TEST(HandleTable, IsFullAt65536) {
  HandleTable table;
  const auto object = NewObject();
  HANDLE last = nullptr;
  for (int i = 0; i < 65536; ++i) {
    last = table.Add(object);
    ASSERT_NE(last, nullptr);
  }
  EXPECT_EQ(table.Add(object), nullptr);
  EXPECT_NE(table.Remove(last), nullptr);
  const HANDLE next = table.Add(object);
  EXPECT_NE(next, nullptr);
  EXPECT_NE(next, last);
}

TEST(HandleTable, KeepsAnObjectInUseAlive) {
  HandleTable table;
  const HANDLE handle = table.Add(NewObject());
  const auto in_use = table.Find(handle);
  const std::weak_ptr<Object> watched = in_use;
  EXPECT_NE(table.Remove(handle), nullptr);
  EXPECT_FALSE(watched.expired());
}

}  // namespace
}  // namespace ipodcomm::test

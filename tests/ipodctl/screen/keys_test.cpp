// SPDX-License-Identifier: MIT
#include "screen/keys.h"

#include <gtest/gtest.h>

#include <set>

using namespace ipodctl::screen;

namespace {

TEST(Keys, DoOneThingEach) {
  std::set<char32_t> seen;
  for (const KeyBinding& binding : AllKeys()) {
    for (const char32_t key : binding.keys) {
      EXPECT_TRUE(seen.insert(key).second) << binding.names;
      EXPECT_EQ(ActionOf(key), binding.action) << binding.names;
    }
  }
}

TEST(Keys, DoNothingWhenTheyAreNotKnown) {
  EXPECT_EQ(ActionOf(U'x'), Action::kNone);
  EXPECT_EQ(ActionOf(kKeyEscape), Action::kNone);
  EXPECT_EQ(ActionOf(U'橋'), Action::kNone);
}

}  // namespace

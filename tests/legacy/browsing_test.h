// SPDX-License-Identifier: MIT
// The legacy interface somewhere in the iPod's database.
#pragma once

#include "support/legacy_test.h"

namespace test {

class LegacyBrowsingTest : public LegacyTest {
 protected:
  /// As after entering `category`, with another one chosen since.
  void Enter(std::uint8_t category) {
    ipodPeer::LastCategory(legacy_) = category;
    ipodPeer::Category(legacy_) = 9;
  }
  void ExpectCategories(int category, int last) {
    EXPECT_EQ(legacy_.getcategory(), category);
    EXPECT_EQ(legacy_.getlastcategory(), last);
  }

  unsigned long count_ = 7;
};

}  // namespace test

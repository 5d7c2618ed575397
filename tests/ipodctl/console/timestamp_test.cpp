// SPDX-License-Identifier: MIT
// Moments as ipodctl writes them for machines.
#include "console/timestamp.h"

#include <gtest/gtest.h>

using std::chrono::milliseconds;

namespace {

TEST(Timestamp, IsRfc3339InUtcToTheMillisecond) {
  EXPECT_EQ(ipodctl::Timestamp(milliseconds(0)), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(ipodctl::Timestamp(milliseconds(951826154007)), "2000-02-29T12:09:14.007Z");
  EXPECT_EQ(ipodctl::Timestamp(milliseconds(4102444799999)), "2099-12-31T23:59:59.999Z");
}

TEST(Timestamp, CountsBackFrom1970) {
  EXPECT_EQ(ipodctl::Timestamp(milliseconds(-1)), "1969-12-31T23:59:59.999Z");
}

}  // namespace

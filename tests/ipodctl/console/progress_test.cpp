// SPDX-License-Identifier: MIT
// The bar that shows how far a long command has come.
#include "console/progress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl;

namespace {

TEST(ProgressBar, FillsInProportion) {
  EXPECT_EQ(RenderBar("Reading", 1, 2, "1/2", 25), "Reading  █████░░░░░  1/2");
  EXPECT_EQ(RenderBar("Reading", 2, 2, "2/2", 25), "Reading  ██████████  2/2");
  EXPECT_EQ(RenderBar("Reading", 0, 0, "0/0", 25), "Reading  ░░░░░░░░░░  0/0");
  EXPECT_EQ(RenderBar("Reading", 9, 2, "9/2", 25), "Reading  ██████████  9/2");
}

TEST(ProgressBar, GivesWayOnANarrowTerminal) {
  EXPECT_EQ(RenderBar("Reading", 1, 2, "1/2", 19), "Reading  1/2");
}

}  // namespace

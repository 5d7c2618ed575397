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

TEST(ProgressFigures, TellRateAndTimeLeftOnceThereIsARate) {
  using std::chrono::milliseconds;
  EXPECT_EQ(ProgressFigures(0, 143, milliseconds(9000)), "0/143");
  EXPECT_EQ(ProgressFigures(10, 143, milliseconds(499)), "10/143");
  EXPECT_EQ(ProgressFigures(62, 143, milliseconds(2000)), "62/143  31/s  0:03 left");
  EXPECT_EQ(ProgressFigures(1, 1000, milliseconds(3000)), "1/1000  1/s  49:57 left");
  EXPECT_EQ(ProgressFigures(143, 143, milliseconds(5000)), "143/143");
}

}  // namespace

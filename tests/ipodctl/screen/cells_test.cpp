// SPDX-License-Identifier: MIT
// Text is as wide as a terminal shows it, and can do nothing to the terminal.
#include "screen/cells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl::screen;
using ::testing::ElementsAre;

namespace {

class Cells : public testing::Test {
 protected:
  void SetUp() override { UseUtf8(); }
};

TEST_F(Cells, CountsTwoForAWideCharacterAndNoneForAnAccentOfItsOwn) {
  EXPECT_EQ(Width("Zoë"), 3);
  EXPECT_EQ(Width("橋 🎧"), 5);
  EXPECT_EQ(Width("e\u0301"), 1);
  EXPECT_EQ(Width(""), 0);
}

TEST_F(Cells, CutsWhatHasNoRoomBehindAWholeCharacter) {
  EXPECT_EQ(Cut("Arches", 6), "Arches");
  EXPECT_EQ(Cut("Arches", 5), "Arch…");
  EXPECT_EQ(Cut("橋橋橋", 6), "橋橋橋");
  EXPECT_EQ(Cut("橋橋橋", 5), "橋橋…");
  EXPECT_EQ(Cut("橋橋橋", 4), "橋…");
  EXPECT_EQ(Cut("Arches", 1), "…");
  EXPECT_EQ(Cut("Arches", 0), "");
}

TEST_F(Cells, FillsUpToTheWidth) {
  EXPECT_EQ(Fit("橋", 4), "橋  ");
  EXPECT_EQ(Fit("橋橋橋", 4), "橋… ");
}

TEST_F(Cells, WrapsBetweenWordsAndInALongOneWhereItMust) {
  EXPECT_THAT(Wrapped("check that it is docked", 10), ElementsAre("check that", "it is", "docked"));
  EXPECT_THAT(Wrapped("unbreakable", 4), ElementsAre("unbr", "eaka", "ble"));
  EXPECT_THAT(Wrapped("橋橋橋", 4), ElementsAre("橋橋", "橋"));
  EXPECT_THAT(Wrapped("", 4), ElementsAre());
}

TEST_F(Cells, ReplacesWhatCouldSteerTheTerminalAndLeavesOutWhatTurnsOrJoinsText) {
  EXPECT_EQ(Harmless("a\x1b[2Jb\n"), "a\uFFFD[2Jb\uFFFD");
  EXPECT_EQ(Harmless("\u202Eevil\u2066"), "evil");
  EXPECT_EQ(Harmless("👩\u200D🚀"), "👩🚀");
  EXPECT_EQ(Harmless("❤\uFE0F"), "❤");
  EXPECT_EQ(Harmless("\xff"), "\uFFFD");
}

}  // namespace

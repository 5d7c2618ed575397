// SPDX-License-Identifier: MIT
// What may have been meant by a misspelt word.
#include "usage/similar.h"

#include <gtest/gtest.h>

using usage::MostSimilar;

namespace {

const std::vector<std::string> kWords = {"info", "browse", "now", "next", "play", "pause", "prefs"};

TEST(MostSimilar, FindsAWordWithAFewWrongLetters) {
  EXPECT_EQ(MostSimilar("infoo", kWords), "info");
  EXPECT_EQ(MostSimilar("ifno", kWords), "info");
  EXPECT_EQ(MostSimilar("bruse", kWords), "browse");
  EXPECT_EQ(MostSimilar("nxet", kWords), "next");
  EXPECT_EQ(MostSimilar("plya", kWords), "play");
}

TEST(MostSimilar, FindsTheOnlyWordThatBeginsSo) {
  EXPECT_EQ(MostSimilar("--hierar", {"--hierarchy", "--help"}), "--hierarchy");
  EXPECT_EQ(MostSimilar("bro", kWords), "browse");
}

TEST(MostSimilar, GuessesNothingFromAWordUnlikeAll) {
  EXPECT_EQ(MostSimilar("dance", {"info", "browse"}), "");
  EXPECT_EQ(MostSimilar("", kWords), "");
  EXPECT_EQ(MostSimilar(std::string(1000, 'x'), {std::string(1000, 'x')}), "");
}

}  // namespace

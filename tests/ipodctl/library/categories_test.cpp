// SPDX-License-Identifier: MIT
// The names of the categories, and the way down from one to the next.
#include "library/categories.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl;
using ::testing::ElementsAre;

namespace {

TEST(Categories, LeadFromGenresDownToTracks) {
  std::vector<std::string> way;
  for (unsigned char code = kGenres; code != kTracks; code = CategoryByCode(code).next) {
    way.push_back(CategoryByCode(code).name);
  }
  EXPECT_THAT(way, ElementsAre("genres", "artists", "albums"));
}

TEST(Categories, HaveTheNumbersOfTheWire) {
  const std::pair<const char*, int> numbers[] = {
      {"playlists", 1}, {"artists", 2},    {"albums", 3},   {"genres", 4},          {"tracks", 5},
      {"composers", 6}, {"audiobooks", 7}, {"podcasts", 8}, {"nested-playlists", 9}};
  for (const auto& [name, number] : numbers) {
    ASSERT_TRUE(CategoryByName(name)) << name;
    EXPECT_EQ(CategoryByName(name)->code, number) << name;
  }
  EXPECT_EQ(CategoryByName("artist")->code, 2);
  EXPECT_FALSE(CategoryByName("artis"));
}

}  // namespace

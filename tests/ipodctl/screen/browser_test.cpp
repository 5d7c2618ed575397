// SPDX-License-Identifier: MIT
// Moving through lists that may not be read yet.
#include "screen/browser.h"

#include <gtest/gtest.h>

#include "ipodctl/screen/libraries.h"

using namespace ipodctl::screen;

namespace {

constexpr unsigned char kArtists = 2;
constexpr unsigned char kTracks = 5;

void Repeat(int times, Action action, const LibrarySnapshot& library, Browser* browser) {
  for (int i = 0; i < times; ++i) browser->Do(action, library);
}

// Opens the list of tracks, the last of nine categories.
void OpenTracks(const LibrarySnapshot& library, Browser* browser) {
  browser->Do(Action::kLast, library);
  browser->Do(Action::kOpen, library);
}

TEST(Browser, BeginsWithTheCategories) {
  const Browser browser;
  EXPECT_TRUE(browser.place().is_overview());
  EXPECT_EQ(browser.Title(), "Library");
  EXPECT_EQ(browser.Count({}), 9U);
}

TEST(Browser, MovesNoFurtherThanAListGoes) {
  Browser browser;
  browser.Do(Action::kUp, {});
  EXPECT_EQ(browser.cursor(), 0U);
  Repeat(20, Action::kDown, {}, &browser);
  EXPECT_EQ(browser.cursor(), 8U);
}

TEST(Browser, MovesByPagesOfWhatHasRoom) {
  const LibrarySnapshot library = TracksNamed(100, 0);
  Browser browser;
  OpenTracks(library, &browser);
  browser.SetRows(10, library);
  browser.Do(Action::kPageDown, library);
  EXPECT_EQ(browser.cursor(), 9U);
  browser.Do(Action::kLast, library);
  browser.SetRows(10, library);
  EXPECT_EQ(browser.view().first, 90U);
  browser.Do(Action::kPageUp, library);
  EXPECT_EQ(browser.cursor(), 90U);
}

TEST(Browser, KeepsTheCursorInTheWindowWhenItIsResized) {
  const LibrarySnapshot library = TracksNamed(100, 0);
  Browser browser;
  OpenTracks(library, &browser);
  browser.SetRows(20, library);
  browser.PointAt(15, library);
  browser.SetRows(5, library);
  EXPECT_EQ(browser.view().first, 11U);
  browser.Do(Action::kLast, library);
  browser.SetRows(200, library);
  EXPECT_EQ(browser.view().first, 0U);
}

TEST(Browser, OpensARecordIntoWhatItHoldsAndGoesBackToIt) {
  LibrarySnapshot library;
  const Place artists = {kArtists, {}};
  library.lists[artists] = ListOf({"The Hum", "Jürgen Größe"});
  Browser browser;
  browser.PointAt(2, library);
  browser.Do(Action::kOpen, library);
  EXPECT_EQ(browser.Title(), "Artists");
  browser.Do(Action::kDown, library);
  EXPECT_FALSE(browser.Do(Action::kOpen, library));
  EXPECT_EQ(browser.Title(), "Jürgen Größe");
  EXPECT_EQ(browser.Count(library), std::nullopt);
  browser.Do(Action::kBack, library);
  EXPECT_TRUE(browser.place() == artists);
  EXPECT_EQ(browser.cursor(), 1U);
}

TEST(Browser, GivesTheTrackThatIsOpenedToBePlayed) {
  const LibrarySnapshot library = TracksNamed(5, 5);
  Browser browser;
  OpenTracks(library, &browser);
  browser.PointAt(3, library);
  const auto track = browser.Do(Action::kOpen, library);
  ASSERT_TRUE(track);
  EXPECT_EQ(track->place.category(), kTracks);
  EXPECT_EQ(track->index, 3U);
}

TEST(Browser, OpensNothingWhoseNameIsNotReadYet) {
  LibrarySnapshot library;
  library.lists[{kArtists, {}}] = std::make_shared<RecordList>(RecordList{7, {}});
  Browser browser;
  browser.PointAt(2, library);
  browser.Do(Action::kOpen, library);
  browser.Do(Action::kOpen, library);
  EXPECT_EQ(browser.Title(), "Artists");
}

TEST(Browser, TakesTheCursorAlongIntoAShorterList) {
  Browser browser;
  OpenTracks(TracksNamed(100, 0), &browser);
  browser.Do(Action::kLast, TracksNamed(100, 0));
  browser.SetRows(10, TracksNamed(3, 0));
  EXPECT_EQ(browser.cursor(), 2U);
  EXPECT_EQ(browser.view().first, 0U);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Proves the chapters of the current track.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kPlace[] = "FF 55 03 04 00 02 F7";
constexpr char kCurrentName[] = "FF 55 03 04 00 07 F2";
constexpr char kRefused[] = "FF 55 06 04 00 01 03 00 07 EB";

Settings ChapterSettings() {
  Settings settings = QuietSettings();
  Track track;
  track.title = "Tale";
  track.length_ms = 10000;
  track.chapters = {"One", "Two"};
  settings.library.tracks = {track};
  settings.library.playlists.clear();
  return settings;
}

// The clock stands 10 ms into a track of 10 s with two chapters.
class ChaptersTest : public testing::Test {
 protected:
  ChaptersTest() : dock(ChapterSettings()) {
    dock.Identify();
    dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  }
  IpodUnderTest dock;
};

TEST_F(ChaptersTest, CurrentChapterMovesWithThePosition) {
  EXPECT_EQ(dock.Exchange(kPlace), "FF 55 0B 04 00 03 00 00 00 00 00 00 00 02 EC");
  EXPECT_EQ(dock.Exchange(kCurrentName), "FF 55 07 04 00 08 4F 6E 65 00 CB");
  dock.Read(5 * kSecond);
  EXPECT_EQ(dock.Exchange(kPlace), "FF 55 0B 04 00 03 00 00 00 01 00 00 00 02 EB");
  EXPECT_EQ(dock.Exchange(kCurrentName), "FF 55 07 04 00 08 54 77 6F 00 B3");
}

TEST_F(ChaptersTest, AnyChapterCanBeAskedFor) {
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 07 00 00 00 01 ED"), "FF 55 07 04 00 08 54 77 6F 00 B3");
  EXPECT_EQ(dock.Mistakes(), "");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 07 00 00 00 02 EC"), kRefused);
  EXPECT_EQ(dock.Mistakes(), "index out of range");
}

TEST_F(ChaptersTest, CapabilitiesTellOfChapters) {
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 00 00 00 00 00 00 00 E6"),
            "FF 55 0E 04 00 0D 00 00 00 00 02 00 00 27 10 00 02 A6");
}

TEST(Chapters, TrackWithoutChaptersHasNoNameToTell) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kCurrentName), kRefused);
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  EXPECT_EQ(dock.Exchange(kCurrentName), kRefused);
  EXPECT_EQ(dock.Exchange(kPlace), "FF 55 0B 04 00 03 FF FF FF FF 00 00 00 00 F2");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Chapters, ChapterOfATrackWithoutChaptersIsNamed) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  EXPECT_EQ(dock.Exchange("FF 55 07 04 00 07 00 00 03 E7 04"), kRefused);
  EXPECT_EQ(dock.Mistakes(), "index out of range");
}

TEST(Chapters, HalfAnIndexIsNamed) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 05 04 00 07 00 00 F0"), kRefused);
  EXPECT_EQ(dock.Mistakes(), "wrong payload size");
}

}  // namespace
}  // namespace ipodsim

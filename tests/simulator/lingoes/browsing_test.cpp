// SPDX-License-Identifier: MIT
// Proves how the database is listed and narrowed, byte by byte.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

class BrowsingTest : public testing::Test {
 protected:
  BrowsingTest() { dock.Identify(); }

  std::uint32_t Count(int category) {
    static const char* const kRequests[] = {"FF 55 04 04 00 18 00 E0", "FF 55 04 04 00 18 01 DF",
                                            "FF 55 04 04 00 18 02 DE", "FF 55 04 04 00 18 03 DD",
                                            "FF 55 04 04 00 18 04 DC", "FF 55 04 04 00 18 05 DB",
                                            "FF 55 04 04 00 18 06 DA", "FF 55 04 04 00 18 07 D9",
                                            "FF 55 04 04 00 18 08 D8", "FF 55 04 04 00 18 09 D7"};
    const Bytes answer = Hex(dock.Exchange(kRequests[category]));
    EXPECT_EQ(answer.size(), 11u);
    return answer.size() == 11 ? Get32(answer, 6) : 0;
  }

  // All names of a category, in their order, separated by bars.
  std::string Names(int category) {
    static const char* const kRequests[] = {"",
                                            "FF 55 0C 04 00 1A 01 00 00 00 00 FF FF FF FF D9",
                                            "FF 55 0C 04 00 1A 02 00 00 00 00 FF FF FF FF D8",
                                            "FF 55 0C 04 00 1A 03 00 00 00 00 FF FF FF FF D7",
                                            "FF 55 0C 04 00 1A 04 00 00 00 00 FF FF FF FF D6",
                                            "FF 55 0C 04 00 1A 05 00 00 00 00 FF FF FF FF D5",
                                            "FF 55 0C 04 00 1A 06 00 00 00 00 FF FF FF FF D4",
                                            "FF 55 0C 04 00 1A 07 00 00 00 00 FF FF FF FF D3",
                                            "FF 55 0C 04 00 1A 08 00 00 00 00 FF FF FF FF D2",
                                            "FF 55 0C 04 00 1A 09 00 00 00 00 FF FF FF FF D1"};
    dock.Write(kRequests[category]);
    const Bytes wire = Hex(dock.Read(kSecond));
    std::string names;
    for (std::size_t at = 0; at + 3 < wire.size(); at += std::size_t{4} + wire[at + 2]) {
      if (!names.empty()) names += '|';
      names += reinterpret_cast<const char*>(&wire[at + 10]);
    }
    return names;
  }

  IpodUnderTest dock;
};

TEST_F(BrowsingTest, CountIsAnswered) {
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 18 02 DE"), "FF 55 07 04 00 19 00 00 00 03 D9");
}

TEST_F(BrowsingTest, EveryCategoryIsListed) {
  EXPECT_EQ(Names(1), "Pod|Mix|Plans|Easy|Hard");
  EXPECT_EQ(Names(2), "Ann|Bob|Cléo");
  EXPECT_EQ(Names(3), "Hills|Rivers|Sud|Zed");
  EXPECT_EQ(Names(4), "Folk|Pop|Rock");
  EXPECT_EQ(Names(5), "Amazon|Bay|Delta|Peak|zero|Été");
  EXPECT_EQ(Names(6), "Cee|Dee");
  EXPECT_EQ(Names(7), "Novel");
  EXPECT_EQ(Names(8), "Daily");
  EXPECT_EQ(Names(9), "Mix|Plans");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(BrowsingTest, RecordsAreStreamedOneFrameEach) {
  dock.Write("FF 55 0C 04 00 1A 02 00 00 00 01 00 00 00 02 D1");
  EXPECT_EQ(dock.Read(), "FF 55 0B 04 00 1B 00 00 00 01 42 6F 62 00 C2");
  EXPECT_EQ(dock.Read(1500), "FF 55 0D 04 00 1B 00 00 00 02 43 6C C3 A9 6F 00 48");
  EXPECT_EQ(dock.Read(kSecond), "");
}

TEST_F(BrowsingTest, LongNameComesInALargeFrame) {
  Settings settings = QuietSettings();
  settings.library.tracks = {{std::string(300, 'x'), "A", "B", "", "", "", 1000, 1}};
  settings.library.playlists.clear();
  IpodUnderTest longer(settings);
  longer.Identify();
  const Bytes wire = Hex(longer.Exchange("FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 01 D0"));
  // 3 command bytes, 4 index bytes, 300 letters and the zero byte are 308.
  ASSERT_EQ(wire.size(), 314u);
  EXPECT_EQ(ToHex(Bytes(wire.begin(), wire.begin() + 13)),
            "FF 55 00 01 34 04 00 1B 00 00 00 00 78");
}

TEST_F(BrowsingTest, SelectingNarrowsWhatIsBelow) {
  EXPECT_EQ(dock.Exchange("FF 55 08 04 00 17 04 00 00 00 02 D7"),
            "FF 55 06 04 00 01 00 00 17 DE");  // Rock
  EXPECT_EQ(Names(2), "Ann|Bob");
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 00 DB");  // Ann
  EXPECT_EQ(Names(3), "Rivers");
  dock.Exchange("FF 55 08 04 00 17 03 00 00 00 00 DA");  // Rivers, in the order of the album
  EXPECT_EQ(Names(5), "Amazon|Delta");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(BrowsingTest, SelectingAboveForgetsWhatIsBelow) {
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 00 DB");  // Ann
  dock.Exchange("FF 55 08 04 00 17 03 00 00 00 00 DA");  // Hills
  EXPECT_EQ(Names(5), "Peak");
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 01 DA");  // Bob, of all artists
  EXPECT_EQ(Names(3), "Zed");
  EXPECT_EQ(Names(5), "zero|Bay");
}

TEST_F(BrowsingTest, SelectingAllRecordsTakesTheSelectionBack) {
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 00 DB");
  EXPECT_EQ(dock.Exchange("FF 55 08 04 00 17 02 FF FF FF FF DF"), "FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(Count(5), 6u);
}

TEST_F(BrowsingTest, ResetGoesBackToTheTop) {
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 00 DB");
  EXPECT_EQ(Count(5), 3u);
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 16 E3"), "FF 55 06 04 00 01 00 00 16 DF");
  EXPECT_EQ(Count(5), 6u);
}

TEST_F(BrowsingTest, PlaylistKeepsItsOrder) {
  dock.Exchange("FF 55 08 04 00 17 01 00 00 00 01 DB");
  EXPECT_EQ(Names(5), "zero|Delta");
}

TEST_F(BrowsingTest, IpodsOwnPlaylistHoldsEverythingToHear) {
  dock.Exchange("FF 55 08 04 00 17 01 00 00 00 00 DC");
  EXPECT_EQ(Count(5), 9u);
}

TEST_F(BrowsingTest, FolderHoldsItsPlaylistsAndTheirTracks) {
  dock.Exchange("FF 55 08 04 00 17 09 00 00 00 01 D3");
  EXPECT_EQ(Names(9), "Easy|Hard");
  EXPECT_EQ(Names(5), "Amazon|Peak|Été");
  dock.Exchange("FF 55 08 04 00 17 09 00 00 00 01 D3");
  EXPECT_EQ(Names(5), "Peak|Été");
}

TEST_F(BrowsingTest, AudiobooksAndPodcastsHaveTheirParts) {
  dock.Exchange("FF 55 08 04 00 17 07 00 00 00 00 D6");
  EXPECT_EQ(Names(5), "Book 1|Book 2");
  dock.Exchange("FF 55 08 04 00 17 08 00 00 00 00 D5");
  EXPECT_EQ(Names(5), "News");
}

TEST_F(BrowsingTest, VideoHierarchyHoldsVideosOnly) {
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 3B 02 BB"), "FF 55 06 04 00 01 00 00 3B BA");
  EXPECT_EQ(Names(4), "Fitness");
  EXPECT_EQ(Names(5), "Film");
  EXPECT_EQ(Count(7), 0u);
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 3B 01 BC"), "FF 55 06 04 00 01 00 00 3B BA");
  EXPECT_EQ(Count(5), 6u);
}

TEST_F(BrowsingTest, SelectSortOrdersWhatIsListedNext) {
  dock.Exchange("FF 55 08 04 00 17 02 00 00 00 01 DA");  // Bob
  EXPECT_EQ(Names(5), "zero|Bay");                       // as on the album
  dock.Exchange("FF 55 03 04 00 16 E3");
  EXPECT_EQ(dock.Exchange("FF 55 09 04 00 38 02 00 00 00 01 04 B4"),
            "FF 55 06 04 00 01 00 00 38 BD");
  EXPECT_EQ(Names(5), "Bay|zero");  // by name
  dock.Exchange("FF 55 03 04 00 16 E3");
  EXPECT_EQ(Names(5), "Amazon|Bay|Delta|Peak|zero|Été");
}

TEST_F(BrowsingTest, SelectCanBeRefusedWhileSelectSortIsNot) {
  Settings settings = QuietSettings();
  settings.refuses_select_record = true;
  IpodUnderTest refusing(settings);
  refusing.Identify();
  EXPECT_EQ(refusing.Exchange("FF 55 08 04 00 17 02 00 00 00 00 DB"),
            "FF 55 06 04 00 01 04 00 17 DA");
  EXPECT_EQ(refusing.Exchange("FF 55 09 04 00 38 02 00 00 00 00 04 B5"),
            "FF 55 06 04 00 01 00 00 38 BD");
  EXPECT_EQ(refusing.Mistakes(), "");
}

TEST_F(BrowsingTest, DurationsOfDatabaseTracks) {
  EXPECT_EQ(dock.Exchange("FF 55 0C 04 00 40 00 00 00 01 00 00 00 01 40 6E"),
            "FF 55 0C 04 00 41 00 00 00 01 40 00 00 13 88 D3");  // Bay, 5 s
}

TEST_F(BrowsingTest, DurationsAreUnknownToAnIpodWithoutTheOption) {
  IpodUnderTest classic(QuietSettings(Profile::kClassic));
  classic.Identify();
  EXPECT_EQ(classic.Exchange("FF 55 0C 04 00 40 00 00 00 01 00 00 00 01 40 6E"),
            "FF 55 06 04 00 01 04 00 40 B1");
}

TEST_F(BrowsingTest, IndexOutOfRangeIsNamedAndRefused) {
  EXPECT_EQ(dock.Exchange("FF 55 08 04 00 17 02 00 00 00 03 D8"), "FF 55 06 04 00 01 03 00 17 DB");
  EXPECT_EQ(dock.Exchange("FF 55 09 04 00 38 02 00 00 00 03 04 B2"),
            "FF 55 06 04 00 01 03 00 38 BA");
  EXPECT_EQ(dock.Exchange("FF 55 0C 04 00 1A 02 00 00 00 03 00 00 00 01 D0"),
            "FF 55 06 04 00 01 03 00 1A D8");
  EXPECT_EQ(dock.Exchange("FF 55 0C 04 00 40 00 00 00 06 00 00 00 01 40 69"),
            "FF 55 06 04 00 01 03 00 40 B2");
  EXPECT_EQ(dock.Mistakes(),
            "index out of range, index out of range, index out of range, index out of range");
  EXPECT_EQ(dock.ipod.mistakes()[0].detail, "SelectDBRecord with index 3 of 3");
}

TEST_F(BrowsingTest, TooManyRecordsAreNamedAndTheExistingOnesSent) {
  EXPECT_EQ(dock.Exchange("FF 55 0C 04 00 1A 02 00 00 00 02 00 00 00 02 D0"),
            "FF 55 0D 04 00 1B 00 00 00 02 43 6C C3 A9 6F 00 48");
  EXPECT_EQ(dock.Mistakes(), "index out of range");
}

TEST_F(BrowsingTest, UnknownCategoryHierarchyAndSortAreNamed) {
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 18 00 E0"), "FF 55 06 04 00 01 03 00 18 DA");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 18 0A D6"), "FF 55 06 04 00 01 03 00 18 DA");
  EXPECT_EQ(dock.Exchange("FF 55 04 04 00 3B 03 BA"), "FF 55 06 04 00 01 03 00 3B B7");
  EXPECT_EQ(dock.Exchange("FF 55 09 04 00 38 02 00 00 00 00 0A AF"),
            "FF 55 06 04 00 01 03 00 38 BA");
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter, bad parameter, bad parameter");
}

TEST_F(BrowsingTest, EmptyLibraryIsListedAsEmpty) {
  Settings settings = QuietSettings();
  settings.library = Library{};
  IpodUnderTest empty(settings);
  empty.Identify();
  EXPECT_EQ(empty.Exchange("FF 55 04 04 00 18 05 DB"), "FF 55 07 04 00 19 00 00 00 00 DC");
  EXPECT_EQ(empty.Exchange("FF 55 0C 04 00 1A 05 00 00 00 00 FF FF FF FF D5"), "");
  EXPECT_EQ(empty.Exchange("FF 55 04 04 00 29 0A C5"), "FF 55 06 04 00 01 01 00 29 CB");
  EXPECT_EQ(empty.Mistakes(), "");
}

}  // namespace
}  // namespace ipodsim

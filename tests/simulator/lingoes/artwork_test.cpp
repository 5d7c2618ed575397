// SPDX-License-Identifier: MIT
// Proves formats, counts, times and bytes of the pictures of tracks.

#include <gtest/gtest.h>

#include "simulator/wire/frame.h"
#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kRefused10[] = "FF 55 06 04 00 01 03 00 10 E2";
constexpr char kRefused2A[] = "FF 55 06 04 00 01 03 00 2A C8";

Settings PictureSettings() {
  Settings settings = QuietSettings();
  Track drawn;
  drawn.title = "Drawn";
  drawn.length_ms = 10000;
  drawn.artwork = true;
  Track plain;
  plain.title = "Plain";
  plain.length_ms = 10000;
  settings.library.tracks = {drawn, plain};
  settings.library.playlists.clear();
  return settings;
}

// Plays the list Drawn, Plain.
class ArtworkTest : public testing::Test {
 protected:
  explicit ArtworkTest(Settings settings = PictureSettings()) : dock(std::move(settings)) {
    dock.Identify();
    dock.Exchange("FF 55 08 04 00 17 05 00 00 00 00 D8");
  }

  IpodUnderTest dock;
};

class StrictArtworkTest : public ArtworkTest {
 protected:
  StrictArtworkTest() : ArtworkTest(Strict()) {}
  static Settings Strict() {
    Settings settings = PictureSettings();
    settings.refuses_misnumbered_artwork_times = true;
    return settings;
  }
};

TEST_F(ArtworkTest, FormatsAreRecordsOfSevenBytes) {
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 0E EB"),
            "FF 55 11 04 00 0F 04 01 02 00 10 00 10 04 02 02 00 28 00 28 5D");
}

TEST_F(ArtworkTest, CountsAreToldPerFormatInBothRemoteLingoes) {
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 07 00 00 00 00 00 00 DF"),
            "FF 55 0C 04 00 0D 07 04 01 00 01 04 02 00 01 CF");
  EXPECT_EQ(dock.Exchange("FF 55 09 03 12 08 00 00 00 00 00 00 DA"),
            "FF 55 0B 03 13 08 04 01 00 01 04 02 00 01 CA");
}

TEST_F(ArtworkTest, TrackWithoutArtworkHasNoCounts) {
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 07 00 00 00 01 00 00 DE"), "FF 55 04 04 00 0D 07 E4");
}

TEST_F(ArtworkTest, CapabilitiesTellOfArtwork) {
  EXPECT_EQ(dock.Exchange("FF 55 0A 04 00 0C 00 00 00 00 00 00 00 E6"),
            "FF 55 0E 04 00 0D 00 00 00 00 04 00 00 27 10 00 00 A6");
}

TEST_F(ArtworkTest, TheOnePictureAppearsWithTheTrack) {
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 2A 00 00 00 00 04 01 00 00 00 01 BF"),
            "FF 55 07 04 00 2B 00 00 00 00 CA");
  // From the second picture on there is none.
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 2A 00 00 00 00 04 01 00 01 00 01 BE"),
            "FF 55 03 04 00 2B CE");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(ArtworkTest, TimesAreToldUnderTheDisplayRemotesNumberToo) {
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 1F 00 00 00 00 04 01 00 00 00 01 CA"),
            "FF 55 07 04 00 2B 00 00 00 00 CA");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StrictArtworkTest, DisplayRemotesNumberCanBeRefused) {
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 1F 00 00 00 00 04 01 00 00 00 01 CA"),
            "FF 55 06 04 00 01 04 00 1F D2");
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 2A 00 00 00 00 04 01 00 00 00 01 BF"),
            "FF 55 07 04 00 2B 00 00 00 00 CA");
}

TEST_F(ArtworkTest, FormatThatIsNotOfferedIsNamed) {
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 2A 00 00 00 00 07 04 00 00 00 01 B9"), kRefused2A);
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 10 00 00 00 00 07 04 00 00 00 00 D4"), kRefused10);
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter");
}

TEST_F(ArtworkTest, TrackWithoutArtworkIsRefusedAndNoMistake) {
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 10 00 00 00 01 04 01 00 00 00 00 D9"), kRefused10);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(ArtworkTest, PlaceOutsideTheListIsNamed) {
  EXPECT_EQ(dock.Exchange("FF 55 0D 04 00 10 00 00 00 02 04 01 00 00 00 00 D8"), kRefused10);
  EXPECT_EQ(dock.Mistakes(), "index out of range");
}

TEST_F(ArtworkTest, PictureComesInNumberedParts) {
  dock.Write("FF 55 0D 04 00 10 00 00 00 00 04 01 00 00 00 00 DA");
  const Bytes wire = Hex(dock.Read(kSecond));
  std::vector<Frame> frames;
  FrameReader reader;
  reader.on_frame = [&](const Frame& frame, const Bytes&) { frames.push_back(frame); };
  reader.on_problem = [](FramingProblem, const std::string& detail) { ADD_FAILURE() << detail; };
  for (const std::uint8_t byte : wire) reader.Feed(byte, dock.now);
  ASSERT_EQ(frames.size(), 3u);
  // Number 0, then format, width, height, the whole as this part, bytes of a row.
  const Bytes header(frames[0].data.begin(), frames[0].data.begin() + 19);
  EXPECT_EQ(ToHex(header), "00 00 02 00 10 00 10 00 00 00 00 00 10 00 10 00 00 00 20");
  EXPECT_EQ(frames[0].data.size(), 240u);
  EXPECT_EQ(frames[1].data.size(), 240u);
  EXPECT_EQ(frames[1].data[1], 1);
  EXPECT_EQ(frames[2].data[1], 2);
  for (const Frame& frame : frames) EXPECT_EQ(frame.command, 0x0011);
  // 16 rows of 16 pixels of 2 bytes.
  EXPECT_EQ(frames[0].data.size() - 19 + frames[1].data.size() - 2 + frames[2].data.size() - 2,
            512u);
}

}  // namespace
}  // namespace ipodsim

// SPDX-License-Identifier: MIT
// Looking around with ipodctl: the real program, a real pseudo-terminal, and a library that is
// known by heart.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "docked_ipod.h"
#include "support/json_lines.h"

using e2e::DockedIpod;
using nlohmann::json;
using test::Ended;
using test::Objects;
using test::Process;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(IpodctlInfo, TellsPeopleAndMachinesWhoIsInTheDock) {
  const DockedIpod dock;
  const DockedIpod machines_dock;
  const auto for_machines = machines_dock.Start({"info", "--json"});
  const Ended ended = dock.Ipodctl({"info"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("Zoë's iPod on " + dock.device() + "\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Model               MB598LL (0x00140000)\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Serial number       5U8250SIM01\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Software version    1.0.4\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Identified by       tokens\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Workouts            supported\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Extended Interface  1.14\n"));
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(dock.mistakes(), "");

  const Ended machines = for_machines->Wait();
  EXPECT_EQ(machines.status, 0) << machines.err;
  const json info = json::parse(machines.out);
  EXPECT_EQ(info.at("name"), "Zoë's iPod");
  EXPECT_EQ(info.at("model"), "MB598LL");
  EXPECT_EQ(info.at("model_id"), 0x00140000);
  EXPECT_EQ(info.at("color"), 2);
  EXPECT_EQ(info.at("serial_number"), "5U8250SIM01");
  EXPECT_EQ(info.at("software_version"), "1.0.4");
  EXPECT_EQ(info.at("identified_by"), "tokens");
  EXPECT_EQ(info.at("sports"), true);
  EXPECT_EQ(info.at("lingoes").at("General"), "1.09");
  EXPECT_EQ(info.at("lingoes").at("Storage"), "1.02");
}

TEST(IpodctlInfo, IsTheSameUnderEveryConduct) {
  for (const char* conduct : {"field", "robust", "fast"}) {
    const DockedIpod dock;
    const Ended ended = dock.Ipodctl({"--conduct", conduct, "info", "--json"});
    EXPECT_EQ(ended.status, 0) << conduct << ": " << ended.err;
    EXPECT_EQ(json::parse(ended.out).at("name"), "Zoë's iPod") << conduct;
    EXPECT_EQ(json::parse(ended.out).at("lingoes").at("Storage"), "1.02") << conduct;
    EXPECT_EQ(dock.mistakes(), "") << conduct;
  }
}

TEST(IpodctlInfo, IdentifiesWithoutTokensWhenToldTo) {
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"--no-idps", "--model", "T-1000", "info", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(json::parse(ended.out).at("identified_by"), "lingoes");
  std::string model;
  dock.server().Inspect([&](const ipodsim::SimulatedIpod& ipod) {
    for (const std::uint8_t byte : ipod.accessory_information(7)) {
      if (byte != 0) model.push_back(static_cast<char>(byte));
    }
  });
  EXPECT_EQ(model, "T-1000");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlBrowse, CountsEveryCategoryWithoutArguments) {
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"browse", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const json categories = json::parse(ended.out).at("categories");
  EXPECT_EQ(categories.at("playlists"), 3);  // the iPod's own among them
  EXPECT_EQ(categories.at("artists"), 3);
  EXPECT_EQ(categories.at("albums"), 4);
  EXPECT_EQ(categories.at("genres"), 2);
  EXPECT_EQ(categories.at("audiobooks"), 1);
  EXPECT_EQ(categories.at("podcasts"), 1);
  EXPECT_EQ(categories.at("tracks"), 7);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlBrowse, WalksDownByNameInAnyCaseAndScript) {
  const DockedIpod dock;
  const DockedIpod kanji_dock;
  const auto kanji = kanji_dock.Start({"browse", "albums", "都市", "--json"});
  const Ended ended = dock.Ipodctl({"browse", "artists", "the hum", "Spans"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out,
            "the hum > Spans > tracks (3)\n"
            "  0  Bridges\n"
            "  1  Arches\n"
            "  2  Piers\n");

  const Ended other = kanji->Wait();
  EXPECT_EQ(other.status, 0) << other.err;
  const std::vector<json> lines = Objects(other.out);
  ASSERT_EQ(lines.size(), 3U) << other.out;
  EXPECT_EQ(lines[0], json({{"category", "tracks"},
                            {"path", {"albums", "都市"}},
                            {"total", 2},
                            {"from", 0},
                            {"count", 2}}));
  EXPECT_EQ(lines[1], json({{"index", 0}, {"name", "橋"}}));
  EXPECT_EQ(lines[2], json({{"index", 1}, {"name", "歩く 🎧"}}));
  EXPECT_EQ(dock.mistakes() + kanji_dock.mistakes(), "");
}

// The accents of one are composed, of the other not, and an eszett is two letters in capitals.
TEST(IpodctlBrowse, FindsANameHoweverItsLettersAreWritten) {
  const DockedIpod dock;
  const DockedIpod decomposed_dock;
  const auto decomposed = decomposed_dock.Start({"browse", "artists", "Ju\u0308rgen Gro\u0308ße"});
  const Ended ended = dock.Ipodctl({"browse", "artists", "JÜRGEN GRÖSSE"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "JÜRGEN GRÖSSE > albums (1)\n  0  Straßen\n");
  EXPECT_THAT(decomposed->Wait().out, HasSubstr("\n  0  Straßen\n"));
}

TEST(IpodctlBrowse, ListsARangeAnotherCategoryOrAnotherHierarchy) {
  const DockedIpod range_dock;
  const auto range =
      range_dock.Start({"browse", "tracks", "--from", "5", "--count", "9", "--json"});
  const DockedIpod category_dock;
  const auto category =
      category_dock.Start({"browse", "genres", "Rock", "--category", "tracks", "--json"});
  const DockedIpod video_dock;
  const auto video = video_dock.Start({"browse", "tracks", "--hierarchy", "video"});

  const std::vector<json> lines = Objects(range->Wait().out);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].at("total"), 7);
  EXPECT_EQ(lines[0].at("from"), 5);
  EXPECT_EQ(lines[0].at("count"), 2);
  EXPECT_EQ(lines[1].at("index"), 5);
  EXPECT_EQ(lines[2].at("index"), 6);
  const std::vector<json> of_genre = Objects(category->Wait().out);
  ASSERT_EQ(of_genre.size(), 5U);
  EXPECT_EQ(of_genre[0].at("total"), 4);
  EXPECT_EQ(video->Wait().out, "tracks (1)\n  0  Moving Pictures\n");
  EXPECT_EQ(range_dock.mistakes() + category_dock.mistakes() + video_dock.mistakes(), "");
}

TEST(IpodctlBrowse, SaysWhatToDoAboutRecordsThatAreNotThere) {
  const DockedIpod dock;
  const DockedIpod number_dock;
  const auto by_number = number_dock.Start({"browse", "artists", "@3"});
  const Ended ended = dock.Ipodctl({"browse", "artists", "Nobody"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err,
            "ipodctl: there is no artist 'Nobody' here; 'ipodctl browse' lists what there is.\n");
  const Ended number = by_number->Wait();
  EXPECT_EQ(number.status, 1);
  EXPECT_EQ(number.err, "ipodctl: there is no artist @3 here, only 3 records counted from @0.\n");
  EXPECT_EQ(dock.mistakes() + number_dock.mistakes(), "");
}

TEST(IpodctlBrowse, TakesAPartOfANameUnlessItIsAmbiguous) {
  const DockedIpod dock;
  const DockedIpod ambiguous_dock;
  const auto ambiguous = ambiguous_dock.Start({"browse", "artists", "The Hum", "a"});
  const Ended ended = dock.Ipodctl({"play", "tracks", "Bri"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(dock.title(), "Bridges");
  const Ended refused = ambiguous->Wait();
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(
      refused.err,
      "ipodctl: 'a' could be any of 2 albums: 'Spans' (@0), 'Water' (@1); name one in full or "
      "by its number.\n");
}

TEST(IpodctlBrowse, ShowsProgressOnATerminalOnly) {
  const DockedIpod dock;
  const DockedIpod piped_dock;
  const auto piped = piped_dock.Start({"browse", "artists"});
  Process on_terminal(IPODCTL_PROGRAM, {"--port", dock.device(), "browse", "artists"},
                      Process::Setting::kErrorsOnTerminal);
  const Ended seen = on_terminal.Wait();
  EXPECT_EQ(seen.status, 0);
  EXPECT_THAT(seen.err, HasSubstr("\rReading artists  "));
  EXPECT_THAT(seen.err, HasSubstr("█"));
  EXPECT_THAT(seen.err, HasSubstr("3/3"));
  EXPECT_THAT(seen.out, Not(HasSubstr("\r")));
  const Ended plain = piped->Wait();
  EXPECT_EQ(plain.err, "");
  EXPECT_EQ(plain.out, seen.out);
}

TEST(IpodctlBrowse, SaysWhereANameIsBlank) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(2);
  settings.library.tracks[1].title = "";
  const DockedIpod dock(settings);
  const DockedIpod machines_dock(settings);
  const auto for_machines = machines_dock.Start({"browse", "tracks", "--json"});
  EXPECT_THAT(dock.Ipodctl({"browse", "tracks"}).out, HasSubstr("  (no name)\n"));
  EXPECT_THAT(for_machines->Wait().out, HasSubstr("\"name\":\"\"}\n"));
}

TEST(IpodctlBrowse, AsksForAWholeListAtOnce) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(300);
  DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"--conduct", "fast", "browse", "tracks", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::vector<json> lines = Objects(ended.out);
  ASSERT_EQ(lines.size(), 301U);
  EXPECT_EQ(lines[300], json({{"index", 299}, {"name", "Track 299"}}));
  EXPECT_EQ(dock.mistakes(), "");
}

}  // namespace

// SPDX-License-Identifier: MIT
// Looking around with ipodctl: the real program, a real pseudo-terminal, and a library that is
// known by heart.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "dock.h"

using e2e::Dock;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(IpodctlInfo, TellsWhoIsInTheDock) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"info"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("Zoë's iPod on " + dock.device() + "\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Model               MB598LL (0x00140000)\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Identified by       tokens\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Workouts            supported\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Extended Interface  1.14\n"));
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlInfo, GivesMachinesOneObject) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"info", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const json info = json::parse(ended.out);
  EXPECT_EQ(info.at("name"), "Zoë's iPod");
  EXPECT_EQ(info.at("model"), "MB598LL");
  EXPECT_EQ(info.at("model_id"), 0x00140000);
  EXPECT_EQ(info.at("color"), 2);
  EXPECT_EQ(info.at("identified_by"), "tokens");
  EXPECT_EQ(info.at("sports"), true);
  EXPECT_EQ(info.at("lingoes").at("General"), "1.09");
  EXPECT_EQ(info.at("lingoes").at("Storage"), "1.02");
}

TEST(IpodctlInfo, IdentifiesWithoutTokensWhenToldTo) {
  const Dock dock;
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
  const Dock dock;
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

TEST(IpodctlBrowse, WalksDownByNameInAnyCase) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "artists", "the hum", "Spans"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out,
            "the hum > Spans > tracks (3)\n"
            "  0  Bridges\n"
            "  1  Arches\n"
            "  2  Piers\n");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlBrowse, ShowsNamesInEveryScript) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "albums", "都市", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const json list = json::parse(ended.out);
  EXPECT_EQ(list.at("category"), "tracks");
  EXPECT_EQ(list.at("path"), json({"albums", "都市"}));
  EXPECT_EQ(list.at("records"),
            json({{{"index", 0}, {"name", "橋"}}, {{"index", 1}, {"name", "歩く 🎧"}}}));
}

TEST(IpodctlBrowse, ListsARange) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "tracks", "--from", "5", "--count", "9", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const json list = json::parse(ended.out);
  EXPECT_EQ(list.at("total"), 7);
  EXPECT_EQ(list.at("from"), 5);
  ASSERT_EQ(list.at("records").size(), 2U);
  EXPECT_EQ(list.at("records")[0].at("index"), 5);
}

TEST(IpodctlBrowse, ListsAnotherCategoryInsideARecord) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "genres", "Rock", "--category", "tracks", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(json::parse(ended.out).at("total"), 4);
}

TEST(IpodctlBrowse, ListsTheVideoHierarchy) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "tracks", "--hierarchy", "video"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "tracks (1)\n  0  Moving Pictures\n");
}

TEST(IpodctlBrowse, SaysWhatToDoAboutAnUnknownName) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "artists", "Nobody"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err,
            "ipodctl: there is no artist 'Nobody' here; 'ipodctl browse' lists what there is.\n");
}

TEST(IpodctlBrowse, NamesTheCandidatesOfAnAmbiguousName) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"play", "tracks", "Bri"});  // part of 'Bridges' alone
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(dock.title(), "Bridges");
  const Ended ambiguous = dock.Ipodctl({"browse", "artists", "The Hum", "a"});
  EXPECT_EQ(ambiguous.status, 1);
  EXPECT_EQ(
      ambiguous.err,
      "ipodctl: 'a' could be any of 2 albums: 'Spans' (@0), 'Water' (@1); name one in full or "
      "by its number.\n");
}

TEST(IpodctlBrowse, RefusesARecordNumberBeyondTheList) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"browse", "artists", "@3"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "ipodctl: there is no artist @3 here, only 3 records counted from @0.\n");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlBrowse, ShowsProgressOnATerminalOnly) {
  const Dock dock;
  Process on_terminal(IPODCTL_PROGRAM, {"--port", dock.device(), "browse", "artists"},
                      Process::ErrorStream::kTerminal);
  const Ended seen = on_terminal.Wait();
  EXPECT_EQ(seen.status, 0);
  EXPECT_THAT(seen.err, HasSubstr("\rReading artists  "));
  EXPECT_THAT(seen.err, HasSubstr("█"));
  EXPECT_THAT(seen.err, HasSubstr("3/3"));
  EXPECT_THAT(seen.out, Not(HasSubstr("\r")));
  const Ended piped = dock.Ipodctl({"browse", "artists"});
  EXPECT_EQ(piped.err, "");
  EXPECT_EQ(piped.out, seen.out);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Playing with ipodctl: after each run of the program the simulated iPod's own state is looked at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <sstream>

#include "dock.h"

using e2e::Dock;
using ipodsim::PlayerState;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

std::vector<json> Objects(const std::string& lines) {
  std::vector<json> objects;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) objects.push_back(json::parse(line));
  return objects;
}

TEST(IpodctlPlay, PlaysANamedTrackPausesAndGoesOn) {
  const Dock dock;
  const Ended played = dock.Ipodctl({"play", "artists", "The Hum", "Spans", "Arches", "--json"});
  EXPECT_EQ(played.status, 0) << played.err;
  const json now = json::parse(played.out);
  EXPECT_EQ(now.at("state"), "playing");
  EXPECT_EQ(now.at("title"), "Arches");
  EXPECT_EQ(now.at("artist"), "The Hum");
  EXPECT_EQ(now.at("album"), "Spans");
  EXPECT_EQ(now.at("index"), 1);
  EXPECT_EQ(now.at("length_ms"), 200000);
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);

  const Ended paused = dock.Ipodctl({"pause"});
  EXPECT_EQ(paused.status, 0) << paused.err;
  EXPECT_THAT(paused.out, HasSubstr("Paused   Arches\n         The Hum - Spans\n"));
  EXPECT_EQ(dock.state(), PlayerState::kPaused);

  EXPECT_EQ(dock.Ipodctl({"play"}).status, 0);
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.title(), "Arches");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPlay, PlaysAListFromItsFirstTrackSkipsAndStops) {
  const Dock dock;
  EXPECT_EQ(dock.Ipodctl({"play", "playlists", "Morning Run"}).status, 0);
  EXPECT_EQ(dock.title(), "歩く 🎧");
  const Ended next = dock.Ipodctl({"next"});
  EXPECT_EQ(next.status, 0) << next.err;
  EXPECT_THAT(next.out, HasSubstr("Low Tide"));
  EXPECT_EQ(dock.title(), "Low Tide");
  EXPECT_EQ(dock.Ipodctl({"pause"}).status, 0);
  EXPECT_EQ(dock.Ipodctl({"stop", "--json"}).out, "{\"state\":\"stopped\"}\n");
  EXPECT_EQ(dock.state(), PlayerState::kStopped);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPlay, GoesBackToThePreviousTrackOrTheStart) {
  const Dock dock;
  EXPECT_EQ(dock.Ipodctl({"play", "albums", "Spans", "@2"}).status, 0);
  EXPECT_EQ(dock.title(), "Piers");
  // Whether this is still the track's first three seconds depends on the machine: then the first
  // goes to its start and the second to the track before.
  EXPECT_EQ(dock.Ipodctl({"previous"}).status, 0);
  const Ended ended = dock.Ipodctl({"now"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(dock.title() == "Piers" || dock.title() == "Arches") << dock.title();
  EXPECT_THAT(ended.out, HasSubstr(dock.title()));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPlay, WindsForwardAndBack) {
  const Dock dock;
  EXPECT_EQ(dock.Ipodctl({"play", "tracks", "Bridges"}).status, 0);
  const json before = json::parse(dock.Ipodctl({"now", "--json"}).out);
  // A second of winding covers eight; what the run itself takes comes on top.
  const Ended forward = dock.Ipodctl({"seek", "forward", "2", "--json"});
  EXPECT_EQ(forward.status, 0) << forward.err;
  const json after = json::parse(forward.out);
  EXPECT_EQ(after.at("state"), "playing");
  EXPECT_GE(after.at("position_ms").get<int>(), before.at("position_ms").get<int>() + 16000);
  const Ended back = dock.Ipodctl({"seek", "back", "0.2"});
  EXPECT_EQ(back.status, 0) << back.err;
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPlay, RefusesToPauseWhenNothingPlays) {
  const Dock dock;
  const Ended ended = dock.Ipodctl({"pause"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "ipodctl: the iPod refused to pause; nothing may be playing.\n");
}

TEST(IpodctlNow, FollowsThePositionByNotifications) {
  const Dock dock;
  EXPECT_EQ(dock.Ipodctl({"play", "tracks", "Bridges"}).status, 0);
  const Ended ended = dock.Ipodctl({"now", "--for", "4", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::vector<json> events = Objects(ended.out);
  ASSERT_GE(events.size(), 3U) << ended.out;
  EXPECT_EQ(events.front().at("event"), "start");
  EXPECT_EQ(events.front().at("state"), "playing");
  EXPECT_EQ(events.front().at("title"), "Bridges");
  EXPECT_EQ(events.back().at("event"), "position");
  EXPECT_GT(events.back().at("position_ms"), events.front().at("position_ms"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlNow, EndsInGoodOrderOnCtrlC) {
  const Dock dock;
  Process follower(IPODCTL_PROGRAM, {"--port", dock.device(), "now", "--follow"});
  ASSERT_TRUE(follower.WaitForOutput("Stopped\n"));
  follower.Signal(SIGINT);
  const Ended ended = follower.Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Stopped\n");
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(dock.Ipodctl({"now"}).status, 0);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlModes, SetsAndReadsShuffle) {
  const Dock dock;
  EXPECT_EQ(dock.Ipodctl({"shuffle"}).out, "Shuffle: off\n");
  const Ended set = dock.Ipodctl({"shuffle", "albums", "--keep"});
  EXPECT_EQ(set.status, 0) << set.err;
  EXPECT_EQ(set.out, "Shuffle: albums\n");
  EXPECT_EQ(dock.Ipodctl({"shuffle", "tracks", "--json"}).out, "{\"shuffle\":\"tracks\"}\n");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlModes, SetsAndReadsRepeat) {
  const Dock dock;
  EXPECT_EQ(dock.Ipodctl({"repeat", "--json"}).out, "{\"repeat\":\"off\"}\n");
  const Ended set = dock.Ipodctl({"repeat", "one"});
  EXPECT_EQ(set.status, 0) << set.err;
  EXPECT_EQ(set.out, "Repeat: one\n");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPrefs, SetsAndReadsPreferences) {
  const Dock dock;
  const Ended set = dock.Ipodctl({"prefs", "set", "aspect", "4:3"});
  EXPECT_EQ(set.status, 0) << set.err;
  EXPECT_EQ(set.out, "aspect: 4:3\n");
  const Ended all = dock.Ipodctl({"prefs", "--json"});
  EXPECT_EQ(all.status, 0) << all.err;
  const json prefs = json::parse(all.out);
  EXPECT_TRUE(prefs.contains("video-out"));
  EXPECT_TRUE(prefs.contains("pause-on-removal"));
  EXPECT_THAT(dock.Ipodctl({"prefs", "get", "line-out"}).out, HasSubstr("line-out: o"));
  EXPECT_EQ(dock.mistakes(), "");
}

// The library prints a trace line on standard output whenever a track is started.
TEST(IpodctlOutput, KeepsTheLibrarysOwnPrintsOutOfTheData) {
  const Dock dock;
  const Ended quiet = dock.Ipodctl({"play", "tracks", "@0", "--json"});
  EXPECT_EQ(json::parse(quiet.out).at("state"), "playing");
  EXPECT_EQ(quiet.err, "");
  const Ended verbose = dock.Ipodctl({"play", "tracks", "@0", "--json", "--verbose"});
  EXPECT_EQ(json::parse(verbose.out).at("state"), "playing");
  EXPECT_THAT(verbose.err, HasSubstr("Select iPod track category 5, index 0"));
  EXPECT_THAT(verbose.err, HasSubstr("ipodctl: opening " + dock.device()));
}

TEST(IpodctlTour, ShowsEverythingWithoutAMistake) {
  const Ended ended = Ipodctl({"tour"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  for (const char* part :
       {"The iPod accepted us by tokens.", "Browse: artists", "Browse: albums of",
        "Browse: tracks of", "Playing  ", "Paused   ", "Shuffle was off", "Close"}) {
    EXPECT_THAT(ended.out, HasSubstr(part));
  }
  EXPECT_THAT(ended.out, HasSubstr("Protocol mistakes seen by the simulated iPod: 0\n"));
  EXPECT_EQ(ended.err, "");
}

TEST(IpodctlTour, GivesMachinesOneObjectPerStep) {
  const Ended ended = Ipodctl({"tour", "--json", "--seed", "9"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::vector<json> steps = Objects(ended.out);
  ASSERT_GE(steps.size(), 8U);
  EXPECT_EQ(steps.front().at("step"), "identify");
  EXPECT_EQ(steps.back(), json({{"step", "undock"}, {"protocol_mistakes", 0}}));
}

}  // namespace

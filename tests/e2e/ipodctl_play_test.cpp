// SPDX-License-Identifier: MIT
// Playing with ipodctl: after each run of the program the simulated iPod's own state is looked at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "docked_ipod.h"
#include "support/json_lines.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::PlayerState;
using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using test::Object;
using test::Objects;
using test::Process;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(IpodctlPlay, PlaysANamedTrackPausesGoesOnAndIsFollowed) {
  const DockedIpod dock;
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

  const Ended followed = dock.Ipodctl({"now", "--for", "3", "--json"});
  EXPECT_EQ(followed.status, 0) << followed.err;
  const std::vector<json> events = Objects(followed.out);
  ASSERT_GE(events.size(), 2U) << followed.out;
  EXPECT_EQ(events.front().at("event"), "start");
  EXPECT_EQ(events.front().at("state"), "playing");
  EXPECT_EQ(events.front().at("title"), "Arches");
  EXPECT_EQ(events.back().at("event"), "position");
  EXPECT_GT(events.back().at("position_ms"), events.front().at("position_ms"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPlay, PlaysAListFromItsFirstTrackSkipsAndStops) {
  const DockedIpod dock;
  EXPECT_EQ(dock.Ipodctl({"play", "playlists", "Morning Run"}).status, 0);
  EXPECT_EQ(dock.title(), "歩く 🎧");
  const Ended next = dock.Ipodctl({"next"});
  EXPECT_EQ(next.status, 0) << next.err;
  EXPECT_THAT(next.out, HasSubstr("Low Tide"));
  EXPECT_EQ(dock.title(), "Low Tide");
  const Ended previous = dock.Ipodctl({"previous"});
  EXPECT_EQ(previous.status, 0) << previous.err;
  // The track before during a track's first three seconds, its start later; how much of them is
  // left depends on the machine.
  EXPECT_TRUE(dock.title() == "Low Tide" || dock.title() == "歩く 🎧") << dock.title();
  EXPECT_THAT(previous.out, HasSubstr(dock.title()));
  EXPECT_EQ(Object(dock.Ipodctl({"stop", "--json"}).out), json({{"state", "stopped"}}));
  EXPECT_EQ(dock.state(), PlayerState::kStopped);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlPlay, WindsForwardAndBack) {
  const DockedIpod dock;
  const DockedIpod idle_dock;
  const auto idle = idle_dock.Start({"seek", "back"});
  EXPECT_EQ(dock.Ipodctl({"play", "tracks", "Bridges"}).status, 0);
  // Three seconds of winding cover twenty-four.
  const Ended forward = dock.Ipodctl({"seek", "forward", "3", "--json"});
  EXPECT_EQ(forward.status, 0) << forward.err;
  const json after = json::parse(forward.out);
  EXPECT_EQ(after.at("state"), "playing");
  EXPECT_GE(after.at("position_ms").get<int>(), 24000);
  const Ended back = dock.Ipodctl({"seek", "back", "0.2"});
  EXPECT_EQ(back.status, 0) << back.err;
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.mistakes(), "");

  const Ended refused = idle->Wait();
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err,
            "ipodctl: the iPod refused to wind back (status 1, command failed); it is stopped.\n");
}

TEST(IpodctlModes, SetAndReadShuffleRepeatAndPreferences) {
  const DockedIpod shuffle_dock;
  const auto shuffle = shuffle_dock.Start({"shuffle", "albums", "--keep"});
  const DockedIpod repeat_dock;
  const auto repeat = repeat_dock.Start({"repeat", "one"});
  const DockedIpod prefs_dock;
  const auto prefs = prefs_dock.Start({"prefs", "set", "aspect", "4:3"});
  EXPECT_EQ(shuffle->Wait().out, "Shuffle: albums\n");
  EXPECT_EQ(repeat->Wait().out, "Repeat: one\n");
  EXPECT_EQ(prefs->Wait().out,
            "aspect: 4:3\n"
            "It holds until the iPod is undocked or the next command, which sets it to 16:9.\n");
  shuffle_dock.server().Inspect([](const ipodsim::SimulatedIpod& ipod) {
    EXPECT_EQ(ipod.player().shuffle(), ipodsim::Shuffle::kAlbums);
  });
  repeat_dock.server().Inspect([](const ipodsim::SimulatedIpod& ipod) {
    EXPECT_EQ(ipod.player().repeat(), ipodsim::Repeat::kOne);
  });
  prefs_dock.server().Inspect(
      [](const ipodsim::SimulatedIpod& ipod) { EXPECT_EQ(ipod.preference(10), 0); });

  const auto shuffle_now = shuffle_dock.Start({"shuffle", "--json"});
  const auto repeat_now = repeat_dock.Start({"repeat", "--json"});
  const auto all_prefs = prefs_dock.Start({"prefs", "--json"});
  EXPECT_EQ(Object(shuffle_now->Wait().out), json({{"shuffle", "albums"}}));
  EXPECT_EQ(Object(repeat_now->Wait().out), json({{"repeat", "one"}}));
  const json all = json::parse(all_prefs->Wait().out);
  for (const char* name : {"video-out", "screen", "line-out", "aspect", "pause-on-removal"}) {
    EXPECT_TRUE(all.contains(name)) << name;
  }
  EXPECT_EQ(shuffle_dock.mistakes() + repeat_dock.mistakes() + prefs_dock.mistakes(), "");
}

// ---- What is true instead -----------------------------------------------------------------------

TEST(IpodctlPlay, RefusalTellsTheStatusAndWhatTheIpodDoes) {
  const std::pair<const char*, const char*> refusals[] = {
      {"pause", "cannot pause: the iPod is stopped"},
      {"next", "the iPod refused to skip (status 1, command failed); it is stopped"},
      {"previous", "the iPod refused to skip back (status 1, command failed); it is stopped"},
  };
  std::vector<std::unique_ptr<DockedIpod>> docks;
  std::vector<std::unique_ptr<Process>> runs;
  for (const auto& [command, sentence] : refusals) {
    docks.push_back(std::make_unique<DockedIpod>());
    runs.push_back(docks.back()->Start({command}));
  }
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const Ended ended = runs[i]->Wait();
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, std::string("ipodctl: ") + refusals[i].second + ".\n");
  }
}

TEST(IpodctlPlay, TrackThatIsAcceptedAndNotPlayedIsAFailure) {
  ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano);
  settings.stays_paused = true;
  const DockedIpod dock(settings);
  const DockedIpod legacy_dock(settings);
  const auto legacy = legacy_dock.Start({"--legacy", "play", "tracks", "Bridges"});
  const Ended ended = dock.Ipodctl({"play", "tracks", "Bridges", "--json"});
  EXPECT_EQ(ended.status, 1);
  const std::string sentence =
      "the iPod accepted, but is paused on track 1, 'Arches', not playing track 2, 'Bridges'";
  EXPECT_EQ(Object(ended.out), json({{"error", "failed"}, {"message", sentence}, {"status", 1}}));
  EXPECT_EQ(ended.err, "ipodctl: " + sentence + ".\n");
  const Ended through_legacy = legacy->Wait();
  EXPECT_EQ(through_legacy.status, 1);
  EXPECT_THAT(through_legacy.err,
              HasSubstr("is paused on track 1, 'Arches', not playing track 2, 'Bridges'.\n"));
}

TEST(IpodctlModes, PreferencesEndAtTheFirstRefusalForWantOfAuthentication) {
  ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano);
  settings.refused[{0x00, 0x29}] = ipodsim::AckStatus::kNotAuthenticated;
  const DockedIpod dock(settings);
  const DockedIpod legacy_dock(settings);
  const auto legacy = legacy_dock.Start({"--legacy", "prefs"});
  const Ended ended = dock.Ipodctl({"prefs"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err,
            "ipodctl: the iPod refused to tell its preferences (status 7, accessory not "
            "authenticated).\n");
  EXPECT_EQ(legacy->Wait().err, ended.err);
}

TEST(IpodctlPlay, ModeThatIsRefusedIsNotShownAsSet) {
  ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano);
  settings.refused[{0x04, 0x2E}] = ipodsim::AckStatus::kFailed;
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"shuffle", "albums"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err,
            "ipodctl: the iPod refused to set shuffle to albums (status 1, command failed); it is "
            "off.\n");
}

TEST(IpodctlPlay, TrackThatNoSelectionPlaysIsRefused) {
  ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano);
  settings.refuses_select_record = true;
  settings.refused[{0x04, 0x38}] = ipodsim::AckStatus::kUnknown;
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"play", "tracks", "Arches"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err,
            "ipodctl: the iPod refused to play track 1, 'Arches' (status 4, unknown to it); it is "
            "stopped.\n");
}

TEST(IpodctlPlay, VideoFlagThatIsRefusedIsLeftOut) {
  ipodsim::Settings settings = SettingsOf(ipodsim::Profile::kNano);
  settings.refused[{0x03, 0x12}] = ipodsim::AckStatus::kUnknown;
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"play", "tracks", "@0", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(json::parse(ended.out).at("title"), "Arches");
  EXPECT_FALSE(json::parse(ended.out).contains("video"));
}

// The library prints a trace line on standard output whenever a track is started.
TEST(IpodctlOutput, KeepsTheLibrarysOwnPrintsOutOfTheData) {
  const DockedIpod dock;
  const DockedIpod verbose_dock;
  const auto verbose = verbose_dock.Start({"play", "tracks", "@0", "--json", "--verbose"});
  const Ended quiet = dock.Ipodctl({"play", "tracks", "@0", "--json"});
  EXPECT_EQ(json::parse(quiet.out).at("state"), "playing");
  EXPECT_EQ(quiet.err, "");
  const Ended told = verbose->Wait();
  EXPECT_EQ(json::parse(told.out).at("state"), "playing");
  EXPECT_THAT(told.err, HasSubstr("Select iPod track category 5, index 0"));
  EXPECT_THAT(told.err, HasSubstr("ipodctl: opening " + verbose_dock.device()));
}

TEST(IpodctlTour, ShowsPeopleAndMachinesEverythingWithoutAMistake) {
  Process for_machines(IPODCTL_PROGRAM, {"tour", "--json", "--seed", "9"});
  const Ended ended = Ipodctl({"tour"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  for (const char* part :
       {"The iPod accepted us by tokens.", "Browse: artists", "Browse: albums of",
        "Browse: tracks of", "Playing  ", "Paused   ", "Shuffle was off", "Close"}) {
    EXPECT_THAT(ended.out, HasSubstr(part));
  }
  EXPECT_THAT(ended.out, HasSubstr("Protocol mistakes seen by the simulated iPod: 0\n"));
  EXPECT_EQ(ended.err, "");

  const Ended machines = for_machines.Wait();
  EXPECT_EQ(machines.status, 0) << machines.err;
  const std::vector<json> steps = Objects(machines.out);
  std::vector<std::string> names;
  for (const json& told : steps) {
    const std::string name = told.value("step", "none");
    if (names.empty() || names.back() != name) names.push_back(name);
  }
  EXPECT_THAT(names, ElementsAre("identify", "device", "artists", "albums", "tracks", "play",
                                 "pause", "next", "shuffle", "close", "undock"));
  EXPECT_EQ(steps.back(), json({{"step", "undock"}, {"protocol_mistakes", 0}}));
}

}  // namespace

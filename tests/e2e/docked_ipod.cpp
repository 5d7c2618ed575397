// SPDX-License-Identifier: MIT
#include "docked_ipod.h"

namespace e2e {

const char* const kLibrary = R"({
  "name": "Zoë's iPod",
  "tracks": [
    {"title": "Bridges", "artist": "The Hum", "album": "Spans", "genre": "Rock", "length_ms": 300000, "number": 1},
    {"title": "Arches", "artist": "The Hum", "album": "Spans", "genre": "Rock", "length_ms": 200000, "number": 2},
    {"title": "Piers", "artist": "The Hum", "album": "Spans", "genre": "Rock", "length_ms": 200000, "number": 3},
    {"title": "Low Tide", "artist": "The Hum", "album": "Water", "genre": "Rock", "length_ms": 200000, "number": 1},
    {"title": "Über die Brücke", "artist": "Jürgen Größe", "album": "Straßen", "genre": "Pop", "length_ms": 200000, "number": 1},
    {"title": "橋", "artist": "山田", "album": "都市", "genre": "Pop", "length_ms": 200000, "number": 1},
    {"title": "歩く 🎧", "artist": "山田", "album": "都市", "genre": "Pop", "length_ms": 200000, "number": 2},
    {"title": "Chapter 1", "artist": "A. Reader", "album": "The Long Book", "length_ms": 200000, "kind": "audiobook"},
    {"title": "Episode 1", "artist": "Hosts", "album": "Weekly", "length_ms": 200000, "kind": "podcast"},
    {"title": "Moving Pictures", "artist": "Film Unit", "album": "Reels", "length_ms": 200000, "kind": "video"}
  ],
  "playlists": [
    {"name": "Morning Run", "tracks": [6, 3, 0]},
    {"name": "Evening", "tracks": [4]}
  ]
})";

ipodsim::Settings SettingsOf(ipodsim::Profile profile) {
  ipodsim::Settings settings;
  settings.profile = profile;
  settings.library = *ipodsim::ParseLibrary(kLibrary, "the test library").library;
  return settings;
}

ipodsim::Library NumberedTracks(int count) {
  ipodsim::Library library;
  library.name = "Numbers";
  for (int i = 0; i < count; ++i) {
    const std::string digits = std::to_string(1000 + i);
    ipodsim::Track track;
    track.title = "Track " + digits.substr(1);
    track.length_ms = 180000;
    library.tracks.push_back(track);
  }
  return library;
}

DockedIpod::DockedIpod(ipodsim::Settings settings) : server_(std::move(settings)) {
  EXPECT_TRUE(server_.Start()) << server_.error();
}

test::Ended DockedIpod::Ipodctl(const std::vector<std::string>& arguments) const {
  return Start(arguments)->Wait();
}

std::unique_ptr<test::Process> DockedIpod::Start(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), {"--port", device()});
  return std::make_unique<test::Process>(IPODCTL_PROGRAM, arguments);
}

ipodsim::PlayerState DockedIpod::state() const {
  ipodsim::PlayerState state = ipodsim::PlayerState::kStopped;
  server_.Inspect([&](const ipodsim::SimulatedIpod& ipod) { state = ipod.player().state(); });
  return state;
}

std::string DockedIpod::title() const {
  std::string title;
  server_.Inspect([&](const ipodsim::SimulatedIpod& ipod) {
    const ipodsim::Track* track = ipod.player().current();
    if (track != nullptr) title = track->title;
  });
  return title;
}

std::string DockedIpod::mistakes() const {
  std::string lines;
  for (const ipodsim::Mistake& mistake : server_.mistakes()) {
    lines += mistake.name + ": " + mistake.detail + "\n";
  }
  return lines;
}

}  // namespace e2e

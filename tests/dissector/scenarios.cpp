// SPDX-License-Identifier: MIT
#include "dissector/scenarios.h"

#include <algorithm>
#include <map>
#include <utility>

#include "simulator/settings/habits.h"

namespace dissector {

namespace {

using Arguments = std::vector<std::string>;

// Short lists, so that what is kept of a session can be read.
ipodsim::Library SmallLibrary() {
  ipodsim::Library library;
  library.name = "Zoë's iPod";
  for (const char* title : {"Bridges", "Über die Brücke", "橋"}) {
    ipodsim::Track track;
    track.title = title;
    track.artist = "The Hum";
    track.album = "Spans";
    track.genre = "Rock";
    track.composer = "A. Builder";
    track.length_ms = 200'000;
    library.tracks.push_back(track);
  }
  library.playlists = {{"Morning Run", {2, 0}, {}}};
  return library;
}

ipodsim::Settings SettingsOf(ipodsim::Profile profile) {
  ipodsim::Settings settings;
  settings.profile = profile;
  settings.library = SmallLibrary();
  return settings;
}

ipodsim::Settings CommonIpod() { return SettingsOf(ipodsim::Profile::kNano); }

// A name of tests has no dashes.
std::string TestName(const std::string& kind, std::string name) {
  std::replace(name.begin(), name.end(), '-', '_');
  return kind + "_" + name;
}

// The command during which a habit shows; where none is named, identification and questions.
Arguments CommandFor(const std::string& habit) {
  static const std::map<std::string, Arguments> kCommands = {
      {"authentication", {"prefs"}},
      {"long-title", {"browse", "tracks"}},
      {"no-select", {"browse", "artists", "The Hum"}},
      {"no-track-info", {"now"}},
      {"stays-paused", {"play", "tracks", "@2"}},
      {"ui-at-once", {"browse", "artists"}},
  };
  const auto command = kCommands.find(habit);
  return command != kCommands.end() ? command->second : Arguments{"info"};
}

void AddProfiles(std::vector<Scenario>* scenarios) {
  for (const ipodsim::Traits& traits : ipodsim::AllProfiles()) {
    scenarios->push_back({TestName("profile", traits.name), SettingsOf(traits.profile), {"info"}});
  }
}

void AddHabits(std::vector<Scenario>* scenarios) {
  for (const ipodsim::Habit& habit : ipodsim::AllHabits()) {
    ipodsim::Settings settings = CommonIpod();
    habit.apply(&settings);
    scenarios->push_back({TestName("habit", habit.name), settings, CommandFor(habit.name)});
  }
}

void AddFaults(std::vector<Scenario>* scenarios) {
  for (const ipodsim::FaultInfo& info : ipodsim::Faults::All()) {
    ipodsim::Settings settings = CommonIpod();
    settings.faults.Enable(info.fault);
    scenarios->push_back({TestName("fault", info.name), settings, {"browse", "tracks"}});
  }
}

void AddCommands(std::vector<Scenario>* scenarios) {
  const std::vector<std::pair<std::string, Arguments>> commands = {
      {"browse_path", {"browse", "artists", "The Hum", "Spans"}},
      {"now_follow", {"now", "--follow", "--for", "3"}},
      {"play", {"play", "tracks", "@2"}},
      {"prefs", {"prefs"}},
      {"prefs_set", {"prefs", "set", "line-out", "on"}},
      {"seek", {"seek", "forward", "1"}},
      {"shuffle", {"shuffle", "tracks"}},
      {"repeat", {"repeat", "all"}},
      {"userdata", {"userdata", "--weight", "82"}},
      {"workout", {"workout", "--duration", "30", "--interval", "10", "--speed", "30"}},
      {"without_tokens", {"--no-idps", "info"}},
      {"fast", {"--conduct", "fast", "browse", "tracks"}},
      {"legacy_info", {"--legacy", "info"}},
      {"legacy_browse", {"--legacy", "browse", "tracks"}},
      {"legacy_play", {"--legacy", "play", "tracks", "@2"}},
      {"legacy_workout",
       {"--legacy", "workout", "--duration", "30", "--interval", "10", "--speed", "30"}},
  };
  for (const auto& [name, arguments] : commands) {
    scenarios->push_back({"command_" + name, CommonIpod(), arguments});
  }
}

}  // namespace

std::vector<Scenario> Scenarios() {
  std::vector<Scenario> scenarios;
  AddProfiles(&scenarios);
  AddHabits(&scenarios);
  AddFaults(&scenarios);
  AddCommands(&scenarios);
  return scenarios;
}

}  // namespace dissector

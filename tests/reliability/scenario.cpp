// SPDX-License-Identifier: MIT
#include "scenario.h"

namespace reliability {

const std::vector<Scenario>& AllScenarios() {
  static const std::vector<Scenario> all = {
      kIdentifyByTokens,
      kIdentifyFallBack,
      kIdentifySurvey,
      kIdentifyRefused,
      kBrowse,
      kPlayAndFollow,
      kPreferences,
      kWorkout,
      kWorkoutFullIpod,
      kQuestionsAnyTime,
      kTwoThreads,
      kHandedOver,
      kCopies,
      kCopyOpens,
      kLegacySelfTest,
      kLegacyWorkout,
      kLegacyClosedByAnother,
  };
  return all;
}

const Scenario* ScenarioNamed(const std::string& name) {
  for (const Scenario& scenario : AllScenarios()) {
    if (name == scenario.name) return &scenario;
  }
  return nullptr;
}

ipodsim::Settings SmallIpod() {
  ipodsim::Settings settings;
  settings.library = {};
  settings.library.name = "Pod";
  for (int number = 0; number < 6; ++number) {
    ipodsim::Track track;
    track.title = "Track " + std::to_string(number);
    track.artist = number < 3 ? "Ann" : "Bob";
    track.album = number < 3 ? "Rivers" : "Seas";
    track.genre = "Rock";
    track.length_ms = 180'000;
    track.number = number % 3 + 1;
    settings.library.tracks.push_back(track);
  }
  return settings;
}

}  // namespace reliability

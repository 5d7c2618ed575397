// SPDX-License-Identifier: MIT
// The scenarios, written once and played by all that this program does.
#pragma once

#include <string>
#include <vector>

#include "simulator/settings/settings.h"
#include "stage.h"

namespace reliability {

/// What a host does with an iPod. Results are judged with Stage::Expect, so that a scenario can
/// also be played while something fails.
struct Scenario {
  const char* name;
  const char* what;
  ipodsim::Settings (*settings)();
  void (*play)(Stage& stage);
};

const std::vector<Scenario>& AllScenarios();
/// Null when there is none of this name.
const Scenario* ScenarioNamed(const std::string& name);

constexpr const wchar_t* kIpodName = L"Pod";
/// An iPod called so with two albums of three tracks, each by an artist of its own.
ipodsim::Settings SmallIpod();

// Each in scenarios/.
extern const Scenario kIdentifyByTokens;
extern const Scenario kIdentifyFallBack;
extern const Scenario kIdentifySurvey;
extern const Scenario kIdentifyRefused;
extern const Scenario kBrowse;
extern const Scenario kPlayAndFollow;
extern const Scenario kPreferences;
extern const Scenario kWorkout;
extern const Scenario kWorkoutFullIpod;
extern const Scenario kQuestionsAnyTime;
extern const Scenario kTwoThreads;
extern const Scenario kHandedOver;
extern const Scenario kCopies;
extern const Scenario kCopyOpens;
extern const Scenario kLegacySelfTest;
extern const Scenario kLegacyWorkout;
extern const Scenario kLegacyClosedByAnother;

}  // namespace reliability

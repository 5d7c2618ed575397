// SPDX-License-Identifier: MIT
// What is run: commands as a user types them, on iPods in a known state.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/settings/settings.h"
#include "trouble.h"

namespace truth {

/// What the iPod does when the accessory comes: its track is number kFirstTrack of all.
enum class Start { kStopped, kPlaying, kPaused };
constexpr std::uint32_t kFirstTrack = 4;

struct Scene {
  const char* name;
  std::vector<std::string> arguments;
  Start start = Start::kStopped;
};

/// Of both interfaces; "legacy-" begins the names of the legacy one's.
const std::vector<Scene>& AllScenes();

/// One run, and its name: SCENE/PROFILE/CONDUCT/TROUBLE@PLACE/SEED, and /text behind it when the
/// command prints for people and not for machines.
struct Case {
  const Scene* scene = nullptr;
  ipodsim::Profile profile = ipodsim::Profile::kNano;
  std::string conduct;
  const Trouble* trouble = nullptr;
  unsigned place = 0;
  std::uint64_t seed = 1;
  bool text = false;

  std::string name() const;
  bool legacy() const;
  std::vector<std::string> arguments() const;
  ipodsim::Settings settings() const;
};

std::optional<Case> CaseByName(const std::string& name);

/// The `number`th of the runs there are, its place left open: any two thousand that follow each
/// other hold every command and every trouble.
Case CaseByNumber(std::uint64_t number, std::uint64_t seed);

/// The frames that pass without trouble, and with that a place for the trouble.
/// @param requests, @param answers of the same run without trouble
unsigned DrawPlace(const Case& run, unsigned requests, unsigned answers);

}  // namespace truth

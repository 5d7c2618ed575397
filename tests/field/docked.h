// SPDX-License-Identifier: MIT
// A host's session, under a conduct of its choice, with an iPod that does what iPods in the field
// were seen to do.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ipodcomm/CIpodComm.h"
#include "simulator/settings/habits.h"
#include "simulator/simulated_ipod.h"
#include "world/world.h"

namespace test {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::World;

/// An iPod with 60 songs, "T000" to "T059", by as many artists as albums, two. It answers after
/// 8 ms, enters the remote user interface at once and asks nothing by itself.
ipodsim::Settings SixtySongs(ipodsim::Profile profile = ipodsim::Profile::kNano);
/// The same with a habit.
ipodsim::Settings SixtySongsWith(const char* habit,
                                 ipodsim::Profile profile = ipodsim::Profile::kNano);

constexpr unsigned char kTracks = 5;

class Docked {
 public:
  Docked(const ipodsim::Settings& settings, const tagIPOD_CONDUCT& conduct, std::uint64_t seed = 1);
  ~Docked();

  /// Identifies, by tokens where the iPod knows them. False when it was not identified.
  bool Identify();
  /// Identifies, enters the remote user-interface mode and goes to the top of the tracks.
  void GoToTracks();
  /// The names of `count` tracks from `start` on, as they come; calls that bring none are left
  /// out.
  std::vector<std::string> Names(unsigned long start, unsigned long count);
  /// The same with the index that the iPod gives each.
  std::vector<std::pair<unsigned long, std::string>> Rows(unsigned long start, unsigned long count);

  /// Virtual time that `action` takes.
  template <class Action>
  std::int64_t Elapsed(Action action) {
    const std::int64_t start_us = world.now_us();
    action();
    return world.now_us() - start_us;
  }

  ipodsim::SimulatedIpod ipod;
  World world;
  CIpodComm session;
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
};

/// "T003" to "T005": the names that such an iPod has for the tracks from `start` on.
std::vector<std::string> TrackNames(unsigned start, unsigned count);

}  // namespace test

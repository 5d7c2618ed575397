// SPDX-License-Identifier: MIT
// What the services for workouts are made with: the user's data and the place for files.

#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "simulator/protocol/command_table.h"

namespace ipodsim {

class FeatureFiles;

/// What the iPod knows about its user. It outlives the dock.
struct UserData {
  std::uint8_t flag = 1;      // data type 2, true when it is 2
  std::uint16_t weight = 75;  // data type 3
  std::uint8_t value = 0;     // data type 4
};

/// Bits of the Sports capabilities.
constexpr std::uint16_t kGymCapability = 0x0001;
constexpr std::uint16_t kUserDataCapability = 0x0002;

struct SportsSettings {
  std::uint16_t capabilities = kGymCapability | kUserDataCapability;
  UserData user_data;
};

/// Sizes are in bytes.
struct StorageSettings {
  std::uint64_t total_space = 8'000'000'000;
  std::uint64_t free_space = 3'000'000'000;
  std::uint32_t max_file_size = 16'000'000;
  std::uint16_t max_write_size = 496;
  /// What is stored has to be a workout: asked for first, and a whole document once it is closed.
  bool checks_workouts = true;
  /// Writes that fail, counted from 1 over all files, and with which status.
  std::map<std::uint32_t, AckStatus> failing_writes;
  /// Where the files go; in memory when null.
  std::shared_ptr<FeatureFiles> files;
};

}  // namespace ipodsim

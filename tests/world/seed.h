// SPDX-License-Identifier: MIT
// Numbers drawn from a seed: the same number for the same seed and place, whatever else was drawn.
#pragma once

#include <cstdint>

namespace ipodcomm::virtual_platform {

/// What is drawn. Each purpose has numbers of its own.
enum class Purpose : std::uint64_t {
  kSchedule = 1,
  kTickCount,
  kPace,
  kPriority,
  kNoise,
  kChangePoint,
  kConduct,
  kPause
};

/// The `index`th number for a purpose, evenly spread over 64 bits.
std::uint64_t Draw(std::uint64_t seed, Purpose purpose, std::uint64_t index);

/// The seed in the environment variable IPODCOMM_SEED: a number, or "random" for a fresh one. 1
/// when it is not set.
std::uint64_t SeedFromEnvironment();

}  // namespace ipodcomm::virtual_platform

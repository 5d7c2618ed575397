// SPDX-License-Identifier: MIT
// Seeds and what is drawn from them.
#include "world/seed.h"

#include <cstdlib>
#include <cstring>
#include <random>

namespace ipodcomm::virtual_platform {
namespace {

// A bijection of 64 bits in which every input bit reaches every output bit (SplitMix64's
// finaliser).
std::uint64_t Mix(std::uint64_t value) {
  value += 0x9E3779B97F4A7C15;
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
  return value ^ (value >> 31);
}

}  // namespace

std::uint64_t Draw(std::uint64_t seed, Purpose purpose, std::uint64_t index) {
  return Mix(Mix(Mix(seed) ^ static_cast<std::uint64_t>(purpose)) ^ index);
}

std::uint64_t SeedFromEnvironment() {
  const char* text = std::getenv("IPODCOMM_SEED");
  if (text == nullptr) return 1;
  if (std::strcmp(text, "random") != 0) return std::strtoull(text, nullptr, 0);
  std::random_device fresh;
  return fresh();
}

}  // namespace ipodcomm::virtual_platform

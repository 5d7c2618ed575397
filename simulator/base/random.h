// SPDX-License-Identifier: MIT
// Repeatable random numbers: the same seed and stream give the same numbers on every machine.

#pragma once

#include <cstdint>

namespace ipodsim {

class Random {
 public:
  /// Streams of one seed are independent, so switching one fault on does not move another.
  explicit Random(std::uint64_t seed, std::uint64_t stream = 0)
      : state_(seed * 0x9E3779B97F4A7C15u + stream * 0xD1B54A32D192ED03u + 1) {}

  std::uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
  }

  /// Below `limit`, which is at least 1.
  std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(Next() % limit); }

  /// From 0 up to, but not including, 1.
  double Fraction() { return static_cast<double>(Next() >> 11) * (1.0 / 9007199254740992.0); }

 private:
  std::uint64_t state_;
};

}  // namespace ipodsim

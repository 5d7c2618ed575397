// SPDX-License-Identifier: MIT
// What can go wrong on one direction of a serial line, each a switch of its own.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace ipodcomm::virtual_platform {

/// `nth` counts the bytes sent in this direction from the moment the switch is set: 1 is the next
/// one. Every switch works once.
class WireFaults {
 public:
  /// The byte takes its time on the line and does not arrive.
  void DropByte(unsigned nth = 1);
  /// The bits of `mask` arrive inverted.
  void FlipByte(unsigned nth, std::uint8_t mask);
  /// The byte arrives twice.
  void DoubleByte(unsigned nth = 1);
  /// The line stands still before the byte, which delays those after it as well.
  void DelayByte(unsigned nth, std::int64_t delay_us);
  /// Until further notice: so many of a million bytes are dropped and as many have one bit flipped,
  /// drawn from the world's seed.
  void SetNoise(unsigned per_million);
  void Clear();

  /// For the line: what becomes of one byte that is sent.
  struct Fate {
    std::vector<std::uint8_t> arriving;
    std::int64_t delay_us = 0;
  };
  Fate Decide(std::uint8_t byte);
  void SetSeed(std::uint64_t seed) { seed_ = seed; }

 private:
  struct Plan {
    bool drop = false;
    bool twice = false;
    std::uint8_t flip = 0;
    std::int64_t delay_us = 0;
  };

  Plan& At(unsigned nth) { return plans_[sent_ + nth]; }
  void AddNoise(Plan& plan) const;

  std::uint64_t sent_ = 0;
  std::map<std::uint64_t, Plan> plans_;  // by the number of the byte, from 1
  unsigned noise_per_million_ = 0;
  std::uint64_t seed_ = 0;
};

}  // namespace ipodcomm::virtual_platform

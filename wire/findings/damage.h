// SPDX-License-Identifier: MIT
// What frames with bad checksums have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ipodwire {

/// A few numbers, however many frames there are.
class Damage {
 public:
  void AddDamaged(const std::vector<std::uint8_t>& frame);
  void AddGood(const std::vector<std::uint8_t>& frame);

  /// In words, such as "each is off by bit 7"; empty where too few are damaged to tell, or they
  /// have nothing in common.
  std::string Pattern() const;

 private:
  std::uint64_t damaged_ = 0;
  std::uint64_t swallowing_ = 0;     // that hold the beginning of another frame
  std::uint8_t common_bits_ = 0xFF;  // by any of which each checksum may be off
  std::size_t shortest_damaged_ = SIZE_MAX;
  std::size_t longest_good_ = 0;
};

}  // namespace ipodwire

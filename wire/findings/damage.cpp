// SPDX-License-Identifier: MIT
#include "wire/findings/damage.h"

#include <algorithm>
#include <numeric>

namespace ipodwire {
namespace {

constexpr std::size_t kLengthAt = 2;
// Fewer may have anything in common by chance.
constexpr std::uint64_t kLeastFrames = 3;

// The bits one of which, set or cleared by mistake, makes the frame's sum what it is.
std::uint8_t BitsThatExplain(const std::vector<std::uint8_t>& frame) {
  const unsigned sum =
      std::accumulate(frame.begin() + static_cast<std::ptrdiff_t>(kLengthAt), frame.end(), 0U);
  const unsigned off = sum & 0xFF;
  std::uint8_t bits = 0;
  for (unsigned bit = 1; bit <= 0x80; bit <<= 1) {
    if (off == bit || off == 0x100 - bit) bits = static_cast<std::uint8_t>(bits | bit);
  }
  return bits;
}

bool HoldsABeginning(const std::vector<std::uint8_t>& frame) {
  constexpr std::uint8_t kBeginning[] = {0xFF, 0x55};
  return std::search(frame.begin() + static_cast<std::ptrdiff_t>(kLengthAt), frame.end(),
                     std::begin(kBeginning), std::end(kBeginning)) != frame.end();
}

}  // namespace

void Damage::AddDamaged(const std::vector<std::uint8_t>& frame) {
  ++damaged_;
  if (HoldsABeginning(frame)) ++swallowing_;
  common_bits_ = static_cast<std::uint8_t>(common_bits_ & BitsThatExplain(frame));
  shortest_damaged_ = std::min(shortest_damaged_, frame.size());
}

void Damage::AddGood(const std::vector<std::uint8_t>& frame) {
  longest_good_ = std::max(longest_good_, frame.size());
}

std::string Damage::Pattern() const {
  if (damaged_ < kLeastFrames) return {};
  if (swallowing_ == damaged_) return "each holds the beginning of the next, so bytes are lost";
  for (unsigned bit = 0; bit < 8; ++bit) {
    if (common_bits_ == 1U << bit) return "each is off by bit " + std::to_string(bit);
  }
  if (longest_good_ > 0 && shortest_damaged_ > longest_good_) {
    return "all are longer than " + std::to_string(longest_good_) + " bytes, and no good one is";
  }
  return {};
}

}  // namespace ipodwire

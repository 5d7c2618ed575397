// SPDX-License-Identifier: MIT
// When each byte of a burst arrives.
#include "world/line/wire.h"

namespace ipodcomm::virtual_platform {

void Wire::SetSpeed(std::uint32_t baud, std::uint32_t bits_per_byte) {
  baud_ = baud;
  bits_per_byte_ = bits_per_byte;
  burst_start_us_ = free_us_;
  burst_bytes_ = 0;
}

void Wire::Send(std::uint8_t byte, std::int64_t now_us) {
  const WireFaults::Fate fate = faults_.Decide(byte);
  if (fate.delay_us > 0) {
    free_us_ = std::max(free_us_, now_us) + fate.delay_us;
    burst_start_us_ = free_us_;
    burst_bytes_ = 0;
  }
  if (fate.arriving.empty()) Add(byte, true, now_us);
  for (const std::uint8_t arriving : fate.arriving) Add(arriving, false, now_us);
}

void Wire::Add(std::uint8_t value, bool lost, std::int64_t now_us) {
  if (now_us > free_us_) {
    burst_start_us_ = now_us;
    burst_bytes_ = 0;
  }
  const std::int64_t start_us = std::max(free_us_, now_us);
  ++burst_bytes_;
  const std::uint64_t bit_us = burst_bytes_ * bits_per_byte_ * 1'000'000;
  // Rounded up: a byte is never there before its last bit.
  free_us_ = burst_start_us_ + static_cast<std::int64_t>((bit_us + baud_ - 1) / baud_);
  bytes_.push_back({start_us, free_us_, value, lost});
}

std::int64_t Wire::NextArrival() const {
  return bytes_.empty() ? kNever : bytes_.front().arrival_us;
}

bool Wire::PopArrival(std::uint8_t* byte) {
  const Byte arrived = bytes_.front();
  bytes_.pop_front();
  *byte = arrived.value;
  return !arrived.lost;
}

void Wire::ForgetWaiting(std::int64_t now_us) {
  while (!bytes_.empty() && bytes_.back().start_us >= now_us) {
    free_us_ = bytes_.back().start_us;
    bytes_.pop_back();
  }
  burst_start_us_ = free_us_;
  burst_bytes_ = 0;
}

void Wire::Cut() {
  bytes_.clear();
  free_us_ = 0;
  burst_start_us_ = 0;
  burst_bytes_ = 0;
}

}  // namespace ipodcomm::virtual_platform

// SPDX-License-Identifier: MIT
// Plans for single bytes, and noise.
#include "world/line/wire_faults.h"

#include "world/seed.h"
#include "world/threads/race_detector.h"

namespace ipodcomm::virtual_platform {

void WireFaults::DropByte(unsigned nth) {
  const Unwatched unwatched;
  At(nth).drop = true;
}

void WireFaults::FlipByte(unsigned nth, std::uint8_t mask) {
  const Unwatched unwatched;
  At(nth).flip = mask;
}

void WireFaults::DoubleByte(unsigned nth) {
  const Unwatched unwatched;
  At(nth).twice = true;
}

void WireFaults::DelayByte(unsigned nth, std::int64_t delay_us) {
  const Unwatched unwatched;
  At(nth).delay_us = delay_us;
}

void WireFaults::SetNoise(unsigned per_million) {
  const Unwatched unwatched;
  noise_per_million_ = per_million;
}

void WireFaults::Clear() {
  const Unwatched unwatched;
  plans_.clear();
  noise_per_million_ = 0;
}

WireFaults::Fate WireFaults::Decide(std::uint8_t byte) {
  ++sent_;
  Plan plan;
  if (const auto planned = plans_.find(sent_); planned != plans_.end()) {
    plan = planned->second;
    plans_.erase(planned);
  }
  if (noise_per_million_ > 0) AddNoise(plan);
  Fate fate;
  fate.delay_us = plan.delay_us;
  if (plan.drop) return fate;
  fate.arriving.assign(plan.twice ? 2 : 1, static_cast<std::uint8_t>(byte ^ plan.flip));
  return fate;
}

void WireFaults::AddNoise(Plan& plan) const {
  const std::uint64_t number = Draw(seed_, Purpose::kNoise, sent_);
  const std::uint64_t lot = (number >> 8) % 1'000'000;
  if (lot < noise_per_million_) {
    plan.drop = true;
  } else if (lot < 2ULL * noise_per_million_) {
    plan.flip = static_cast<std::uint8_t>(plan.flip ^ (1U << (number % 8)));
  }
}

}  // namespace ipodcomm::virtual_platform

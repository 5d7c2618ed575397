// SPDX-License-Identifier: MIT
// Times bytes as a serial line does.

#include "paced_line.h"

#include <algorithm>

namespace ipodsim {

void PacedLine::Send(const Bytes& bytes, Microseconds now) {
  // The line is free again when the last byte of a burst has arrived.
  if (bytes_.empty() && now > burst_began_ + TimeOf(arrived_)) {
    burst_began_ = now;
    arrived_ = 0;
  }
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

std::optional<Microseconds> PacedLine::ArrivalOf(std::size_t bytes) const {
  if (bytes_.empty()) return std::nullopt;
  return burst_began_ + TimeOf(arrived_ + std::min(bytes, bytes_.size()));
}

Bytes PacedLine::Receive(Microseconds now) {
  Bytes received;
  while (HasCome(NextArrival(), now)) {
    received.push_back(bytes_.front());
    bytes_.pop_front();
    ++arrived_;
  }
  return received;
}

// 10.5 bits a byte.
Microseconds PacedLine::TimeOf(std::uint64_t bytes) const {
  if (baud_ == 0) return 0;
  return static_cast<Microseconds>(bytes * 21 * kSecond / (2 * baud_));
}

}  // namespace ipodsim

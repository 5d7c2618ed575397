// SPDX-License-Identifier: MIT
// The speed of a serial line, for bytes that a pseudo-terminal moves in no time.

#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "simulator/base/bytes.h"
#include "simulator/base/clock.h"

namespace ipodsim {

/// One direction of a line. A byte arrives when its last bit does, one after the other: a start
/// bit, 8 data bits and 1.5 stop bits, 10.5 bit times in all. With 0 baud, it arrives at once.
class PacedLine {
 public:
  explicit PacedLine(std::uint32_t baud) : baud_(baud) {}

  /// Bytes that begin to move now, or behind those that are on the way.
  void Send(const Bytes& bytes, Microseconds now);
  /// When the next byte arrives, if one is on the way.
  std::optional<Microseconds> NextArrival() const { return ArrivalOf(1); }
  /// When so many bytes, or all that are on the way, have arrived.
  std::optional<Microseconds> ArrivalOf(std::size_t bytes) const;
  /// Takes the bytes that have arrived by now.
  Bytes Receive(Microseconds now);
  /// When all that is on the way has arrived.
  Microseconds LastArrival() const { return burst_began_ + TimeOf(arrived_ + bytes_.size()); }
  /// What is on the way is lost.
  void Cut() { bytes_.clear(); }

 private:
  Microseconds TimeOf(std::uint64_t bytes) const;

  const std::uint64_t baud_;
  std::deque<std::uint8_t> bytes_;
  // Bytes that follow each other without a gap are timed from the first of them, so that fractions
  // of a microsecond do not add up.
  Microseconds burst_began_ = 0;
  std::uint64_t arrived_ = 0;  // of the burst
};

}  // namespace ipodsim

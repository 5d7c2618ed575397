// SPDX-License-Identifier: MIT
// The line from the iPod to the accessory, which may be faulty.

#pragma once

#include <deque>
#include <optional>

#include "simulator/base/bytes.h"
#include "simulator/settings/ipod_faults.h"

namespace ipodsim {

/// Bytes in the order in which they go out; frames never mix.
class Line {
 public:
  explicit Line(FaultDice* dice) : dice_(dice) {}

  /// A frame, on which the line's faults may fall.
  void Send(const Bytes& wire, Microseconds at);
  /// Bytes that no fault falls on.
  void SendSound(Bytes bytes, Microseconds at) { Append(std::move(bytes), at); }
  std::optional<Microseconds> NextDue() const;
  Bytes PopDue(Microseconds now);
  void Clear();

 private:
  struct Chunk {
    Microseconds due;
    Bytes bytes;
  };

  void Damage(Bytes* wire);
  void Append(Bytes bytes, Microseconds due);

  FaultDice* dice_;
  std::deque<Chunk> chunks_;
  Microseconds busy_until_ = 0;
};

}  // namespace ipodsim

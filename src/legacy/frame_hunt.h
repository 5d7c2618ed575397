// SPDX-License-Identifier: MIT
// Finds one frame in received bytes.
#pragma once

#include <cstdint>

namespace ipodcomm {

/// Is given the bytes one by one and keeps nothing but its place in the frame:
///
///   FF 55 LL          lingo command data...  checksum       short form, LL 1..255
///   FF 55 00 HH LL    lingo command data...  checksum       large form
class FrameHunt {
 public:
  /// Whether `byte` belongs to the frame; other bytes are to be dropped.
  bool Accept(std::uint8_t byte);
  /// Whether the byte accepted last was the checksum.
  bool complete() const { return state_ == State::kComplete; }
  /// How many bytes must still come at the least, whatever they are, before the frame is complete:
  /// a read of no more takes nothing of what follows it.
  std::uint32_t least_missing() const;

 private:
  enum class State {
    kSync,
    kStart,
    kLength,
    kLengthHigh,
    kLengthLow,
    kPayload,
    kChecksum,
    kComplete
  };

  bool AcceptIf(bool expected, State next);

  State state_ = State::kSync;
  std::uint16_t remaining_ = 0;  // bytes from the lingo on
};

}  // namespace ipodcomm

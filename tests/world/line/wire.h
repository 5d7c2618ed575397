// SPDX-License-Identifier: MIT
// One direction of a serial line: bytes on their way, one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "world/clock.h"
#include "world/line/wire_faults.h"

namespace ipodcomm::virtual_platform {

class Wire {
 public:
  void SetSpeed(std::uint32_t baud, std::uint32_t bits_per_byte);
  WireFaults& faults() { return faults_; }

  /// Sends a byte as soon as those before it have left.
  void Send(std::uint8_t byte, std::int64_t now_us);
  /// When the next byte has arrived, or kNever.
  std::int64_t NextArrival() const;
  /// Takes the next byte, which has arrived. False where one was lost on the way.
  bool PopArrival(std::uint8_t* byte);

  /// Bytes whose last bit has not arrived.
  std::size_t on_the_way() const { return bytes_.size(); }
  /// Forgets the bytes that have not begun to move.
  void ForgetWaiting(std::int64_t now_us);
  /// Cut: whatever is on the way is lost.
  void Cut();

 private:
  struct Byte {
    std::int64_t start_us;
    std::int64_t arrival_us;
    std::uint8_t value;
    bool lost;
  };

  void Add(std::uint8_t value, bool lost, std::int64_t now_us);

  std::uint64_t baud_ = 57600;
  std::uint64_t bits_per_byte_ = 10;
  WireFaults faults_;
  std::deque<Byte> bytes_;
  // Bytes that follow each other without a gap are timed from the first, so that fractions of a
  // microsecond do not add up.
  std::int64_t burst_start_us_ = 0;
  std::uint64_t burst_bytes_ = 0;
  std::int64_t free_us_ = 0;
};

}  // namespace ipodcomm::virtual_platform

// SPDX-License-Identifier: MIT
// Virtual time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace ipodcomm::virtual_platform {

/// Durations in microseconds, to be multiplied: `world.Advance(13 * kSecond)`.
constexpr std::int64_t kMillisecond = 1000;
constexpr std::int64_t kSecond = 1000 * kMillisecond;
/// A time that does not come.
constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

/// Begins at 0 and moves only when it is told to.
class Clock {
 public:
  std::int64_t now_us() const { return now_us_; }
  /// Never back.
  void MoveTo(std::int64_t time_us) { now_us_ = std::max(now_us_, time_us); }

  /// The tick count that a program sees: milliseconds in 32 bits, from a start of its own.
  std::uint32_t tick_count_ms() const {
    return tick_start_ms_ + static_cast<std::uint32_t>(now_us_ / kMillisecond);
  }
  void SetTickCount(std::uint32_t tick_count_ms) {
    tick_start_ms_ += tick_count_ms - this->tick_count_ms();
  }

 private:
  std::int64_t now_us_ = 0;
  std::uint32_t tick_start_ms_ = 0;
};

/// What happens in the world without a thread: bytes arrive, devices act.
class Timeline {
 public:
  virtual ~Timeline() = default;
  /// When something is next to happen, or kNever.
  virtual std::int64_t NextEvent() = 0;
  /// Lets everything happen that is due.
  virtual void RunUntil(std::int64_t now_us) = 0;
};

}  // namespace ipodcomm::virtual_platform

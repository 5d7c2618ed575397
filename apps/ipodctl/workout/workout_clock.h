// SPDX-License-Identifier: MIT
// The clock of a workout, which may go faster than real time.
#pragma once

#include <algorithm>
#include <chrono>

#include "console/clock.h"

namespace ipodctl {

/// Starts when it is made.
class WorkoutClock {
 public:
  /// @param first_s what it shows first
  WorkoutClock(int first_s, double speed) : first_s_(first_s), speed_(speed) {}

  double Seconds() const {
    const std::chrono::duration<double> real = SteadyTime() - start_;
    return first_s_ + real.count() * speed_;
  }
  /// Real milliseconds until it shows `seconds`; 0 when it has.
  unsigned MsUntil(int seconds) const {
    const double left_ms = (seconds - Seconds()) / speed_ * 1000;
    return left_ms <= 0 ? 0 : static_cast<unsigned>(std::min(left_ms + 1, 1e9));
  }

 private:
  int first_s_;
  double speed_;
  std::chrono::microseconds start_ = SteadyTime();
};

}  // namespace ipodctl

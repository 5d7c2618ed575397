// SPDX-License-Identifier: MIT
// The computer's own clock. Nothing else is in this file, so that a program may bring another.
#include "console/clock.h"

#include <thread>

namespace ipodctl {

std::chrono::microseconds SteadyTime() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

std::chrono::milliseconds UnixTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::system_clock::now().time_since_epoch());
}

void SleepFor(std::chrono::microseconds duration) { std::this_thread::sleep_for(duration); }

}  // namespace ipodctl

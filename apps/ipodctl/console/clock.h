// SPDX-License-Identifier: MIT
// The time of day, and the time that passes while the program runs. Whoever runs commands on a
// clock of their own defines all these functions in their program, which then take the place of
// these.
#pragma once

#include <chrono>

namespace ipodctl {

/// Time since some moment before the program began. It never goes back.
std::chrono::microseconds SteadyTime();

/// Time since 1970, UTC, as the computer's clock is set.
std::chrono::milliseconds UnixTime();

void SleepFor(std::chrono::microseconds duration);

}  // namespace ipodctl

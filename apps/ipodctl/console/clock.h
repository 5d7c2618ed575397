// SPDX-License-Identifier: MIT
// The time that passes while the program runs. Whoever runs commands on a clock of their own
// defines both functions in their program, which then take the place of these.
#pragma once

#include <chrono>

namespace ipodctl {

/// Time since some moment before the program began. It never goes back.
std::chrono::microseconds SteadyTime();

void SleepFor(std::chrono::microseconds duration);

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// One run of a scenario, from an empty world to one that is empty again.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "scenario.h"

namespace reliability {

/// Plays a scenario on a stage. Afterwards a command works, and destroying is quick and leaves
/// nothing open.
/// @param pauses whether the schedule has any
/// @return what was wrong, or nothing
std::string Play(const Scenario& scenario, std::uint64_t seed,
                 std::unique_ptr<ipodcomm::virtual_platform::Schedule> schedule,
                 bool pauses = false);

/// What is left open that is not an ended read thread's handle, read threads that have not ended,
/// and what was given back twice; nothing when that is all.
std::string LeftOpen(Stage& stage);

/// Adds the run to the tally.
void Count(Stage& stage);

}  // namespace reliability

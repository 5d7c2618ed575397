// SPDX-License-Identifier: MIT
// What goes over the line, watched while it does.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "wire/findings/finding.h"

namespace ipodctl {

/// Watches what the library records from now on until the process ends. A recording that was asked
/// for is made all the same. Does nothing when the system has no pipe to give.
/// @param shown whether every frame is printed on standard error
/// @param baud at which the line is heard, where that is another rate than the library's
void WatchLine(bool shown, std::uint32_t baud = 0);

/// Ends the watching and says what was found: once the line is closed, a second later at most.
/// None where the line was not watched.
std::optional<std::vector<ipodwire::Finding>> FindingsOfWatchedLine();

}  // namespace ipodctl

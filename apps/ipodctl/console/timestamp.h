// SPDX-License-Identifier: MIT
// The one form in which the program writes a moment for machines.
#pragma once

#include <chrono>
#include <string>

namespace ipodctl {

/// "2026-03-01T08:15:30.250Z": RFC 3339, UTC, to the millisecond.
std::string Timestamp(std::chrono::milliseconds since_1970);

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// ipodctl ports, and --port auto.
#pragma once

#include <string>

#include "console/output.h"
#include "options.h"

namespace ipodctl {

/// What --port says in place of a device.
constexpr const char* kAnyPort = "auto";

/// Lists the system's serial ports, and asks each for an iPod where that was wanted.
void RunPorts(const Options& options, Output& output);

/// The system's only serial port, and of several the only one on which an iPod answers. Throws a
/// CommandFailure when there is none, or more than one.
std::string FindPort(const Options& options);

}  // namespace ipodctl

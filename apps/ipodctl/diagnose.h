// SPDX-License-Identifier: MIT
// ipodctl diagnose: tries to identify to what is docked, and says how that went and why.
#pragma once

#include "console/output.h"
#include "options.h"

namespace ipodctl {

/// Makes a dock and a session of its own, and records the line.
/// @return the exit status that the attempt has: 0 when the iPod accepted the accessory
int RunDiagnose(const Options& options, Output& output);

}  // namespace ipodctl

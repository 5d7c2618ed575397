// SPDX-License-Identifier: MIT
// ipodctl diagnose: tries to identify to what is docked, and says how that went and why.
#pragma once

#include "console/output.h"
#include "options.h"

namespace ipodctl {

/// Makes a dock and sessions of its own, and watches the line. Where nothing accepts the accessory
/// it tries also what might help.
/// @return the exit status of the first attempt: 0 when the iPod accepted the accessory
int RunDiagnose(const Options& options, Output& output);

}  // namespace ipodctl

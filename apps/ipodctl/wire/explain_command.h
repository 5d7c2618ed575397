// SPDX-License-Identifier: MIT
// The command that says why a recorded session went as it did.
#pragma once

#include "console/output.h"
#include "options.h"

namespace ipodctl {

/// `explain`: the findings of a recording, or the page of a finding's code.
/// @return the exit status
int RunExplain(const Options& options, Output& output);

}  // namespace ipodctl

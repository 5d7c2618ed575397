// SPDX-License-Identifier: MIT
// The commands that tell a recording in words.
#pragma once

#include "console/output.h"
#include "options.h"

namespace ipodctl {

/// `decode` and `monitor`. Both print a recording to its end; `monitor` waits for more of one that
/// is still being written.
/// @return the exit status
int RunDecode(const Options& options, Output& output);

}  // namespace ipodctl

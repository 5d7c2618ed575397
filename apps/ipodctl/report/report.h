// SPDX-License-Identifier: MIT
// ipodctl report: makes a page of a workout document.
#pragma once

#include "console/output.h"
#include "options.h"

namespace ipodctl {

/// Needs no iPod. Throws a CommandFailure when the page cannot be made, or when the document is
/// damaged; then the page shows what it holds. @return the exit status
int RunReport(const Options& options, Output& output);

}  // namespace ipodctl

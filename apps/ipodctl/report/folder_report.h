// SPDX-License-Identifier: MIT
// ipodctl report FOLDER: makes a page of every workout document in it, and one of them all.
#pragma once

#include "console/output.h"
#include "options.h"
#include "report/presentation.h"

namespace ipodctl {

/// Throws a CommandFailure when there is none, or when not all could be read to their ends; then
/// the pages show what could. @return the exit status
int RunFolderReport(const Options& options, const Presentation& presentation, Output& output);

}  // namespace ipodctl

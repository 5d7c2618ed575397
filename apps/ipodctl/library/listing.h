// SPDX-License-Identifier: MIT
// Shows what is in the iPod's database.
#pragma once

#include "console/output.h"
#include "library/media_library.h"
#include "options.h"

namespace ipodctl {

/// The records that the options' path leads to; without a path how many each category has.
void ShowLibrary(const Options& options, Output& output, MediaLibrary& library);

}  // namespace ipodctl

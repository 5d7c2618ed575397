// SPDX-License-Identifier: MIT
// What every command works with.
#pragma once

#include "console/output.h"
#include "ipod/dock_line.h"
#include "options.h"

namespace ipodctl {

/// Commands take it, and a session that is identified unless they make one themselves. They end by
/// returning, or by throwing a CommandFailure.
struct Context {
  const Options& options;
  DockLine& dock;
  Output& output;
};

}  // namespace ipodctl

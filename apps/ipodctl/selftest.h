// SPDX-License-Identifier: MIT
// ipodctl selftest: the legacy interface's regression test against the iPod in the dock.
#pragma once

#include "context.h"

namespace ipodctl {

/// Opens and closes the port itself.
void RunSelfTest(const Context& context);

}  // namespace ipodctl

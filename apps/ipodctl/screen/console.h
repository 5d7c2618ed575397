// SPDX-License-Identifier: MIT
// ipodctl console: the console's screen in a terminal.
#pragma once

#include "context.h"

namespace ipodctl {

/// Shows the screen until the user leaves it. Throws a CommandFailure when there is no terminal
/// that can show one, and when the last workout has not been saved.
void RunConsole(const Context& context);

}  // namespace ipodctl

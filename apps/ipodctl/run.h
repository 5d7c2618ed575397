// SPDX-License-Identifier: MIT
// Runs the command that the options name.
#pragma once

#include <string>

#include "context.h"

namespace ipodctl {

/// Ends by returning, or by throwing a CommandFailure.
void RunCommand(const Context& context);

/// Whether a command goes through the legacy interface when asked to.
bool IsLegacyCommand(const std::string& name);
/// "info, browse, ... and selftest", for messages and help.
std::string LegacyCommandNames();

}  // namespace ipodctl

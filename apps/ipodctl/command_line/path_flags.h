// SPDX-License-Identifier: MIT
// The walk into the library on the command line, which browsing and playing share.
#pragma once

#include "command_line/parser.h"

namespace ipodctl {

/// Lets `command` take a category, the names to walk into, and --hierarchy.
void AddPathOptions(CommandLineParser& parser, CLI::App* command);

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// The groups of commands; a file each.
#pragma once

#include "command_line/parser.h"

namespace ipodctl {

void AddLegacyInterface(CommandLineParser& parser);
void AddLookingCommands(CommandLineParser& parser);
void AddPlayingCommands(CommandLineParser& parser);
void AddReportCommand(CommandLineParser& parser);
void AddSettingCommands(CommandLineParser& parser);
void AddWorkoutCommands(CommandLineParser& parser);

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// The commands and their flags; a file for each subject.
#pragma once

#include "command_line/parser.h"

namespace ipodctl {

// ipod_flags.cpp
void AddInfoCommand(CommandLineParser& parser);
void AddTourCommand(CommandLineParser& parser);
/// --legacy for the commands that the legacy interface has too, and selftest.
void AddLegacyInterface(CommandLineParser& parser);

// library_flags.cpp
void AddBrowseCommand(CommandLineParser& parser);
/// Lets `command` accept a category, the names to walk into, and --hierarchy.
void AddPathFlags(CommandLineParser& parser, CLI::App* command);

// playing_flags.cpp
void AddNowCommand(CommandLineParser& parser);
/// play, pause, stop, next, previous, seek.
void AddPlayerCommands(CommandLineParser& parser);
/// shuffle, repeat.
void AddModeCommands(CommandLineParser& parser);

// settings_flags.cpp
void AddPrefsCommand(CommandLineParser& parser);
void AddUserdataCommand(CommandLineParser& parser);

// workout_flags.cpp
void AddWorkoutCommand(CommandLineParser& parser);

// report_flags.cpp
void AddReportCommand(CommandLineParser& parser);

// wire_flags.cpp
/// decode, monitor.
void AddWireCommands(CommandLineParser& parser);

}  // namespace ipodctl

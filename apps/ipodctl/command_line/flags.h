// SPDX-License-Identifier: MIT
// The commands and their flags; a file for each subject.
#pragma once

#include "command_line/parser.h"

namespace ipodctl {

// help_flags.cpp
void AddHelpCommand(CommandLineParser& parser, std::vector<std::string>* command);
/// The help on a command: "prefs", or "prefs", "set". Throws a UsageProblem if there is none.
std::string HelpOn(const CLI::App& app, const std::vector<std::string>& command);
/// Says what is wrong with words that were left over when `app` was parsed, and what may have been
/// meant.
std::string NotExpected(const CLI::App& app, const std::string& word);

// ipod_flags.cpp
void AddPortsCommand(CommandLineParser& parser);
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
/// Lets `command` accept what describes a workout.
void AddWorkoutOptions(CommandLineParser& parser, CLI::App* command);

// console_flags.cpp
void AddConsoleCommand(CommandLineParser& parser);

// report_flags.cpp
void AddReportCommand(CommandLineParser& parser);

// wire_flags.cpp
/// decode, monitor.
void AddWireCommands(CommandLineParser& parser);

}  // namespace ipodctl

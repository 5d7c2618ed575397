// SPDX-License-Identifier: MIT
// The user's configuration file, which gives options that the command line does not.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ipodctl {

/// ipodctl.toml in the folder of the user's configuration; empty where the system has none.
std::string ConfigurationFile();

/// Gives the program's options, and those of the command in a section of its name, what `file`
/// says, unless they are given already or exclude one that is. A file that is not there says
/// nothing. Throws a UsageProblem that names the line which is wrong.
void ReadConfiguration(const std::string& file, CLI::App& app);

}  // namespace ipodctl

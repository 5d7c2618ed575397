// SPDX-License-Identifier: MIT
// Completion of the command line in bash, written from the same definitions that parse it.
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace ipodctl {

/// Words that a command accepts besides its options.
using CommandWords = std::map<std::string, std::vector<std::string>>;

/// Words that an option takes, by what stands before the word: `--habit`, or `--simulated=`.
using OptionValues = std::map<std::string, std::vector<std::string>>;

/// A script for bash to source.
std::string BashCompletion(const CLI::App& app, const CommandWords& words,
                           const OptionValues& values);

}  // namespace ipodctl

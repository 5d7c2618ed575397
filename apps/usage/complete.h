// SPDX-License-Identifier: MIT
// What can stand at the end of a command line: the answer to the shells' completion scripts.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "usage/values.h"

namespace usage {

/// The first argument of a program that a completion script asks; the words of the command line
/// follow, the last of them being the one to complete.
constexpr const char* kCompleteArgument = "--complete";

/// @param words of the command line, without the program's name; the last one is to be completed
/// @return first a line that tells whether paths fit, too: "none", "files" or "folders"; then the
///         words that fit, each on a line, with a tab and what it means behind it
std::string Complete(const CLI::App& app, const Values& values,
                     const std::vector<std::string>& words);

}  // namespace usage

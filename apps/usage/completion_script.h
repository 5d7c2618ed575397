// SPDX-License-Identifier: MIT
// Scripts with which a shell completes a program's command line. They ask the program itself, so
// that what they offer is what this program takes.
#pragma once

#include <string>
#include <vector>

namespace usage {

/// bash, zsh, fish.
const std::vector<std::string>& Shells();

/// The script for one of Shells(), to be sourced, or to be installed where the shell looks for it.
std::string CompletionScript(const std::string& program, const std::string& shell);

}  // namespace usage

// SPDX-License-Identifier: MIT
// Notes on standard error about what the program does, for --verbose.
#pragma once

#include <string>

namespace ipodctl {

void SetVerbose(bool verbose);
bool Verbose();

/// One line on standard error when verbose. Any thread.
void Note(const std::string& text);

}  // namespace ipodctl

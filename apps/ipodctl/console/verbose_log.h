// SPDX-License-Identifier: MIT
// What the program tells on standard error about its doings when asked to be verbose.
#pragma once

#include <string>

namespace ipodctl {

void SetVerbose(bool verbose);
bool Verbose();

/// One line on standard error when verbose. Any thread.
void Note(const std::string& text);

}  // namespace ipodctl
